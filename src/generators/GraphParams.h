#pragma once

#include "QXFingrix/QXFPTypeBase.h"
#include "fingerprint/TypeParams.h"

namespace QXFingrix {

/// How messages name a kind of graph fingerprint and its distances, and how far these may go.
struct GraphKind {
  unsigned code;         // of the hashed kind, whose defaults replace what is out of range
  const char* word;      // "path"
  const char* distance;  // "bonds"
  unsigned limit;
};

inline constexpr GraphKind pathKind = {QXFPType::Path, "path", "bonds", 20};

/// Replaces what is out of range by the defaults of the kind, with a Warning each that names the function.
/// The number of bits is left alone.
TypeParams CorrectGraphParams(const char* function, const GraphKind& kind, TypeParams params);

/// The same for the number of bits.
TypeParams CorrectNumBits(const char* function, const GraphKind& kind, TypeParams params);

/// Removes mask bits without a meaning, with a Warning: they would lead to a type that names other parameters
/// or none.
TypeParams RemoveUnknownMaskBits(const char* function, const GraphKind& kind, TypeParams params);

}  // namespace QXFingrix
