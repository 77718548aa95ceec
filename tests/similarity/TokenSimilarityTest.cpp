#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXFingrix/QXSimilarity.h"
#include "QXFingrix/QXUnhashedSimFunc.h"
#include "Reports.h"
#include "generators/Molecules.h"

namespace QXFingrix {
namespace {

// The bytes as they are, without a zero byte behind them unless bytes has one.
QXFingerPrint MakeFP(const std::string& bytes, unsigned type = QXFPType::UHPath) {
  QXFingerPrint fp;
  fp.SetFPTypeBase(QXGetFPType(type, false, 0));
  fp.SetSize(static_cast<unsigned>(8 * bytes.size()));
  if (!bytes.empty()) std::memcpy(fp.GetWords().data(), bytes.data(), bytes.size());
  return fp;
}

using Tokens = std::multiset<std::string>;

// What a text says to whoever reads it from a stream, in any order.
Tokens ReadTokens(std::string_view text) {
  std::istringstream in{std::string(text)};
  return {std::istream_iterator<std::string>(in), {}};
}

float NaiveTanimoto(const Tokens& a, const Tokens& b) {
  std::vector<std::string> shared;
  std::ranges::set_intersection(a, b, std::back_inserter(shared));
  return static_cast<float>(shared.size()) / static_cast<float>(a.size() + b.size() - shared.size());
}

// The sorted addresses of the tokens' copies in `all`.
QXTokenIds MakeIds(const Tokens& tokens, std::set<std::string>& all) {
  QXTokenIds ids;
  for (const std::string& token : tokens) ids.push_back(&*all.insert(token).first);
  std::ranges::sort(ids, std::less());
  return ids;
}

TEST(TokenSimilarity, TextsAreSplitAtWhiteSpaceAndEndAtAZeroByte) {
  using namespace std::string_literals;
  const struct {
    std::string a;
    std::string b;
    float expected;
  } cases[] = {
      {"x x y\0"s, "x y y\0"s, 0.5F},
      {"s q p q\0"s, "q r q\0"s, 0.4F},                                     // 2 / (4 + 3 - 2)
      {"  one\t\ttwo\r\nthree\v\f one \0"s, "two three one one\0"s, 1.0F},  // any white space, any order
      {"one\xA0two\0"s, "one two\0"s, 0.0F},                                // not white space
      {"one tw\0two three and more of what nobody reads"s, "one tw\0"s, 1.0F},
      {"one two four"s, "one two four\0"s, 1.0F},  // no zero byte on the heap
      {"one four"s, "one four\0"s, 1.0F},          // nor inline
      {"one\0"s, " \n\0"s, 0.0F},
  };
  for (const auto& c : cases) {
    const QXFingerPrint a = MakeFP(c.a);
    const QXFingerPrint b = MakeFP(c.b);
    EXPECT_EQ(QXTanimoto(a, b), c.expected) << c.a;
    EXPECT_EQ(QXTanimoto(b, a), c.expected) << c.a;
  }
}

TEST(TokenSimilarity, WithoutTokensTheScoreIsNotANumber) {
  const QXTokenIds none;
  const QXTest::Reports reports = QXTest::ReportsOf([&] {
    for (const std::string& text : {std::string(), std::string(1, '\0'), std::string(20, ' ')}) {
      for (const unsigned type : {QXFPType::UHPath, QXFPType::UHCircular, QXFPType::UHTree}) {
        EXPECT_TRUE(std::isnan(QXTanimoto(MakeFP(text, type), MakeFP("\n", type))));
      }
    }
    EXPECT_TRUE(std::isnan(QXTanimotoUnhashedSim()(none, none)));
  });
  EXPECT_EQ(reports, QXTest::silence);
  const std::string token;
  EXPECT_EQ(QXTanimotoUnhashedSim()({&token}, none), 0.0F);
}

TEST(TokenSimilarity, TextsAndIdsOfRealMoleculesAgreeWithMultisets) {
  const QXFPTypeBase* const type = QXGetFPType(QXFPType::UHPath, false, 0);
  std::vector<QXFingerPrint> fps;
  for (const auto& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", 60)) {
    ASSERT_TRUE(QXMakeFP(fps.emplace_back(), test::ReadSmiles(line.smiles), type)) << line.smiles;
  }
  ASSERT_EQ(fps.size(), 60U);
  std::set<std::string> all;
  std::vector<Tokens> tokens;
  std::vector<QXTokenIds> ids;
  for (const QXFingerPrint& fp : fps)
    ids.push_back(MakeIds(tokens.emplace_back(ReadTokens(QXGetFPText(fp))), all));
  const QXTanimotoUnhashedSim sim;
  std::set<float> scores;
  for (std::size_t i = 0; i < fps.size(); ++i) {
    for (std::size_t j = 0; j < fps.size(); ++j) {
      const float expected = NaiveTanimoto(tokens[i], tokens[j]);
      ASSERT_EQ(QXTanimoto(fps[i], fps[j]), expected);
      ASSERT_EQ(sim(ids[i], ids[j]), expected);
      scores.insert(expected);
    }
  }
  EXPECT_GT(scores.size(), 1000U);
}

}  // namespace
}  // namespace QXFingrix
