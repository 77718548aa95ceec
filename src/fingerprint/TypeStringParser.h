#pragma once

#include <limits>
#include <string>

#include "fingerprint/TypeParams.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {

/// A parameter that no token has given.
inline constexpr unsigned unsetParam = std::numeric_limits<unsigned>::max();

/// What a type string says, the version in full; the parser of the kind sets the start values.
struct ParsedType {
  unsigned version = 0;
  TypeParams params;
};

/// Reads a type string of one kind.
/// Errors   false and one Warning (none for the name of an atom or bond type that does not exist, two where
///          neither an atom nor a bond type is given); `parsed` then holds what was read before.
bool ParseTypeString(const TypeRow& row, const std::string& text, ParsedType& parsed);

}  // namespace QXFingrix
