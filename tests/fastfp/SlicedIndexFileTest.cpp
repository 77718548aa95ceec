#include "fastfp/slices/file/SlicedIndexFile.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <thread>

#include "QXFingrix/QXFastFPIndex.h"
#include "fastfp/FpbinFile.h"
#include "fastfp/slices/MakeSlicedIndex.h"

namespace QXFingrix {
namespace {

using namespace Testing;
using QXSystem::QXErrorCollector;
namespace State = QXFastFPIndexState;
using Memory = SlicedIndexFile::Memory;
namespace fs = std::filesystem;

// A .fpbin file with random fingerprints of any density, none and all bits among them, and its index file.
class IndexedFile {
 public:
  IndexedFile(unsigned numBits, std::size_t numRecords) : numBits_(numBits) {
    std::mt19937_64 random(numRecords);
    std::vector<QXFingerPrint> fps;
    for (std::size_t i = 0; i < numRecords; ++i) {
      fps.push_back(RandomFP(PathType(numBits), random, static_cast<double>(random() % 11) / 10.0));
    }
    bytes_ = FpbinBytes(PathType(numBits), fps);
    WriteFile(File(), bytes_);
  }

  std::string File() const { return dir_.File("x.fpbin"); }
  std::string IndexFile() const { return File() + ".slices"; }
  std::size_t NumFiles() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(fs::path(File()).parent_path()), fs::directory_iterator()));
  }
  RecordTable Table() const {
    words_.resize(bytes_.size() / 8);
    std::memcpy(words_.data(), bytes_.data(), bytes_.size());
    const std::size_t numWords = numBits_ / 64;
    return {words_.data() + 100, numWords, (words_.size() - 100) / (numWords + 2)};
  }

  // What a database finds: the state, and the index where there is one.
  unsigned Load(Memory memory, unsigned numThreads, std::unique_ptr<const SlicedIndex>& index) const {
    const FpbinStamp stamp = FpbinStamp::Of(File());
    SlicedIndexFile file(File(), stamp, QXFastFPDatabaseParams(File()), "Test()");
    index = file.Load(memory, numThreads, "Test()");
    EXPECT_EQ(index != nullptr, file.State() == State::Usable);
    return file.State();
  }
  // The state and what is warned of.
  std::pair<unsigned, Strings> Find(Memory memory = Memory::Mapped) const {
    const QXErrorCollector reports;
    std::unique_ptr<const SlicedIndex> index;
    const unsigned state = Load(memory, 1, index);
    return {state, Texts(reports)};
  }

 private:
  TempDir dir_;
  unsigned numBits_;
  std::string bytes_;
  mutable std::vector<std::uint64_t> words_;
};

template <class T>
std::vector<T> Copy(std::span<const T> values) {
  return {values.begin(), values.end()};
}

void ExpectSame(const SlicedIndex& a, const SlicedIndex& b) {
  EXPECT_EQ(a.numBits, b.numBits);
  EXPECT_EQ(Copy(a.places), Copy(b.places));
  EXPECT_EQ(Copy(a.bitCounts), Copy(b.bitCounts));
  EXPECT_EQ(Copy(a.rarestFirst), Copy(b.rarestFirst));
  EXPECT_TRUE(std::ranges::equal(a.columns, b.columns));
}

// By the text of docs/IndexFile.md alone, from the bytes of the two files.
void ExpectDocumentedBytes(const std::string& bytes, const RecordTable& table) {
  const auto word = [&bytes](std::size_t at) {
    std::uint64_t value = 0;
    std::memcpy(&value, bytes.data() + at, 8);
    return value;
  };
  const auto half = [&bytes](std::size_t at) {
    return std::size_t{static_cast<unsigned char>(bytes[at])} +
           256 * static_cast<unsigned char>(bytes[at + 1]);
  };
  const std::size_t num = table.numRecords;
  const std::size_t numBits = table.numWords * 64;
  const std::size_t numBlocks = (num + 511) / 512;
  const std::size_t body = (80 + 8 * (numBlocks + 1) + 4095) / 4096 * 4096;
  const std::size_t places = body + numBlocks * (numBits + 1) * 64;
  const std::size_t bitCounts = places + 4 * num;
  ASSERT_EQ(bytes.size(), bitCounts + 2 * num + 2 * numBits);
  EXPECT_EQ(bytes.substr(0, 8), "QXSL\r\n\x1a\n");
  EXPECT_EQ(word(8), 1U);
  EXPECT_EQ(word(16), bytes.size());
  EXPECT_EQ(word(48), num);
  EXPECT_EQ(word(56), numBits);
  std::vector<std::size_t> wrong;
  for (std::size_t i = 0; i < num; ++i) {
    const std::uint64_t* const record = table.Record(half(places + 4 * i) + 65536 * half(places + 4 * i + 2));
    bool isRight = half(bitCounts + 2 * i) == record[1];
    const std::size_t inBlock = i % 512;
    const std::size_t at = inBlock / 32 + 16 * (inBlock % 32);
    for (std::size_t bit = 0; bit < numBits; ++bit) {
      const std::size_t column = body + (i / 512 * (numBits + 1) + bit) * 64;
      isRight &= (word(column + at / 64 * 8) >> at % 64 & 1) == (record[2 + bit / 64] >> bit % 64 & 1);
    }
    if (!isRight) wrong.push_back(i);
  }
  EXPECT_EQ(wrong, std::vector<std::size_t>{});
}

TEST(SlicedIndexFile, IsLoadedAsItWasMadeAndAsDocumented) {
  constexpr std::pair<unsigned, std::size_t> shapes[] = {{256, 0}, {512, 1}, {256, 512}, {1024, 3001}};
  for (const auto& [numBits, numRecords] : shapes) {
    SCOPED_TRACE(numRecords);
    const IndexedFile file(numBits, numRecords);
    const auto made = MakeSlicedIndex(file.Table(), 1);
    ASSERT_NE(made, nullptr);
    std::string bytes;
    for (const unsigned numThreads : {1U, 3U}) {
      ASSERT_TRUE(QXMakeFastFPIndexFile(file.File(), numThreads));
      EXPECT_EQ(file.NumFiles(), 2U);
      if (numThreads == 1) bytes = ReadFile(file.IndexFile());
      EXPECT_EQ(ReadFile(file.IndexFile()), bytes);
      for (const Memory memory : {Memory::Mapped, Memory::Copied}) {
        std::unique_ptr<const SlicedIndex> index;
        EXPECT_EQ(file.Load(memory, numThreads, index), State::Usable);
        ASSERT_NE(index, nullptr);
        ExpectSame(*index, *made);
      }
    }
    ExpectDocumentedBytes(bytes, file.Table());
    EXPECT_EQ(QXGetFastFPIndexState(file.File(), true), State::Usable);
  }
}

TEST(SlicedIndexFile, WithoutOneNothingIsReported) {
  const IndexedFile file(256, 10);
  EXPECT_EQ(file.Find(), std::pair(State::None, Strings{}));
}

// One bit anywhere, and every length class: cut in the header, the table, the padding, a block, each order,
// and longer than it should be. What stands under the name after a writer was stopped is such a piece.
TEST(SlicedIndexFile, NothingDamagedIsTaken) {
  const IndexedFile file(256, 1700);
  ASSERT_TRUE(QXMakeFastFPIndexFile(file.File(), 1));
  const std::string whole = ReadFile(file.IndexFile());
  const std::string refused = "Test() : index file " + file.IndexFile() + " is refused: ";
  std::mt19937_64 random(5);
  const auto expectRefused = [&](const std::string& bytes) {
    WriteFile(file.IndexFile(), bytes);
    for (const Memory memory : {Memory::Mapped, Memory::Copied}) {
      const auto [state, texts] = file.Find(memory);
      EXPECT_EQ(state, State::Damaged);
      ASSERT_EQ(texts.size(), 1U);
      EXPECT_TRUE(texts[0].starts_with(refused)) << texts[0];
    }
    const QXErrorCollector reports;
    EXPECT_EQ(QXGetFastFPIndexState(file.File(), true), State::Damaged);
    EXPECT_EQ(reports.Count(), 1U);
  };
  const std::size_t blocks = 4096;
  const std::size_t places = blocks + 4 * 257 * 64;
  const std::size_t bitCounts = places + 4 * 1700;
  const std::size_t rarest = bitCounts + 2 * 1700;
  ASSERT_EQ(whole.size(), rarest + 2 * 256);
  const std::size_t bounds[] = {0,   8,      16,     24,        48,     64,          80,
                                120, blocks, places, bitCounts, rarest, whole.size()};
  for (std::size_t i = 0; i + 1 < std::size(bounds); ++i) {
    for (int repeat = 0; repeat < 6; ++repeat) {
      const std::size_t at = bounds[i] + random() % (bounds[i + 1] - bounds[i]);
      SCOPED_TRACE(at);
      expectRefused(whole.substr(0, at));
      std::string flipped = whole;
      flipped[at] = static_cast<char>(flipped[at] ^ (1 << random() % 8));
      expectRefused(flipped);
    }
  }
  expectRefused(whole + '\0');
  expectRefused(whole + whole);
  expectRefused(std::string(whole.size(), '\0'));
}

// What no accident but a liar makes: every checksum is right, and what it protects is not.
TEST(SlicedIndexFile, RightChecksumsDoNotExcuseImpossibleNumbers) {
  const IndexedFile file(256, 600);
  ASSERT_TRUE(QXMakeFastFPIndexFile(file.File(), 1));
  const std::string whole = ReadFile(file.IndexFile());
  const std::size_t orders = 4096 + 2 * 257 * 64;
  const std::size_t bitCounts = orders + 4 * 600;
  const auto forge = [&](std::size_t at, std::uint64_t value, std::size_t numBytes) {
    std::string bytes = whole;
    std::memcpy(bytes.data() + at, &value, numBytes);
    const std::uint64_t ofOrders = Checksum(bytes.data() + orders, bytes.size() - orders);
    std::memcpy(bytes.data() + 80 + 2 * 8, &ofOrders, 8);
    SlicedIndexHeader header;
    std::memcpy(&header, bytes.data(), sizeof header);
    header.tableChecksum = Checksum(bytes.data() + 80, 4096 - 80);
    header.headerChecksum = ChecksumOf(header);
    std::memcpy(bytes.data(), &header, sizeof header);
    WriteFile(file.IndexFile(), bytes);
    return file.Find();
  };
  ASSERT_EQ(forge(8, 1, 8).first, State::Usable);  // the forger's own work is good
  struct Case {
    const char* name;
    std::size_t at;
    std::uint64_t value;
    std::size_t numBytes;
  };
  const Case cases[] = {
      {"a newer version", 8, 2, 8},
      {"a place beyond the records", orders + 40, 600, 4},
      {"a place twice", orders, *reinterpret_cast<const std::uint32_t*>(whole.data() + orders + 4), 4},
      {"bit counts that descend", bitCounts, 200, 2},
      {"more bits than there are", bitCounts + 2 * 599, 257, 2},
      {"a bit that there is not", bitCounts + 2 * 600, 256, 2},
      {"more records than in the .fpbin file", 48, 601, 8},
      {"records that overflow the size", 48, ~std::uint64_t{0} / 257, 8},
      {"no bits", 56, 0, 8},
      {"bits that overflow the size", 56, std::uint64_t{1} << 63, 8},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    const auto [state, texts] = forge(test.at, test.value, test.numBytes);
    EXPECT_EQ(state, State::Damaged);
    EXPECT_EQ(texts.size(), 1U);
  }
}

TEST(SlicedIndexFile, OfAChangedFileIsStale) {
  const IndexedFile file(256, 100);
  const std::string bytes = ReadFile(file.File());
  struct stat status {};
  ASSERT_EQ(stat(file.File().c_str(), &status), 0);
  const timespec times[] = {status.st_atim, status.st_mtim};
  const timespec later[] = {status.st_atim, {status.st_mtim.tv_sec, status.st_mtim.tv_nsec ^ 1}};
  const auto change = [&](const std::string& content, const timespec(&set)[2]) {
    WriteFile(file.File(), content);
    ASSERT_EQ(utimensat(AT_FDCWD, file.File().c_str(), set, 0), 0);
  };
  ASSERT_TRUE(QXMakeFastFPIndexFile(file.File(), 1));
  const Strings warning = {"Test() : index file " + file.IndexFile() + " is not used: it was made before " +
                           file.File() + " was changed; 'qxfp index' renews it"};

  std::string renamed = bytes;
  renamed[3] = 'M';  // of the molecule file in the header
  change(renamed, times);
  EXPECT_EQ(file.Find(), std::pair(State::Stale, warning));
  change(bytes, later);
  EXPECT_EQ(file.Find(), std::pair(State::Stale, warning));
  change(bytes + "longer", times);
  EXPECT_EQ(file.Find(), std::pair(State::Stale, warning));
  change(bytes, times);
  EXPECT_EQ(file.Find(), std::pair(State::Usable, Strings{}));

  // Replaced between the opening of the records and that of the index, which belongs to the new file.
  const FpbinStamp before = FpbinStamp::Of(file.File());
  change(bytes, later);
  ASSERT_TRUE(QXMakeFastFPIndexFile(file.File(), 1));
  const QXErrorCollector reports;
  const SlicedIndexFile found(file.File(), before, QXFastFPDatabaseParams(file.File()), "Test()");
  EXPECT_EQ(found.State(), State::Stale);
  EXPECT_EQ(Texts(reports), warning);
}

TEST(SlicedIndexFile, OneThatCannotBeWrittenLeavesNothing) {
  const IndexedFile file(256, 2000);
  const std::string name = file.IndexFile();
  const std::string cannot = "QXMakeFastFPIndexFile() : cannot make " + name + ": ";
  const auto expectFailure = [&](const std::string& reason) {
    const QXErrorCollector reports;
    EXPECT_FALSE(QXMakeFastFPIndexFile(file.File(), 2));
    EXPECT_EQ(Texts(reports), Strings{cannot + reason});
  };
  // A folder has the name.
  fs::create_directories(name + "/x");
  expectFailure("Is a directory");
  EXPECT_EQ(file.NumFiles(), 2U);
  fs::remove_all(name);

  // The disk is full: with the file that was there before it, and without.
  for (const bool hasOlder : {false, true}) {
    EXPECT_TRUE(!hasOlder || QXMakeFastFPIndexFile(file.File(), 1));
    struct rlimit limit {};
    getrlimit(RLIMIT_FSIZE, &limit);
    const struct rlimit less = {40000, limit.rlim_max};
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &less);
    expectFailure("File too large");
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, ignored);
    EXPECT_EQ(file.NumFiles(), hasOlder ? 2U : 1U);
    EXPECT_EQ(file.Find().first, hasOlder ? State::Usable : State::None);
  }
  if (geteuid() != 0) {  // root may write anywhere
    const fs::path folder = fs::path(name).parent_path();
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
    expectFailure("Permission denied");
    fs::permissions(folder, fs::perms::owner_all);
  }
}

TEST(SlicedIndexFile, UnsoundFingerprintFilesHaveNone) {
  const IndexedFile file(256, 20);
  const std::string bytes = ReadFile(file.File());
  const std::string cannot = "QXMakeFastFPIndexFile() : cannot make an index of " + file.File() + ": ";
  const auto with = [&bytes](std::size_t at, const std::string& text) {
    return std::string(bytes).replace(at, text.size(), text);
  };
  const std::pair<std::string, std::string> cases[] = {
      {bytes.substr(0, 700), cannot + "its header cannot be read"},
      {bytes.substr(0, bytes.size() - 1), cannot + "the file size does not fit the number of fingerprints"},
      {with(0, "BE"), cannot + "it was written in big-endian byte order"},
      {with(800 + 3 * 48 + 8, std::string("\x01\x01", 2)),
       "QXMakeFastFPIndexFile() : cannot make " + file.IndexFile() +
           ": fingerprint 3 is damaged: its index is 3, its bit count 257 of 256"},
  };
  for (const auto& [content, text] : cases) {
    WriteFile(file.File(), content);
    const QXErrorCollector reports;
    EXPECT_FALSE(QXMakeFastFPIndexFile(file.File(), 1));
    ASSERT_FALSE(reports.Messages().empty());
    EXPECT_EQ(reports.Messages().back().text, text);
    EXPECT_EQ(file.NumFiles(), 1U);
  }
  const QXErrorCollector reports;
  fs::remove(file.File());
  EXPECT_FALSE(QXMakeFastFPIndexFile(file.File(), 1));
}

TEST(SlicedIndexFile, AKilledWriterLeavesNothingThatIsTaken) {
  const IndexedFile file(1024, 20000);
  std::mt19937_64 random(6);
  unsigned numKilled = 0;
  for (int repeat = 0; repeat < 20; ++repeat) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) _exit(QXMakeFastFPIndexFile(file.File(), 1) ? 0 : 1);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    numKilled += WIFSIGNALED(status);
    const auto [state, texts] = file.Find(Memory::Copied);
    EXPECT_TRUE(state == State::None || state == State::Usable);
    EXPECT_EQ(texts, Strings{});
    EXPECT_TRUE(WIFSIGNALED(status) || state == State::Usable);
  }
  EXPECT_GT(numKilled, 0U);
}

}  // namespace
}  // namespace QXFingrix
