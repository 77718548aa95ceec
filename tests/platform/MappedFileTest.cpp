#include "QXPlatform/QXMappedFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>

namespace QXPlatform {
namespace {

class MappedFileTest : public testing::Test {
 protected:
  ~MappedFileTest() override { std::filesystem::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  std::string MakeFile(const std::string& name, const std::string& contents) const {
    std::ofstream(Path(name), std::ios::binary) << contents;
    return Path(name);
  }

  static std::string_view Contents(const QXMappedFile& file) { return {file.GetData(), file.GetSize()}; }

 private:
  static std::filesystem::path MakeFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "mapped-file-XXXXXX").string();
    return mkdtemp(name.data());
  }
  const std::filesystem::path folder_ = MakeFolder();
};

TEST_F(MappedFileTest, ShowsTheWholeFile) {
  const std::string contents = std::string(10000, 'x') + '\0' + "end";
  QXMappedFile file;
  std::string reason;
  ASSERT_TRUE(file.Open(MakeFile("a", contents), reason)) << reason;
  EXPECT_TRUE(file.IsOpen());
  EXPECT_EQ(Contents(file), contents);
  file.Close();
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(file.GetSize(), 0u);
}

TEST_F(MappedFileTest, EmptyFileOpensWithSizeZero) {
  QXMappedFile file;
  std::string reason;
  ASSERT_TRUE(file.Open(MakeFile("empty", ""), reason)) << reason;
  EXPECT_TRUE(file.IsOpen());
  EXPECT_EQ(file.GetSize(), 0u);
}

TEST_F(MappedFileTest, WhatIsNoReadableFileIsRefusedWithAReason) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  QXMappedFile file;
  const std::string good = MakeFile("good", "text");
  for (const auto& [path, expected] : std::initializer_list<std::pair<std::string, std::string>>{
           {Path("missing"), "No such file or directory"},
           {Path("."), "Is a directory"},
           {Path("pipe"), "Not an ordinary file"},
           {good + "/x", "Not a directory"},
           {"", "No such file or directory"}}) {
    std::string reason;
    ASSERT_TRUE(file.Open(good, reason));
    EXPECT_FALSE(file.Open(path, reason)) << path;
    EXPECT_EQ(reason, expected);
    EXPECT_FALSE(file.IsOpen());
  }
}

TEST_F(MappedFileTest, MovingHandsTheMappingOver) {
  std::string reason;
  QXMappedFile source;
  ASSERT_TRUE(source.Open(MakeFile("a", "first"), reason));
  QXMappedFile target;
  ASSERT_TRUE(target.Open(MakeFile("b", "second"), reason));
  target = std::move(source);
  EXPECT_EQ(Contents(target), "first");
  EXPECT_FALSE(source.IsOpen());  // NOLINT(bugprone-use-after-move): its state is promised
  QXMappedFile last(std::move(target));
  EXPECT_EQ(Contents(last), "first");
  EXPECT_FALSE(target.IsOpen());  // NOLINT(bugprone-use-after-move)
}

}  // namespace
}  // namespace QXPlatform
