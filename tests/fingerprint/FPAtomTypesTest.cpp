#include "QXFingrix/QXFPAtomTypes.h"

#include <gtest/gtest.h>

#include "QXFingrix/QXFPType.h"

namespace QXFingrix {
namespace {

std::string Entries(const QXSystem::QXNamespaceInterface& names) {
  std::string text = names.GetNamespaceName() + ":";
  for (const auto& entry : names.GetEntries()) text += " " + entry.name + "=" + std::to_string(entry.value);
  return text;
}

TEST(FPAtomTypes, NamespacesHaveTheirEntriesInOrder) {
  EXPECT_EQ(
      Entries(QXGetFPAtomTypeNamespaceInterface()),
      "QXFPAtomType: AtmNum=1 Arom=2 Chiral=4 FCharge=8 HvyDeg=16 Hyb=32 InRing=64 HCount=4096 EqArom=256 "
      "EqHalo=128 EqHBAcc=512 EqHBDon=1024");
  EXPECT_EQ(Entries(QXGetFPTypeNamespaceInterface()), "QXFPType: Path=102 Circular=104 Tree=105");
  EXPECT_EQ(Entries(QXGetFPBondTypeNamespaceInterface()), "QXFPBondType: Order=1 Chiral=2 InRing=4");
}

TEST(FPAtomTypes, MasksHaveNames) {
  EXPECT_EQ(QXGetFPAtomType(0u), "None");
  EXPECT_EQ(QXGetFPAtomType(191u), "AtmNum|Arom|Chiral|FCharge|HvyDeg|Hyb|EqHalo");
  EXPECT_EQ(QXGetFPAtomType(4096u | 128u | 256u), "HCount|EqArom|EqHalo");
  EXPECT_EQ(QXGetFPAtomType(2048u), "invalid");
  EXPECT_EQ(QXGetFPAtomType(1u | 8192u), "invalid");
  EXPECT_EQ(QXGetFPBondType(0u), "None");
  EXPECT_EQ(QXGetFPBondType(7u), "Order|Chiral|InRing");
  EXPECT_EQ(QXGetFPBondType(8u), "invalid");
}

TEST(FPAtomTypes, NamesHaveMasks) {
  const struct {
    const char* name;
    bool validAtom;
    unsigned atom;
    bool validBond;
    unsigned bond;
  } cases[] = {
      {"None", true, 0, true, 0},
      {"DefaultAtom", true, 191, false, 0},
      {"DefaultPathAtom", true, 191, false, 0},
      {"DefaultCircularAtom", true, 4239, false, 0},
      {"DefaultTreeAtom", true, 63, false, 0},
      {"DefaultBond", false, 0, true, 3},
      {"DefaultPathBond", false, 0, true, 3},
      {"DefaultCircularBond", false, 0, true, 1},
      {"DefaultTreeBond", false, 0, true, 1},
      {"Chiral", true, 4, true, 2},
      {"InRing|Chiral", true, 68, true, 6},
      {"EqHBDon|AtmNum", true, 1025, false, 0},
      {"Order", false, 0, true, 1},
      {"Chiral|None", false, 0, false, 0},
      {"DefaultAtom|HCount", false, 0, false, 0},
      {"Chiral|", false, 0, false, 0},
      {"chiral", false, 0, false, 0},
      {"", false, 0, false, 0},
  };
  for (const auto& c : cases) {
    const std::string name = c.name;
    EXPECT_EQ(QXIsValidFPAtomType(name), c.validAtom) << name;
    EXPECT_EQ(QXGetFPAtomType(name), c.atom) << name;
    EXPECT_EQ(QXIsValidFPBondType(name), c.validBond) << name;
    EXPECT_EQ(QXGetFPBondType(name), c.bond) << name;
  }
}

}  // namespace
}  // namespace QXFingrix
