#include "QXFingrix/QXFPTypeParams.h"

#include "fingerprint/TypeStringParser.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {

QXFPTypeParams::QXFPTypeParams(const std::string& typeString) {
  constexpr unsigned numMACCSKeys = 166;
  const TypeRow* row = FindTypeRowByPrefix(typeString);
  if (!row) return;
  type_ = row->code;
  ParsedType parsed;
  if (row->shape == TypeShape::Unhashed || !ParseTypeString(*row, typeString, parsed)) return;
  valid_ = true;
  version_ = static_cast<unsigned short>(parsed.version);
  numBits_ = row->code == QXFPType::MACCS166 ? numMACCSKeys : parsed.params.numbits;
  minDistance_ = parsed.params.minDistance;
  maxDistance_ = parsed.params.maxDistance;
  atomTypes_ = parsed.params.atype;
  bondTypes_ = parsed.params.btype;
}

QXFPTypeParams::QXFPTypeParams(const QXFPTypeBase* type) {
  if (type) *this = QXFPTypeParams(type->GetFPTypeString());
}

}  // namespace QXFingrix
