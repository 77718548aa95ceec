#pragma once

#include <cstdint>
#include <vector>

#include "chem/subsearch/Query.h"

namespace QXChem {

/// A compiled condition on an atom. Every node has the mask of what it certainly forbids, which alone turns
/// most atoms away and is the whole condition more often than not; the others are followed by the rest.
struct AtomTest {
  enum class Kind : std::uint8_t { Mask, Range, Recursive, And, Or };

  std::uint64_t forbidden = 0;
  Kind kind = Kind::Mask;
  bool negated = false;  // of a range or a recursive pattern
  AtomProperty property = AtomProperty::Element;
  int low = 0;
  int high = 0;
  unsigned recursive = 0;
  unsigned firstChild = 0;  // children of And and Or are neighbours in the list of tests
  unsigned numChildren = 0;
};

/// Compiles an expression; appends its nodes to `tests` and returns the root. `forbiddenAtRoots` has, for
/// every recursive pattern, what its first atom certainly forbids.
AtomTest CompileAtomTest(const AtomExpression& expression, const std::vector<std::uint64_t>& forbiddenAtRoots,
                         std::vector<AtomTest>& tests);

}  // namespace QXChem
