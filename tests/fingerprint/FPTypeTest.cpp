#include "QXFingrix/QXFPType.h"

#include <gtest/gtest.h>

#include <barrier>
#include <random>
#include <set>
#include <thread>

#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFPTypeString.h"
#include "Reports.h"

namespace QXFingrix {
namespace {

using namespace QXTest;

template <class Type>
std::uint64_t IdOf(const QXFPTypeBase* type) {
  const auto* typed = dynamic_cast<const Type*>(type);
  EXPECT_TRUE(typed);
  return typed ? typed->GetID() : 0;
}

TEST(FPType, IdentifiersPackTheParametersIntoTheirFields) {
  EXPECT_EQ(IdOf<QXFPPathType>(QXGetPathFPType(8192, 4096, 1, 7, QXFPAtomType::DefaultPathAtom, 3)),
            (4096ull << 44) | (191ull << 24) | (3ull << 16) | (1ull << 8) | 7ull);
  EXPECT_EQ(IdOf<QXFPUnhashedTreeType>(QXGetUnhashedTreeFPType(8192, 2, 3, 63, 1)),
            (63ull << 24) | (1ull << 16) | (2ull << 8) | 3ull);
  // Numbers too wide for their field spill into the next; equal identifiers are one type.
  const QXFPTypeBase* wide = QXGetTreeFPType(8192, 65536 + 5, 256, 257, 65536, 256);
  EXPECT_EQ(IdOf<QXFPTreeType>(wide),
            (65541ull << 44) + (65536ull << 24) + (256ull << 16) + (256ull << 8) + 257);
  EXPECT_EQ(wide, QXGetTreeFPType(8192, 65541, 1, 1, 65537, 1));
  EXPECT_NE(wide, QXGetTreeFPType(8193, 65541, 1, 1, 65537, 1));
  EXPECT_NE(QXGetMACCS166FPType(8224), QXGetMACCS166FPType(8225));

  unsigned numbits, minDistance, maxDistance, atype, btype;
  QXFPPathType::SetParamsFromID(0xFFFFull << 44 | 0x1357BADF1Eull, numbits, minDistance, maxDistance, atype,
                                btype);
  EXPECT_EQ(std::vector({numbits, atype, btype, minDistance, maxDistance}),
            (std::vector{0xFFFFu, 0x1357u, 0xBAu, 0xDFu, 0x1Eu}));
}

TEST(FPType, ReservedBitsAreReportedAndTheRestIsDecoded) {
  const std::uint64_t good = (64ull << 44) + (1ull << 24) + (1ull << 16) + 5;
  const std::string text = ",size=64,bonds=0-5,atype=AtmNum,btype=Order";
  for (const unsigned bit : {40u, 43u, 60u, 63u}) {
    std::string out = "> ";
    EXPECT_EQ(ReportsOf([&] { QXGetFPTypeStringFromID<QXFPPathType>(out, 8192, good | 1ull << bit); }),
              Reports{"Warning: Unrecognised data in QXFPPathType!"});
    EXPECT_EQ(out, "> Path,ver=2.0.0" + text);
    EXPECT_EQ(ReportsOf([&] { QXGetFPTypeStringFromID<QXFPCircularType>(out, 8192, good | 1ull << bit); }),
              Reports{"Warning: Unrecognised data in QXFPCircularType!"});
    EXPECT_EQ(ReportsOf([&] { QXGetFPTypeStringFromID<QXFPTreeType>(out, 8192, good | 1ull << bit); }),
              Reports{"Warning: Unrecognised data in QXFPTreeType!"});
  }
  for (const unsigned bit : {40u, 44u, 63u}) {
    std::string out;
    EXPECT_EQ(ReportsOf([&] {
                QXGetFPTypeStringFromID<QXFPUnhashedTreeType>(out, 8192, 1ull << 24 | 1ull << bit);
              }),
              Reports{"Warning: Unrecognised data!"});
    EXPECT_EQ(out, "UHTree,ver=2.0.0,bonds=0-0,atype=AtmNum,btype=None");
  }
}

TEST(FPType, CanonicalStringsHaveTheirTokensInOrder) {
  const char* atoms = "AtmNum|Arom|Chiral|FCharge|HvyDeg|Hyb|EqHalo";
  const std::string tail = std::string(",atype=") + atoms + ",btype=Order|Chiral";
  const struct {
    const QXFPTypeBase* type;
    std::string prefix;
    std::string text;
  } cases[] = {
      {QXGetMACCS166FPType(8224), QXGetMACCS166FPStringPrefix(), "MACCS166,ver=2.2.0"},
      {QXGetLingoFPType(8192), QXGetLingoFPStringPrefix(), "Lingo,ver=2.0.0"},
      {QXGetPathFPType(1024, 0, 7, 191, 3), QXGetPathFPStringPrefix(),
       "Path,ver=2.0.0,size=1024,bonds=0-7" + tail},
      {QXGetCircularFPType(1024, 0, 7, 191, 3), QXGetCircularFPStringPrefix(),
       "Circular,ver=2.0.0,size=1024,radius=0-7" + tail},
      {QXGetTreeFPType(1024, 0, 7, 191, 3), QXGetTreeFPStringPrefix(),
       "Tree,ver=2.0.0,size=1024,bonds=0-7" + tail},
      {QXGetUnhashedPathFPType(8193, 0, 7, 191, 3), QXGetUnhashedPathFPStringPrefix(),
       "UHPath,ver=2.0.1,bonds=0-7" + tail},
      {QXGetUnhashedCircularFPType(8193, 0, 7, 191, 3), QXGetUnhashedCircularFPStringPrefix(),
       "UHCircular,ver=2.0.1,radius=0-7" + tail},
      {QXGetUnhashedTreeFPType(8193, 0, 7, 0, 3), QXGetUnhashedTreeFPStringPrefix(),
       "UHTree,ver=2.0.1,bonds=0-7,atype=None,btype=Order|Chiral"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.type->GetFPTypeString(), c.text);
    EXPECT_EQ(c.prefix, c.text.substr(0, c.text.find(',')));
  }
}

// A random mask of bits that have names.
unsigned RandomMask(const QXSystem::QXNamespaceInterface& names, std::mt19937& random) {
  unsigned mask = 0;
  for (const auto& entry : names.GetEntries()) mask |= random() % 2 ? entry.value : 0;
  return mask;
}

TEST(FPType, EveryDescriptorIsFoundAgainByItsString) {
  std::mt19937 random(20240611);
  for (int round = 0; round < 2000; ++round) {
    const unsigned atype = RandomMask(QXGetFPAtomTypeNamespaceInterface(), random);
    const unsigned btype = RandomMask(QXGetFPBondTypeNamespaceInterface(), random) | (atype == 0);
    const unsigned numbits = 1 + random() % 65535, low = random() % 256, high = random() % 256;
    const QXFPTypeBase* const types[] = {
        QXGetPathFPType(numbits, low, high, atype, btype),
        QXGetCircularFPType(numbits, low, high, atype, btype),
        QXGetTreeFPType(numbits, low, high, atype, btype),
        QXGetUnhashedPathFPType(8192, low, high, atype, btype),
        QXGetUnhashedCircularFPType(8192, low, high, atype, btype),
        QXGetUnhashedTreeFPType(8192, low, high, atype, btype),
    };
    for (const QXFPTypeBase* type : types) {
      const std::string text = type->GetFPTypeString();
      ASSERT_EQ(QXGetFPType(text), type) << text;
    }
  }
}

TEST(FPType, SameParametersGiveTheSamePointerOnConcurrentFirstUse) {
  constexpr unsigned numThreads = 8, numTypes = 200;
  std::vector<std::vector<const QXFPTypeBase*>> found(numThreads);
  std::barrier start(numThreads);
  {
    std::vector<std::jthread> threads;
    for (unsigned t = 0; t < numThreads; ++t) {
      threads.emplace_back([&, t] {
        start.arrive_and_wait();
        for (unsigned i = 0; i < numTypes; ++i) {
          found[t].push_back(QXGetPathFPType(77, 3000 + i, 1, 2, 3, 4));
          found[t].push_back(QXGetLingoFPType(static_cast<unsigned short>(100 + i)));
        }
      });
    }
  }
  for (unsigned t = 1; t < numThreads; ++t) EXPECT_EQ(found[t], found[0]);
  EXPECT_EQ(std::set(found[0].begin(), found[0].end()).size(), 2 * numTypes) << "different ones differ";
}

}  // namespace
}  // namespace QXFingrix
