#include <gtest/gtest.h>

#include <map>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXMolDatabase.h"
#include "QXSystem/QXErrorHandler.h"
#include "chem/TempFolder.h"

// Real and hostile files, most of them not part of the source tree.
namespace {

using QXChem::QXGraphMol;
using QXChem::QXMolDatabase;
using QXSystem::QXErrorCollector;

class MolDatabaseData : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(QX_SHARED_DATA_DIR)) GTEST_SKIP() << "no data in " QX_SHARED_DATA_DIR;
  }
  static std::string DataFile(const std::string& name) { return QX_SHARED_DATA_DIR "/" + name; }
};

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The second column of an index file, by the number in the first.
std::map<std::uint64_t, std::string> ReadIndex(const std::string& path) {
  std::map<std::uint64_t, std::string> classes;
  std::istringstream stream(ReadWholeFile(path));
  std::string line;
  std::getline(stream, line);  // the header
  while (std::getline(stream, line)) {
    const std::size_t tab = line.find('\t');
    classes[std::stoull(line)] = line.substr(tab + 1, line.find('\t', tab + 1) - tab - 1);
  }
  return classes;
}

// Damaged records and good ones between them: each bad one is refused with one report, each good one is read.
void ExpectClasses(const std::string& sdFile, const std::string& indexFile, std::size_t numGood) {
  const auto classes = ReadIndex(indexFile);
  QXMolDatabase db;
  ASSERT_TRUE(db.Open(sdFile));
  ASSERT_EQ(db.GetMaxMolIdx(), classes.size());
  std::size_t good = 0;
  for (const auto& [record, kind] : classes) {
    const QXErrorCollector reports;
    QXGraphMol mol;
    const bool read = db.GetMolecule(mol, record - 1);
    good += read;
    EXPECT_EQ(read, kind == "ok") << "record " << record;
    EXPECT_EQ(mol.IsValid(), read) << "record " << record;
    EXPECT_TRUE(read || mol.NumAtoms() == 0) << "record " << record;
    EXPECT_EQ(reports.Count(), read ? 0u : 1u) << "record " << record;
  }
  EXPECT_EQ(good, numGood);
}

TEST(MolDatabaseCorrupt, DamagedSdRecordsAreRefusedAndTheGoodOnesBetweenThemRead) {
  ExpectClasses(QX_SOURCE_DIR "/tests/corrupt/records.sdf", QX_SOURCE_DIR "/tests/corrupt/records.tsv", 6);
}

TEST_F(MolDatabaseData, CorruptSdRecordsAreRefusedAndTheGoodOnesBetweenThemRead) {
  ExpectClasses(DataFile("corrupt.sdf"), DataFile("corrupt_index.tsv"), 20);
}

TEST_F(MolDatabaseData, BadSmilesLinesAreRefusedInTheirPlaces) {
  const auto classes = ReadIndex(DataFile("bad_index.tsv"));
  QXMolDatabase db;
  ASSERT_TRUE(db.Open(DataFile("bad.smi")));
  ASSERT_EQ(db.GetMaxMolIdx(), classes.size());
  for (const auto& [line, kind] : classes) {
    const QXErrorCollector reports;
    QXGraphMol mol;
    EXPECT_FALSE(db.GetMolecule(mol, line - 1)) << "line " << line << ' ' << kind;
    EXPECT_FALSE(mol.IsValid());
    ASSERT_EQ(reports.Count(), 1u) << "line " << line;
    const std::string text = reports.Messages()[0].text;
    EXPECT_NE(text.find("(line " + std::to_string(line) + ")"), std::string::npos) << text;
    const bool expected = kind == "not-utf8"
                              ? text.find("not UTF-8") != text.npos || text.find("NUL") != text.npos
                          : kind == "empty" ? text.find("empty line") != text.npos
                                            : true;
    EXPECT_TRUE(expected) << kind << ": " << text;
  }
}

TEST_F(MolDatabaseData, ExtensionBlockIsNeitherSmilesNorTitle) {
  QXMolDatabase db;
  ASSERT_TRUE(db.Open(DataFile("cxsmiles.smi")));
  ASSERT_EQ(db.GetMaxMolIdx(), 52u);
  for (std::uint64_t i = 0; i < 52; ++i) {
    QXGraphMol mol;
    EXPECT_TRUE(db.GetMolecule(mol, i)) << i;
    EXPECT_EQ(db.GetTitle(i).substr(0, 6), "CHEMBL") << i;
    EXPECT_EQ(mol.GetTitle(), db.GetTitle(i));
  }
}

// Every record of a good SD file is read, and title, line and atom count are those of a plain reading of its lines.
void ExpectGoodSdFile(const std::string& path, std::size_t numRecords) {
  QXMolDatabase db;
  ASSERT_TRUE(db.Open(path));
  EXPECT_EQ(db.GetMaxMolIdx(), numRecords);
  const std::vector<std::string> lines = SplitLines(ReadWholeFile(path));
  std::uint64_t record = 0;
  for (std::size_t start = 0, line = 0; line < lines.size(); ++line) {
    if (!lines[line].starts_with("$$$$")) continue;
    const QXErrorCollector reports;
    QXGraphMol mol;
    ASSERT_TRUE(db.GetMolecule(mol, record)) << reports.Messages()[0].text;
    EXPECT_EQ(db.GetLine(record), start + 1);
    EXPECT_EQ(mol.GetTitle(), lines[start]);
    EXPECT_EQ(mol.NumAtoms(), std::stoul(lines[start + 3].substr(0, 3))) << record;
    EXPECT_EQ(mol.NumBonds(), std::stoul(lines[start + 3].substr(3, 3))) << record;
    ++record;
    start = line + 1;
  }
  EXPECT_EQ(record, numRecords);
}

TEST_F(MolDatabaseData, GoodSdFilesAreReadWithAllTheirAtoms) {
  ExpectGoodSdFile(DataFile("mols_2d_257.sdf"), 257);
  ExpectGoodSdFile(DataFile("mols_3dH.sdf"), 254);
}

TEST_F(MolDatabaseData, GzippedSdFileIsReadWithAllItsAtoms) {
  const TempFolder folder;
  const std::string plain = folder.Path("mols.sdf");
  const std::string unpack = "xz -dc '" + DataFile("mols_1000.sdf.xz") + "' > '" + plain + "' 2> /dev/null";
  if (std::system(unpack.c_str()) != 0) GTEST_SKIP() << "xz cannot be run";
  ExpectGoodSdFile(plain, 1000);

  QXMolDatabase db, gzipped;
  ASSERT_TRUE(db.Open(plain));
  ASSERT_TRUE(gzipped.Open(folder.Write("mols.sdf.gz", Gzip(ReadWholeFile(plain)))));
  ASSERT_EQ(gzipped.GetMaxMolIdx(), 1000u);
  for (std::uint64_t i = 0; i < 1000; ++i) {
    EXPECT_EQ(gzipped.GetTitle(i), db.GetTitle(i));
    EXPECT_EQ(gzipped.GetText(i), db.GetText(i));
    EXPECT_EQ(gzipped.GetLine(i), db.GetLine(i));
  }
}

}  // namespace
