#pragma once

#include <cstdint>
#include <vector>

#include "chem/subsearch/AtomTest.h"
#include "chem/subsearch/Query.h"

namespace QXChem {

/// A bond of the pattern to an atom that has been placed already.
struct BondStep {
  unsigned depth;  // at which that atom is placed
  std::uint16_t classes;
  bool dative;
  bool placedIsDonor;  // of a dative bond: the atom placed already is the one that gives
};

/// One step of a search: the next atom of the pattern to place, and what has to hold there.
struct SearchStep {
  std::uint64_t forbidden = 0;  // by the atom's own test and by what its neighbourhood must have
  unsigned atom = 0;            // of the pattern
  unsigned test = 0;            // index into Pattern::tests
  bool hasTest = false;         // false when the mask says it all
  bool isRoot = true;           // first of its component: any atom of the molecule may come
  BondStep link = {};           // unless it is a root: the bond along which the atom is found
  unsigned firstClosure = 0;    // further bonds to atoms placed already, in Pattern::closures
  unsigned numClosures = 0;
  // Depths in Pattern::bounds: unless all matches are wanted, the index must be above those of the
  // atoms placed there.
  unsigned firstBound = 0;
  unsigned numBounds = 0;
};

/// A pattern compiled for searching; never changed afterwards, so any number of threads may search with it.
struct Pattern {
  struct Bond {
    unsigned begin;
    unsigned end;
  };
  /// Atoms that pass a mask must be there at least so many times.
  struct Need {
    std::uint64_t forbidden;
    unsigned count;
  };

  unsigned numAtoms = 0;
  std::vector<Bond> bonds;
  std::vector<SearchStep> steps;
  std::vector<BondStep> closures;
  std::vector<unsigned> bounds;
  std::vector<AtomTest> tests;
  std::vector<Pattern> recursive;
  // What a molecule must have to be searched at all.
  std::vector<std::uint64_t> neededElements;  // at least one of each set
  std::vector<std::uint16_t> neededBonds;
  std::vector<Need> needs;
  // What the target must know, in this pattern or a recursive one.
  bool asksSmallestRings = false;
  bool asksRingCounts = false;
};

/// Compiles a query that has at least one atom.
Pattern CompilePattern(const Query& query);

}  // namespace QXChem
