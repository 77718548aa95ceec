#include "FingerprintKinds.h"

namespace qxfp {

namespace Types = QXFingrix::QXFPType;

bool IsTextType(const QXFingrix::QXFPTypeBase* type) {
  return type->GetFPType() == Types::Lingo || IsUnhashedType(type);
}

bool IsUnhashedType(const QXFingrix::QXFPTypeBase* type) {
  const unsigned code = type->GetFPType();
  return code == Types::UHPath || code == Types::UHCircular || code == Types::UHTree;
}

}  // namespace qxfp
