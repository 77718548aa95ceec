#include "QXFingrix/QXFastFPDatabase.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeParams.h"
#include "QXFingrix/QXMakeFP.h"
#include "fastfp/FpbinFile.h"

namespace QXFingrix {
namespace {

using namespace Testing;
using QXSystem::QXErrorCollector;
namespace MemoryType = QXFastFPDatabaseMemoryType;

const char* const invalidObject = " : invalid QXFastFPDatabase object!";

class FastFPDatabase : public testing::Test {
 protected:
  FastFPDatabase() {
    std::mt19937_64 random(3);
    for (int i = 0; i < 5; ++i) fps_.push_back(RandomFP(type_, random, 0.1));
    bytes_ = FpbinBytes(type_, fps_);
    WriteFile(file_, bytes_);
  }

  static QXChem::QXGraphMol Molecule(const char* smiles) {
    QXChem::QXGraphMol mol;
    QXChem::QXParseSmiles(mol, smiles);
    return mol;
  }

  // A record starts with its index and its bit count.
  static std::size_t RecordAt(std::size_t i) { return 800 + i * (16 + 2) * 8; }
  void SetWord(std::size_t at, std::uint64_t value) { std::memcpy(bytes_.data() + at, &value, 8); }

  TempDir dir_;
  const std::string file_ = dir_.File("x.fpbin");
  const QXFPTypeBase* const type_ = PathType(1024);
  std::vector<QXFingerPrint> fps_;
  std::string bytes_;
};

TEST_F(FastFPDatabase, GivesBackWhatIsStored) {
  const QXErrorCollector reports;
  const QXFastFPDatabase db(file_);
  ASSERT_TRUE(db.IsValid());
  EXPECT_EQ(db.GetFPTypeBase(), type_);
  ASSERT_EQ(db.NumFingerPrints(), fps_.size());
  EXPECT_EQ(db.GetMemoryType(), MemoryType::MemoryMapped);
  EXPECT_EQ(db.GetMemoryTypeString(), "memory-mapped");
  for (std::uint64_t i = 0; i < fps_.size(); ++i) {
    QXFingerPrint fp;
    ASSERT_TRUE(db.GetFingerPrint(fp, i));
    EXPECT_TRUE(fp == fps_[i]);
    EXPECT_EQ(db.GetMoleculeIndex(i), i);
  }
  EXPECT_EQ(reports.Count(), 0U);
}

TEST_F(FastFPDatabase, AbsentMemoryTypesFallBackInWords) {
  const std::string caller = "QXFastFPDatabase::QXFastFPDatabase() : ";
  const std::string noGPU = caller + "no CUDA-enabled device available falling back to memory-mapped type!";
  const std::string invalid = caller + "invalid memory type parameter initialized for memory-mapped!";
  const std::tuple<unsigned, const char*, Strings> cases[] = {{MemoryType::MemoryMapped, "memory-mapped", {}},
                                                              {MemoryType::InMemory, "in-memory", {}},
                                                              {MemoryType::CUDA, "memory-mapped", {noGPU}},
                                                              {7, "memory-mapped", {invalid, noGPU}},
                                                              {0, "memory-mapped", {invalid, noGPU}}};
  for (const auto& [memoryType, name, expected] : cases) {
    const QXErrorCollector reports;
    const QXFastFPDatabase db(file_, memoryType);
    EXPECT_EQ(Texts(reports), expected) << memoryType;
    EXPECT_TRUE(db.IsValid());
    EXPECT_EQ(db.GetMemoryTypeString(), name);
    EXPECT_EQ(db.GetMemoryType() == MemoryType::InMemory, memoryType == MemoryType::InMemory);
  }
}

TEST_F(FastFPDatabase, EveryOperationOnAnInvalidObjectWarnsOnceAndGivesNothing) {
  const QXErrorCollector opening;
  const QXFastFPDatabase db(dir_.File("absent.fpbin"));
  EXPECT_EQ(Texts(opening), (Strings{"QXFastFPDatabaseParams() cannot open fingerprint database file " +
                                         dir_.File("absent.fpbin"),
                                     "QXFastFPDatabase::QXFastFPDatabase() : cannot initialize object!"}));
  QXFastFPDatabase moved(file_);
  const QXFastFPDatabase target(std::move(moved));

  const QXFPDatabaseOptions options;
  const QXChem::QXGraphMol mol = Molecule("CCO");
  QXSimSearchResult result;
  QXFingerPrint fp;
  using Call = std::function<bool(const QXFastFPDatabase&)>;  // whether the answer is empty
  const std::pair<const char*, Call> calls[] = {
      {"GetFPTypeBase", [](auto& d) { return d.GetFPTypeBase() == nullptr; }},
      {"NumFingerPrints", [](auto& d) { return d.NumFingerPrints() == 0; }},
      {"GetMemoryType", [](auto& d) { return d.GetMemoryType() == 0; }},
      {"GetMemoryTypeString", [](auto& d) { return d.GetMemoryTypeString().empty(); }},
      {"GetFingerPrint", [&](auto& d) { return !d.GetFingerPrint(fp, 0); }},
      {"GetMolculeIndex", [](auto& d) { return d.GetMoleculeIndex(0) == ~std::uint64_t{0}; }},
      {"GetScores", [&](auto& d) { return !d.GetScores(fps_[0], options); }},
      {"GetScores", [&](auto& d) { return !d.GetScores(mol, options); }},
      {"GetScores", [&](auto& d) { return !d.GetScores(std::uint64_t{0}, options); }},
      {"GetRawScores", [&](auto& d) { return d.GetRawScores(fps_[0], options).empty(); }},
      {"GetRawScores", [&](auto& d) { return d.GetRawScores(mol, options).empty(); }},
      {"GetRawScores", [&](auto& d) { return d.GetRawScores(std::uint64_t{0}, options).empty(); }},
      {"GetSortedScores", [&](auto& d) { return !d.GetSortedScores(fps_[0], options); }},
      {"GetSortedScores", [&](auto& d) { return !d.GetSortedScores(mol, options); }},
      {"GetSortedScores", [&](auto& d) { return !d.GetSortedScores(std::uint64_t{0}, options); }},
      {"Search", [&](auto& d) { return d.SortedSearch(result, mol, options) == 0; }},
  };
  for (const QXFastFPDatabase* const invalid : {&db, static_cast<const QXFastFPDatabase*>(&moved)}) {
    EXPECT_FALSE(invalid->IsValid());
    for (const auto& [name, isEmpty] : calls) {
      const QXErrorCollector reports;
      EXPECT_TRUE(isEmpty(*invalid)) << name;
      EXPECT_EQ(Texts(reports), Strings{"QXFastFPDatabase::" + std::string(name) + "()" + invalidObject});
    }
  }
}

TEST_F(FastFPDatabase, UnsuitableQueriesAreRefusedInWords) {
  const QXFastFPDatabase db(file_);
  std::mt19937_64 random(1);
  const QXFingerPrint otherType = RandomFP(PathType(2048), random, 0.1);
  QXFingerPrint resized = fps_[0];
  resized.SetSize(64);
  const QXFingerPrint typeless;
  const QXFPDatabaseOptions options;
  QXSimSearchResult result;
  QXSimSearchResult taken;
  const QXSimSearchResult taker(std::move(taken));
  const QXChem::QXGraphMol mol = Molecule("CCO");
  const QXChem::QXGraphMol empty;
  const std::string scores = "QXFastFPDatabase::GetScores() : ";
  const std::string sorted = "QXFastFPDatabase::GetSortedScores() : ";
  const std::string raw = "QXFastFPDatabase::GetRawScores() : ";
  const std::pair<std::string, std::function<bool()>> cases[] = {
      {scores + "invalid fingerprint type!", [&] { return !db.GetScores(typeless, options); }},
      {scores + "fingerprint type mismatch!", [&] { return !db.GetScores(otherType, options); }},
      {sorted + "fingerprint type mismatch!", [&] { return !db.GetSortedScores(otherType, options); }},
      {sorted + "fingerprint type mismatch!", [&] { return !db.GetSortedScores(resized, options); }},
      {scores + "empty molecule!", [&] { return !db.GetScores(empty, options); }},
      {sorted + "fingerprint index out of range!", [&] { return !db.GetSortedScores(5, options); }},
      {raw + "fingerprint type mismatch!", [&] { return db.GetRawScores(otherType, options).empty(); }},
      {raw + "empty molecule!", [&] { return db.GetRawScores(empty, options).empty(); }},
      {raw + "fingerprint index out of range!", [&] { return db.GetRawScores(5, options).empty(); }},
      {"QXFastFPDatabase::GetFingerPrint() : fingerprint index out of range!",
       [&] {
         QXFingerPrint fp;
         return !db.GetFingerPrint(fp, ~std::uint64_t{0});
       }},
      {"QXFastFPDatabase::GetMolculeIndex() : fingerprint index out of range!",
       [&] { return db.GetMoleculeIndex(5) == ~std::uint64_t{0}; }},
      {"QXFastFPDatabase::SortedSearch() : empty molecule!",
       [&] { return db.SortedSearch(result, empty, options) == QXSimSearchStatus::Uninitialized; }},
      {"QXFastFPDatabase::SortedSearch() : invalid search result!",
       [&] { return db.SortedSearch(taken, mol, options) == QXSimSearchStatus::Uninitialized; }},
  };
  for (const auto& [text, isRefused] : cases) {
    const QXErrorCollector reports;
    EXPECT_TRUE(isRefused()) << text;
    EXPECT_EQ(Texts(reports), Strings{text});
  }
  EXPECT_EQ(result.GetSearchStatus(), QXSimSearchStatus::Uninitialized);
}

TEST_F(FastFPDatabase, EqualTypeMadeTwiceIsTheSameType) {
  const QXFastFPDatabase db(file_);
  QXFingerPrint fp = fps_[2];
  const QXFPTypeParams p(type_);
  fp.SetFPTypeBase(QXGetPathFPType(p.GetNumBits(), p.GetMinDistance(), p.GetMaxDistance(), p.GetAtomTypes(),
                                   p.GetBondTypes()));
  const auto hits = db.GetSortedScores(fp, QXFPDatabaseOptions());
  ASSERT_TRUE(hits);
  EXPECT_EQ(*hits, QXSimScore(2, 1.0));
}

TEST_F(FastFPDatabase, MoleculeFingerprintAndIndexAskTheSame) {
  const char* const smiles[] = {"CCO", "c1ccccc1C(=O)O", "CC(=O)Nc1ccc(O)cc1", "CCO"};
  std::vector<QXFingerPrint> fps(std::size(smiles));
  for (std::size_t i = 0; i < fps.size(); ++i) ASSERT_TRUE(QXMakeFP(fps[i], Molecule(smiles[i]), type_));
  WriteFile(file_, FpbinBytes(type_, fps));
  const QXFastFPDatabase db(file_);
  const QXFPDatabaseOptions options;
  for (std::uint64_t i = 0; i < fps.size(); ++i) {
    const QXChem::QXGraphMol mol = Molecule(smiles[i]);
    const auto expected = db.GetSortedScores(fps[i], options);
    ASSERT_TRUE(expected);
    EXPECT_EQ(expected->GetScore(), 1.0);
    EXPECT_TRUE(std::ranges::equal(db.GetSortedScores(mol, options), expected));
    EXPECT_TRUE(std::ranges::equal(db.GetSortedScores(i, options), expected));
    EXPECT_TRUE(std::ranges::equal(db.GetScores(mol, options), db.GetScores(i, options)));
    QXSimSearchResult result(10);
    EXPECT_EQ(db.SortedSearch(result, mol, options), QXSimSearchStatus::Finished);
    EXPECT_TRUE(std::ranges::equal(result.GetSortedScores(), expected));
    EXPECT_EQ(result.NumTargets(), fps.size());
    EXPECT_EQ(result.NumSearched(), fps.size());
    EXPECT_EQ(result.GetHistogram().NumSamples(), fps.size());
  }
}

TEST_F(FastFPDatabase, RecordOfAnotherMoleculeIsInconsistent) {
  SetWord(RecordAt(3), 4);
  WriteFile(file_, bytes_);
  const QXFastFPDatabase db(file_);
  const QXErrorCollector reports;
  QXFingerPrint fp = fps_[0];
  EXPECT_FALSE(db.GetFingerPrint(fp, 3));
  EXPECT_TRUE(fp == fps_[0]);
  const QXFPDatabaseOptions options;
  EXPECT_FALSE(db.GetScores(std::uint64_t{3}, options));
  EXPECT_FALSE(db.GetSortedScores(std::uint64_t{3}, options));
  EXPECT_TRUE(db.GetRawScores(std::uint64_t{3}, options).empty());
  EXPECT_EQ(db.GetMoleculeIndex(3), 4U);
  const std::string inconsistent =
      "QXFastFPDatabase::GetFingerPrint() : fingerprint and molecule index inconsistency!";
  EXPECT_EQ(Texts(reports),
            (Strings{inconsistent,  //
                     inconsistent, "QXFastFPDatabase::GetScores() : cannot access fingerprint!", inconsistent,
                     "QXFastFPDatabase::GetSortedScores() : cannot access fingerprint!", inconsistent,
                     "QXFastFPDatabase::GetRawScores() : cannot access fingerprint!"}));
}

TEST_F(FastFPDatabase, TypesThatHaveNoFastFileAreRefused) {
  const std::string caller = "QXFastFPDatabase::QXFastFPDatabase() ";
  const std::pair<std::string, std::string> cases[] = {
      {"MACCS166,ver=2.2.0", "invalid fingerprint type (only path, circular or tree allowed)!"},
      {PathTypeString(1000), "invalid fingerprint size (has to be multiple of 256)!"},
  };
  for (const auto& [type, text] : cases) {
    std::string bytes = "LE\nmols.smi\n" + type + "\n0\n";
    bytes.resize(800, '\0');
    WriteFile(file_, bytes);
    const QXErrorCollector reports;
    EXPECT_FALSE(QXFastFPDatabase(file_).IsValid());
    EXPECT_EQ(Texts(reports), Strings{caller + text});
  }
}

TEST_F(FastFPDatabase, ScoreEqualToTheCutoffPassesUnsortedOnly) {
  // 5 shared bits of 10 in all: Tanimoto exactly 0.5.
  std::vector<QXFingerPrint> fps(2, fps_[0]);
  for (QXFingerPrint& fp : fps) fp.ClearBits();
  for (unsigned bit = 0; bit < 10; ++bit) fps[0].SetBitOn(bit);
  for (unsigned bit = 0; bit < 5; ++bit) fps[1].SetBitOn(bit);
  WriteFile(file_, FpbinBytes(type_, fps));
  const QXFastFPDatabase db(file_);
  for (const bool descending : {true, false}) {
    QXFPDatabaseOptions options;
    options.SetDescendingOrder(descending);
    options.SetCutoff(0.5F);
    const auto isHalf = [](const QXSimScore& hit) { return hit == QXSimScore(1, 0.5); };
    EXPECT_TRUE(std::ranges::any_of(db.GetScores(fps[0], options), isHalf));
    EXPECT_FALSE(std::ranges::any_of(db.GetSortedScores(fps[0], options), isHalf));
  }
}

TEST_F(FastFPDatabase, RequiredCutoffsAreKept) {
  // 7 of 10 and 3 of 10 shared: the scores, as double, lie just inside of the cutoffs, which are floats.
  std::vector<QXFingerPrint> fps(3, fps_[0]);
  for (QXFingerPrint& fp : fps) fp.ClearBits();
  for (unsigned bit = 0; bit < 10; ++bit) fps[0].SetBitOn(bit);
  for (unsigned bit = 0; bit < 7; ++bit) fps[1].SetBitOn(bit);
  for (unsigned bit = 0; bit < 3; ++bit) fps[2].SetBitOn(bit);
  WriteFile(file_, FpbinBytes(type_, fps));
  const QXFastFPDatabase db(file_);
  for (const auto& [descending, cutoff, idx] : {std::tuple(true, 0.7F, 1U), std::tuple(false, 0.3F, 2U)}) {
    QXFPDatabaseOptions options;
    options.SetDescendingOrder(descending);
    options.SetCutoff(cutoff);
    for (const auto& hits : {db.GetScores(fps[0], options), db.GetSortedScores(fps[0], options)}) {
      EXPECT_TRUE(
          std::ranges::any_of(hits, [&, i = idx](const QXSimScore& hit) { return hit.GetIdx() == i; }));
    }
  }
}

}  // namespace
}  // namespace QXFingrix
