#include "QXFingrix/QXFingerPrint.h"

#include <gtest/gtest.h>

#include <memory>

#include "QXFingrix/QXFPType.h"
#include "Reports.h"

namespace QXFingrix {
namespace {

using namespace QXTest;

QXFingerPrint MakeFingerPrint(const QXFPTypeBase* type, unsigned size, std::initializer_list<unsigned> bits) {
  QXFingerPrint fp;
  fp.SetSize(size);
  for (const unsigned bit : bits) fp.SetBitOn(bit);
  fp.SetFPTypeBase(type);
  return fp;
}

TEST(FingerPrint, EqualMeansSameTypeSizeAndBits) {
  const QXFPTypeBase* path = QXGetPathFPType(1024, 0, 5, 191, 3);
  const QXFPTypeBase* tree = QXGetTreeFPType(1024, 0, 5, 191, 3);
  const QXFingerPrint fp = MakeFingerPrint(path, 1024, {3, 700});
  const struct {
    QXFingerPrint other;
    bool equal;
  } cases[] = {
      {fp, true},
      {MakeFingerPrint(path, 1024, {700, 3}), true},
      {MakeFingerPrint(tree, 1024, {3, 700}), false},
      {MakeFingerPrint(path, 1024, {3, 701}), false},
      {MakeFingerPrint(path, 1023, {3, 700}), false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(fp == c.other, c.equal); }), silence);
    EXPECT_EQ(fp != c.other, !c.equal);
    EXPECT_EQ(c.other == fp, c.equal);
  }
}

TEST(FingerPrint, ComparisonWithoutATypeIsReportedAndFalse) {
  const QXFingerPrint untyped;
  const QXFingerPrint typed = MakeFingerPrint(QXGetLingoFPType(8192), 64, {});
  EXPECT_FALSE(untyped);
  EXPECT_TRUE(typed);
  EXPECT_EQ(untyped.GetSize(), 64u);
  EXPECT_EQ(untyped.CountBits(), 0u);
  const Reports equality = {"Warning: QXFingerPrint::operator== : uninitialized fingerprint type!"};
  const Reports sameType = {"Warning: QXIsSameFPType() : uninitialized fingerprint type!"};
  const std::pair<const QXFingerPrint*, const QXFingerPrint*> pairs[] = {
      {&untyped, &typed}, {&typed, &untyped}, {&untyped, &untyped}};
  for (const auto& [a, b] : pairs) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(*a == *b); }), equality);
    EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(*a != *b); }), equality);
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXIsSameFPType(*a, *b)); }), sameType);
  }
}

TEST(FingerPrint, TypeTestsGoByTheDescriptor) {
  const QXFingerPrint path = MakeFingerPrint(QXGetPathFPType(1024, 0, 5, 191, 3), 64, {1});
  const QXFingerPrint other = MakeFingerPrint(QXGetPathFPType(1024, 0, 6, 191, 3), 64, {1});
  EXPECT_TRUE(QXIsFPType(path, 102));
  EXPECT_FALSE(QXIsFPType(path, 105));
  EXPECT_TRUE(QXIsSameFPType(path, MakeFingerPrint(path.GetFPTypeBase(), 128, {})));
  EXPECT_FALSE(QXIsSameFPType(path, other));
}

TEST(FingerPrint, BooleansFollowTheBitsAndStopAtTheSize) {
  for (const unsigned size : {0u, 1u, 64u, 166u}) {
    QXFingerPrint fp;
    fp.SetSize(size);
    for (unsigned bit = 0; bit < size; bit += 3) fp.SetBitOn(bit);
    const auto out = std::make_unique<bool[]>(size + 2);
    out[size] = out[size + 1] = true;
    QXFPToBoolArray(fp, out.get());
    for (unsigned bit = 0; bit < size; ++bit) EXPECT_EQ(out[bit], bit % 3 == 0) << bit;
    EXPECT_TRUE(out[size] && out[size + 1]) << "written past the end";
  }
}

}  // namespace
}  // namespace QXFingrix
