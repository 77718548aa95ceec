#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <thread>

#include "QXSystem/QXErrorHandler.h"
#include "chem/SharedMolecules.h"

namespace QXChem {
namespace {

using QXSystem::QXErrorCollector;
using QXSystem::QXErrorLevel;

std::string Repeat(const std::string& text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

void ExpectRefused(std::string_view text, const std::string& what) {
  QXGraphMol mol = FromSmiles("CCO");
  const QXErrorCollector reports;
  EXPECT_FALSE(QXParseSmiles(mol, text)) << what;
  EXPECT_EQ(reports.Count(), 1u) << what;
  EXPECT_FALSE(mol.IsValid()) << what;
  EXPECT_EQ(mol.NumAtoms(), 0u) << what;
}

TEST(ReadMolecule, MalformedSmilesIsRefusedWithAReasonThatHelps) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "no SMILES"},
      {" CC", "no SMILES"},
      {"CC(C", "unclosed parenthesis"},
      {"CC)C", "unopened parenthesis at byte 3"},
      {"C1CC", "unclosed ring bond 1 at byte 2"},
      {"C%12CC", "unclosed ring bond 12 at byte 2"},
      {"CC[NH", "unclosed bracket at byte 3"},
      {"C=-C", "not a SMILES"},
      {"[C-200]", "charge above 99 at byte 4"},
      {"[C+200]", "charge above 99 at byte 4"},
      {"[Fe+99999999999999999999]", "charge above 99 at byte 5"},
      {"[70000C]", "isotope above 65535 at byte 2"},
      {"[*H300]", "hydrogen count above 99 at byte 4"},
      {"[CH4:1000000000]", "atom map number above 999999999 at byte 6"},
      {"CC\x01O", "byte 1 is not a SMILES character at byte 3"},
      {"CC\xC3\xA9", "byte 195 is not a SMILES character at byte 3"},
      {std::string("CC\0C", 4), "byte 0 is not a SMILES character at byte 3"},
      {"CN(C)(C)(C)C", "Explicit valence for atom # 1 N, 5, is greater than permitted"},
      {"c1cccc1", "Can't kekulize mol.  Unkekulized atoms: 0 1 2 3 4"},
      {Repeat("C", 100001), "more than 100000 atoms"},
      {Repeat("=", 1000001), "longer than 1000000 bytes"},
      {Repeat("C(", 2001), "more than 2000 open parentheses at byte 4002"},
      {"C1" + Repeat("C", 20000) + "1", "too large for ring perception: 1 rings among 20001 connected atoms"},
      {Repeat("C1CC1.", 10001), "more than 10000 ring bonds at byte 60002"},
      {Repeat("C1CC1" + Repeat("C", 37) + ".", 2400) + "C",
       "too large for ring perception: 2400 parts with rings among 96001 atoms"},
      {Repeat("C%12CC%12.", 10001), "more than 10000 ring bonds at byte 100004"},
      {"*" + Repeat("(C)", 128), "an atom with too many bonds"}};
  for (const auto& [smiles, reason] : cases) {
    const std::string shown = smiles.substr(0, 40);
    ExpectRefused(smiles, shown);
    QXGraphMol mol;
    const QXErrorCollector reports;
    std::string found;
    EXPECT_FALSE(QXReadSmiles(mol, smiles, found)) << shown;
    EXPECT_EQ(found, reason) << shown;
    EXPECT_EQ(reports.Count(), 0u) << shown;
    QXParseSmiles(mol, smiles);
    EXPECT_EQ(reports.Messages().at(0).text, "QXParseSmiles() : " + reason + "!");
    EXPECT_EQ(reports.Messages().at(0).level, QXErrorLevel::Warning);
  }
}

TEST(ReadMolecule, TextBehindTheFirstWhiteSpaceIsNotLookedAt) {
  for (const char* text :
       {"CCO", "CCO\n", "CCO ethanol", "CCO\tx y", "CCO |^1:9| broken extension", "CCO\r\n"}) {
    const QXGraphMol mol = FromSmiles(text);
    EXPECT_EQ(mol.NumAtoms(), 3u) << text;
    EXPECT_EQ(mol.GetTitle(), "") << text;
  }
}

TEST(ReadMolecule, LargeInputWithinTheLimitsIsRead) {
  EXPECT_EQ(FromSmiles(Repeat("C", 100000)).NumAtoms(), 100000u);
  EXPECT_EQ(FromSmiles(Repeat("C(", 2000) + "C" + Repeat(")", 2000)).NumAtoms(), 2001u);
  EXPECT_EQ(FromSmiles("C1" + Repeat("C", 19998) + "1").NumAtoms(), 19999u);
}

TEST(ReadMolecule, KekuleOrdersStandBesideAromaticFlags) {
  const QXGraphMol pyrrole = FromSmiles("c1cc[nH]c1");
  unsigned doubles = 0;
  for (const QXBondBase& bond : pyrrole.Bonds()) {
    EXPECT_TRUE(bond.IsAromatic() && bond.IsInRing());
    doubles += bond.GetOrder() == 2;
  }
  EXPECT_EQ(doubles, 2u);
  for (const QXAtomBase& atom : pyrrole.Atoms()) {
    EXPECT_EQ(atom.GetValence(), atom.GetAtomicNum() == 7 ? 3u : 4u);
    EXPECT_EQ(atom.GetTotalHCount(), 1u);
    EXPECT_EQ(atom.GetHyb(), 2u);
  }
}

TEST(ReadMolecule, IsotopesChargesMapNumbersAndWildcardsAreKept) {
  const QXGraphMol mol = FromSmiles("[13CH3:5][N+](*)(C)[O-].[2H][H].[300*]");
  EXPECT_EQ(mol.GetAtom(0)->GetIsotope(), 13u);
  EXPECT_EQ(mol.GetAtom(0)->GetMapIdx(), 5u);
  EXPECT_EQ(mol.GetAtom(1)->GetFormalCharge(), 1);
  EXPECT_EQ(mol.GetAtom(1)->GetHvyDegree(), 3u);
  EXPECT_EQ(mol.GetAtom(2)->GetAtomicNum(), 0u);
  EXPECT_FALSE(mol.GetAtom(2)->IsHeavy());
  EXPECT_EQ(mol.GetAtom(4)->GetFormalCharge(), -1);
  EXPECT_EQ(mol.GetAtom(5)->GetIsotope(), 2u);
  EXPECT_EQ(mol.GetAtom(7)->GetIsotope(), 300u);
  EXPECT_EQ(QXCreateSmiles(mol), "*[N+](C)([O-])[13CH3:5].[300*].[H][2H]");
}

const char* const blockV2000 =
    "acetate\n  test\n\n"
    "  4  3  0  0  0  0            999 V2000\n"
    "    0.0000    0.0000    0.0000 C   0  0\n"
    "    1.5000    0.0000    0.0000 C   0  0\n"
    "    2.2000    1.2000    0.0000 O   0  0\n"
    "    2.2000   -1.2000    0.0000 O   0  0\n"
    "  1  2  1  0\n  2  3  2  0\n  2  4  1  0\n"
    "M  CHG  1   4  -1\nM  END\n";

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  text.replace(text.find(from), from.size(), to);
  return text;
}

TEST(ReadMolecule, MolBlockGivesTheSameGraphAsItsSmiles) {
  QXGraphMol mol;
  ASSERT_TRUE(QXParseMolBlock(mol, blockV2000));
  EXPECT_EQ(mol.GetTitle(), "acetate");
  EXPECT_EQ(QXCreateSmiles(mol), QXCreateSmiles(FromSmiles("CC(=O)[O-]")));
  // Header lines may have any encoding.
  ASSERT_TRUE(QXParseMolBlock(mol, Replaced(Replaced(blockV2000, "acetate", "ac\xE9tate"), "test", "\xFF")));
  EXPECT_EQ(mol.GetTitle(), "ac\xE9tate");
}

TEST(ReadMolecule, DamagedMolBlockIsRefused) {
  const std::string block = blockV2000;
  const std::string v3000 =
      "\n\n\n  0  0  0     0  0            999 V3000\nM  V30 BEGIN CTAB\nM  V30 COUNTS 1 0 0 0 0\n"
      "M  V30 BEGIN ATOM\nM  V30 1 C 0 0 0 0 CHG=1\nM  V30 END ATOM\nM  V30 END CTAB\nM  END\n";
  QXGraphMol good;
  for (const char* field : {" CHG=1", "\tchg=1", " CHG=-\nM  V30 1", " CHG=1 MASS=13"}) {
    EXPECT_TRUE(QXParseMolBlock(good, Replaced(v3000, " CHG=1", field))) << field;
    EXPECT_EQ(good.GetAtom(0)->GetFormalCharge(), 1) << field;
  }
  const std::vector<std::pair<std::string, std::string>> cases = {
      {Replaced(block, "4  -1", "4 200"), "charge above 99"},
      {Replaced(block, "   4  -1", "   4-200"), "charge above 99"},
      {Replaced(block, "   4  -1", "   41000"), "charge above 99"},
      {Replaced(block, "1   4  -1", "2   1   2   4 200"), "charge above 99"},
      {Replaced(block, "M  CHG  1   4  -1", "M  ZCH  1   4 200"), "charge above 99"},
      {Replaced(block, "C   0  0", "C   0200"), "charge above 99"},
      {Replaced(block, "C   0  0", "C   0-99"), "charge above 99"},
      {Replaced(v3000, " CHG=1", " CHG=-200"), "charge above 99"},
      {Replaced(v3000, " CHG=1", " chg=200"), "charge above 99"},
      {Replaced(v3000, " CHG=1", " CHG=+200"), "charge above 99"},
      {Replaced(v3000, " CHG=1", " CHG=4294967298"), "charge above 99"},
      {Replaced(v3000, " CHG=1", "\tCHG=200"), "charge above 99"},
      {Replaced(v3000, " CHG=1", " \"CHG=200\""), "charge above 99"},
      {Replaced(v3000, " CHG=1", " CHG=1 CHG=200"), "charge above 99"},
      {Replaced(v3000, " CHG=1", " CHG=2-\nM  V30 00"), "charge above 99"},
      {Replaced(v3000, " CHG=1", " CHG=2-\r\nM  V30 0-\r\nM  V30 0"), "charge above 99"},
      {Replaced(v3000, " CHG=1", " CH-\nM  V30 G=200"), "charge above 99"},
      {Replaced(v3000, " CHG=1", " mass=70000"), "isotope above 65535"},
      {Replaced(v3000, " CHG=1", " MASS=7e4"), "isotope above 65535"},
      {Replaced(block, "M  END", std::string("\0 END", 5)), "NUL at byte"},
      {Replaced(block, "0 C ", "0 \xFF "), "not UTF-8 at byte 88"},
      {Replaced(block, "  1  2  1", "  1  9  1"), "bond 1 does not join two of the 4 atoms"},
      {Replaced(block, "1   4  -1", "1   9  -1"), "an atom number that is not there"},
      {Replaced(Replaced(v3000, "COUNTS 1 0", "COUNTS 1 1"), "END ATOM",
                "END ATOM\nM  V30 BEGIN BOND\nM  V30 1 1 1 2\nM  V30 END BOND"),
       "an atom number that is not there"},
      {Replaced(block, "1.5000", "x.5000"), ""},
      {Replaced(block, "  2  3  2", "  2  3  3"), "Explicit valence"},
      {block.substr(0, 150), ""},
      {"", ""}};
  for (const auto& [text, reason] : cases) {
    QXGraphMol mol = FromSmiles("C");
    std::string found;
    EXPECT_FALSE(QXReadMolBlock(mol, text, found)) << text;
    EXPECT_FALSE(mol.IsValid());
    EXPECT_FALSE(found.empty());
    EXPECT_EQ(found.substr(0, reason.size()), reason);
  }
}

TEST(ReadMolecule, Mol2BlockGivesTheSameGraphAsItsSmiles) {
  const std::string block =
      "@<TRIPOS>MOLECULE\nmethanol\n6 5 0 0 0\nSMALL\nNO_CHARGES\n\n@<TRIPOS>ATOM\n"
      "1 C1 0.0 0.0 0.0 C.3\n2 O2 1.4 0.0 0.0 O.3\n3 H3 -0.5 1.0 0.0 H\n4 H4 -0.5 -0.5 0.9 H\n"
      "5 H5 -0.5 -0.5 -0.9 H\n6 H6 1.7 0.9 0.0 H\n"
      "@<TRIPOS>BOND\n1 1 2 1\n2 1 3 1\n3 1 4 1\n4 1 5 1\n5 2 6 1\n";
  QXGraphMol mol;
  ASSERT_TRUE(QXParseMol2(mol, block));
  EXPECT_EQ(mol.GetTitle(), "methanol");
  EXPECT_EQ(mol.NumAtoms(), 6u);
  EXPECT_EQ(mol.GetAtom(0)->GetTotalHCount(), 3u);
  const std::vector<std::pair<std::string, std::string>> damaged = {
      {"no molecule", "no @<TRIPOS>MOLECULE"},
      {Replaced(block, "5 2 6 1", "5 2 7 1"), "bond 5 does not join two of the 6 atoms"},
      {Replaced(block, "5 2 6 1", "5 0 6 1"), "bond 5 does not join two of the 6 atoms"},
      {Replaced(block, "5 2 6 1\n", ""), "bond 5 does not join two of the 6 atoms"},
      {Replaced(block, "6 5 0", "900 5 0"), "more atoms or bonds announced than there are lines"},
      {Replaced(block, "methanol", std::string("\0", 1)), "NUL at byte 19"}};
  for (const auto& [text, reason] : damaged) {
    std::string found;
    EXPECT_FALSE(QXReadMol2(mol, text, found)) << reason;
    EXPECT_FALSE(mol.IsValid());
    EXPECT_EQ(found, reason);
  }
  EXPECT_TRUE(QXParseMol2(mol, "# made by hand\n" + block));
}

TEST(ReadMolecule, EveryBadLineIsRefusedWithOneWarning) {
  const auto lines = SharedLines("bad.smi");
  if (lines.empty()) GTEST_SKIP() << "no bad.smi in " QX_SHARED_DATA_DIR;
  for (std::size_t i = 0; i < lines.size(); ++i) ExpectRefused(lines[i], "line " + std::to_string(i + 1));
}

TEST(ReadMolecule, EveryHostileLineIsRefusedWithOneWarning) {
  const std::string command = "xz -dkc " QX_SHARED_DATA_DIR "/bad_long.smi.xz 2>/dev/null";
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  ASSERT_TRUE(pipe);
  std::string text;
  std::vector<char> buffer(1 << 16);
  while (const std::size_t size = fread(buffer.data(), 1, buffer.size(), pipe.get()))
    text.append(buffer.data(), size);
  if (text.empty()) GTEST_SKIP() << "no bad_long.smi.xz in " QX_SHARED_DATA_DIR;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) ExpectRefused(line, line.substr(0, 40));
}

TEST(ReadMolecule, EveryOddLineIsRead) {
  const auto lines = SharedLines("odd.smi");
  if (lines.empty()) GTEST_SKIP() << "no odd.smi in " QX_SHARED_DATA_DIR;
  const QXErrorCollector reports;
  for (const std::string& line : lines) EXPECT_GT(FromSmiles(line).NumAtoms(), 0u);
  EXPECT_EQ(reports.Count(), 0u);
}

TEST(ReadMolecule, FourThreadsReadWhatOneReads) {
  std::vector<std::string> lines = {"c1ccccc1O", "C[N+](C)(C)C", "CC(=O)[O-].[Na+]", "C1CC",
                                    "FS(F)(F)(F)(F)F"};
  for (const std::string& line : SharedLines("drug_5k.smi")) {
    if (lines.size() < 500) lines.push_back(line);
  }
  const auto readAll = [&lines](std::vector<std::string>& out) {
    QXGraphMol mol;
    std::string reason;
    for (const std::string& line : lines)
      out.push_back(QXReadSmiles(mol, line, reason) ? QXCreateSmiles(mol) : reason);
  };
  std::vector<std::string> expected;
  readAll(expected);
  std::vector<std::vector<std::string>> found(4);
  {
    std::vector<std::jthread> threads;
    for (auto& out : found) threads.emplace_back([&readAll, &out] { readAll(out); });
  }
  for (const auto& out : found) EXPECT_EQ(out, expected);
}

}  // namespace
}  // namespace QXChem
