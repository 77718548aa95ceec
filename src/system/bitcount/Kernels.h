#pragma once

#include <algorithm>  // for Body.h, which is included inside a namespace
#include <bit>
#include <new>
#include <span>

#include "QXSystem/QXBitCountKernel.h"

// One function per instruction set, each in a file of its own.
namespace QXSystem::BitCount {

QXBitCountKernel GetPortableKernel();
QXBitCountKernel GetPopcntKernel();
QXBitCountKernel GetAvx2Kernel();
QXBitCountKernel GetAvx512Kernel();

/// The kernel of that name when it exists and this processor supports it, else, after a warning, the best
/// one. A null or empty name asks for the best one.
const QXBitCountKernel& ChooseKernel(const char* name);

}  // namespace QXSystem::BitCount
