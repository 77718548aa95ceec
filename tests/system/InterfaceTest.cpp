#include "QXSystem/QXInterface.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Reports.h"

namespace QXSystem {
namespace {

using namespace QXTest;
using enum QXParameterType;

QXInterface MakeSearchInterface() {
  QXInterface itf("search options");
  itf.AddParameter(QXParameter("-limit", Integer)
                       .SetAlias("-l")
                       .SetDefault("10")
                       .SetBrief("Maximum number of hits")
                       .SetDetail("\n\tZero returns all\n\tAPI : SetLimit method")
                       .SetLegalRange("0", "100000"));
  itf.AddParameter(
      QXParameter("-measure", String).SetAlias("-m").AddLegalValue("Dice").AddLegalValue("Cosine"));
  itf.AddParameter(QXParameter("-cutoff", Float).SetLegalRange("", "1"));
  return itf;
}

QXInterface MakeInterface() {
  QXInterface itf("tool", "Searches");
  itf.AddParameter(QXParameter("-in", String).SetKeyless(1).SetRequired(true).SetBrief("Input file"));
  itf.AddParameter(QXParameter("-descending", Bool).SetDefault("true"));
  itf.AddParameter(QXParameter("-threads", Unsigned));
  itf.AddParameter(QXParameter("-secret", String).SetVisible(false));
  itf.AddInterface(MakeSearchInterface());
  return itf;
}

TEST(InterfaceTest, NamesAreFoundWithAnyDashesByAliasAndInSubInterfaces) {
  const QXInterface itf = MakeInterface();
  for (const char* name : {"-limit", "limit", "--limit", "-l", "l", "-in", "in"})
    EXPECT_TRUE(itf.Has(name)) << name;
  for (const char* name : {"", "-", "--", "---limit", "-lim", "-Limit"}) EXPECT_FALSE(itf.Has(name)) << name;
}

TEST(InterfaceTest, DefaultIsAValueButNotSet) {
  QXInterface itf = MakeInterface();
  EXPECT_TRUE(itf.HasValue("-limit"));
  EXPECT_FALSE(itf.IsSet("-limit"));
  EXPECT_FALSE(itf.HasValue("-cutoff"));
  EXPECT_EQ(itf.Get<int>("-limit"), 10);
  ASSERT_TRUE(itf.Set("-limit", "10"));
  EXPECT_TRUE(itf.IsSet("l"));
  ASSERT_TRUE(itf.Set("m", "Cosine"));
  EXPECT_EQ(itf.Get<std::string>("-measure"), "Cosine");
  EXPECT_EQ(itf.GetValueText("-cutoff"), "");
  EXPECT_EQ(itf.GetValueText("-limit"), "10");
}

TEST(InterfaceTest, RefusedValuesAreReportedOnceAndChangeNothing) {
  const struct {
    const char* name;
    const char* value;
    const char* report;
  } cases[] = {
      {"-limit", "many", "value 'many' of parameter -limit is not of type integer"},
      {"-l", "100001", "value '100001' of parameter -limit is not in the range 0 to 100000"},
      {"-limit", "-1", "value '-1' of parameter -limit is not in the range 0 to 100000"},
      {"-cutoff", "1.5", "value '1.5' of parameter -cutoff is not at most 1"},
      {"-cutoff", "nan", "value 'nan' of parameter -cutoff is not of type float"},
      {"-threads", "-1", "value '-1' of parameter -threads is not of type unsigned"},
      {"-descending", "maybe", "value 'maybe' of parameter -descending is not of type bool"},
      {"-measure", "dice", "value 'dice' of parameter -measure is not one of Dice, Cosine"},
      {"-colour", "red", "unknown parameter -colour for value 'red'"},
  };
  QXInterface itf = MakeInterface();
  for (const auto& c : cases) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(itf.Set(c.name, c.value)); }),
              Reports{std::string("Warning: QXInterface::Set, ") + c.report});
    EXPECT_FALSE(itf.IsSet(c.name));
  }
  EXPECT_TRUE(itf.Set("-limit", "0") && itf.Set("-limit", "100000") && itf.Set("-cutoff", "-5"));
}

TEST(InterfaceTest, ReadingTheWrongTypeOrANumberThatDoesNotFitIsReported) {
  QXInterface itf = MakeInterface();
  itf.Set("-in", "5");
  itf.AddParameter(QXParameter("-negative", Integer).SetDefault("-3"));
  itf.AddParameter(QXParameter("-large", Integer).SetDefault("4294967295"));
  int number = 77;
  unsigned size = 78;
  std::string text = "old";
  const std::string wrongType = " is not of requested type";
  const std::pair<const char*, std::string> cases[] = {
      {"-limit", "requested parameter -limit" + wrongType},
      {"-cutoff", "requested parameter -cutoff has no value"},
      {"-colour", "unknown parameter -colour"},
  };
  for (const auto& [name, report] : cases) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(itf.Get(name, text)); }),
              Reports{"Warning: QXInterface::Get, " + report});
  }
  const Reports reports = ReportsOf([&] {
    EXPECT_FALSE(itf.Get("-in", number));
    EXPECT_FALSE(itf.Get("-large", number));
    EXPECT_FALSE(itf.Get("-negative", size));
    EXPECT_EQ(itf.Get<bool>("-limit"), false);
  });
  EXPECT_EQ(reports.size(), 4u);
  EXPECT_EQ(number, 77);
  EXPECT_EQ(size, 78u);
  EXPECT_EQ(text, "old");
  EXPECT_EQ(itf.Get<unsigned>("-large"), 4294967295u);
  EXPECT_EQ(itf.Get<int>("-negative"), -3);
}

TEST(InterfaceTest, BoolsAndFractionsAreRead) {
  QXInterface itf = MakeInterface();
  for (const bool expected : {true, false}) {
    const std::vector<const char*> on = {"true", "TRUE", "yes", "on", "1"}, off = {"false", "No", "off", "0"};
    for (const char* text : expected ? on : off) {
      ASSERT_TRUE(itf.Set("-descending", text));
      EXPECT_EQ(itf.Get<bool>("-descending"), expected) << text;
    }
  }
  ASSERT_TRUE(itf.Set("-cutoff", "0.7"));
  EXPECT_EQ(itf.Get<float>("-cutoff"), 0.7f);
  EXPECT_EQ(itf.Get<double>("-cutoff"), 0.7);
}

TEST(InterfaceTest, TakenNamesAreRefused) {
  QXInterface itf = MakeInterface();
  QXInterface clashing("more");
  clashing.AddParameter(QXParameter("-m", Integer));
  const Reports reports = ReportsOf([&] {
    EXPECT_FALSE(itf.AddParameter(QXParameter("--in", Integer)));
    EXPECT_FALSE(itf.AddParameter(QXParameter("-l", Integer)));
    EXPECT_FALSE(itf.AddParameter(QXParameter("-new", Integer).SetAlias("-limit")));
    EXPECT_FALSE(itf.AddParameter(QXParameter("-other", Integer).SetKeyless(1)));
    EXPECT_FALSE(itf.AddParameter(QXParameter("--", Integer)));
    EXPECT_FALSE(itf.AddInterface(QXInterface("search options")));
    EXPECT_FALSE(itf.AddInterface(clashing));
  });
  EXPECT_EQ(reports.size(), 7u);
  EXPECT_EQ(itf.GetParameters().size(), 4u);
  EXPECT_EQ(itf.GetInterfaces().size(), 1u);
}

TEST(InterfaceTest, HelpShowsEveryVisibleParameterUnderItsGroup) {
  EXPECT_EQ(QXGetInterfaceHelp(MakeInterface(), "Usage: tool FILE"),
            "Usage: tool FILE\n"
            "Searches\n"
            "\n"
            "Parameters:\n"
            "  -in <string>, argument 1, required\n"
            "      Input file\n"
            "  -descending <bool>\n"
            "      Default: true\n"
            "  -threads <unsigned>\n"
            "\n"
            "search options:\n"
            "  -limit, -l <integer>\n"
            "      Maximum number of hits\n"
            "      Default: 10\n"
            "      Values: 0 to 100000\n"
            "      Zero returns all\n"
            "      API : SetLimit method\n"
            "  -measure, -m <string>\n"
            "      Values: Dice, Cosine\n"
            "  -cutoff <float>\n"
            "      Values: at most 1\n");
}

}  // namespace
}  // namespace QXSystem
