#include "QXFingrix/QXFPType.h"

#include "QXFingrix/QXFPTypeString.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/TypeCache.h"
#include "fingerprint/TypeParams.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {

QXFPTypeBase::~QXFPTypeBase() = default;

template <unsigned Code>
unsigned QXFPPlainType<Code>::GetFPType() const {
  return Code;
}

template <unsigned Code>
std::string QXFPPlainType<Code>::GetFPTypeString() const {
  std::string text;
  QXGetFPTypeStringFromID<QXFPPlainType>(text, version_);
  return text;
}

template <unsigned Code>
unsigned QXFPUnhashedType<Code>::GetFPType() const {
  return Code;
}

template <unsigned Code>
std::string QXFPUnhashedType<Code>::GetFPTypeString() const {
  std::string text;
  QXGetFPTypeStringFromID<QXFPUnhashedType>(text, version_, id_);
  return text;
}

template <unsigned Code>
unsigned QXFPHashedType<Code>::GetFPType() const {
  return Code;
}

template <unsigned Code>
std::string QXFPHashedType<Code>::GetFPTypeString() const {
  std::string text;
  QXGetFPTypeStringFromID<QXFPHashedType>(text, version_, id_);
  return text;
}

template <unsigned Code>
void QXFPHashedType<Code>::SetParamsFromID(std::uint64_t id, unsigned& numbits, unsigned& minDistance,
                                           unsigned& maxDistance, unsigned& atype, unsigned& btype) {
  if (id & reservedHashedBits) {
    QXSystem::QXThrow.Warning("Unrecognised data in %s!", FindTypeRow(Code)->className);
  }
  const TypeParams params = UnpackTypeId(id);
  numbits = params.numbits;
  minDistance = params.minDistance;
  maxDistance = params.maxDistance;
  atype = params.atype;
  btype = params.btype;
}

template class QXFPPlainType<QXFPType::MACCS166>;
template class QXFPPlainType<QXFPType::Lingo>;
template class QXFPHashedType<QXFPType::Path>;
template class QXFPHashedType<QXFPType::Circular>;
template class QXFPHashedType<QXFPType::Tree>;
template class QXFPUnhashedType<QXFPType::UHPath>;
template class QXFPUnhashedType<QXFPType::UHCircular>;
template class QXFPUnhashedType<QXFPType::UHTree>;

template <class FPType>
const QXFPTypeBase* CachedType(unsigned short version, const TypeParams& params) {
  if constexpr (requires(const FPType& type) { type.GetID(); }) {
    return QXFPTypeFactory<FPType>::Instance().GetFPType(version, PackTypeId(params));
  } else {
    return QXFPTypeFactoryNoParams<FPType>::Instance().GetFPType(version);
  }
}

// The table refers to all eight.
template const QXFPTypeBase* CachedType<QXFPMACCS166Type>(unsigned short, const TypeParams&);
template const QXFPTypeBase* CachedType<QXFPLingoType>(unsigned short, const TypeParams&);
template const QXFPTypeBase* CachedType<QXFPPathType>(unsigned short, const TypeParams&);
template const QXFPTypeBase* CachedType<QXFPCircularType>(unsigned short, const TypeParams&);
template const QXFPTypeBase* CachedType<QXFPTreeType>(unsigned short, const TypeParams&);
template const QXFPTypeBase* CachedType<QXFPUnhashedPathType>(unsigned short, const TypeParams&);
template const QXFPTypeBase* CachedType<QXFPUnhashedCircularType>(unsigned short, const TypeParams&);
template const QXFPTypeBase* CachedType<QXFPUnhashedTreeType>(unsigned short, const TypeParams&);

namespace {

template <class FPType>
const QXFPTypeBase* CurrentType(const TypeParams& params) {
  return CachedType<FPType>(FindTypeRow(FPType::TypeCode)->version, params);
}

std::string TypeWord(unsigned code) {
  return FindTypeRow(code)->word;
}

}  // namespace

const QXFPTypeBase* QXGetPathFPType(unsigned short version, unsigned numbits, unsigned minbonds,
                                    unsigned maxbonds, unsigned atype, unsigned btype) {
  return CachedType<QXFPPathType>(version, {numbits, minbonds, maxbonds, atype, btype});
}

const QXFPTypeBase* QXGetPathFPType(unsigned numbits, unsigned minbonds, unsigned maxbonds, unsigned atype,
                                    unsigned btype) {
  return CurrentType<QXFPPathType>({numbits, minbonds, maxbonds, atype, btype});
}

const QXFPTypeBase* QXGetCircularFPType(unsigned short version, unsigned numbits, unsigned minradius,
                                        unsigned maxradius, unsigned atype, unsigned btype) {
  return CachedType<QXFPCircularType>(version, {numbits, minradius, maxradius, atype, btype});
}

const QXFPTypeBase* QXGetCircularFPType(unsigned numbits, unsigned minradius, unsigned maxradius,
                                        unsigned atype, unsigned btype) {
  return CurrentType<QXFPCircularType>({numbits, minradius, maxradius, atype, btype});
}

const QXFPTypeBase* QXGetTreeFPType(unsigned short version, unsigned numbits, unsigned minbonds,
                                    unsigned maxbonds, unsigned atype, unsigned btype) {
  return CachedType<QXFPTreeType>(version, {numbits, minbonds, maxbonds, atype, btype});
}

const QXFPTypeBase* QXGetTreeFPType(unsigned numbits, unsigned minbonds, unsigned maxbonds, unsigned atype,
                                    unsigned btype) {
  return CurrentType<QXFPTreeType>({numbits, minbonds, maxbonds, atype, btype});
}

const QXFPTypeBase* QXGetUnhashedPathFPType(unsigned short version, unsigned minbonds, unsigned maxbonds,
                                            unsigned atype, unsigned btype) {
  return CachedType<QXFPUnhashedPathType>(version, {0, minbonds, maxbonds, atype, btype});
}

const QXFPTypeBase* QXGetUnhashedCircularFPType(unsigned short version, unsigned minradius,
                                                unsigned maxradius, unsigned atype, unsigned btype) {
  return CachedType<QXFPUnhashedCircularType>(version, {0, minradius, maxradius, atype, btype});
}

const QXFPTypeBase* QXGetUnhashedTreeFPType(unsigned short version, unsigned minbonds, unsigned maxbonds,
                                            unsigned atype, unsigned btype) {
  return CachedType<QXFPUnhashedTreeType>(version, {0, minbonds, maxbonds, atype, btype});
}

const QXFPTypeBase* QXGetMACCS166FPType(unsigned short version) {
  return CachedType<QXFPMACCS166Type>(version, {});
}

const QXFPTypeBase* QXGetLingoFPType(unsigned short version) {
  return CachedType<QXFPLingoType>(version, {});
}

std::string QXGetMACCS166FPStringPrefix() {
  return TypeWord(QXFPType::MACCS166);
}
std::string QXGetLingoFPStringPrefix() {
  return TypeWord(QXFPType::Lingo);
}
std::string QXGetPathFPStringPrefix() {
  return TypeWord(QXFPType::Path);
}
std::string QXGetCircularFPStringPrefix() {
  return TypeWord(QXFPType::Circular);
}
std::string QXGetTreeFPStringPrefix() {
  return TypeWord(QXFPType::Tree);
}
std::string QXGetUnhashedPathFPStringPrefix() {
  return TypeWord(QXFPType::UHPath);
}
std::string QXGetUnhashedCircularFPStringPrefix() {
  return TypeWord(QXFPType::UHCircular);
}
std::string QXGetUnhashedTreeFPStringPrefix() {
  return TypeWord(QXFPType::UHTree);
}

QXFPTypeInterface::QXFPTypeInterface()
    : QXNamespaceInterface("QXFPType", QXSystem::QXNamespaceKind::Enumeration,
                           {{"Path", QXFPType::Path, "linear walks of bonded atoms"},
                            {"Circular", QXFPType::Circular, "circular environments of atoms"},
                            {"Tree", QXFPType::Tree, "branched subgraphs without rings"}}) {}

const QXSystem::QXNamespaceInterface& QXGetFPTypeNamespaceInterface() {
  static const QXFPTypeInterface types;
  return types;
}

}  // namespace QXFingrix
