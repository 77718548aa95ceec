#include "QXFingrix/QXFPAtomTypes.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

namespace QXFingrix {
namespace {

using QXSystem::QXNamespaceInterface;
using QXSystem::QXNamespaceKind;

/// A name for a combination, read before the names of the namespace.
struct NamedMask {
  std::string_view name;
  unsigned mask;
};

constexpr NamedMask atomDefaults[] = {
    {"None", QXFPAtomType::None},
    {"DefaultAtom", QXFPAtomType::DefaultAtom},
    {"DefaultPathAtom", QXFPAtomType::DefaultPathAtom},
    {"DefaultCircularAtom", QXFPAtomType::DefaultCircularAtom},
    {"DefaultTreeAtom", QXFPAtomType::DefaultTreeAtom},
};

constexpr NamedMask bondDefaults[] = {
    {"None", QXFPBondType::None},
    {"DefaultBond", QXFPBondType::DefaultBond},
    {"DefaultPathBond", QXFPBondType::DefaultPathBond},
    {"DefaultCircularBond", QXFPBondType::DefaultCircularBond},
    {"DefaultTreeBond", QXFPBondType::DefaultTreeBond},
};

const NamedMask* FindDefault(std::span<const NamedMask> defaults, std::string_view name) {
  const auto found = std::ranges::find(defaults, name, &NamedMask::name);
  return found == defaults.end() ? nullptr : &*found;
}

std::string MaskToText(const QXNamespaceInterface& names, unsigned mask) {
  return mask == 0 ? "None" : names.GetName(mask, "invalid");
}

unsigned TextToMask(std::span<const NamedMask> defaults, const QXNamespaceInterface& names,
                    const std::string& text) {
  const NamedMask* found = FindDefault(defaults, text);
  return found ? found->mask : names.GetValue(text, 0);
}

bool IsMaskText(std::span<const NamedMask> defaults, const QXNamespaceInterface& names,
                const std::string& text) {
  return FindDefault(defaults, text) || names.IsValid(text);
}

}  // namespace

QXFPAtomTypeInterface::QXFPAtomTypeInterface()
    : QXNamespaceInterface("QXFPAtomType", QXNamespaceKind::Mask,
                           {{"AtmNum", QXFPAtomType::AtmNum, "atomic number"},
                            {"Arom", QXFPAtomType::Arom, "aromaticity"},
                            {"Chiral", QXFPAtomType::Chiral, "atom chirality"},
                            {"FCharge", QXFPAtomType::FCharge, "formal charge"},
                            {"HvyDeg", QXFPAtomType::HvyDeg, "heavy-atom degree"},
                            {"Hyb", QXFPAtomType::Hyb, "hybridisation"},
                            {"InRing", QXFPAtomType::InRing, "ring membership"},
                            {"HCount", QXFPAtomType::HCount, "hydrogen count"},
                            {"EqArom", QXFPAtomType::EqArom, "aromatic atoms are equal"},
                            {"EqHalo", QXFPAtomType::EqHalo, "halogen atoms are equal"},
                            {"EqHBAcc", QXFPAtomType::EqHBAcc, "hydrogen bond acceptor atoms are equal"},
                            {"EqHBDon", QXFPAtomType::EqHBDon, "hydrogen bond donor atoms are equal"}}) {}

QXFPBondTypeInterface::QXFPBondTypeInterface()
    : QXNamespaceInterface("QXFPBondType", QXNamespaceKind::Mask,
                           {{"Order", QXFPBondType::Order, "bond order"},
                            {"Chiral", QXFPBondType::Chiral, "bond chirality"},
                            {"InRing", QXFPBondType::InRing, "ring membership"}}) {}

const QXNamespaceInterface& QXGetFPAtomTypeNamespaceInterface() {
  static const QXFPAtomTypeInterface names;
  return names;
}

const QXNamespaceInterface& QXGetFPBondTypeNamespaceInterface() {
  static const QXFPBondTypeInterface names;
  return names;
}

std::string QXGetFPAtomType(unsigned mask) {
  return MaskToText(QXGetFPAtomTypeNamespaceInterface(), mask);
}

std::string QXGetFPBondType(unsigned mask) {
  return MaskToText(QXGetFPBondTypeNamespaceInterface(), mask);
}

unsigned QXGetFPAtomType(const std::string& name) {
  return TextToMask(atomDefaults, QXGetFPAtomTypeNamespaceInterface(), name);
}

unsigned QXGetFPBondType(const std::string& name) {
  return TextToMask(bondDefaults, QXGetFPBondTypeNamespaceInterface(), name);
}

bool QXIsValidFPAtomType(const std::string& name) {
  return IsMaskText(atomDefaults, QXGetFPAtomTypeNamespaceInterface(), name);
}

bool QXIsValidFPBondType(const std::string& name) {
  return IsMaskText(bondDefaults, QXGetFPBondTypeNamespaceInterface(), name);
}

}  // namespace QXFingrix
