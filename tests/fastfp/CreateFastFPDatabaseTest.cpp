#include "QXFingrix/QXCreateFastFPDatabase.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <set>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXMolDatabase.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFastFPDatabase.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXPlatform/QXProcessor.h"
#include "fastfp/FpbinFile.h"

namespace QXFingrix {
namespace {

using namespace Testing;
using QXSystem::QXErrorCollector;

const std::string caller = "QXCreateFastFPDatabaseFile() ";

class CreateFastFPDatabase : public testing::Test {
 protected:
  static std::uint64_t Word(const std::string& bytes, std::size_t at) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + at, 8);
    return word;
  }

  TempDir dir_;
  const std::string mols_ = dir_.File("mols.smi");
  const std::string file_ = dir_.File("x.fpbin");
};

TEST_F(CreateFastFPDatabase, ThreeMoleculesGiveTheBytesOfTheFormat) {
  WriteFile(mols_, "CCO ethanol\nc1ccccc1\nCC(=O)O\n");
  ASSERT_TRUE(QXCreateFastFPDatabaseFile(file_, mols_, PathType(2048)));
  const std::string bytes = ReadFile(file_);
  ASSERT_EQ(bytes.size(), 1616U);
  const std::string text = "LE\n" + mols_ + "\n" + PathType(2048)->GetFPTypeString() + "\n3\n";
  EXPECT_EQ(bytes.substr(0, 784), text + std::string(784 - text.size(), '\0'));
  EXPECT_EQ(Word(bytes, 784), 32U);
  EXPECT_EQ(Word(bytes, 792), 3U);
  EXPECT_EQ(Word(bytes, 1344), 2U);

  const char* const smiles[] = {"CCO", "c1ccccc1", "CC(=O)O"};
  for (std::uint64_t i = 0; i < 3; ++i) {
    QXChem::QXMolDatabase molecules;
    ASSERT_TRUE(molecules.Open(mols_));
    QXChem::QXGraphMol mol;
    ASSERT_TRUE(molecules.GetMolecule(mol, i)) << smiles[i];
    QXFingerPrint fp;
    ASSERT_TRUE(QXMakeFP(fp, mol, PathType(2048)));
    ASSERT_GT(fp.CountBits(), 0U);
    EXPECT_EQ(Word(bytes, 800 + i * 272), i);
    EXPECT_EQ(Word(bytes, 800 + i * 272 + 8), fp.CountBits());
    const std::string data(reinterpret_cast<const char*>(fp.GetData()), fp.GetDataSize());
    EXPECT_EQ(bytes.substr(800 + i * 272 + 16, 256), data);
  }
}

TEST_F(CreateFastFPDatabase, BytesDoNotDependOnThreads) {
  const std::string mols = QX_SOURCE_DIR "/data/molecules.smi";
  std::string expected;
  for (const unsigned numThreads : {1U, 2U, 8U}) {
    QXCreateFastFPDatabaseOptions options(PathType(1024));
    options.SetNumProcessors(numThreads);
    ASSERT_TRUE(QXCreateFastFPDatabaseFile(file_, mols, options));
    if (expected.empty()) expected = ReadFile(file_);
    EXPECT_TRUE(ReadFile(file_) == expected) << numThreads;
  }
  EXPECT_GT(expected.size(), 100000U);
}

TEST_F(CreateFastFPDatabase, UnreadableMoleculeKeepsItsPlace) {
  WriteFile(mols_, "CCO\n\nC1CC\nCCN\n");
  for (const unsigned numThreads : {1U, 2U}) {
    QXCreateFastFPDatabaseOptions options(PathType(1024));
    options.SetNumProcessors(numThreads);
    {
      const QXErrorCollector reports;
      ASSERT_TRUE(QXCreateFastFPDatabaseFile(file_, mols_, options));
      EXPECT_EQ(Texts(reports), (Strings{caller + "cannot access molecule with index 1",
                                         caller + "cannot access molecule with index 2"}));
    }
    const std::string bytes = ReadFile(file_);
    ASSERT_EQ(bytes.size(), 800U + 4 * 144);
    for (const std::uint64_t i : {1, 2}) {
      const std::string expected = std::string(1, static_cast<char>(i)) + std::string(143, '\0');
      EXPECT_EQ(bytes.substr(800 + i * 144, 144), expected);
    }
    EXPECT_EQ(Word(bytes, 800 + 3 * 144), 3U);
    EXPECT_GT(Word(bytes, 800 + 3 * 144 + 8), 0U);

    std::set<std::uint64_t> rejects;
    options.SetRejectHandler([&](std::uint64_t index, const std::string& reason) {
      rejects.insert(index);
      EXPECT_FALSE(reason.empty());
    });
    const QXErrorCollector reports;
    ASSERT_TRUE(QXCreateFastFPDatabaseFile(file_, mols_, options));
    EXPECT_EQ(rejects, (std::set<std::uint64_t>{1, 2}));
    EXPECT_EQ(reports.Count(), 0U);
    EXPECT_TRUE(ReadFile(file_) == bytes);
  }
}

TEST_F(CreateFastFPDatabase, ReasonIsToldAtVerboseLevel) {
  WriteFile(mols_, "C1CC\n");
  const QXErrorCollector reports(QXSystem::QXErrorLevel::Verbose);
  ASSERT_TRUE(QXCreateFastFPDatabaseFile(file_, mols_, PathType(1024)));
  ASSERT_EQ(reports.Count(), 2U);
  EXPECT_TRUE(Texts(reports)[1].starts_with(caller + "molecule with index 0: "));
}

TEST_F(CreateFastFPDatabase, ChecksComeInOrderAndLeaveNoFile) {
  const std::string absent = dir_.File("absent.smi");
  const std::string empty = dir_.File("empty.smi");
  WriteFile(empty, "");
  WriteFile(mols_, "CCO\n");
  const QXFPTypeBase* const odd = PathType(1000);
  struct Case {
    std::string fpbin, mols;
    const QXFPTypeBase* type;
    std::string text;
  };
  const Case cases[] = {
      {dir_.File("x.bin"), absent, nullptr, "fingerprint database file should have '.fpbin' file extension!"},
      {dir_.File("fpbin"), absent, nullptr, "fingerprint database file should have '.fpbin' file extension!"},
      {file_, absent, nullptr, "cannot open molecule file " + absent + "!"},
      {file_, empty, nullptr, "empty molecule database!"},
      {file_, mols_, nullptr, "invalid fingerprint pointer!"},
      {file_, mols_, QXGetUnhashedPathFPType(8192, 0, 5, 1, 1), "invalid fingerprint type!"},
      {file_, mols_, QXGetLingoFPType(8192),
       "invalid fingerprint type (only path, circular or tree allowed)!"},
      {file_, mols_, odd, "invalid fingerprint size (has to be multiple of 256)!"},
  };
  for (const Case& test : cases) {
    const QXErrorCollector reports;
    EXPECT_FALSE(QXCreateFastFPDatabaseFile(test.fpbin, test.mols, test.type));
    ASSERT_FALSE(Texts(reports).empty());
    EXPECT_EQ(Texts(reports).back(), caller + test.text);
    // A molecule database that cannot be opened says why before.
    EXPECT_EQ(reports.Count(), test.mols == absent && test.text.starts_with("cannot open") ? 2U : 1U);
    EXPECT_FALSE(std::filesystem::exists(test.fpbin));
  }
  const QXErrorCollector reports;
  const std::string unwritable = dir_.File("no/x.fpbin");
  EXPECT_FALSE(QXCreateFastFPDatabaseFile(unwritable, mols_, PathType(256)));
  EXPECT_EQ(Texts(reports), (Strings{"Error opening file for writing: " + unwritable,
                                     caller + ": unable to open fingerprint database file: " + unwritable}));
}

TEST_F(CreateFastFPDatabase, MoleculeFileIsNotOverwritten) {
  WriteFile(mols_, "CCO\n");
  std::filesystem::create_symlink(mols_, file_);
  std::filesystem::create_hard_link(mols_, dir_.File("y.fpbin"));
  for (const std::string& target : {file_, dir_.File("y.fpbin")}) {
    const QXErrorCollector reports;
    EXPECT_FALSE(QXCreateFastFPDatabaseFile(target, mols_, PathType(256)));
    EXPECT_EQ(Texts(reports), Strings{caller + ": unable to open fingerprint database file: " + target});
    EXPECT_EQ(ReadFile(mols_), "CCO\n");
  }
}

TEST_F(CreateFastFPDatabase, NameThatTheHeaderCannotHoldIsToldOf) {
  std::string folder = dir_.File("");
  while (folder.size() < 700) folder += std::string(100, 'd') + '/';
  std::filesystem::create_directories(folder);
  for (const std::string& mols : {folder + "mols.smi", dir_.File("two\nlines.smi")}) {
    WriteFile(mols, "CCO\n");
    const QXErrorCollector reports;
    EXPECT_TRUE(QXCreateFastFPDatabaseFile(file_, mols, PathType(256)));
    EXPECT_EQ(Texts(reports),
              Strings{caller + "molecule file name does not fit into the header of " + file_});
    EXPECT_FALSE(QXFastFPDatabase(file_).IsValid());
  }
}

class CountingTracer : public QXSystem::QXDots {
 public:
  CountingTracer(std::uint64_t& num, unsigned& totals)
      : QXDots(0, 0, "molecules", nullptr), num_(num), totals_(totals) {}
  std::unique_ptr<QXDots> CreateCopy() const override { return std::make_unique<CountingTracer>(*this); }
  void Update(unsigned n) override { num_ += n; }
  void Total() override { ++totals_; }

 private:
  std::uint64_t& num_;
  unsigned& totals_;
};

TEST_F(CreateFastFPDatabase, TracerCountsEveryMoleculeAndTotalsOnce) {
  std::string mols;
  for (int i = 0; i < 500; ++i) mols += i % 7 ? "CCO\n" : "bad\n";
  WriteFile(mols_, mols);
  std::uint64_t num = 0;
  unsigned totals = 0;
  QXCreateFastFPDatabaseOptions options(PathType(256));
  options.SetNumProcessors(3);
  options.SetTracer(CountingTracer(num, totals));
  options.SetRejectHandler([](std::uint64_t, const std::string&) {});
  const QXCreateFastFPDatabaseOptions copy = options;
  ASSERT_TRUE(QXCreateFastFPDatabaseFile(file_, mols_, copy));
  EXPECT_EQ(num, 500U);
  EXPECT_EQ(totals, 1U);
}

TEST_F(CreateFastFPDatabase, CountsOnACopyOfTheTracer) {
  WriteFile(mols_, "CCO\nCCN\n");
  const QXSystem::QXDots tracer(0, 0, "molecules", nullptr);
  QXCreateFastFPDatabaseOptions options(PathType(256));
  options.SetTracer(tracer);
  ASSERT_TRUE(QXCreateFastFPDatabaseFile(file_, mols_, options));
  EXPECT_EQ(options.GetTracer()->GetCount(), 0U);
  EXPECT_EQ(tracer.GetCount(), 0U);
}

TEST_F(CreateFastFPDatabase, ExceptionsOfACallerLoseNoRecord) {
  WriteFile(mols_, "CCO\nbad\nCCN\n");
  QXCreateFastFPDatabaseOptions options(PathType(256));
  options.SetNumProcessors(2);
  options.SetRejectHandler([](std::uint64_t, const std::string&) { throw std::bad_alloc(); });
  ASSERT_TRUE(QXCreateFastFPDatabaseFile(file_, mols_, options));
  const std::string bytes = ReadFile(file_);
  for (std::uint64_t i = 0; i < 3; ++i) {
    EXPECT_EQ(Word(bytes, 800 + i * 48), i);
    EXPECT_EQ(Word(bytes, 800 + i * 48 + 8) == 0, i == 1);
  }
}

TEST(CreateFastFPDatabaseOptions, ThreadsAreAtMostTwiceTheProcessors) {
  const unsigned available = QXPlatform::QXGetNumProcessors();
  QXCreateFastFPDatabaseOptions options(nullptr);
  const std::pair<unsigned, unsigned> cases[] = {
      {0, available}, {1, 1}, {2 * available, 2 * available}, {2 * available + 1, 2 * available}};
  for (const auto& [asked, expected] : cases) {
    options.SetNumProcessors(asked);
    EXPECT_EQ(options.GetNumProcessors(), expected);
  }
}

TEST_F(CreateFastFPDatabase, CompatibilityComparesTheFirstEntry) {
  const auto make = [&](const std::string& text) {
    WriteFile(mols_, text);
    QXErrorCollector quiet;
    EXPECT_TRUE(QXCreateFastFPDatabaseFile(file_, mols_, PathType(1024)));
  };
  const std::string name = "QXAreCompatibleDatabases() ";
  struct Case {
    const char* made;   // what the file was made from
    const char* asked;  // what it is compared with
    const char* text;   // why not; empty when compatible
  };
  const Case cases[] = {
      {"CCO\nCCN\n", "CCO\nCCCCC\n", ""},
      {"bad\nCCN\n", "worse\nCCN\n", ""},
      {"CCO\nCCN\n", "CCN\nCCO\n", "fingerprint mismatch!"},
      {"CCO\nCCN\n", "CCO\n", "different number of entries!"},
      {"CCO\nCCN\n", "", "empty molecule database!"},
      {"CCO\nCCN\n", "bad\nCCN\n", "cannot access molecule data!"},
  };
  for (const Case& test : cases) {
    make(test.made);
    const QXFastFPDatabase db(file_);
    WriteFile(dir_.File("asked.smi"), test.asked);
    QXChem::QXMolDatabase molecules;
    ASSERT_TRUE(molecules.Open(dir_.File("asked.smi")));
    const QXErrorCollector reports;
    const Strings expected = *test.text == '\0' ? Strings{} : Strings{name + test.text};
    EXPECT_EQ(QXAreCompatibleDatabases(molecules, db), expected.empty());
    EXPECT_EQ(Texts(reports), expected);
  }
  QXChem::QXMolDatabase molecules;
  ASSERT_TRUE(molecules.Open(mols_));
  const QXErrorCollector opening;
  const QXFastFPDatabase invalid(dir_.File("absent.fpbin"));
  const QXErrorCollector reports;
  EXPECT_FALSE(QXAreCompatibleDatabases(molecules, invalid));
  EXPECT_EQ(Texts(reports), Strings{name + "invalid fingerprint database!"});
}

}  // namespace
}  // namespace QXFingrix
