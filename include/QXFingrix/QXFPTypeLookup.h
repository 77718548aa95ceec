#pragma once

#include <string>

#include "QXFingrix/QXFPTypeBase.h"
#include "QXSystem/QXExport.h"

namespace QXFingrix {

/// The shared descriptor that a type string describes.
/// Errors   null, silently, for a text that starts with no known type word; null and the parser's Warning
///          for a malformed one, followed by "QXGetFPType() invalid fingerprint type string" for the graph
///          kinds; null and "QXGetFPType() fingerprint type with old version number" when the version is not
///          the current one (an Error for MACCS166 and Lingo, a Warning for the others).
/// Threads  safe.
QX_API const QXFPTypeBase* QXGetFPType(const std::string& typeString);

/// The shared descriptor of a kind with its default parameters and current version.
/// Shape    vs: Path, Circular and Tree are answered as of QXGetVSFPType(type, version); without it the
///          version argument is not read.
/// Errors   null and the Warning "QXGetFPType() unknown fingerprint type" for an unknown code; with vs, null
///          and "QXGetFPType() unknown VS fingerprint version" when version is not 0, 1 or 2.
/// Threads  safe.
QX_API const QXFPTypeBase* QXGetFPType(unsigned type, bool vs, unsigned version);

/// The shared descriptor of a kind's VS variant: reduced atom typing, without formal charge and
/// hybridisation.
/// Shape    type: Path, Circular or Tree; vsVersion: 1, 2, or 0 for the latest (2). Only Circular differs
///          between the two: version 2 leaves the hydrogen count out.
/// Errors   null and the Warning "QXGetVSFPType() unknown VS fingerprint version", or "QXGetVSFPType: no VS
///          fingerprint type defined for requested fingerprint type: %d" with the code.
/// Threads  safe.
QX_API const QXFPTypeBase* QXGetVSFPType(unsigned type, unsigned vsVersion);

/// The type word of a descriptor ("MACCS166", "Path", "Lingo", "Circular", "Tree"), "UNKNOWN" for a null
/// pointer, an unhashed kind, or a descriptor whose type string is not valid (with the parser's Warning).
QX_API std::string QXGetFingerPrintName(const QXFPTypeBase* type);

/// The number of bits that a descriptor asks for: 166 for MACCS166, 0 for Lingo, the unhashed kinds, a null
/// pointer and a descriptor whose type string is not valid (with the parser's Warning).
QX_API unsigned QXGetFingerPrintSize(const QXFPTypeBase* type);

}  // namespace QXFingrix
