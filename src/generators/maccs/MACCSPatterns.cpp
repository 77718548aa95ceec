// Where the keys of a molecule are found. Fingerprints only ask whether a pattern matches; here its matches are
// walked one after the other, since patterns of several parts can have more of them than memory holds. Rows that
// do not match are known from KeyFinder: a search for what is not there can be the longest of all.

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "QXChem/QXPerception.h"
#include "QXChem/QXSubSearch.h"
#include "QXFingrix/QXFPPatterns.h"
#include "QXFingrix/QXFPType.h"
#include "generators/PreparedCopy.h"
#include "generators/SourceIter.h"
#include "generators/maccs/KeyFinder.h"
#include "generators/maccs/KeyRows.h"
#include "generators/maccs/MACCSKey.h"
#include "generators/maccs/SeenSets.h"

namespace QXFingrix {
namespace {

using QXChem::QXAtomBase;
using QXChem::QXAtomBondSet;
using QXChem::QXBondBase;
using QXChem::QXMolBase;
using QXChem::QXSubSearch;
using QXSystem::QXIter;
using Keys = std::vector<MACCSKey>;

// A prepared copy, ready to be matched; shared by the iterators that refer to it.
struct Subject {
  explicit Subject(const QXMolBase& mol) : copy(mol, QXFPType::MACCS166), target(copy.Mol()) {
    KeyFinder().FindPatternKeys(keys, copy.Mol());
  }

  QXIter<QXAtomBondSet> Match(const QXSubSearch& search) const { return search.Match(target, true); }
  bool IsSetBy(const MACCSKey& row) const { return keys.Has(row.repeatKey != 0 ? row.repeatKey : row.key); }
  // Whether to look for matches; a counting row may have one although it sets no key.
  bool MayMatch(const MACCSKey& row) const { return row.repeatKey != 0 || IsSetBy(row); }
  unsigned NumAtoms() const { return copy.Mol().NumAtoms(); }
  const QXAtomBase& Atom(unsigned idx) const { return copy.Mol().Atoms()[idx]; }
  QXAtomBondSet AtomSet(unsigned idx) const {
    QXAtomBondSet set;
    set.AddAtom(copy.OriginalAtom(idx));
    return set;
  }

  PreparedCopy copy;
  QXChem::QXSubSearchTarget target;
  KeySet keys;  // of patterns
};
using SubjectPtr = std::shared_ptr<const Subject>;

// Three or four atoms without a bond come from one row only, which never repeats them, and are by far the most.
bool CanBeSeenAgain(const QXAtomBondSet& set) {
  return set.NumBonds() != 0 || set.NumAtoms() <= 2;
}

class CoverageSource {
 public:
  using Value = QXAtomBondSet;

  CoverageSource(SubjectPtr subject, const Keys& keys, bool unique)
      : subject_(std::move(subject)), keys_(&keys), unique_(unique) {}

  bool Next(QXAtomBondSet& set) {
    while (NextCandidate(set)) {
      if (!CanBeSeenAgain(set) || seen_.Add(set)) return true;
    }
    return false;
  }

 private:
  bool NextCandidate(QXAtomBondSet& set) {
    while (atom_ < subject_->NumAtoms()) {
      const unsigned idx = atom_++;
      const unsigned element = subject_->Atom(idx).GetAtomicNum();
      if (KeyOfElement(element) == 0 || (unique_ && !elements_.insert(element).second)) continue;
      set = subject_->AtomSet(idx);
      return true;
    }
    while (!matches_) {
      if (row_ == keys_->size()) return false;
      const MACCSKey& row = (*keys_)[row_++];
      if (row.key != sameAsRow146 && subject_->MayMatch(row)) matches_ = subject_->Match(row.search);
    }
    set = subject_->copy.Original(*matches_);
    ++matches_;
    return true;
  }

  SubjectPtr subject_;
  const Keys* keys_;
  bool unique_;
  unsigned atom_ = 0;
  std::set<unsigned> elements_;
  std::size_t row_ = 0;
  QXIter<QXAtomBondSet> matches_;
  SeenSets seen_;
};

class OverlapSource {
 public:
  using Value = QXFPMatch;

  OverlapSource(SubjectPtr a, SubjectPtr b, const Keys& keys)
      : a_(std::move(a)), b_(std::move(b)), keys_(&keys) {}

  bool Next(QXFPMatch& match) {
    if (NextAtoms(match)) return true;
    while (!matchesA_ || !matchesB_) {
      if (matchesA_ && ++matchesA_) {
        matchesB_.ToFirst();
        continue;
      }
      if (row_ == keys_->size()) return false;
      const MACCSKey& row = (*keys_)[row_++];
      if (!a_->MayMatch(row) || !b_->MayMatch(row)) continue;
      matchesA_ = a_->Match(row.search);
      matchesB_ = matchesA_ ? b_->Match(row.search) : QXIter<QXAtomBondSet>();
      if (!matchesB_) matchesA_ = {};
    }
    match = QXCombineMatches(a_->copy.Original(*matchesA_), b_->copy.Original(*matchesB_));
    ++matchesB_;
    return true;
  }

 private:
  bool NextAtoms(QXFPMatch& match) {
    for (; atomA_ < a_->NumAtoms(); ++atomA_, atomB_ = 0) {
      const unsigned key = KeyOfElement(a_->Atom(atomA_).GetAtomicNum());
      if (key == 0) continue;
      while (atomB_ < b_->NumAtoms()) {
        const unsigned idx = atomB_++;
        if (KeyOfElement(b_->Atom(idx).GetAtomicNum()) != key) continue;
        match = QXCombineMatches(a_->AtomSet(atomA_), b_->AtomSet(idx));
        return true;
      }
    }
    return false;
  }

  SubjectPtr a_;
  SubjectPtr b_;
  const Keys* keys_;
  unsigned atomA_ = 0;
  unsigned atomB_ = 0;
  std::size_t row_ = 0;
  QXIter<QXAtomBondSet> matchesA_;
  QXIter<QXAtomBondSet> matchesB_;
};

// The matches of one pattern.
class MatchSource {
 public:
  using Value = QXAtomBondSet;

  MatchSource(SubjectPtr subject, const QXSubSearch& search)
      : subject_(std::move(subject)), matches_(subject_->Match(search)) {}

  bool Next(QXAtomBondSet& set) {
    if (!matches_) return false;
    set = subject_->copy.Original(*matches_);
    ++matches_;
    return true;
  }

 private:
  SubjectPtr subject_;
  QXIter<QXAtomBondSet> matches_;
};

// Of every row its pattern, or one part of a pattern of equal parts.
std::vector<QXSubSearch> PartsOf(const Keys& keys) {
  std::vector<QXSubSearch> parts;
  for (const MACCSKey& row : keys) {
    const std::size_t dot = row.smarts.find('.');
    parts.push_back(dot == std::string::npos ? row.search : QXSubSearch(row.smarts.substr(0, dot)));
  }
  return parts;
}

std::string SmartsOfElements(unsigned key) {
  std::string text;
  for (unsigned element = 0; element < std::size(AtomicNumBit); ++element) {
    if (AtomicNumBit[element] == key) text += (text.empty() ? "[#" : ",#") + std::to_string(element);
  }
  return text + "]";
}

using PatternsByKey = std::map<unsigned, QXFPPattern>;

void AddPattern(PatternsByKey& patterns, unsigned key, std::string text, QXIter<QXAtomBondSet> matches) {
  patterns[key] = {key - 1, std::move(text), std::move(matches)};
}

void AddElements(PatternsByKey& patterns, const Subject& subject) {
  std::map<unsigned, std::vector<QXAtomBondSet>> atoms;
  for (unsigned idx = 0; idx < subject.NumAtoms(); ++idx) {
    const unsigned key = KeyOfElement(subject.Atom(idx).GetAtomicNum());
    if (key != 0) atoms[key].push_back(subject.AtomSet(idx));
  }
  for (auto& [key, sets] : atoms) {
    AddPattern(patterns, key, SmartsOfElements(key), QXSystem::QXMakeVectorIter(std::move(sets)));
  }
}

void AddRows(PatternsByKey& patterns, const SubjectPtr& subject, const Keys& keys,
             const std::vector<QXSubSearch>& parts) {
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const MACCSKey& row = keys[i];
    if (!subject->IsSetBy(row)) continue;
    AddPattern(patterns, row.repeatKey != 0 ? row.repeatKey : row.key, row.smarts,
               MakeSourceIter(MatchSource(subject, parts[i])));
  }
}

// The atoms of each part, and the bonds inside it that belong to it. Parts are numbered from 1.
template <class IsOfPart>
std::vector<QXAtomBondSet> SetsOfParts(const PreparedCopy& copy, unsigned numParts,
                                       const std::vector<unsigned>& partOfAtom, IsOfPart isOfPart) {
  std::vector<QXAtomBondSet> sets(numParts);
  for (unsigned idx = 0; idx < partOfAtom.size(); ++idx) {
    if (partOfAtom[idx] != 0) sets[partOfAtom[idx] - 1].AddAtom(copy.OriginalAtom(idx));
  }
  for (const QXBondBase& bond : copy.Mol().Bonds()) {
    const unsigned part = partOfAtom[bond.GetBgnIdx()];
    if (part != 0 && isOfPart(bond)) sets[part - 1].AddBond(copy.OriginalBond(bond.GetIdx()));
  }
  return sets;
}

void AddParts(PatternsByKey& patterns, const PreparedCopy& copy) {
  std::vector<unsigned> parts;
  const unsigned numComponents = QXChem::QXDetermineComponents(copy.Mol(), parts);
  if (numComponents > 1) {
    AddPattern(patterns, twoComponentsKey, "more than one component",
               QXSystem::QXMakeVectorIter(
                   SetsOfParts(copy, numComponents, parts, [](const QXBondBase&) { return true; })));
  }
  const unsigned numSystems = QXChem::QXDetermineAromaticRingSystems(copy.Mol(), parts);
  if (numSystems == 0) return;
  const auto systems = QXSystem::QXMakeVectorIter(SetsOfParts(
      copy, numSystems, parts, [](const QXBondBase& bond) { return bond.IsAromatic() && bond.IsInRing(); }));
  AddPattern(patterns, aromaticSystemKey, "aromatic ring system", systems);
  if (numSystems > 1) {
    AddPattern(patterns, twoAromaticSystemsKey, "more than one aromatic ring system", systems);
  }
}

}  // namespace

QXIter<QXFPPattern> QXGetMACCSFPPatterns(const QXMolBase& mol, const QXFPTypeBase*) {
  static const Keys keys = MACCS166Keys();
  static const std::vector<QXSubSearch> parts = PartsOf(keys);
  if (!mol.IsValid()) return {};
  const auto subject = std::make_shared<const Subject>(mol);
  PatternsByKey byKey;
  AddElements(byKey, *subject);
  AddRows(byKey, subject, keys, parts);
  AddParts(byKey, subject->copy);
  std::vector<QXFPPattern> patterns;
  for (auto& [key, pattern] : byKey) patterns.push_back(std::move(pattern));
  return QXSystem::QXMakeVectorIter(std::move(patterns));
}

QXIter<QXAtomBondSet> QXGetMACCSFPCoverage(const QXMolBase& mol, const QXFPTypeBase*, bool unique) {
  static const Keys keys = MACCS166Keys();
  if (!mol.IsValid()) return {};
  return MakeSourceIter(CoverageSource(std::make_shared<const Subject>(mol), keys, unique));
}

QXIter<QXFPMatch> QXGetMACCSFPOverlap(const QXMolBase& molA, const QXMolBase& molB, const QXFPTypeBase*) {
  static const Keys keys = MACCS166Keys();
  if (!molA.IsValid() || !molB.IsValid()) return {};
  return MakeSourceIter(
      OverlapSource(std::make_shared<const Subject>(molA), std::make_shared<const Subject>(molB), keys));
}

}  // namespace QXFingrix
