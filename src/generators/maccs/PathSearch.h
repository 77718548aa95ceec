#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "generators/maccs/AtomFacts.h"
#include "generators/maccs/PathSets.h"

namespace QXFingrix {

/// A chain of up to eight atoms, each of any of the classes given, or a ring of up to seven, of which only the
/// first atom is asked for its class.
struct PathPattern {
  enum Kind { anyBonds, ringBonds, closed };

  PathPattern(Kind kindOfBonds, std::initializer_list<AtomClass::Word> classes = {}) : kind(kindOfBonds) {
    for (const AtomClass::Word word : classes) Add(word);
  }
  void Add(AtomClass::Word word) { atoms[numAtoms++] = word; }

  Kind kind;
  unsigned numAtoms = 0;
  std::array<AtomClass::Word, PathSets::maxSize> atoms{};
};

/// After so many steps for every atom a walk along all paths gives up, and leaves what it has not found to
/// PathSearch. Cages and polycycles take a few hundred.
constexpr std::size_t maxStepsPerAtom = 2000;

/// Finds chains and rings of atoms in any graph in a time that does not explode, however many paths there are.
/// Cost     a chain: proportional to the bonds; a ring: to atoms times bonds.
class PathSearch {
 public:
  PathSearch(const QXChem::QXMolBase& mol, std::span<const AtomFacts> atoms,
             std::span<const std::uint8_t> bondKinds);

  /// Whether there is a match; its atoms are kept.
  bool Find(const PathPattern& pattern);
  /// Whether there are two matches of different atoms.
  bool FindTwo(const PathPattern& pattern);

 private:
  // For every atom that a path has reached, the paths that lead there, by their atoms but for that one.
  struct Layer {
    explicit Layer(std::size_t numAtoms) : paths(numAtoms) {}
    void Clear();
    void Add(unsigned atom, const PathSets::Set& set, unsigned size, unsigned numMore);

    std::vector<PathSets> paths;
    std::vector<unsigned> reached;
  };

  bool CanBe(unsigned atom, AtomClass::Word word) const {
    return !excluded_[atom] && (atoms_[atom].word & word);
  }
  bool IsUsable(const PathPattern& pattern, unsigned bond) const;
  bool FindChain(const PathPattern& pattern);
  bool FindRing(const PathPattern& pattern);
  bool Lengthen(const PathPattern& pattern);
  bool TakeMatch(const PathPattern& pattern, unsigned last, const PathSets::Set& others);

  const QXChem::QXMolBase& mol_;
  std::span<const AtomFacts> atoms_;
  std::span<const std::uint8_t> bondKinds_;
  std::vector<char> excluded_;
  Layer from_;
  Layer to_;
  std::vector<unsigned> match_;
};

}  // namespace QXFingrix
