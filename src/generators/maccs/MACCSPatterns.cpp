// Where the keys of a molecule are found. Fingerprints only ask whether a pattern matches; here its matches are
// walked one after the other, since patterns of several parts can have more of them than memory holds.

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
#include "generators/maccs/KeyRows.h"
#include "generators/maccs/MACCSKey.h"

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
  explicit Subject(const QXMolBase& mol) : copy(mol, QXFPType::MACCS166), target(copy.Mol()) {}

  QXIter<QXAtomBondSet> Match(const QXSubSearch& search) const { return search.Match(target, true); }
  unsigned NumAtoms() const { return copy.Mol().NumAtoms(); }
  const QXAtomBase& Atom(unsigned idx) const { return copy.Mol().Atoms()[idx]; }
  QXAtomBondSet AtomSet(unsigned idx) const {
    QXAtomBondSet set;
    set.AddAtom(copy.OriginalAtom(idx));
    return set;
  }

  PreparedCopy copy;
  QXChem::QXSubSearchTarget target;
};
using SubjectPtr = std::shared_ptr<const Subject>;

// Atoms and bonds as sets, in a form that can be ordered.
using OrderedSet = std::pair<std::set<unsigned>, std::set<unsigned>>;

OrderedSet ToOrdered(const QXAtomBondSet& set) {
  return {{set.Atoms().begin(), set.Atoms().end()}, {set.Bonds().begin(), set.Bonds().end()}};
}

class CoverageSource {
 public:
  using Value = QXAtomBondSet;

  CoverageSource(SubjectPtr subject, const Keys& keys, bool unique)
      : subject_(std::move(subject)), keys_(&keys), unique_(unique) {}

  bool Next(QXAtomBondSet& set) {
    while (NextCandidate(set)) {
      if (seen_.insert(ToOrdered(set)).second) return true;
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
      matches_ = subject_->Match((*keys_)[row_++].search);
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
  std::set<OrderedSet> seen_;
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
      const QXSubSearch& search = (*keys_)[row_++].search;
      matchesA_ = a_->Match(search);
      matchesB_ = matchesA_ ? b_->Match(search) : QXIter<QXAtomBondSet>();
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
      : subject_(std::move(subject)), search_(search), matches_(subject_->Match(search_)) {}

  bool Next(QXAtomBondSet& set) {
    if (!matches_) return false;
    set = subject_->copy.Original(*matches_);
    ++matches_;
    return true;
  }

 private:
  SubjectPtr subject_;
  QXSubSearch search_;
  QXIter<QXAtomBondSet> matches_;
};

// The pattern, or one part of a pattern of equal parts.
QXSubSearch OnePart(const QXSubSearch& search) {
  const std::size_t dot = search.GetSmarts().find('.');
  return dot == std::string::npos ? search : QXSubSearch(search.GetSmarts().substr(0, dot));
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

void AddRows(PatternsByKey& patterns, const SubjectPtr& subject, const Keys& keys) {
  for (const MACCSKey& row : keys) {
    auto match = subject->Match(row.search);
    if (!match || (row.repeatKey != 0 && !++match)) continue;
    AddPattern(patterns, row.repeatKey != 0 ? row.repeatKey : row.key, row.smarts,
               MakeSourceIter(MatchSource(subject, OnePart(row.search))));
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
  if (!mol.IsValid()) return {};
  const auto subject = std::make_shared<const Subject>(mol);
  PatternsByKey byKey;
  AddElements(byKey, *subject);
  AddRows(byKey, subject, keys);
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
