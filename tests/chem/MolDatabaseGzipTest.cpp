#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXMolDatabase.h"
#include "QXSystem/QXErrorHandler.h"
#include "chem/TempFolder.h"

namespace {

using QXChem::QXMolDatabase;
using QXSystem::QXErrorCollector;

// Sets TMPDIR as long as it lives.
class ScopedTempDir {
 public:
  explicit ScopedTempDir(const std::string& path) {
    if (const char* old = std::getenv("TMPDIR")) old_ = old;
    setenv("TMPDIR", path.c_str(), 1);
  }
  ~ScopedTempDir() { old_.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", old_.c_str(), 1); }

 private:
  std::string old_;
};

// Every title and text in one string; "closed" when the file cannot be opened.
std::string Describe(const std::string& path) {
  QXMolDatabase db;
  if (!db.Open(path)) return "closed";
  std::string all;
  for (std::uint64_t i = 0; i < db.GetMaxMolIdx(); ++i) {
    all += std::to_string(db.GetLine(i)) + '\t' + db.GetTitle(i) + '\t' + db.GetText(i) + '\n';
  }
  return all;
}

std::string OnlyReport(const QXErrorCollector& reports) {
  return reports.Count() == 1 ? reports.Messages()[0].text : std::to_string(reports.Count()) + " reports";
}

TEST(MolDatabaseGzip, CompressionAndLineEndsMakeNoDifference) {
  const std::string text = ReadWholeFile(QX_SOURCE_DIR "/data/molecules.smi");
  ASSERT_GT(text.size(), 100000u);
  std::string dos;
  for (const char c : text) dos += c == '\n' ? std::string("\r\n") : std::string(1, c);
  const std::size_t cut = text.size() / 3;  // within a line
  const TempFolder folder;
  const std::string expected = Describe(folder.Write("plain.smi", text));
  EXPECT_EQ(std::count(expected.begin(), expected.end(), '\n'), std::count(text.begin(), text.end(), '\n'));
  const std::string variants[] = {
      folder.Write("a.smi.gz", Gzip(text)),
      folder.Write("gzipped_all_the_same.smi", Gzip(text)),
      folder.Write("plain_all_the_same.smi.gz", text),
      folder.Write("A.SMI.GZ", Gzip(text)),
      folder.Write("members.smi.gz", Gzip(text.substr(0, cut)) + Gzip("") + Gzip(text.substr(cut))),
      folder.Write("padded.smi.gz", Gzip(text) + std::string(1000, '\0')),
      folder.Write("dos.smi", dos),
      folder.Write("dos.smi.gz", Gzip(dos)),
      folder.Write("no_last_feed.smi.gz", Gzip(text.substr(0, text.size() - 1))),
  };
  for (const std::string& path : variants) EXPECT_TRUE(Describe(path) == expected) << path;
}

TEST(MolDatabaseGzip, EmptyTextOpensWithoutRecords) {
  const TempFolder folder;
  for (const char* name : {"a.smi.gz", "a.sdf.gz", "a.mol.gz", "a.mol2.gz"}) {
    for (const std::string& bytes : {std::string(), Gzip("")}) {
      QXMolDatabase db;
      EXPECT_TRUE(db.Open(folder.Write(name, bytes))) << name;
      EXPECT_EQ(db.GetMaxMolIdx(), 0u) << name;
    }
  }
}

TEST(MolDatabaseGzip, CutFileIsRefusedWhereverItIsCut) {
  const TempFolder folder;
  const std::string bytes = Gzip("CCO ethanol\nCCN ethylamine\nc1ccccc1 benzene\n");
  for (std::size_t size = 2; size < bytes.size(); ++size) {
    const QXErrorCollector reports;
    const std::string path = folder.Write("a.smi.gz", bytes.substr(0, size));
    EXPECT_EQ(Describe(path), "closed") << size;
    EXPECT_EQ(OnlyReport(reports),
              "QXMolDatabase::Open() cannot open molecule file " + path + ": gzip data is cut short")
        << size;
  }
}

TEST(MolDatabaseGzip, DamageNeverChangesTheTextUnnoticed) {
  const TempFolder folder;
  const std::string text = "CCO ethanol\nCCN ethylamine\nc1ccccc1 benzene\n";
  const std::string bytes = Gzip(text), expected = Describe(folder.Write("good.smi", text));
  std::size_t refused = 0;
  for (std::size_t i = 2; i < bytes.size(); ++i) {
    std::string damaged = bytes;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x41);
    const QXErrorCollector reports;
    const std::string found = Describe(folder.Write("a.smi.gz", damaged));
    if (found == "closed") {
      ++refused;
      EXPECT_TRUE(OnlyReport(reports).find("gzip data is ") != std::string::npos) << OnlyReport(reports);
    } else {
      EXPECT_EQ(found, expected) << i;  // a byte of the header without meaning
    }
  }
  EXPECT_GT(refused, bytes.size() - 12);
}

TEST(MolDatabaseGzip, TextBehindTheDataIsRefused) {
  const TempFolder folder;
  for (const std::string& tail : {std::string("x"), std::string("\0\0x", 3), Gzip("C").substr(0, 12)}) {
    const QXErrorCollector reports;
    EXPECT_EQ(Describe(folder.Write("a.smi.gz", Gzip("C\n") + tail)), "closed");
    EXPECT_EQ(reports.Count(), 1u);
  }
}

TEST(MolDatabaseGzip, NothingIsLeftInTheTemporaryFolder) {
  const TempFolder folder, scratch;
  const std::string path = folder.Write("a.smi.gz", Gzip("C a\n"));
  const ScopedTempDir tempDir(scratch.Path(""));
  QXMolDatabase db;
  ASSERT_TRUE(db.Open(path));
  EXPECT_TRUE(std::filesystem::is_empty(scratch.Path("")));
  EXPECT_EQ(db.GetTitle(0), "a");
}

TEST(MolDatabaseGzip, MissingTemporaryFolderIsReported) {
  const TempFolder folder;
  const std::string path = folder.Write("a.smi.gz", Gzip("C a\n"));
  const ScopedTempDir tempDir(folder.Path("missing"));
  const QXErrorCollector reports;
  EXPECT_EQ(Describe(path), "closed");
  EXPECT_EQ(OnlyReport(reports), "QXMolDatabase::Open() cannot open molecule file " + path +
                                     ": cannot make a temporary file in " + folder.Path("missing") +
                                     ": No such file or directory");
}

TEST(MolDatabaseGzip, LackOfRoomIsReported) {
  const TempFolder folder;
  const std::string path = folder.Write("bomb.smi.gz", Gzip(std::string(4 << 20, 'C')));
  rlimit old{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
  const rlimit small{1 << 20, old.rlim_max};
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const QXErrorCollector reports;
  const std::string found = Describe(path);
  setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, oldHandler);
  EXPECT_EQ(found, "closed");
  EXPECT_NE(OnlyReport(reports).find("cannot write to a temporary file in "), std::string::npos)
      << OnlyReport(reports);
}

}  // namespace
