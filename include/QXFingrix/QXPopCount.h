#pragma once

#include "QXSystem/QXExport.h"

// For x86-64 only: the method is chosen by that processor's CPUID, and the instruction is its own.

namespace QXFingrix {

/// Counts the set bits of an array of words. Whole groups of four words are read: where numWords is not a
/// multiple of four, the words up to the next multiple must be readable, and they are counted.
using QXPopCountFunc = unsigned long (*)(const unsigned long* words, unsigned long numWords);

/// Portable: adds neighbouring bits, pairs, nibbles and bytes in parallel.
QX_API unsigned long QXPopCountBitCount(const unsigned long* words, unsigned long numWords);
/// The processor's POPCNT instruction; only where QXGetPopCountMethod answers 2.
QX_API unsigned long QXPopCountPOPCNT(const unsigned long* words, unsigned long numWords);

/// How this processor counts bits: 1 portable, 2 by instruction.
QX_API unsigned QXGetPopCountMethod();

/// The routine of a method; null for an unknown method.
QX_API QXPopCountFunc QXGetPopCountFunc(unsigned method);

/// Fast fingerprints have a multiple of this number of bits: 256.
QX_API unsigned QXGetPopCountFingerprintSizeUnit();

/// Whether fast fingerprint files can be made and searched on this machine.
QX_API bool QXIsFastFPDatabaseReady();

}  // namespace QXFingrix
