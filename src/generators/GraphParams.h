#pragma once

#include "fingerprint/TypeParams.h"

namespace QXFingrix {

/// Replaces what is out of range for path fingerprints by the defaults, with a Warning each that names the
/// caller. The number of bits is the caller's affair.
TypeParams CorrectPathParams(const char* caller, TypeParams params);

}  // namespace QXFingrix
