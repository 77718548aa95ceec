#include <gtest/gtest.h>

#include "QXFingrix/QXFPTypeString.h"
#include "Reports.h"

namespace QXFingrix {
namespace {

using namespace QXTest;

constexpr unsigned unset = 0xFFFFFFFF;

using Numbers = std::vector<unsigned>;

struct Parsed {
  bool ok = false;
  unsigned short version = 1;
  unsigned numbits = 1, minDistance = 1, maxDistance = 1, atype = 1, btype = 1;

  std::vector<unsigned> Values() const { return {version, numbits, minDistance, maxDistance, atype, btype}; }
};

/// Calls the parser of a type word. Numbers that the kind has not keep their 1.
Parsed Parse(const std::string& word, const std::string& text) {
  Parsed p;
  const auto hashed = [&](auto parser) {
    p.ok = parser(text, p.version, p.numbits, p.minDistance, p.maxDistance, p.atype, p.btype);
  };
  const auto unhashed = [&](auto parser) {
    p.ok = parser(text, p.version, p.minDistance, p.maxDistance, p.atype, p.btype);
  };
  if (word == "Path") hashed(QXGetPathFPTypeParams);
  if (word == "Circular") hashed(QXGetCircularFPTypeParams);
  if (word == "Tree") hashed(QXGetTreeFPTypeParams);
  if (word == "UHPath") unhashed(QXGetUnhashedPathFPTypeParams);
  if (word == "UHCircular") unhashed(QXGetUnhashedCircularFPTypeParams);
  if (word == "UHTree") unhashed(QXGetUnhashedTreeFPTypeParams);
  if (word == "MACCS166") p.ok = QXGetMACCS166FPTypeParams(text, p.version);
  if (word == "Lingo") p.ok = QXGetLingoFPTypeParams(text, p.version);
  return p;
}

Reports ParserReports(const std::string& word, const std::string& text) {
  Parsed p;
  const Reports reports = ReportsOf([&] { p = Parse(word, text); });
  EXPECT_FALSE(p.ok) << text;
  return reports;
}

std::string Replace(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

struct GraphKind {
  const char* word;
  const char* size;  // its size token, where it has one
  const char* distance;
};
constexpr GraphKind graphKinds[] = {
    {"Path", "size=1024", "bonds"}, {"Circular", "size=1024", "radius"}, {"Tree", "size=1024", "bonds"},
    {"UHPath", "", "bonds"},        {"UHCircular", "", "radius"},        {"UHTree", "", "bonds"},
};

// Fills in the words of a kind for KIND, SIZE and DIST; HEAD, MASKS and FINE stand for good tokens.
std::string TextOf(const GraphKind& kind, const std::string& pattern) {
  std::string text = Replace(Replace(pattern, "HEAD", "KIND,ver=2.0.0,SIZE"), "FINE", "SIZEDIST=0-5,MASKS");
  text = Replace(Replace(text, "MASKS", "atype=AtmNum,btype=Order"), "SIZE",
                 *kind.size ? std::string(kind.size) + "," : "");
  return Replace(Replace(text, "DIST", kind.distance), "KIND", kind.word);
}

TEST(TypeStringParser, ReadsTokensInAnyOrderAndTheLastOfDuplicates) {
  for (const GraphKind& kind : graphKinds) {
    const std::string size = *kind.size ? std::string(",") + kind.size : "";
    const std::string text = std::string("btype=Order,") + kind.distance + "=7-8,atype=None,ver=14.255.15" +
                             size + "," + kind.word + ",atype=HCount|AtmNum," + kind.distance + "=9-0";
    const Parsed p = Parse(kind.word, text);
    EXPECT_TRUE(p.ok) << text;
    EXPECT_EQ(p.Values(), (Numbers{61439, *kind.size ? 1024u : 1u, 9, 0, 4097, 1})) << text;
  }
}

TEST(TypeStringParser, EveryFaultOfAGraphTypeIsReportedOnceInItsOwnWords) {
  constexpr const char* notTokenized = "Invalid string can not be tokenized for `KIND` type!";
  constexpr const char* badDistance = "Invalid fingerprint distance for `KIND` type!";
  constexpr const char* badVersion = "Invalid version for `KIND` type!";
  // An empty report is a silent failure.
  const struct {
    const char* text;
    const char* report;
  } cases[] = {
      {"KIND,ver=15.0.0,FINE", badVersion},
      {"KIND,ver=2.0,FINE", badVersion},
      {"HEADDIST=5,MASKS", badDistance},
      {"HEADDIST=-5,MASKS", badDistance},
      {"HEADDIST=0--5,MASKS", badDistance},
      {"HEADDIST=0-5-6,MASKS", badDistance},
      {"HEADDIST=x-5,MASKS", "Invalid fingerprint minimum distance for `KIND` type!"},
      {"HEADDIST=0-x,MASKS", "Invalid fingerprint maximum distance for `KIND` type!"},
      {"HEADDIST=0-5,atype=Nonsense,btype=Order", ""},
      {"HEADDIST=0-5,MASKS|Nonsense", ""},
      {"HEADDIST=0-5,MASKS,colour=red", "'colour' is not a valid fingerprint type primitive!"},
      {"HEADDIST=0-5,MASKS,%s=1", "'%s' is not a valid fingerprint type primitive!"},
      {"KIND,KINDX,ver=2.0.0", notTokenized},
      {"KIND,,ver=2.0.0", notTokenized},
      {"KIND,ver=2.0.0,", notTokenized},
      {"KIND,ver==2.0.0", notTokenized},
      {"KIND,ver=2.0.0=1", notTokenized},
      {"KIND,=ver=2.0.0", notTokenized},
      {"KIND,ver=", notTokenized},
      {"ver=2.0.0,FINE", "Missing fingerprint type!"},
      {"", "Missing fingerprint type!"},
      {"KIND,FINE", "Missing fingerprint version!"},
      {"HEADMASKS", "Min or max distance cannot be initialized for `KIND` type!"},
      {"HEADDIST=0-4294967295,MASKS", "Min or max distance cannot be initialized for `KIND` type!"},
      {"HEADDIST=0-5,btype=Order", "Atom type cannot be initialized for `KIND` type!"},
      {"HEADDIST=0-5,atype=AtmNum", "Bond type cannot be initialized for `KIND` type!"},
      {"HEADDIST=0-5,atype=None,btype=None", "The atom and bond type cannot be both None for `KIND` type!"},
  };
  for (const GraphKind& kind : graphKinds) {
    for (const auto& c : cases) {
      const std::string text = TextOf(kind, c.text);
      const std::string report = Replace(c.report, "KIND", kind.word);
      EXPECT_EQ(ParserReports(kind.word, text), report.empty() ? silence : Reports{"Warning: " + report})
          << text;
    }
    const std::string uninitialized =
        std::string(" type cannot be initialized for `") + kind.word + "` type!";
    EXPECT_EQ(ParserReports(kind.word, TextOf(kind, "HEADDIST=0-5")),
              (Reports{"Warning: Atom" + uninitialized, "Warning: Bond" + uninitialized}));
  }
}

TEST(TypeStringParser, KeysOfOtherKindsAreRefused) {
  for (const GraphKind& kind : graphKinds) {
    const std::string word = kind.word;
    const std::string text = TextOf(kind, "KIND,ver=2.0.0,DIST=0-5,atype=AtmNum,btype=Order");
    const std::string invalid = "Warning: Invalid fingerprint size for `" + word + "` type!";
    const std::string uninitialized = "Warning: Size cannot be initialized for `" + word + "` type!";
    const bool hashed = *kind.size;
    const auto unknown = [](const std::string& key) {
      return "Warning: '" + key + "' is not a valid fingerprint type primitive!";
    };
    const std::string otherDistance = kind.distance == std::string("bonds") ? "radius" : "bonds";
    EXPECT_EQ(ParserReports(word, text + "," + otherDistance + "=0-5"), Reports{unknown(otherDistance)});
    EXPECT_EQ(ParserReports(word, text + ",size=x").front(), hashed ? invalid : unknown("size"));
    EXPECT_EQ(ParserReports(word, text + ",numbits=x").front(),
              word == "UHPath" ? invalid : unknown("numbits"));
    if (hashed) {
      EXPECT_EQ(ParserReports(word, text), Reports{uninitialized});
      EXPECT_EQ(ParserReports(word, text + ",size=0"), Reports{uninitialized});
      EXPECT_EQ(ParserReports(word, text + ",size=4294967295"), Reports{uninitialized});
      EXPECT_EQ(ParserReports(word, text + ",size=4294967296"), Reports{invalid});
      EXPECT_EQ(ParserReports(word, text + ",size=-1"), Reports{invalid});
      EXPECT_EQ(ParserReports(word, text + ",size==5"),
                Reports{"Warning: Invalid string can not be tokenized for `" + word + "` type!"});
      EXPECT_EQ(Parse(word, text + ",size=70000").numbits, 70000u) << "sizes have no upper bound";
    }
    if (word == "UHPath") {
      EXPECT_TRUE(Parse(word, text + ",numbits=512").ok);
    }
  }
}

TEST(TypeStringParser, AFailedParseLeavesWhatItDidNotReadUnset) {
  Parsed p;
  ReportsOf([&] { p = Parse("Path", "Path,bonds=1-2,colour=red"); });
  EXPECT_FALSE(p.ok);
  EXPECT_EQ(p.Values(), (Numbers{0, unset, 1, 2, unset, unset}));
}

TEST(TypeStringParser, PlainTypesTakeAVersionAndSkipOtherKeys) {
  const struct {
    const char* text;
    bool ok;
    unsigned version;
    const char* report;
  } cases[] = {
      {"KIND", true, 0, ""},
      {"KIND,ver=2.2.0", true, 8224, ""},
      {"ver=1.0.0", true, 4096, ""},
      {"ver=2.0.0,colour=red,KIND,ver=2.0.1", true, 8193, ""},
      {"", false, 65535, "Invalid fingerprint type string!"},
      {"KIND,", false, 65535, "Invalid `KIND` type string!"},
      {"KINDX", false, 65535, "Invalid `KIND` type string!"},
      {"KIND,ver==2.2.0", false, 65535, "Invalid `KIND` type string!"},
      {"KIND,a=b=c", false, 65535, "Invalid `KIND` type string!"},
      {"KIND,ver=15.0.0", false, 65535, "Invalid version for `KIND` type!"},
      {"KIND,colour=red", false, 65535, "Version number cannot be initialized for `KIND` type!"},
      {"KIND,ver=14.511.15", false, 65535, "Version number cannot be initialized for `KIND` type!"},
      {"KIND,ver=14.512.0", false, 0, "Version number cannot be initialized for `KIND` type!"},
  };
  for (const std::string word : {"MACCS166", "Lingo"}) {
    for (const auto& c : cases) {
      const std::string text = Replace(c.text, "KIND", word);
      const std::string report = Replace(c.report, "KIND", word);
      Parsed p;
      EXPECT_EQ(ReportsOf([&] { p = Parse(word, text); }),
                report.empty() ? silence : Reports{"Warning: " + report})
          << text;
      EXPECT_EQ(p.ok, c.ok) << text;
      EXPECT_EQ(p.version, c.version) << text;
    }
  }
}

}  // namespace
}  // namespace QXFingrix
