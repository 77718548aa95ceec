#include "QXSystem/QXString.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace QXSystem {
namespace {

using Strings = std::vector<std::string>;

TEST(StringTest, TokenizeKeepsOrDropsEmptyPieces) {
  const struct {
    const char* text;
    const char* separators;
    Strings kept;
    Strings dropped;
  } cases[] = {
      {"", ",", {}, {}},
      {"a", ",", {"a"}, {"a"}},
      {",", ",", {"", ""}, {}},
      {"a,,b", ",", {"a", "", "b"}, {"a", "b"}},
      {",a,", ",", {"", "a", ""}, {"a"}},
      {"a=b-c", "=-", {"a", "b", "c"}, {"a", "b", "c"}},
      {"size==5", "=", {"size", "", "5"}, {"size", "5"}},
      {"a,b", "", {"a,b"}, {"a,b"}},
  };
  for (const auto& c : cases) {
    Strings out = {"old"};
    QXStringTokenize(out, c.text, c.separators, false);
    EXPECT_EQ(out, c.kept) << c.text;
    QXStringTokenize(out, c.text, c.separators, true);
    EXPECT_EQ(out, c.dropped) << c.text;
  }
  Strings own = {"a,b"};
  QXStringTokenize(own, own[0], ",", true);
  EXPECT_EQ(own, (Strings{"a", "b"})) << "read from the output";
}

// Reads the text as a Number; `untouched` when it is refused.
template <class Number, class... Base>
Number Read(const std::string& text, Number untouched, Base... base) {
  Number out = untouched;
  const bool isRead = QXStringToNumber(text, out, base...);
  EXPECT_TRUE(isRead || out == untouched) << text;
  return out;
}

TEST(StringTest, UnsignedNumbersFillTheWholeTextAndFit) {
  EXPECT_EQ(Read("0", 7u), 0u);
  EXPECT_EQ(Read("0042", 7u), 42u);
  EXPECT_EQ(Read("4294967295", 7u), 4294967295u);
  EXPECT_EQ(Read("ff", 7u, 16u), 255u);
  EXPECT_EQ(Read("-0", 7u), 7u);
  EXPECT_EQ(Read("18446744073709551615", std::uint64_t{7}), std::numeric_limits<std::uint64_t>::max());
  for (const char* text :
       {"", " 1", "1 ", "+1", "-1", "1.0", "0x1", "4294967296", "99999999999999999999", "a"}) {
    EXPECT_EQ(Read(text, 7u), 7u) << text;
  }
  EXPECT_EQ(Read("18446744073709551616", std::uint64_t{7}), 7u);
  for (const unsigned base : {0u, 1u, 37u}) EXPECT_EQ(Read("1", 7u, base), 7u);
}

TEST(StringTest, SignedNumbersTakeOneSign) {
  EXPECT_EQ(Read("-2147483648", 7), std::numeric_limits<int>::min());
  EXPECT_EQ(Read("+5", 7), 5);
  for (const char* text : {"", "-", "+", "+-5", "--5", "2147483648", "5 "})
    EXPECT_EQ(Read(text, 7), 7) << text;
}

TEST(StringTest, FractionsAreFiniteAndWhole) {
  EXPECT_EQ(Read("0.7", 7.0f), 0.7f);
  EXPECT_EQ(Read("-1e-3", 7.0), -0.001);
  EXPECT_EQ(Read("+.5", 7.0), 0.5);
  for (const char* text : {"", "nan", "inf", "-inf", "1e999", "1,5", "0.5f", " 1", "+-1", "0x10"}) {
    EXPECT_EQ(Read(text, 7.0), 7.0) << text;
    EXPECT_EQ(Read(text, 7.0f), 7.0f) << text;
  }
  EXPECT_EQ(Read("1e39", 7.0f), 7.0f);
}

TEST(StringTest, NumbersBecomeTextInAnyBase) {
  std::string out = "old";
  for (unsigned base = 2; base <= 36; ++base) {
    for (const unsigned value : {0u, 1u, 35u, 123456u, 4294967295u}) {
      QXNumberToString(value, out, base);
      EXPECT_EQ(Read(out, 7u, base), value);
    }
  }
  QXNumberToString(48879, out, 16);
  EXPECT_EQ(out, "beef");
  QXNumberToString(1, out, 1);
  EXPECT_EQ(out, "");
}

TEST(StringTest, FileExtensionIsThatOfTheLastName) {
  EXPECT_EQ(QXFileExtension("a/b.fpbin"), "fpbin");
  EXPECT_EQ(QXFileExtension("a.smi.gz"), "gz");
  EXPECT_EQ(QXFileExtension("A.SDF"), "SDF");
  for (const char* path : {"", "a", "a.b/c", "a/.hidden", ".hidden", "a."})
    EXPECT_EQ(QXFileExtension(path), "") << path;
}

}  // namespace
}  // namespace QXSystem
