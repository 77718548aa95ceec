#include "QXSystem/QXErrorHandler.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace QXSystem {
namespace {

// Runs before main(): the handler must work in the static initialisers of other files, in whatever order.
std::vector<QXErrorMessage> ReportFromStaticInitialiser() {
  QXErrorCollector collector;
  QXThrow.Warning("%s", "early");
  return collector.Messages();
}
const std::vector<QXErrorMessage> earlyMessages = ReportFromStaticInitialiser();

// Puts the handler back as it was, whatever a test does to it.
class ErrorHandlerTest : public testing::Test {
 protected:
  ~ErrorHandlerTest() override {
    QXThrow.SetSink({});
    QXThrow.SetLevel(QXErrorLevel::Info);
  }

  // What `action` prints to standard error.
  template <class Action>
  static std::string Printed(Action action) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
  }
};

TEST_F(ErrorHandlerTest, WorksInStaticInitialisers) {
  ASSERT_EQ(earlyMessages.size(), 1u);
  EXPECT_EQ(earlyMessages[0].text, "early");
}

TEST_F(ErrorHandlerTest, PrintsALineForEachReportFromItsLevelUp) {
  const auto reportAll = [] {
    QXThrow.Debug("d");
    QXThrow.Verbose("%d of %s", 3, "x");
    QXThrow.Info("i");
    QXThrow.Warning("w");
    QXThrow.Error("e");
    QXThrow.Report(QXErrorLevel::Error, "100% %s");
  };
  EXPECT_EQ(Printed(reportAll), "Info: i\nWarning: w\nError: e\nError: 100% %s\n");
  QXThrow.SetLevel(QXErrorLevel::Error);
  EXPECT_EQ(Printed(reportAll), "Error: e\nError: 100% %s\n");
  QXThrow.SetLevel(QXErrorLevel::Debug);
  EXPECT_EQ(Printed(reportAll), "Debug: d\nVerbose: 3 of x\nInfo: i\nWarning: w\nError: e\nError: 100% %s\n");
}

TEST_F(ErrorHandlerTest, LongTextsAreKeptWhole) {
  QXErrorCollector collector;
  for (const std::size_t length : {511, 512, 513, 100000}) {
    const std::string text(length, 'x');
    QXThrow.Warning("%s", text.c_str());
    EXPECT_EQ(collector.Messages().back().text, text);
  }
}

TEST_F(ErrorHandlerTest, SinkReplacesStandardErrorUntilItIsRemoved) {
  std::vector<QXErrorMessage> received;
  QXThrow.SetSink([&](QXErrorLevel level, const std::string& text) { received.push_back({level, text}); });
  EXPECT_EQ(Printed([] { QXThrow.Warning("to the sink"); }), "");
  ASSERT_EQ(received.size(), 1u);
  EXPECT_EQ(received[0].level, QXErrorLevel::Warning);
  EXPECT_EQ(received[0].text, "to the sink");
  QXThrow.SetSink({});
  EXPECT_EQ(Printed([] { QXThrow.Warning("again"); }), "Warning: again\n");
  EXPECT_EQ(received.size(), 1u);
}

TEST_F(ErrorHandlerTest, SinkMayReportReplaceItselfOrThrow) {
  QXThrow.SetSink([](QXErrorLevel, const std::string& text) { QXThrow.Error("nested %s", text.c_str()); });
  EXPECT_EQ(Printed([] { QXThrow.Warning("a"); }), "Error: nested a\n");
  QXThrow.SetSink([](QXErrorLevel, const std::string&) { throw std::runtime_error("sink"); });
  EXPECT_EQ(Printed([] { EXPECT_NO_THROW(QXThrow.Warning("b")); }), "Warning: b\n");
  QXThrow.SetSink([](QXErrorLevel, const std::string&) { QXThrow.SetSink({}); });
  EXPECT_EQ(Printed([] { QXThrow.Warning("c"); }), "");
  EXPECT_EQ(Printed([] { QXThrow.Warning("d"); }), "Warning: d\n");
}

TEST_F(ErrorHandlerTest, InnermostCollectorTakesReportsAtItsOwnLevel) {
  QXErrorCollector outer;
  QXThrow.SetLevel(QXErrorLevel::Error);
  QXThrow.Info("for the outer");
  {
    QXErrorCollector inner(QXErrorLevel::Debug);
    EXPECT_EQ(Printed([] { QXThrow.Debug("for the inner"); }), "");
    EXPECT_EQ(inner.Count(), 1u);
    inner.Clear();
    EXPECT_EQ(inner.Count(), 0u);
  }
  QXThrow.Verbose("for nobody");
  QXThrow.Warning("for the outer too");
  ASSERT_EQ(outer.Count(), 2u);
  EXPECT_EQ(outer.Messages()[1].text, "for the outer too");
}

TEST_F(ErrorHandlerTest, CollectorsMayEndInAnyOrder) {
  auto first = std::make_unique<QXErrorCollector>();
  QXErrorCollector second;
  first.reset();
  QXThrow.Info("x");
  EXPECT_EQ(second.Count(), 1u);
}

TEST_F(ErrorHandlerTest, ReportsOfManyThreadsAllArrive) {
  constexpr int numThreads = 8;
  constexpr int numReports = 500;
  QXErrorCollector collector;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < numThreads; ++thread) {
      threads.emplace_back([thread] {
        for (int i = 0; i < numReports; ++i) QXThrow.Warning("%d", thread);
      });
    }
  }
  std::vector<int> counts(numThreads);
  for (const QXErrorMessage& message : collector.Messages()) ++counts.at(std::stoul(message.text));
  EXPECT_EQ(counts, std::vector<int>(numThreads, numReports));
}

TEST_F(ErrorHandlerTest, SinksMayBeReplacedWhileOthersReport) {
  QXThrow.SetSink([](QXErrorLevel, const std::string&) {});
  std::jthread reporter([](const std::stop_token& stop) {
    while (!stop.stop_requested()) QXThrow.Warning("x");
  });
  std::atomic<int> numReceived = 0;
  while (numReceived < 1000) {
    QXThrow.SetSink([&numReceived](QXErrorLevel, const std::string&) { ++numReceived; });
  }
  reporter.request_stop();
  reporter.join();
}

}  // namespace
}  // namespace QXSystem
