#pragma once

#include "generators/GraphParams.h"

namespace QXFingrix {

inline constexpr GraphKind circularKind = {QXFPType::Circular, "circular", "radius", 20};

}  // namespace QXFingrix
