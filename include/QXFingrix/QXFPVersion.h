#pragma once

#include <string>

#include "QXSystem/QXExport.h"

namespace QXFingrix {

// A fingerprint version is a 16-bit number: major in bits 12-15, minor in bits 4-11, build in bits 0-3. Its
// text is "major.minor.build" in decimal. Frozen: versions are stored in files.

/// The current version of a fingerprint kind, e.g. 8192 (2.0.0) for QXFPType::Path.
/// Errors   0 for the codes 1, 2 and 3, which are no longer made, silently; any other unknown code draws the
///          Warning "QXGetFingerPrintVersion : unknown fingerprint type!" and gives 0.
QX_API unsigned QXGetFingerPrintVersion(unsigned type);

/// Whether a text is a version: three decimal numbers joined by ".", the first at most 14. The other two are
/// not bounded.
QX_API bool QXIsValidFingerPrintVersion(const std::string& text);

/// The number of a version text, (major << 12) + (minor << 4) + build in 32 bits, without range checks.
/// Errors   0 for a text that is not three decimal numbers joined by ".", silently.
QX_API unsigned QXGetFingerPrintVersion(const std::string& text);

/// The text of a version number, e.g. "2.2.0" for 8224.
QX_API std::string QXGetFingerPrintVersionString(unsigned short version);

}  // namespace QXFingrix
