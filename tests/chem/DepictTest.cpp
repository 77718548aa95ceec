#include "QXChem/QXDepict.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "Reports.h"
#include "SharedMolecules.h"

namespace QXChem {
namespace {

using namespace QXTest;

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

// The bonds that a drawing shows: every line of one carries the class "bond-N".
std::set<std::string> BondsOf(const std::string& svg) {
  const std::regex pattern("class='bond-(\\d+)");
  std::set<std::string> bonds;
  for (std::sregex_iterator it(svg.begin(), svg.end(), pattern), end; it != end; ++it) bonds.insert((*it)[1]);
  return bonds;
}

const char* const highlightColor = "#FF7F7F";

TEST(Depict, DrawsEveryBondAndHighlightsWhatIsAsked) {
  const QXGraphMol mol = FromSmiles("C[N+](C)(C)CC(=O)[O-]");
  QXDepiction depiction{&mol, {}, "betaine"};
  const std::string plain = QXDepictSVG({&depiction, 1}, 300, 200);
  EXPECT_NE(plain.find("width='300px' height='200px'"), std::string::npos);
  EXPECT_EQ(plain.find("</svg>") + 7, plain.size());
  EXPECT_EQ(BondsOf(plain).size(), mol.NumBonds());
  EXPECT_EQ(Count(plain, highlightColor), 0u);
  for (const char* letter : {">N<", ">O<"}) EXPECT_NE(plain.find(letter), std::string::npos) << letter;
  EXPECT_EQ(QXDepictSVG({&depiction, 1}, 300, 200), plain);

  depiction.highlight.AddAtom(1);
  const std::size_t oneAtom = Count(QXDepictSVG({&depiction, 1}), highlightColor);
  depiction.highlight.AddBond(4);
  depiction.highlight.AddBond(4);
  EXPECT_GT(oneAtom, 0u);
  EXPECT_GT(Count(QXDepictSVG({&depiction, 1}), highlightColor), oneAtom);

  EXPECT_EQ(plain.find("<?xml version='1.0' encoding='UTF-8'?>"), 0u);
  depiction.legend = "<sub>2 \xc2\xb5M & \xe6\xb0\xb4";
  EXPECT_EQ(Count(QXDepictSVG({&depiction, 1}), ">&lt;sub>2 \xc2\xb5M &amp; \xe6\xb0\xb4</text>"), 1u);

  const QXDepiction both[] = {{&mol, {}, "left"}, {&mol, depiction.highlight, "right"}};
  EXPECT_NE(QXDepictSVG(both, 300, 200).find("width='600px' height='200px'"), std::string::npos);
}

// A Kekulé form is drawn as it stands, whether or not it makes sense.
TEST(Depict, DrawsWhatPerceptionWouldRefuse) {
  QXGraphMol mol;
  for (const unsigned element : {6, 6, 6, 6, 6, 6, 0, 1}) mol.NewAtom(element);
  for (const unsigned i : {1, 2, 3, 4, 5}) mol.NewBond(0, i, i > 3 ? 3 : 1);
  mol.NewBond(5, 6, 7);
  mol.NewBond(6, 7, 0);
  const QXDepiction depiction{&mol, {}, ""};
  EXPECT_EQ(BondsOf(QXDepictSVG({&depiction, 1})).size(), mol.NumBonds());
}

TEST(Depict, RefusesWithOneWarning) {
  const QXGraphMol ethane = FromSmiles("CC");
  const QXGraphMol empty;
  QXGraphMol invalid;
  invalid.Invalidate();
  const QXGraphMol giant = FromSmiles(std::string(501, 'C'));
  QXAtomBondSet strangeAtom, strangeBond;
  strangeAtom.AddAtom(2);
  strangeBond.AddBond(1);
  QXGraphMol dense;
  for (unsigned i = 0; i < 46; ++i) {
    dense.NewAtom(6);
    for (unsigned j = 0; j < i; ++j) dense.NewBond(j, i, 1);
  }
  const QXDepiction good{&ethane, {}, ""};
  const struct {
    std::vector<QXDepiction> depictions;
    unsigned width;
    const char* reason;
  } cases[] = {
      {{}, 450, "no molecule"},
      {{good, {}}, 450, "no molecule"},
      {{{&empty, {}, ""}}, 450, "no molecule"},
      {{{&invalid, {}, ""}}, 450, "no molecule"},
      {{{&giant, {}, ""}}, 450, "501 atoms (at most 500)"},
      {{{&dense, {}, ""}}, 450, "1035 bonds (at most 1000)"},
      {{{&ethane, {}, "a\tb"}}, 450, "a legend with the control character 9 at byte 1"},
      {{{&ethane, {}, "\xb5M"}}, 450, "a legend that is not UTF-8 at byte 0"},
      {{{&ethane, {}, "\xef\xbf\xbf"}}, 450, "a legend with a noncharacter at byte 0"},
      {{{&ethane, strangeAtom, ""}}, 450, "a highlighted atom or bond that is not there"},
      {{{&ethane, strangeBond, ""}}, 450, "a highlighted atom or bond that is not there"},
      {std::vector<QXDepiction>(21, good), 450, "21 molecules (at most 20)"},
      {{good}, 49, "49 x 350 pixels (from 50 to 5000 each way)"},
      {{good}, 5001, "5001 x 350 pixels (from 50 to 5000 each way)"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXDepictSVG(c.depictions, c.width), ""); }),
              Reports{"Warning: QXDepictSVG() : cannot draw " + std::string(c.reason) + "!"});
  }
}

TEST(Depict, DrawsDifficultMolecules) {
  const std::vector<std::string> lines = SharedLines("odd.smi");
  if (lines.empty()) GTEST_SKIP() << "no odd.smi";
  std::size_t numDrawn = 0;
  for (const std::string& line : lines) {
    QXGraphMol mol;
    std::string reason;
    if (!QXReadSmiles(mol, line, reason) || mol.NumAtoms() > 100) continue;
    const QXDepiction depiction{&mol, {}, "odd & <difficult>"};
    const std::string svg = QXDepictSVG({&depiction, 1});
    EXPECT_LE(BondsOf(svg).size(), mol.NumBonds()) << line;
    EXPECT_FALSE(svg.empty()) << line;
    ++numDrawn;
  }
  EXPECT_GT(numDrawn, 500u);
}

}  // namespace
}  // namespace QXChem
