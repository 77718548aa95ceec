#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "QXSystem/QXInterface.h"
#include "Reports.h"

namespace QXSystem {
namespace {

using namespace QXTest;
using enum QXParameterType;
using Arguments = std::vector<const char*>;

QXInterface MakeInterface() {
  QXInterface itf("tool");
  itf.AddParameter(QXParameter("-in", String).SetKeyless(1).SetRequired(true));
  itf.AddParameter(QXParameter("-out", String).SetKeyless(2).SetAlias("-o"));
  itf.AddParameter(QXParameter("-verbose", Bool).SetDefault("false"));
  QXInterface search("search options");
  search.AddParameter(QXParameter("-limit", Integer).SetAlias("-l").SetLegalRange("0", "100"));
  search.AddParameter(QXParameter("-cutoff", Float));
  itf.AddInterface(search);
  return itf;
}

QXParseResult Parse(QXInterface& itf, Arguments arguments) {
  arguments.insert(arguments.begin(), "tool");
  return QXParseCommandLine(itf, static_cast<int>(arguments.size()), arguments.data());
}

TEST(CommandLineTest, EverySpellingSetsTheSameValues) {
  using Values = std::map<std::string, std::string>;
  const std::pair<Arguments, Values> cases[] = {
      // exactly the parameters that are set
      {{"a.smi"}, {{"in", "a.smi"}}},
      {{"a.smi", "b"}, {{"in", "a.smi"}, {"out", "b"}}},
      {{"-limit", "5", "a"}, {{"in", "a"}, {"limit", "5"}}},
      {{"a", "--limit", "5"}, {{"in", "a"}, {"limit", "5"}}},
      {{"--limit=5", "a"}, {{"in", "a"}, {"limit", "5"}}},
      {{"-l=5", "a"}, {{"in", "a"}, {"limit", "5"}}},
      {{"-l", "5", "a"}, {{"in", "a"}, {"limit", "5"}}},
      {{"-limit", "5", "-limit", "6", "a"}, {{"in", "a"}, {"limit", "6"}}},
      {{"-in", "C=O", "b"}, {{"in", "C=O"}, {"out", "b"}}},
      {{"b", "-in=C=O"}, {{"in", "C=O"}, {"out", "b"}}},
      {{"-verbose", "a"}, {{"in", "a"}, {"verbose", "true"}}},
      {{"-verbose", "false", "a"}, {{"in", "a"}, {"verbose", "false"}}},
      {{"--verbose=off", "a"}, {{"in", "a"}, {"verbose", "off"}}},
      {{"a", "-verbose"}, {{"in", "a"}, {"verbose", "true"}}},
      {{"-cutoff", "-0.5", "a"}, {{"in", "a"}, {"cutoff", "-0.5"}}},
      {{"-", "-1e3"}, {{"in", "-"}, {"out", "-1e3"}}},
      {{"-o", "-", "a"}, {{"in", "a"}, {"out", "-"}}},
      {{"--", "-limit", "--"}, {{"in", "-limit"}, {"out", "--"}}},
      {{"-in=", "b"}, {{"in", ""}, {"out", "b"}}},
  };
  for (const auto& [arguments, expected] : cases) {
    QXInterface itf = MakeInterface();
    EXPECT_EQ(Parse(itf, arguments), QXParseResult::Ok);
    Values values;
    for (const char* name : {"in", "out", "verbose", "limit", "cutoff"}) {
      if (itf.IsSet(name)) values[name] = itf.GetValueText(name);
    }
    EXPECT_EQ(values, expected) << testing::PrintToString(arguments);
  }
}

TEST(CommandLineTest, BadLinesAreReportedOnceAndSetNothing) {
  const std::pair<Arguments, std::string> cases[] = {
      {{}, "parameter -in is required"},
      {{"a", "-limt", "5"}, "unknown option -limt, did you mean -limit?"},
      {{"a", "--verb"}, "unknown option --verb, did you mean -verbose?"},
      {{"a", "-zzzzzz=1"}, "unknown option -zzzzzz"},
      {{"a", "-limit"}, "parameter -limit needs a value of type integer"},
      {{"a", "-limit", "-verbose"}, "parameter -limit needs a value of type integer"},
      {{"a", "-limit", "--"}, "parameter -limit needs a value of type integer"},
      {{"a", "-l", "x"}, "value 'x' of parameter -limit is not of type integer"},
      {{"a", "-limit=101"}, "value '101' of parameter -limit is not in the range 0 to 100"},
      {{"a", "-verbose=perhaps"}, "value 'perhaps' of parameter -verbose is not of type bool"},
      {{"a", "b", "c"}, "unexpected argument 'c'"},
      {{"-in", "a", "b", "c"}, "unexpected argument 'c'"},
  };
  for (const auto& [arguments, report] : cases) {
    QXInterface itf = MakeInterface();
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(Parse(itf, arguments), QXParseResult::Error); }),
              Reports{"Warning: QXParseCommandLine, " + report});
    EXPECT_FALSE(itf.IsSet("-in"));
  }
}

TEST(CommandLineTest, HelpIsGivenAtOnceUnlessTheNameIsTaken) {
  for (const char* option : {"-h", "--help", "-help"}) {
    QXInterface itf = MakeInterface();
    EXPECT_EQ(ReportsOf([&] {
                EXPECT_EQ(Parse(itf, {"a", option, "-limit", "x"}), QXParseResult::Help);
              }),
              silence);
    EXPECT_FALSE(itf.IsSet("-in"));
  }
  QXInterface itf = MakeInterface();
  itf.AddParameter(QXParameter("-height", Integer).SetAlias("-h"));
  EXPECT_EQ(Parse(itf, {"a", "-h", "5"}), QXParseResult::Ok);
  EXPECT_EQ(itf.Get<int>("-height"), 5);
}

TEST(CommandLineTest, ValuesSetBeforeServeAsDefaults) {
  QXInterface itf = MakeInterface();
  itf.Set("-in", "before");
  EXPECT_EQ(Parse(itf, {"-limit", "5"}), QXParseResult::Ok);
  EXPECT_EQ(itf.GetValueText("-in"), "before");
  EXPECT_EQ(Parse(itf, {"after"}), QXParseResult::Ok);
  EXPECT_EQ(itf.GetValueText("-in"), "after");
  EXPECT_EQ(QXParseCommandLine(itf, 0, nullptr), QXParseResult::Ok);
}

}  // namespace
}  // namespace QXSystem
