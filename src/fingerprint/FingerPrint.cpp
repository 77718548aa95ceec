#include "QXFingrix/QXFingerPrint.h"

#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

bool QXFingerPrint::operator==(const QXFingerPrint& other) const {
  if (!type_ || !other.type_) {
    QXSystem::QXThrow.Warning("QXFingerPrint::operator== : uninitialized fingerprint type!");
    return false;
  }
  return type_ == other.type_ && QXSystem::operator==(*this, other);
}

bool QXIsFPType(const QXFingerPrint& fp, unsigned type) {
  return fp.GetFPTypeBase()->GetFPType() == type;
}

bool QXIsSameFPType(const QXFingerPrint& a, const QXFingerPrint& b) {
  if (!a || !b) {
    QXSystem::QXThrow.Warning("QXIsSameFPType() : uninitialized fingerprint type!");
    return false;
  }
  return a.GetFPTypeBase() == b.GetFPTypeBase();
}

void QXFPToBoolArray(const QXFingerPrint& fp, bool* out) {
  for (unsigned bit = 0; bit < fp.GetSize(); ++bit) out[bit] = fp.IsBitOn(bit);
}

std::string_view QXGetFPText(const QXFingerPrint& fp) {
  const std::string_view bytes(reinterpret_cast<const char*>(fp.GetData()), fp.GetDataSize());
  return bytes.substr(0, bytes.find('\0'));
}

}  // namespace QXFingrix
