#include "QXFingrix/QXFPTypeString.h"

#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXFPVersion.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/TypeParams.h"
#include "fingerprint/TypeStringParser.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {
namespace {

// The type word, the version and, where there are any, the parameters.
void AppendTypeString(std::string& out, const TypeRow& row, unsigned short version,
                      const TypeParams& params) {
  out.append(row.word).append(",ver=").append(QXGetFingerPrintVersionString(version));
  if (row.shape == TypeShape::Plain) return;
  if (row.shape == TypeShape::Hashed) out.append(",size=").append(std::to_string(params.numbits));
  out.append(",").append(row.distanceKey).append("=");
  out.append(std::to_string(params.minDistance)).append("-").append(std::to_string(params.maxDistance));
  out.append(",atype=").append(QXGetFPAtomType(params.atype));
  out.append(",btype=").append(QXGetFPBondType(params.btype));
}

template <class FPType>
concept Hashed = requires(TypeParams params) {
  FPType::SetParamsFromID(0, params.numbits, params.minDistance, params.maxDistance, params.atype,
                          params.btype);
};

template <class FPType>
TypeParams DecodeTypeId(std::uint64_t id) {
  if constexpr (Hashed<FPType>) {
    TypeParams params;
    FPType::SetParamsFromID(id, params.numbits, params.minDistance, params.maxDistance, params.atype,
                            params.btype);
    return params;
  } else {
    if (id & reservedUnhashedBits) QXSystem::QXThrow.Warning("Unrecognised data!");
    return UnpackTypeId(id);
  }
}

template <class FPType>
bool QXGetFPTypeParamsFromString(const std::string& typeString, unsigned short& version) {
  ParsedType parsed;
  const bool ok = ParseTypeString(*FindTypeRow(FPType::TypeCode), typeString, parsed);
  version = static_cast<unsigned short>(parsed.version);
  return ok;
}

template <class FPType>
bool QXGetFPTypeParamsFromString(const std::string& typeString, unsigned short& version, unsigned& numbits,
                                 unsigned& minDistance, unsigned& maxDistance, unsigned& atype,
                                 unsigned& btype) {
  ParsedType parsed;
  const bool ok = ParseTypeString(*FindTypeRow(FPType::TypeCode), typeString, parsed);
  version = static_cast<unsigned short>(parsed.version);
  numbits = parsed.params.numbits;
  minDistance = parsed.params.minDistance;
  maxDistance = parsed.params.maxDistance;
  atype = parsed.params.atype;
  btype = parsed.params.btype;
  return ok;
}

}  // namespace

template <class FPType>
void QXGetFPTypeStringFromID(std::string& out, unsigned short version, std::uint64_t id) {
  AppendTypeString(out, *FindTypeRow(FPType::TypeCode), version, DecodeTypeId<FPType>(id));
}

template <class FPType>
void QXGetFPTypeStringFromID(std::string& out, unsigned short version) {
  AppendTypeString(out, *FindTypeRow(FPType::TypeCode), version, {});
}

template void QXGetFPTypeStringFromID<QXFPPathType>(std::string&, unsigned short, std::uint64_t);
template void QXGetFPTypeStringFromID<QXFPCircularType>(std::string&, unsigned short, std::uint64_t);
template void QXGetFPTypeStringFromID<QXFPTreeType>(std::string&, unsigned short, std::uint64_t);
template void QXGetFPTypeStringFromID<QXFPUnhashedPathType>(std::string&, unsigned short, std::uint64_t);
template void QXGetFPTypeStringFromID<QXFPUnhashedCircularType>(std::string&, unsigned short, std::uint64_t);
template void QXGetFPTypeStringFromID<QXFPUnhashedTreeType>(std::string&, unsigned short, std::uint64_t);
template void QXGetFPTypeStringFromID<QXFPMACCS166Type>(std::string&, unsigned short);
template void QXGetFPTypeStringFromID<QXFPLingoType>(std::string&, unsigned short);

bool QXGetPathFPTypeParams(const std::string& typeString, unsigned short& version, unsigned& numbits,
                           unsigned& minbonds, unsigned& maxbonds, unsigned& atype, unsigned& btype) {
  return QXGetFPTypeParamsFromString<QXFPPathType>(typeString, version, numbits, minbonds, maxbonds, atype,
                                                   btype);
}

bool QXGetCircularFPTypeParams(const std::string& typeString, unsigned short& version, unsigned& numbits,
                               unsigned& minradius, unsigned& maxradius, unsigned& atype, unsigned& btype) {
  return QXGetFPTypeParamsFromString<QXFPCircularType>(typeString, version, numbits, minradius, maxradius,
                                                       atype, btype);
}

bool QXGetTreeFPTypeParams(const std::string& typeString, unsigned short& version, unsigned& numbits,
                           unsigned& minbonds, unsigned& maxbonds, unsigned& atype, unsigned& btype) {
  return QXGetFPTypeParamsFromString<QXFPTreeType>(typeString, version, numbits, minbonds, maxbonds, atype,
                                                   btype);
}

bool QXGetUnhashedPathFPTypeParams(const std::string& typeString, unsigned short& version, unsigned& minbonds,
                                   unsigned& maxbonds, unsigned& atype, unsigned& btype) {
  unsigned numbits;
  return QXGetFPTypeParamsFromString<QXFPUnhashedPathType>(typeString, version, numbits, minbonds, maxbonds,
                                                           atype, btype);
}

bool QXGetUnhashedCircularFPTypeParams(const std::string& typeString, unsigned short& version,
                                       unsigned& minradius, unsigned& maxradius, unsigned& atype,
                                       unsigned& btype) {
  unsigned numbits;
  return QXGetFPTypeParamsFromString<QXFPUnhashedCircularType>(typeString, version, numbits, minradius,
                                                               maxradius, atype, btype);
}

bool QXGetUnhashedTreeFPTypeParams(const std::string& typeString, unsigned short& version, unsigned& minbonds,
                                   unsigned& maxbonds, unsigned& atype, unsigned& btype) {
  unsigned numbits;
  return QXGetFPTypeParamsFromString<QXFPUnhashedTreeType>(typeString, version, numbits, minbonds, maxbonds,
                                                           atype, btype);
}

bool QXGetMACCS166FPTypeParams(const std::string& typeString, unsigned short& version) {
  return QXGetFPTypeParamsFromString<QXFPMACCS166Type>(typeString, version);
}

bool QXGetLingoFPTypeParams(const std::string& typeString, unsigned short& version) {
  return QXGetFPTypeParamsFromString<QXFPLingoType>(typeString, version);
}

bool QXIsValidFPTypeString(const std::string& typeString) {
  const TypeRow* row = FindTypeRowByPrefix(typeString);
  ParsedType parsed;
  if (!row || !ParseTypeString(*row, typeString, parsed)) return false;
  if (parsed.version != row->version) {
    QXSystem::QXThrow.Warning("QXIsValidFPTypeString() fingerprint type with old version number");
  }
  return true;
}

unsigned short QXGetFPTypeVersion(const std::string& typeString) {
  const TypeRow* row = FindTypeRowByPrefix(typeString);
  // The unhashed kinds answer 0 unread, as they always have.
  if (!row || row->shape == TypeShape::Unhashed) return 0;
  ParsedType parsed;
  return ParseTypeString(*row, typeString, parsed) ? static_cast<unsigned short>(parsed.version) : 0;
}

}  // namespace QXFingrix
