#include "fingerprint/TypeTable.h"

#include <algorithm>
#include <iterator>

#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXFPType.h"

namespace QXFingrix {
namespace {

constexpr unsigned short version2_0_0 = 8192;
constexpr unsigned short version2_2_0 = 8224;

// numbits, minimum, maximum distance, atom and bond types
constexpr TypeParams pathDefaults = {4096, 0, 5, QXFPAtomType::DefaultPathAtom,
                                     QXFPBondType::DefaultPathBond};
constexpr TypeParams circularDefaults = {4096, 0, 5, QXFPAtomType::DefaultCircularAtom,
                                         QXFPBondType::DefaultCircularBond};
constexpr TypeParams treeDefaults = {4096, 0, 4, QXFPAtomType::DefaultTreeAtom,
                                     QXFPBondType::DefaultTreeBond};

constexpr TypeParams WithoutBits(TypeParams params) {
  params.numbits = 0;
  return params;
}

// In the order in which a text is tested for the type words.
constexpr TypeRow typeTable[] = {
    {QXFPType::MACCS166,
     TypeShape::Plain,
     version2_2_0,
     "MACCS166",
     nullptr,
     nullptr,
     "QXFPMACCS166Type",
     CachedType<QXFPMACCS166Type>,
     {}},
    {QXFPType::Lingo,
     TypeShape::Plain,
     version2_0_0,
     "Lingo",
     nullptr,
     nullptr,
     "QXFPLingoType",
     CachedType<QXFPLingoType>,
     {}},
    {QXFPType::Path, TypeShape::Hashed, version2_0_0, "Path", "size", "bonds", "QXFPPathType",
     CachedType<QXFPPathType>, pathDefaults},
    {QXFPType::Circular, TypeShape::Hashed, version2_0_0, "Circular", "size", "radius", "QXFPCircularType",
     CachedType<QXFPCircularType>, circularDefaults},
    {QXFPType::Tree, TypeShape::Hashed, version2_0_0, "Tree", "size", "bonds", "QXFPTreeType",
     CachedType<QXFPTreeType>, treeDefaults},
    {QXFPType::UHPath, TypeShape::Unhashed, version2_0_0, "UHPath", "numbits", "bonds",
     "QXFPUnhashedPathType", CachedType<QXFPUnhashedPathType>, WithoutBits(pathDefaults)},
    {QXFPType::UHCircular, TypeShape::Unhashed, version2_0_0, "UHCircular", nullptr, "radius",
     "QXFPUnhashedCircularType", CachedType<QXFPUnhashedCircularType>, WithoutBits(circularDefaults)},
    {QXFPType::UHTree, TypeShape::Unhashed, version2_0_0, "UHTree", nullptr, "bonds", "QXFPUnhashedTreeType",
     CachedType<QXFPUnhashedTreeType>, WithoutBits(treeDefaults)},
};

template <class Test>
const TypeRow* FindRow(Test test) {
  const auto row = std::ranges::find_if(typeTable, test);
  return row == std::end(typeTable) ? nullptr : row;
}

}  // namespace

const TypeRow* FindTypeRow(unsigned code) {
  return FindRow([code](const TypeRow& row) { return row.code == code; });
}

const TypeRow* FindTypeRowByPrefix(std::string_view text) {
  return FindRow([text](const TypeRow& row) { return text.starts_with(row.word); });
}

unsigned GetFPTypeFromTypeStringPrefix(std::string_view text) {
  const TypeRow* row = FindTypeRowByPrefix(text);
  return row ? row->code : QXFPType::None;
}

}  // namespace QXFingrix
