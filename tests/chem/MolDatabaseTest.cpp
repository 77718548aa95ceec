#include "QXChem/QXMolDatabase.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "QXSystem/QXErrorHandler.h"
#include "chem/TempFolder.h"

namespace {

using QXChem::QXGraphMol;
using QXChem::QXMolDatabase;
using QXSystem::QXErrorCollector;
using QXSystem::QXErrorLevel;

const char* const kDemoFile = QX_SOURCE_DIR "/data/molecules.smi";

// A mol block of one atom.
std::string MolBlock(const std::string& title, const std::string& element = "C") {
  return title + "\n  made\n\n  1  0  0  0  0  0  0  0  0  0999 V2000\n" + "    0.0000    0.0000    0.0000 " +
         element + "   0  0  0  0  0  0  0  0  0  0  0  0\nM  END\n";
}

std::string Mol2Record(const std::string& title) {
  return "@<TRIPOS>MOLECULE\n" + title + "\n 1 0 0 0 0\nSMALL\nNO_CHARGES\n\n@<TRIPOS>ATOM\n" +
         "      1 C1  0.0 0.0 0.0 C.3  1  LIG  0.0\n@<TRIPOS>BOND\n";
}

// What a record should be: its line, title and text.
struct Record {
  std::uint64_t line;
  std::string title;
  std::string text;
};

struct FileCase {
  const char* promise;
  std::string name;
  std::string bytes;
  std::vector<Record> records;
};

void ExpectRecords(const FileCase& fileCase) {
  SCOPED_TRACE(fileCase.promise);
  const TempFolder folder;
  const QXErrorCollector reports;
  QXMolDatabase db;
  ASSERT_TRUE(db.Open(folder.Write(fileCase.name, fileCase.bytes)));
  EXPECT_TRUE(db.IsOpen());
  EXPECT_EQ(db.GetFileName(), folder.Path(fileCase.name));
  ASSERT_EQ(db.GetMaxMolIdx(), fileCase.records.size());
  for (std::size_t i = fileCase.records.size(); i-- > 0;) {  // no record depends on the one before
    EXPECT_EQ(db.GetLine(i), fileCase.records[i].line) << i;
    EXPECT_EQ(db.GetTitle(i), fileCase.records[i].title) << i;
    EXPECT_EQ(db.GetText(i), fileCase.records[i].text) << i;
  }
  EXPECT_EQ(reports.Count(), 0u);
}

TEST(MolDatabase, SmilesRecordsAreTheLinesOfTheFile) {
  const FileCase cases[] = {
      {"empty file", "a.smi", "", {}},
      {"one line feed is one blank record", "a.smi", "\n", {{1, "", ""}}},
      {"last line feed missing", "a.ism", "CC a\nN b", {{1, "a", "CC"}, {2, "b", "N"}}},
      {"blank lines keep their places",
       "a.smiles",
       "\nC x\n\n\n",
       {{1, "", ""}, {2, "x", "C"}, {3, "", ""}, {4, "", ""}}},
      {"DOS line ends", "a.smi", "CC a b\r\n\r\nN\r\n", {{1, "a b", "CC"}, {2, "", ""}, {3, "", "N"}}},
      {"titles are trimmed", "a.SMI", "C\t two words \t\n", {{1, "two words", "C"}}},
      {"a carriage return inside a line is white space",
       "a.smi",
       "C\rx\ry\nN\r\r\n",
       {{1, "x\ry", "C"}, {2, "", "N"}}},
      {"extension block",
       "a.smi",
       "CC |$a;b$| t |u|\nN |^1:0|\nO |open\nS x |y|\n",
       {{1, "t |u|", "CC"}, {2, "", "N"}, {3, "|open", "O"}, {4, "x |y|", "S"}}},
      {"no SMILES, only a title", "a.smi", "\tname\n", {{1, "name", ""}}},
      {"byte-order mark",
       "a.smi",
       "\xEF\xBB\xBF"
       "C a\n",
       {{1, "a", "C"}}},
  };
  for (const FileCase& fileCase : cases) ExpectRecords(fileCase);
}

TEST(MolDatabase, SdRecordsEndAtTheirDelimiter) {
  const std::string a = MolBlock(" first "), b = MolBlock("second"), data = "> <X>\n1\n$$ 5\n\n";
  const std::string v3 =
      "v3\n\n\n  0  0  0     0  0            999 V3000\nM  V30 BEGIN CTAB\nM  V30 END CTAB\nM  END\n";
  const FileCase cases[] = {
      {"empty file", "a.sdf", "", {}},
      {"blank lines only", "a.sdf", "\n \r\n\t\n", {}},
      {"two records",
       "a.sdf",
       a + data + "$$$$\n" + b + "$$$$\n",
       {{1, "first", a + data}, {12, "second", b}}},
      {"last delimiter missing", "a.sd", a + "$$$$\n" + b, {{1, "first", a}, {8, "second", b}}},
      {"last line feed missing", "a.sdf", a + "$$$$", {{1, "first", a}}},
      {"blank lines at the end", "a.sdf", a + "$$$$\n\n \n\r\n", {{1, "first", a}}},
      {"blank record in the middle",
       "a.sdf",
       a + "$$$$\n\n\n$$$$\n" + b,
       {{1, "first", a}, {8, "", "\n\n"}, {11, "second", b}}},
      {"nothing between delimiters",
       "a.sdf",
       "$$$$\n$$$$ x\n" + b,
       {{1, "", ""}, {2, "", ""}, {3, "second", b}}},
      {"text behind the delimiter", "a.sdf", a + "$$$$ end\r\n" + b, {{1, "first", a}, {8, "second", b}}},
      {"V3000", "a.sdf", v3 + "$$$$\n" + b, {{1, "v3", v3}, {9, "second", b}}},
      {"a mol file is one record", "a.mol", a + data, {{1, "first", a + data}}},
      {"an empty mol file has none", "a.mol", "\n\n", {}},
  };
  for (const FileCase& fileCase : cases) ExpectRecords(fileCase);
}

TEST(MolDatabase, Mol2RecordsStartAtTheirTag) {
  const std::string a = Mol2Record("first "), b = Mol2Record("second");
  const FileCase cases[] = {
      {"empty file", "a.mol2", "", {}},
      {"two records", "a.mol2", a + b, {{1, "first", a}, {10, "second", b}}},
      {"comments before the first", "a.mol2", "# made\n#\n" + a + b, {{3, "first", a}, {12, "second", b}}},
      {"a tag inside a line is none", "a.mol2", "x @<TRIPOS>MOLECULE\n" + a, {{2, "first", a}}},
      {"nothing but the tag", "a.mol2", "@<TRIPOS>MOLECULE", {{1, "", "@<TRIPOS>MOLECULE"}}},
  };
  for (const FileCase& fileCase : cases) ExpectRecords(fileCase);
}

// Far more records than fit between two kept positions or on one page of the line table, in every format.
TEST(MolDatabase, LongFilesKeepEveryRecordInItsPlace) {
  FileCase smiles{"smiles", "a.smi", "", {}}, sd{"sd", "a.sdf", "", {}}, mol2{"mol2", "a.mol2", "", {}};
  for (unsigned i = 0; i < 3000; ++i) {
    const std::string title = "t" + std::to_string(i);
    smiles.records.push_back({i + 1, title, std::string(1 + i % 90, 'C')});
    smiles.bytes += smiles.records.back().text + " " + title + "\n";
    sd.records.push_back({1 + 7ull * i + i / 10, title, MolBlock(title) + (i % 10 == 9 ? "\n" : "")});
    sd.bytes += sd.records.back().text + "$$$$\n";
    mol2.records.push_back({1 + 9ull * i, title, Mol2Record(title)});
    mol2.bytes += mol2.records.back().text;
  }
  for (const FileCase* fileCase : {&smiles, &sd, &mol2}) ExpectRecords(*fileCase);
}

TEST(MolDatabase, EveryFormatGivesTheMoleculeAndItsTitle) {
  const TempFolder folder;
  const struct {
    const char* name;
    std::string bytes;
  } cases[] = {
      {"a.smi", "\nC  the title |x| \n"},
      {"a.sdf", MolBlock("other", "O") + "$$$$\n" + MolBlock("the title |x|") + "> <A>\n1\n\n$$$$\n"},
      {"a.sd", MolBlock("other", "O") + "$$$$\r\n" + MolBlock("the title |x|\r")},
      {"a.mol2", Mol2Record("other") + Mol2Record("\tthe title |x|")},
  };
  for (const auto& [name, bytes] : cases) {
    SCOPED_TRACE(name);
    QXMolDatabase db;
    ASSERT_TRUE(db.Open(folder.Write(name, bytes)));
    ASSERT_EQ(db.GetMaxMolIdx(), 2u);
    QXGraphMol mol;
    ASSERT_TRUE(db.GetMolecule(mol, 1));
    ASSERT_EQ(mol.NumAtoms(), 1u);
    EXPECT_EQ(mol.GetAtom(0)->GetAtomicNum(), 6u);
    EXPECT_EQ(mol.GetTitle(), "the title |x|");
  }
}

// Only the connection table is the molecule; old files have names in Latin-1.
TEST(MolDatabase, SdRecordWithLatin1HeaderIsReadAndKeepsItsBytes) {
  const TempFolder folder;
  const QXErrorCollector reports;
  QXMolDatabase db;
  ASSERT_TRUE(db.Open(folder.Write("a.sdf", MolBlock("M\xFCller") + "> <x>\n\xE9\n\n$$$$\n")));
  QXGraphMol mol;
  EXPECT_TRUE(db.GetMolecule(mol, 0));
  EXPECT_EQ(mol.GetTitle(), "M\xFCller");
  EXPECT_EQ(mol.NumAtoms(), 1u);
  EXPECT_EQ(reports.Count(), 0u);
}

TEST(MolDatabase, UnreadableRecordIsOneWarningWithItsPlaceAndReason) {
  const struct {
    const char* name;
    std::string record;
    const char* reason;  // null: the reader's own
  } cases[] = {
      {"a.smi", "", "empty line"},
      {"a.smi", " \t ", "empty line"},
      {"a.smi", " CC x", "no SMILES before the first white space"},
      {"a.smi", std::string("C\0C x", 5), "NUL in column 2"},
      {"a.smi", std::string("C x\0", 4), "NUL in column 4"},
      {"a.smi", "CC\xFF x", "not UTF-8 in column 3"},
      {"a.smi", "CC M\xFCller", "not UTF-8 in column 5"},
      {"a.smi", "CC(", nullptr},
      {"a.smi", "C(C)(C)(C)(C)C x", nullptr},
      {"a.sdf", "\n \n$$$$", "blank record"},
      {"a.sdf", MolBlock("x", "Zz") + "$$$$", nullptr},
      {"a.sdf", std::string("x\n\n\n\0\n$$$$", 10), nullptr},
      {"a.mol2", "@<TRIPOS>MOLECULE", nullptr},
  };
  for (const auto& [name, record, reason] : cases) {
    SCOPED_TRACE(testing::PrintToString(record));
    const TempFolder folder;
    const std::string before = name == std::string("a.smi") ? "N a\nO b\n"
                               : name == std::string("a.sdf")
                                   ? MolBlock("a") + "$$$$\n" + MolBlock("b") + "$$$$\n"
                                   : Mol2Record("a") + Mol2Record("b");
    QXMolDatabase db;
    ASSERT_TRUE(db.Open(folder.Write(name, before + record + "\n")));
    ASSERT_EQ(db.GetMaxMolIdx(), 3u);

    QXGraphMol mol;
    ASSERT_TRUE(db.GetMolecule(mol, 1));
    const QXErrorCollector reports(QXErrorLevel::Debug);
    std::string silent;
    EXPECT_FALSE(db.ReadMolecule(mol, 2, silent));
    EXPECT_EQ(reports.Count(), 0u);
    EXPECT_FALSE(silent.empty());
    if (reason) {
      EXPECT_EQ(silent, reason);
    }

    ASSERT_TRUE(db.GetMolecule(mol, 1));
    EXPECT_FALSE(db.GetMolecule(mol, 2));
    EXPECT_FALSE(mol.IsValid());
    EXPECT_EQ(mol.NumAtoms(), 0u);
    ASSERT_EQ(reports.Count(), 1u);
    EXPECT_EQ(reports.Messages()[0].level, QXErrorLevel::Warning);
    EXPECT_EQ(reports.Messages()[0].text, "QXMolDatabase::GetMolecule() cannot read record 2 (line " +
                                              std::to_string(db.GetLine(2)) + ") of " + folder.Path(name) +
                                              ": " + silent);
    EXPECT_TRUE(db.GetMolecule(mol, 0));  // the next read is not affected
  }
}

TEST(MolDatabase, IndexOutOfRangeIsReportedWithItsLimit) {
  const TempFolder folder;
  QXMolDatabase db;
  const std::string path = folder.Write("a.smi", "C\nN\n");
  for (const bool open : {false, true}) {
    if (open) {
      ASSERT_TRUE(db.Open(path));
    }
    for (const std::uint64_t idx : {std::uint64_t{2}, ~std::uint64_t{0}}) {
      const std::string reason =
          open ? "index " + std::to_string(idx) + " is out of range, " + path + " has 2 records"
               : "no file is open";
      const QXErrorCollector reports(QXErrorLevel::Debug);
      QXGraphMol mol;
      std::string silent;
      EXPECT_FALSE(db.ReadMolecule(mol, idx, silent));
      EXPECT_EQ(silent, reason);
      EXPECT_EQ(reports.Count(), 0u);
      EXPECT_FALSE(db.GetMolecule(mol, idx));
      EXPECT_FALSE(mol.IsValid());
      EXPECT_EQ(db.GetTitle(idx), "");
      EXPECT_EQ(db.GetText(idx), "");
      EXPECT_EQ(db.GetLine(idx), 0u);
      const std::vector<QXSystem::QXErrorMessage> messages = reports.Messages();
      const char* const methods[] = {"GetMolecule", "GetTitle", "GetText", "GetLine"};
      ASSERT_EQ(messages.size(), 4u);
      for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(messages[i].level, QXErrorLevel::Warning);
        EXPECT_EQ(messages[i].text, std::string("QXMolDatabase::") + methods[i] + "() " + reason);
      }
    }
  }
}

TEST(MolDatabase, FileThatCannotBeOpenedIsOneWarningAndClosesTheDatabase) {
  const TempFolder folder;
  std::filesystem::create_directory(folder.Path("folder.smi"));
  ASSERT_EQ(mkfifo(folder.Path("pipe.smi").c_str(), 0600), 0);
  const std::string good = folder.Write("good.smi", "C\n");
  const std::string secret = folder.Write("secret.smi", "C\n");
  std::vector<std::string> paths = {"",
                                    folder.Path("missing.smi"),
                                    folder.Path("folder.smi"),
                                    folder.Path("pipe.smi"),
                                    folder.Write("a.txt", "C\n"),
                                    folder.Write("smi", "C\n"),
                                    folder.Write("a.gz", "C\n"),
                                    folder.Write("a.smi.bz2", "C\n"),
                                    folder.Write("noise.mol2", "\x01\x8f no molecules here\n")};
  if (geteuid() != 0) {
    ASSERT_EQ(chmod(secret.c_str(), 0), 0);
    paths.push_back(secret);
  }
  for (const std::string& path : paths) {
    SCOPED_TRACE(path);
    QXMolDatabase db;
    ASSERT_TRUE(db.Open(good));
    const QXErrorCollector reports(QXErrorLevel::Debug);
    EXPECT_FALSE(db.Open(path));
    EXPECT_FALSE(db.IsOpen());
    EXPECT_EQ(db.GetMaxMolIdx(), 0u);
    EXPECT_EQ(db.GetFileName(), "");
    ASSERT_EQ(reports.Count(), 1u);
    EXPECT_EQ(reports.Messages()[0].level, QXErrorLevel::Warning);
    const std::string start = "QXMolDatabase::Open() cannot open molecule file " + path + ": ";
    EXPECT_TRUE(reports.Messages()[0].text.starts_with(start)) << reports.Messages()[0].text;
    EXPECT_GT(reports.Messages()[0].text.size(), start.size());
  }
}

TEST(MolDatabase, MovedDatabaseKeepsReading) {
  const TempFolder folder;
  QXMolDatabase first;
  ASSERT_TRUE(first.Open(folder.Write("a.smi", "C a\nN b\n")));
  QXMolDatabase second(std::move(first));
  QXMolDatabase third;
  third = std::move(second);
  QXGraphMol mol;
  ASSERT_TRUE(third.GetMolecule(mol, 1));
  EXPECT_EQ(mol.GetTitle(), "b");
  third.Close();
  EXPECT_FALSE(third.IsOpen());
}

TEST(MolDatabase, ConcurrentReadingGivesWhatOneThreadGives) {
  QXMolDatabase db;
  ASSERT_TRUE(db.Open(kDemoFile));
  const auto describe = [&db](std::uint64_t idx) {
    QXGraphMol mol;
    std::string reason;
    std::string text = db.ReadMolecule(mol, idx, reason) ? mol.GetTitle() : reason;
    for (const auto& atom : mol.Atoms()) text += " " + std::to_string(atom.GetAtomicNum());
    for (const auto& bond : mol.Bonds())
      text += " " + std::to_string(bond.GetOrder() + 10 * bond.IsAromatic());
    return text;
  };
  std::vector<std::string> serial(500), concurrent(500);
  for (std::size_t i = 0; i < serial.size(); ++i) serial[i] = describe(i * 8);
  constexpr std::size_t kThreads = 4;
  std::vector<std::jthread> threads;
  for (std::size_t t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      for (std::size_t i = t; i < concurrent.size(); i += kThreads) concurrent[i] = describe(i * 8);
    });
  }
  threads.clear();
  EXPECT_EQ(concurrent, serial);
  EXPECT_GT(serial[0].size(), 10u);
}

}  // namespace
