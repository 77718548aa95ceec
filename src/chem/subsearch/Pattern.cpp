// From a query to the steps of its search. Besides its own test every atom gets what its place in the pattern
// asks of the neighbourhood: enough neighbours, ring bonds where the pattern closes a ring, and the bonds and
// elements that must come next. A mask over the atom word says all of that at once, so most hopeless atoms
// are turned away before a neighbour has been looked at.

#include "chem/subsearch/Pattern.h"

#include <algorithm>

#include "chem/subsearch/AtomWord.h"
#include "chem/subsearch/PatternSymmetry.h"
#include "chem/subsearch/SearchOrder.h"

namespace QXChem {
namespace {

// Bonds on a cycle of the pattern can only match ring bonds. A bond lies on none when it is the only way from
// what a depth-first walk reaches through it back to where the walk came from. Tarjan 1974,
// doi:10.1016/0020-0190(74)90003-9.
std::vector<char> FindRingBonds(const Query& query, const std::vector<std::vector<unsigned>>& bondsOfAtom) {
  struct Visit {
    unsigned number = 0;  // in the order of the walk, from 1
    unsigned lowest = 0;  // number that can be reached from here on without the bond taken to get here
    unsigned bond = ~0U;
    std::size_t next = 0;  // of the atom's bonds
  };
  std::vector<Visit> visits(query.atoms.size());
  std::vector<char> isInRing(query.bonds.size(), 1);
  std::vector<unsigned> path;
  unsigned numVisited = 0;
  const auto enter = [&](unsigned atom, unsigned bond) {
    ++numVisited;
    visits[atom] = {numVisited, numVisited, bond};
    path.push_back(atom);
  };
  for (unsigned root = 0; root < query.atoms.size(); ++root) {
    if (visits[root].number == 0) enter(root, ~0U);
    while (!path.empty()) {
      const unsigned atom = path.back();
      Visit& here = visits[atom];
      if (here.next < bondsOfAtom[atom].size()) {
        const unsigned bond = bondsOfAtom[atom][here.next++];
        const unsigned other = query.bonds[bond].begin ^ query.bonds[bond].end ^ atom;
        if (visits[other].number == 0) {
          enter(other, bond);
        } else if (bond != here.bond) {
          here.lowest = std::min(here.lowest, visits[other].number);
        }
        continue;
      }
      path.pop_back();
      if (path.empty()) continue;
      Visit& before = visits[path.back()];
      before.lowest = std::min(before.lowest, here.lowest);
      isInRing[here.bond] = here.lowest <= before.number;
    }
  }
  return isInRing;
}

// What an atom of a molecule must not lack to have a bond of these classes.
std::uint64_t GetForbiddenByBond(std::uint16_t classes) {
  std::uint64_t forbidden = allLacks;
  for (unsigned i = 0; i < numBondClasses; ++i) {
    if (classes >> i & 1) forbidden &= lacksMetByBond[i];
  }
  return forbidden;
}

// What it must not lack to have a neighbour that passes a mask.
std::uint64_t GetForbiddenByNeighbor(std::uint64_t forbiddenThere) {
  std::uint64_t forbidden = allLacks;
  for (unsigned bin = 0; bin < numElementBins; ++bin) {
    if ((forbiddenThere >> bin & 1) == 0) forbidden &= lacksMetByNeighbor[bin];
  }
  return forbidden;
}

std::uint64_t GetForbiddenBelow(const WordField& field, unsigned count) {
  std::uint64_t forbidden = 0;
  for (unsigned value = 0; value < std::min(count, field.numBins - 1); ++value) {
    forbidden |= field.GetBit(static_cast<int>(value));
  }
  return forbidden;
}

class PatternCompiler {
 public:
  PatternCompiler(const Query& query, bool fixedRoot) : query_(query), fixedRoot_(fixedRoot) {}

  Pattern Run() {
    pattern_.numAtoms = static_cast<unsigned>(query_.atoms.size());
    bondsOfAtom_.resize(query_.atoms.size());
    for (unsigned i = 0; i < query_.bonds.size(); ++i) {
      const QueryBond& bond = query_.bonds[i];
      bondsOfAtom_[bond.begin].push_back(i);
      bondsOfAtom_[bond.end].push_back(i);
      pattern_.bonds.push_back({bond.begin, bond.end});
    }
    for (const Query& recursive : query_.recursive) {
      pattern_.recursive.push_back(PatternCompiler(recursive, true).Run());
    }
    CompileBonds();
    CompileAtoms();
    AddSteps();
    AddBounds();
    AddNeeds();
    NoteQuestions();
    return std::move(pattern_);
  }

 private:
  void CompileBonds() {
    const std::vector<char> isInRing = FindRingBonds(query_, bondsOfAtom_);
    for (std::size_t i = 0; i < query_.bonds.size(); ++i) {
      const std::uint16_t classes = query_.bonds[i].classes;
      classes_.push_back(isInRing[i] ? classes & ringBonds : classes);
    }
  }

  void CompileAtoms() {
    std::vector<std::uint64_t> forbiddenAtRoots;
    for (const Pattern& recursive : pattern_.recursive) {
      forbiddenAtRoots.push_back(recursive.steps[0].forbidden);
    }
    for (const AtomExpression& expression : query_.atoms) {
      own_.push_back(CompileAtomTest(expression, forbiddenAtRoots, pattern_.tests));
    }
    for (unsigned atom = 0; atom < own_.size(); ++atom) {
      const auto& bonds = bondsOfAtom_[atom];
      std::uint64_t forbidden = own_[atom].forbidden;
      forbidden |= GetForbiddenBelow(degreeField, static_cast<unsigned>(bonds.size()));
      const auto inRing = [&](unsigned bond) { return (classes_[bond] & chainBonds) == 0; };
      forbidden |=
          GetForbiddenBelow(ringBondField, static_cast<unsigned>(std::ranges::count_if(bonds, inRing)));
      for (const unsigned bond : bonds) {
        const unsigned neighbor = query_.bonds[bond].begin ^ query_.bonds[bond].end ^ atom;
        forbidden |= GetForbiddenByBond(classes_[bond]) | GetForbiddenByNeighbor(own_[neighbor].forbidden);
      }
      forbidden_.push_back(forbidden);
    }
  }

  BondStep MakeBondStep(unsigned bond, unsigned placed) const {
    const QueryBond& written = query_.bonds[bond];
    return {depth_[placed], classes_[bond], written.dative, written.begin == placed};
  }

  void AddSteps() {
    depth_.assign(query_.atoms.size(), 0);
    std::vector<char> placed(query_.atoms.size(), 0);
    for (const unsigned atom : GetSearchOrder(query_, forbidden_, fixedRoot_)) {
      SearchStep step;
      step.forbidden = forbidden_[atom];
      step.atom = atom;
      step.test = static_cast<unsigned>(pattern_.tests.size());
      step.hasTest = own_[atom].kind != AtomTest::Kind::Mask;
      pattern_.tests.push_back(own_[atom]);
      step.firstClosure = static_cast<unsigned>(pattern_.closures.size());
      for (const unsigned bond : bondsOfAtom_[atom]) {
        const unsigned other = query_.bonds[bond].begin ^ query_.bonds[bond].end ^ atom;
        if (!placed[other]) continue;
        if (step.isRoot) {
          step.link = MakeBondStep(bond, other);
          step.isRoot = false;
        } else {
          pattern_.closures.push_back(MakeBondStep(bond, other));
        }
      }
      step.numClosures = static_cast<unsigned>(pattern_.closures.size()) - step.firstClosure;
      depth_[atom] = static_cast<unsigned>(pattern_.steps.size());
      placed[atom] = 1;
      pattern_.steps.push_back(step);
    }
  }

  void AddBounds() {
    if (std::ranges::any_of(query_.bonds, &QueryBond::dative)) return;
    SymmetryGraph graph;
    for (unsigned atom = 0; atom < own_.size(); ++atom) {
      // What is more than a mask is like nothing else; no mask has the highest bit.
      const bool isMask = own_[atom].kind == AtomTest::Kind::Mask;
      graph.atoms.push_back(isMask ? own_[atom].forbidden : ~std::uint64_t{atom});
    }
    for (unsigned i = 0; i < query_.bonds.size(); ++i) {
      graph.bonds.push_back({query_.bonds[i].begin, query_.bonds[i].end, classes_[i]});
    }
    std::vector<unsigned> order;
    for (const SearchStep& step : pattern_.steps) order.push_back(step.atom);
    const auto bounds = GetSymmetryBounds(graph, order, fixedRoot_);
    for (SearchStep& step : pattern_.steps) {
      step.firstBound = static_cast<unsigned>(pattern_.bounds.size());
      for (const auto& [first, second] : bounds) {
        if (second == step.atom) pattern_.bounds.push_back(depth_[first]);
      }
      step.numBounds = static_cast<unsigned>(pattern_.bounds.size()) - step.firstBound;
    }
  }

  void AddNeeds() {
    const auto addOnce = [](auto& list, auto value) {
      if (std::ranges::find(list, value) == list.end()) list.push_back(value);
    };
    for (const std::uint64_t forbidden : forbidden_) {
      const std::uint64_t elements = ~forbidden & elementField.GetMask();
      if (elements != elementField.GetMask()) addOnce(pattern_.neededElements, elements);
    }
    for (const std::uint16_t classes : classes_) {
      if (classes != allBonds) addOnce(pattern_.neededBonds, classes);
    }
    AddCounts();
  }

  // Components that look for the same atoms, as in [#8].[#8].[#8].[#8], must not try all permutations to find
  // that there are too few.
  void AddCounts() {
    const auto isRoot = [](const SearchStep& step) { return step.isRoot; };
    if (std::ranges::count_if(pattern_.steps, isRoot) < 2) return;
    for (const std::uint64_t forbidden : forbidden_) {
      const auto sameMask = [&](const Pattern::Need& need) { return need.forbidden == forbidden; };
      const auto need = std::ranges::find_if(pattern_.needs, sameMask);
      if (need != pattern_.needs.end()) {
        ++need->count;
      } else {
        pattern_.needs.push_back({forbidden, 1});
      }
    }
    std::erase_if(pattern_.needs, [](const Pattern::Need& need) { return need.count < 2; });
  }

  void NoteQuestions() {
    for (const AtomTest& test : pattern_.tests) {
      if (test.kind != AtomTest::Kind::Range) continue;
      pattern_.asksSmallestRings |= test.property == AtomProperty::SmallestRing;
      pattern_.asksRingCounts |= test.property == AtomProperty::RingCount;
    }
    for (const Pattern& recursive : pattern_.recursive) {
      pattern_.asksSmallestRings |= recursive.asksSmallestRings;
      pattern_.asksRingCounts |= recursive.asksRingCounts;
    }
  }

  const Query& query_;
  const bool fixedRoot_;
  Pattern pattern_;
  std::vector<std::vector<unsigned>> bondsOfAtom_;
  std::vector<std::uint16_t> classes_;    // of the bonds
  std::vector<AtomTest> own_;             // of the atoms
  std::vector<std::uint64_t> forbidden_;  // by the own test and the place in the pattern
  std::vector<unsigned> depth_;           // at which an atom is placed
};

}  // namespace

Pattern CompilePattern(const Query& query) {
  return PatternCompiler(query, false).Run();
}

}  // namespace QXChem
