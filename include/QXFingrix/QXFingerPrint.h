#pragma once

#include <string_view>

#include "QXFingrix/QXFPTypeBase.h"
#include "QXSystem/QXBitVector.h"
#include "QXSystem/QXExport.h"

namespace QXFingrix {

/// A bit vector and the descriptor that says how its bits were made.
///
/// A default-made fingerprint has no type and 64 clear bits. The descriptor is shared, never owned: a copy
/// has the same pointer.
/// Threads  a plain value; no internal locking.
class QX_API QXFingerPrint : public QXSystem::QXBitVector {
 public:
  const QXFPTypeBase* GetFPTypeBase() const { return type_; }
  /// The generators set the type after they have filled the bits; null makes the fingerprint typeless.
  void SetFPTypeBase(const QXFPTypeBase* type) { type_ = type; }

  /// Whether the fingerprint has a type.
  explicit operator bool() const { return type_ != nullptr; }

  /// Same descriptor, same size and same bits.
  /// Errors   a fingerprint without a type equals nothing, itself included, and draws the Warning
  ///          "QXFingerPrint::operator== : uninitialized fingerprint type!".
  bool operator==(const QXFingerPrint& other) const;
  bool operator!=(const QXFingerPrint& other) const { return !(*this == other); }

 private:
  const QXFPTypeBase* type_ = nullptr;
};

/// Whether a fingerprint is of a kind, see namespace QXFPType. It must have a type.
QX_API bool QXIsFPType(const QXFingerPrint& fp, unsigned type);

/// Whether two fingerprints have the same descriptor.
/// Errors   false and the Warning "QXIsSameFPType() : uninitialized fingerprint type!" when either has none.
QX_API bool QXIsSameFPType(const QXFingerPrint& a, const QXFingerPrint& b);

/// Writes the bits as booleans.
/// Shape    out: room for fp.GetSize() entries.
QX_API void QXFPToBoolArray(const QXFingerPrint& fp, bool* out);

/// The text that a Lingo or unhashed fingerprint holds: its bytes up to the first zero byte, or all of them
/// where there is none. Valid until the fingerprint changes.
QX_API std::string_view QXGetFPText(const QXFingerPrint& fp);

}  // namespace QXFingrix
