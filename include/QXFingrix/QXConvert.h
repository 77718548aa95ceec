#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXPopCount.h"
#include "QXSystem/QXExport.h"

// Conversions between values and the bytes of a .fpbin file, which are little-endian; docs/FileFormat.md.

namespace QXFingrix {

/// Whether 64-bit integers are stored least significant byte first: true in every build there is.
QX_API bool QXIsUInit64LittleEndian();

/// Eight bytes, least significant first.
QX_API std::string QXConvert(unsigned long value);
/// The value of exactly eight bytes; 0 for a string of another length.
QX_API unsigned long QXConvert(const std::string& bytes);
/// The value of the eight bytes at bytes.
QX_API unsigned long QXConvert(const unsigned char* bytes);

/// Packs bytes into exactly 100 words: pads with zeros or drops what is too much.
QX_API void QXConvertHeader(std::vector<unsigned long>& words, const std::string& bytes);
/// The inverse: exactly 800 bytes.
QX_API void QXConvertHeader(std::string& bytes, const std::vector<unsigned long>& words);

/// Packs a fingerprint into (bits + 63) / 64 words, bit 64 j + b being bit b of word j.
/// Shape    words is resized; its memory is reused from call to call.
/// Errors   returns 0 and leaves words without content for a null routine.
/// Returns the routine's bit count of the words.
QX_API unsigned long QXConvertFP(std::vector<unsigned long>& words, const QXFingerPrint& fp,
                                 QXPopCountFunc popCount);

/// Rebuilds a fingerprint of the given type from its data words or bytes. The size is the type's; a type
/// without a size of its own takes 64 bits per word, 8 per byte.
/// Errors   returns false, fp unchanged, when the type is null, when there is too little data for its size,
///          or when the size exceeds what a bit vector holds (reported by the bit vector).
QX_API bool QXConvertFP(QXFingerPrint& fp, const QXFPTypeBase* fptype,
                        const std::vector<unsigned long>& words);
QX_API bool QXConvertFP(QXFingerPrint& fp, const QXFPTypeBase* fptype, const unsigned long* words,
                        std::size_t numWords);
QX_API bool QXConvertFP(QXFingerPrint& fp, const QXFPTypeBase* fptype, const unsigned char* bytes,
                        std::size_t numBytes);

}  // namespace QXFingrix
