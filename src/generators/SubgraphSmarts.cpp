// A breadth-first tree from the first atom is written depth first: so nesting goes no deeper than the part
// reaches, a path stays a path, and a tree one from its centre. Bonds that are not in the tree close rings.

#include "generators/SubgraphSmarts.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPAtomTypes.h"

namespace QXFingrix {
namespace {

using QXChem::QXAtomBase;
using QXChem::QXBondBase;

// The part of the mask of which an atom's expression matches that atom.
unsigned SafeMask(const QXAtomBase& atom, unsigned atype) {
  using namespace QXFPAtomType;
  unsigned mask = atype & ~HCount;
  if (atom.GetDegree() != atom.GetHvyDegree()) mask &= ~HvyDeg;
  if (atom.GetImplicitHCount() == 0) mask &= ~EqHBDon;
  if ((mask & AtmNum) && (mask & EqArom) && atom.IsAromatic()) mask = (mask & ~AtmNum) | Arom;
  return mask;
}

// Hydrogens are counted by H, which means those that are atoms too.
std::string AtomSmarts(const QXAtomBase& atom, unsigned atype) {
  std::string text;
  AddSmilesAtomSymbol(text, &atom, SafeMask(atom, atype));
  const unsigned hydrogens = atom.GetTotalHCount();
  if (!(atype & QXFPAtomType::HCount) || hydrogens > 4) return text;
  if (text.front() == '[') {
    text.pop_back();
  } else {
    text.insert(0, 1, '[');
  }
  return text + ";H" + std::to_string(hydrogens) + "]";
}

std::string BondSmarts(const QXBondBase& bond, unsigned btype) {
  constexpr const char* symbols[] = {"~", "-", "=", "#", "$"};
  std::string text = "~";
  if (btype & QXFPBondType::Order) {
    if (bond.IsAromatic()) {
      text = ":";
    } else if (!bond.IsDative() && bond.GetOrder() < std::size(symbols)) {
      text = symbols[bond.GetOrder()];
    }
  }
  if (btype & QXFPBondType::InRing) text += bond.IsInRing() ? ";@" : ";!@";
  return text;
}

class Writer {
 public:
  Writer(const QXChem::QXMolBase& mol, const QXChem::QXAtomBondSet& part, unsigned atype, unsigned btype)
      : mol_(mol), part_(part), atype_(atype), btype_(btype) {}

  std::string Write() {
    LoadBonds();
    FindTree();
    WriteFrom(0);
    return std::move(text_);
  }

 private:
  // A bond as seen from one of its atoms; atoms are known by their places in the part.
  struct Step {
    unsigned bond;
    unsigned atom;
  };

  void LoadBonds() {
    std::unordered_map<unsigned, unsigned> places;
    for (const unsigned atom : part_.Atoms()) places.emplace(atom, static_cast<unsigned>(places.size()));
    steps_.resize(places.size());
    for (const unsigned bond : part_.Bonds()) {
      const unsigned a = places.at(mol_.GetBond(bond)->GetBgnIdx());
      const unsigned b = places.at(mol_.GetBond(bond)->GetEndIdx());
      steps_[a].push_back({bond, b});
      steps_[b].push_back({bond, a});
    }
  }

  void FindTree() {
    children_.resize(steps_.size());
    closures_.resize(steps_.size());
    std::vector<char> isReached(steps_.size());
    std::vector<unsigned> parentBond(steps_.size(), ~0U);
    std::vector<unsigned> queue = {0};
    isReached[0] = 1;
    for (std::size_t next = 0; next < queue.size(); ++next) {
      for (const Step& step : steps_[queue[next]]) {
        if (isReached[step.atom]) continue;
        isReached[step.atom] = 1;
        parentBond[step.atom] = step.bond;
        children_[queue[next]].push_back(step);
        queue.push_back(step.atom);
      }
    }
    for (unsigned atom = 0; atom < steps_.size(); ++atom) {
      for (const Step& step : steps_[atom]) {
        if (step.bond != parentBond[atom] && step.bond != parentBond[step.atom]) {
          closures_[atom].push_back(step.bond);
        }
      }
    }
  }

  void WriteFrom(unsigned atom) {
    text_ += AtomSmarts(*mol_.GetAtom(part_.Atoms()[atom]), atype_);
    for (const unsigned bond : closures_[atom]) WriteClosure(bond);
    for (const Step& step : children_[atom]) {
      const bool isLast = &step == &children_[atom].back();
      if (!isLast) text_ += '(';
      text_ += BondSmarts(*mol_.GetBond(step.bond), btype_);
      WriteFrom(step.atom);
      if (!isLast) text_ += ')';
    }
  }

  // The first end of a bond takes a number that is free, the second one gives it back.
  void WriteClosure(unsigned bond) {
    constexpr unsigned none = ~0U;
    auto open = std::ranges::find(open_, bond);
    const bool isFirst = open == open_.end();
    if (isFirst) {
      text_ += BondSmarts(*mol_.GetBond(bond), btype_);
      open = std::ranges::find(open_, none);
      if (open == open_.end()) open = open_.insert(open_.end(), none);
    }
    *open = isFirst ? bond : none;
    const auto number = open - open_.begin() + 1;
    const std::string digits = std::to_string(number);
    text_ += number < 10 ? digits : number < 100 ? "%" + digits : "%(" + digits + ")";
  }

  const QXChem::QXMolBase& mol_;
  const QXChem::QXAtomBondSet& part_;
  const unsigned atype_;
  const unsigned btype_;
  std::vector<std::vector<Step>> steps_;
  std::vector<std::vector<Step>> children_;
  std::vector<std::vector<unsigned>> closures_;
  std::vector<unsigned> open_;  // the bond that has each number, from 1
  std::string text_;
};

}  // namespace

std::string SubgraphSmarts(const QXChem::QXMolBase& mol, const QXChem::QXAtomBondSet& part, unsigned atype,
                           unsigned btype) {
  return Writer(mol, part, atype, btype).Write();
}

}  // namespace QXFingrix
