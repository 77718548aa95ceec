#pragma once

namespace QXFingrix {

class QXFPTypeBase;

/// Whether fingerprints of a type can be stored in a .fpbin file: path, circular or tree, in whole groups of
/// 256 bits.
/// Errors   warns in the caller's name why not.
bool CheckFingerPrintType(const QXFPTypeBase* fptype, const char* caller);

}  // namespace QXFingrix
