#pragma once

#include "generators/maccs/AtomClass.h"

namespace QXFingrix {

/// What the rules of the keys need to know of an atom, taken once for all of them.
struct AtomFacts {
  AtomClass::Word word = 0;
  NeighborCounts::Word asNeighbor = 0;  // what the atom adds to the counts of its neighbours
  NeighborCounts::Word neighbors = 0;
};

}  // namespace QXFingrix
