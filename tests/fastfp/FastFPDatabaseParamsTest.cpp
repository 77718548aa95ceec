#include "QXFingrix/QXFastFPDatabaseParams.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <functional>

#include "QXFingrix/QXConvert.h"
#include "QXFingrix/QXFPType.h"
#include "fastfp/FpbinFile.h"

namespace QXFingrix {
namespace {

using namespace Testing;
using QXSystem::QXErrorCollector;

std::string Header(const std::string& text, std::uint64_t numWords, std::uint64_t num,
                   std::size_t size = 800) {
  std::string bytes = text;
  bytes.resize(784, '\0');
  bytes.append(reinterpret_cast<const char*>(&numWords), 8).append(reinterpret_cast<const char*>(&num), 8);
  bytes.resize(size, '\0');
  return bytes;
}

TEST(FastFPDatabaseParams, HeaderIsWhatTheFormatSays) {
  QXFastFPDatabaseParams params;
  EXPECT_EQ(QXWriteFastFPDatabaseHeaderBlob(params), "");
  params.SetMolFileName("../some dir/mols.smi");
  params.SetFPTypeBase(PathType(2048));
  params.SetNumFingerPrints(3);
  EXPECT_EQ(QXWriteFastFPDatabaseHeaderBlob(params),
            Header("LE\n../some dir/mols.smi\n" + PathType(2048)->GetFPTypeString() + "\n3\n", 32, 3));
  EXPECT_EQ(QXGetFPDatabaseFileSize(3, PathType(2048)), 1616U);
  EXPECT_EQ(QXGetFPDatabaseFileSize(10, PathType(1024)), 800U + 10 * 144);
}

TEST(FastFPDatabaseParams, OverlongNameIsCutByTheWordsBehindTheText) {
  QXFastFPDatabaseParams params;
  params.SetMolFileName(std::string(2000, 'a'));
  params.SetFPTypeBase(PathType(1024));
  params.SetNumFingerPrints(7);
  EXPECT_EQ(QXWriteFastFPDatabaseHeaderBlob(params), Header("LE\n" + std::string(781, 'a'), 16, 7));
  const std::size_t room = 784 - (std::string("LE\n\n\n7\n") + PathType(1024)->GetFPTypeString()).size();
  EXPECT_EQ(QXGetFPDatabaseHeaderExcess(params), 2000 - room);
  params.SetMolFileName(std::string(room, 'a'));
  EXPECT_EQ(QXGetFPDatabaseHeaderExcess(params), 0U);
}

TEST(FastFPDatabaseParams, HeaderIsReadBack) {
  const TempDir dir;
  const std::string file = dir.File("x.fpbin");
  for (const bool isLittleEndian : {true, false}) {
    WriteFile(file, Header((isLittleEndian ? "LE\nm.smi\n" : "BE\nm.smi\n") + PathTypeString(1024) + "\n5\n",
                           16, 5, 900));
    const QXErrorCollector reports;
    const QXFastFPDatabaseParams params(file);
    EXPECT_TRUE(params.IsValid());
    EXPECT_EQ(params.IsLittleEndian(), isLittleEndian);
    EXPECT_EQ(params.GetMolFileName(), "m.smi");
    EXPECT_EQ(params.GetFPTypeBase(), PathType(1024));
    EXPECT_EQ(params.NumFingerPrints(), 5U);
    EXPECT_EQ(params.GetNumWords(), 16U);
    EXPECT_EQ(params.GetFileSize(),
              900U);  // the header reader does not ask whether the records are all there
    EXPECT_EQ(reports.Count(), 0U);
  }
}

TEST(FastFPDatabaseParams, UnsoundHeadersAreRefusedInWords) {
  const TempDir dir;
  const std::string file = dir.File("x.fpbin");
  const std::string header = file + " header";
  const std::string type = PathTypeString(1024);
  const std::string inconsistent = "inconsistent number of fingerprints in " + header;
  const std::string noName = "cannot read molecule filename from " + header;
  const std::string noType = "cannot read fingerprint type from " + header;
  const std::string noCount = "cannot read number of fingerprints from " + header;
  const std::string badCount = "invalid number of fingerprints in " + header;
  const auto cut = [](std::string text, std::size_t size) {
    text.resize(size, 'x');
    return text;
  };
  const std::pair<std::string, std::string> cases[] = {
      {"", "invalid fingerprint database file " + file},
      {std::string(100, 'L'), "invalid fingerprint database file " + file},
      {Header("XY\nm\n" + type + "\n5\n", 16, 5), "invalid endianess 'XY' in " + header},
      {Header("L\nm\n" + type + "\n5\n", 16, 5), "invalid endianess ' L' in " + header},
      {std::string(5000, '\n'), "invalid endianess '  ' in " + header},
      {cut("LE", 5000), noName},
      {cut("LE\nm", 2000), noName},
      {cut("LE\nm\nPath", 2000), noType},
      {cut("LE\nm\n" + type + "\n12", 2000), noCount},
      {Header("LE\nm\n" + type + "\n5 \n", 16, 5), badCount},
      {Header("LE\nm\n" + type + "\n-5\n", 16, 5), badCount},
      {Header("LE\nm\n" + type + "\n18446744073709551616\n", 16, 5), badCount},
      {Header("LE\nm\n" + type + "\n5" + '\0' + "\n", 16, 5), badCount},
      {Header("LE\nm\n" + type + "\n5\n", 16, 6), inconsistent},
      {Header("LE\nm\n" + type + "\n5\n", 16, 5, 799), inconsistent},  // ends inside the last word
      {Header("LE\nm\n" + type + "\n5\n", 16, 5, 300), inconsistent},
  };
  for (const auto& [bytes, text] : cases) {
    WriteFile(file, bytes);
    const QXErrorCollector reports;
    EXPECT_FALSE(QXFastFPDatabaseParams(file).IsValid());
    EXPECT_EQ(Texts(reports), Strings{"QXFastFPDatabaseParams() " + text});
  }
  for (const std::string& badType : {std::string("Unknown,ver=2.0.0"), type + '\0' + "more"}) {
    WriteFile(file, Header("LE\nm\n" + badType + "\n5\n", 16, 5));
    const QXErrorCollector reports;
    EXPECT_FALSE(QXFastFPDatabaseParams(file).IsValid());
    ASSERT_FALSE(Texts(reports).empty());
    EXPECT_EQ(Texts(reports).back(), "QXFastFPDatabaseParams() invalid fingerprint type in " + header);
  }
}

TEST(FastFPDatabaseParams, WhatIsNoFileIsRefusedWithoutWaiting) {
  const TempDir dir;
  mkdir(dir.File("folder.fpbin").c_str(), 0700);
  mkfifo(dir.File("pipe.fpbin").c_str(), 0600);
  const std::pair<std::string, std::string> cases[] = {
      {dir.File("absent.fpbin"), "cannot open fingerprint database file "},
      {dir.File("folder.fpbin"), "invalid fingerprint database file "},
      {dir.File("pipe.fpbin"), "invalid fingerprint database file "},
  };
  for (const auto& [file, text] : cases) {
    const QXErrorCollector reports;
    EXPECT_FALSE(QXFastFPDatabaseParams(file).IsValid());
    EXPECT_EQ(Texts(reports), Strings{"QXFastFPDatabaseParams() " + text + file});
  }
}

TEST(FastFPDatabaseParams, HeaderGoesIntoAMappingThatHasRoom) {
  const TempDir dir;
  QXFastFPDatabaseParams params;
  MMapOutputFile file;
  ASSERT_TRUE(file.Open(dir.File("x.fpbin"), 1616));
  EXPECT_FALSE(QXWriteFastFPDatabaseParams(file, params));
  params.SetFPTypeBase(PathType(2048));
  params.SetNumFingerPrints(3);
  EXPECT_TRUE(QXWriteFastFPDatabaseParams(file, params));
  EXPECT_EQ(std::string(file.GetData(), 800), QXWriteFastFPDatabaseHeaderBlob(params));
  file.Close();
  EXPECT_FALSE(QXWriteFastFPDatabaseParams(file, params));
  ASSERT_TRUE(file.Open(dir.File("x.fpbin"), 799));
  EXPECT_FALSE(QXWriteFastFPDatabaseParams(file, params));
}

TEST(FastFingerPrintBlob, HoldsIndexCountAndBits) {
  QXFingerPrint fp;
  {
    const QXErrorCollector reports;
    EXPECT_EQ(QXWriteFastFingerPrintBlob(1, fp), "");
    fp.SetFPTypeBase(PathType(1024));
    fp.SetSize(0);
    EXPECT_EQ(QXWriteFastFingerPrintBlob(1, fp), "");
    EXPECT_EQ(Texts(reports), (Strings{"QXWriteFastFingerPrintBlob() : uninitialized fingerprint!",
                                       "QXWriteFastFingerPrintBlob(): cannot access fingerprint data!"}));
  }
  fp.SetSize(1000);
  fp.SetBitOn(0);
  fp.SetBitOn(13);
  fp.SetBitOn(64 * 15 + 3);
  std::string expected(8 + 8 + 16 * 8, '\0');
  expected[0] = 0x21;
  expected[1] = 0x43;
  expected[8] = 3;
  expected[16] = 1;
  expected[16 + 1] = 1 << 5;
  expected[16 + 15 * 8] = 1 << 3;
  EXPECT_EQ(QXWriteFastFingerPrintBlob(0x4321, fp), expected);
}

TEST(Convert, ValuesAreLittleEndian) {
  EXPECT_TRUE(QXIsUInit64LittleEndian());
  const std::string bytes = QXConvert(0x1122334455667788UL);
  EXPECT_EQ(bytes, "\x88\x77\x66\x55\x44\x33\x22\x11");
  EXPECT_EQ(QXConvert(bytes), 0x1122334455667788UL);
  EXPECT_EQ(QXConvert(reinterpret_cast<const unsigned char*>(bytes.data())), 0x1122334455667788UL);
  for (const char* const other : {"", "1234567", "123456789"}) EXPECT_EQ(QXConvert(std::string(other)), 0U);
}

TEST(Convert, HeaderIsPaddedOrCutToOneHundredWords) {
  for (const std::size_t size : {0, 1, 13, 799, 800, 801, 2000}) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + 1);
    std::vector<unsigned long> words;
    QXConvertHeader(words, bytes);
    ASSERT_EQ(words.size(), 100U);
    std::string back;
    QXConvertHeader(back, words);
    bytes.resize(800, '\0');
    EXPECT_EQ(back, bytes);
    words.resize(size % 3 ? 50 : 200, 1);
    QXConvertHeader(back, words);
    EXPECT_EQ(back.size(), 800U);
  }
}

TEST(Convert, FingerprintsOfAnySizeComeBack) {
  std::mt19937_64 random(1);
  for (const unsigned numBits : {1U, 63U, 64U, 65U, 128U, 200U, 1000U, 2048U, 65535U}) {
    const QXFPTypeBase* const type = PathType(numBits);
    const QXFingerPrint fp = RandomFP(type, random, 0.4);
    for (const unsigned method : {1U, QXGetPopCountMethod()}) {
      std::vector<unsigned long> words;
      EXPECT_EQ(QXConvertFP(words, fp, QXGetPopCountFunc(method)), fp.CountBits());
      ASSERT_EQ(words.size(), (numBits + 63) / 64);
      const auto* const bytes = reinterpret_cast<const unsigned char*>(words.data());
      QXFingerPrint back[3];
      EXPECT_TRUE(QXConvertFP(back[0], type, words));
      EXPECT_TRUE(QXConvertFP(back[1], type, words.data(), words.size()));
      EXPECT_TRUE(QXConvertFP(back[2], type, bytes, words.size() * 8));
      for (const QXFingerPrint& other : back) EXPECT_TRUE(other == fp);
    }
  }
}

TEST(Convert, TooLittleDataLeavesTheFingerprintAlone) {
  std::mt19937_64 random(1);
  const QXFingerPrint before = RandomFP(PathType(256), random, 0.4);
  QXFingerPrint fp = before;
  const std::vector<unsigned long> words(15, ~0UL);
  EXPECT_FALSE(QXConvertFP(fp, PathType(1024), words));
  EXPECT_FALSE(QXConvertFP(fp, PathType(1024), std::vector<unsigned long>()));
  EXPECT_FALSE(QXConvertFP(fp, nullptr, words));
  EXPECT_TRUE(fp == before);
  EXPECT_TRUE(QXConvertFP(fp, QXGetLingoFPType(8192), words));  // a kind without a size of its own
  EXPECT_EQ(fp.GetSize(), 15U * 64);
  std::vector<unsigned long> out(3, 1);
  EXPECT_EQ(QXConvertFP(out, before, nullptr), 0U);
}

TEST(PopCount, MethodsAgreeAndUnknownOnesHaveNoRoutine) {
  std::mt19937_64 random(1);
  std::vector<unsigned long> words(64);
  for (int round = 0; round < 100; ++round) {
    for (unsigned long& word : words) word = round == 0 ? 0 : round == 1 ? ~0UL : random() & random();
    const unsigned long numWords = 4 * (random() % 17);
    unsigned long expected = 0;
    for (unsigned long i = 0; i < numWords * 64; ++i) expected += (words[i / 64] >> (i % 64)) & 1;
    EXPECT_EQ(QXGetPopCountFunc(1)(words.data(), numWords), expected);
    EXPECT_EQ(QXGetPopCountFunc(QXGetPopCountMethod())(words.data(), numWords), expected);
  }
  EXPECT_EQ(QXGetPopCountFunc(1), &QXPopCountBitCount);
  EXPECT_EQ(QXGetPopCountFunc(2), &QXPopCountPOPCNT);
  for (const unsigned method : {0U, 3U, 4294967295U}) EXPECT_EQ(QXGetPopCountFunc(method), nullptr);
  EXPECT_EQ(QXGetPopCountMethod(),
            __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("popcnt") ? 2U : 1U);
  EXPECT_EQ(QXGetPopCountFingerprintSizeUnit(), 256U);
  EXPECT_TRUE(QXIsFastFPDatabaseReady());
}

TEST(MMapFile, FailuresAreErrorsAndLeaveItClosed) {
  const TempDir dir;
  const std::string file = dir.File("x");
  const std::string absent = dir.File("no/x");
  const std::string pipe = dir.File("pipe");
  WriteFile(file, "0123456789");
  mkfifo(pipe.c_str(), 0600);
  struct Case {
    const char* name;
    std::function<bool()> open;
    std::string text;
  };
  MMapInputFile in;
  MMapOutputFile out;
  const Case cases[] = {
      {"absent", [&] { return in.Open(absent, 10); }, "Error opening file for reading: " + absent},
      {"too short", [&] { return in.Open(file, 11); }, "Error mmapping the file: " + file},
      {"pipe", [&] { return in.Open(pipe, 10); }, "Error mmapping the file: " + pipe},
      {"nothing", [&] { return in.Open(file, 0); }, "Error mmapping the file: " + file},
      {"no folder", [&] { return out.Open(absent, 10); }, "Error opening file for writing: " + absent},
      {"length 0", [&] { return out.Open(file, 0); }, "Error calling lseek() to 'stretch' the file"},
      {"negative", [&] { return out.Open(file, ~std::size_t{0}); },
       "Error calling lseek() to 'stretch' the file"},
  };
  for (const Case& test : cases) {
    const QXErrorCollector reports;
    EXPECT_FALSE(test.open()) << test.name;
    ASSERT_EQ(reports.Count(), 1U) << test.name;
    EXPECT_EQ(reports.Messages()[0].text, test.text);
    EXPECT_EQ(reports.Messages()[0].level, QXSystem::QXErrorLevel::Error);
    EXPECT_EQ(in.GetData(), nullptr);
    EXPECT_EQ(out.GetData(), nullptr);
  }
}

// A file without its blocks would end the process when it is written to on a full disk.
TEST(MMapFile, DiskSpaceIsReserved) {
  const TempDir dir;
  constexpr std::size_t length = 1 << 20;
  MMapOutputFile out;
  ASSERT_TRUE(out.Open(dir.File("x"), length));
  struct stat status {};
  ASSERT_EQ(stat(dir.File("x").c_str(), &status), 0);
  EXPECT_GE(static_cast<std::size_t>(status.st_blocks) * 512, length);
}

TEST(MMapFile, FileThatMayNotGrowThatLargeIsReported) {
  const TempDir dir;
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{4096, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  MMapOutputFile out;
  const QXErrorCollector reports;
  EXPECT_FALSE(out.Open(dir.File("x"), 8192));
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(Texts(reports), Strings{"Error writing last byte of the file"});
  EXPECT_EQ(std::filesystem::file_size(dir.File("x")), 0U);
}

TEST(MMapFile, WritesThroughAndReopens) {
  const TempDir dir;
  const std::string file = dir.File("x");
  WriteFile(file, std::string(100, 'x'));
  MMapOutputFile out;
  for (const std::string text : {"hello", "longer text"}) {
    ASSERT_TRUE(out.Open(file, text.size() + 1));
    EXPECT_EQ(out.GetData()[0], '\0');
    text.copy(out.GetData(), text.size());
    out.Close();
    out.Close();
    EXPECT_EQ(ReadFile(file), text + '\0');
    MMapInputFile in;
    ASSERT_TRUE(in.Open(file, 3));
    ASSERT_TRUE(in.Open(file, text.size()));
    EXPECT_EQ(std::string(in.GetData(), in.GetLength()), text);
  }
  TempDir other;
  ASSERT_TRUE(out.Open(other.File("new"), 1));
  EXPECT_EQ(std::filesystem::status(other.File("new")).permissions(), std::filesystem::perms(0600));
}

}  // namespace
}  // namespace QXFingrix
