#include "fastfp/file/CheckFingerPrintType.h"

#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeParams.h"
#include "QXFingrix/QXPopCount.h"
#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

using QXSystem::QXThrow;

bool CheckFingerPrintType(const QXFPTypeBase* fptype, const char* caller) {
  if (fptype == nullptr) {
    QXThrow.Warning("%s invalid fingerprint pointer!", caller);
    return false;
  }
  const QXFPTypeParams params(fptype->GetFPTypeString());
  if (!params.IsValid()) {
    QXThrow.Warning("%s invalid fingerprint type!", caller);
    return false;
  }
  const unsigned kind = params.GetFPType();
  if (kind != QXFPType::Path && kind != QXFPType::Circular && kind != QXFPType::Tree) {
    QXThrow.Warning("%s invalid fingerprint type (only path, circular or tree allowed)!", caller);
    return false;
  }
  const unsigned unit = QXGetPopCountFingerprintSizeUnit();
  if (params.GetNumBits() % unit != 0) {
    QXThrow.Warning("%s invalid fingerprint size (has to be multiple of %d)!", caller,
                    static_cast<int>(unit));
    return false;
  }
  return true;
}

}  // namespace QXFingrix
