#include "QXChem/QXSubSearchTarget.h"

#include "chem/subsearch/Target.h"

namespace QXChem {

QXSubSearchTarget::QXSubSearchTarget() = default;
QXSubSearchTarget::QXSubSearchTarget(const QXMolBase& mol) {
  Assign(mol);
}
QXSubSearchTarget::QXSubSearchTarget(QXSubSearchTarget&& other) noexcept = default;
QXSubSearchTarget& QXSubSearchTarget::operator=(QXSubSearchTarget&& other) noexcept = default;
QXSubSearchTarget::~QXSubSearchTarget() = default;

void QXSubSearchTarget::Assign(const QXMolBase& mol) {
  if (!target_) target_ = std::make_unique<Target>();
  target_->Assign(mol);
}

}  // namespace QXChem
