#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>

#include "Platform/File.h"
#include "support/TemporaryFolder.h"
#include "support/Values.h"

namespace {

using namespace test;
namespace fs = std::filesystem;
using Tova::FileMapping;
using Tova::FileReference;
using Tova::Fork;
using Tova::ForkReader;

class Files : public testing::Test {
 protected:
  Files() {
    fs::create_directory(folder_ / "folder");
    std::ofstream(folder_ / "file") << "0123456789";
    std::ofstream(folder_ / "empty");
    mkfifo((folder_ / "fifo").c_str(), 0600);
    fs::create_symlink("file", folder_ / "link");
    fs::create_symlink("nothing", folder_ / "dangling");
  }

  std::optional<FileReference> Reference(const char* name) const {
    return FileReference::FromUrl(FileUrl(folder_ / name).get());
  }

  TemporaryFolder temporary_;
  fs::path folder_ = temporary_.Path();
};

TEST_F(Files, OnlyRegularFilesOpen) {
  const struct {
    const char* name;
    bool exists, opens;
    FileMapping::Step reached;
    int error;
  } cases[] = {{"file", true, true, FileMapping::Step::kDone, 0},
               {"link", true, true, FileMapping::Step::kDone, 0},
               {"empty", true, true, FileMapping::Step::kMap, EINVAL},
               {"folder", true, false, FileMapping::Step::kOpen, EISDIR},
               {"fifo", true, false, FileMapping::Step::kOpen, EINVAL},
               {"dangling", false, false, FileMapping::Step::kStatus, ENOENT},
               {"missing", false, false, FileMapping::Step::kStatus, ENOENT},
               {"file/below", false, false, FileMapping::Step::kStatus, ENOTDIR}};
  for (const auto& c : cases) {
    const auto reference = Reference(c.name);
    EXPECT_EQ(reference.has_value(), c.exists) << c.name;
    if (reference) {
      EXPECT_EQ(ForkReader::Open(*reference, Fork::kData).has_value(), c.opens) << c.name;
      EXPECT_FALSE(ForkReader::Open(*reference, Fork::kResource)) << c.name;
      EXPECT_EQ(TovaURLGetFileSystemPath(reference->CreateUrl().get()), reference->Path());
    }
    const auto result = FileMapping::Map((folder_ / c.name).string());
    EXPECT_EQ(result.reached, c.reached) << c.name;
    EXPECT_EQ(result.error, c.error) << c.name;
    EXPECT_EQ(result.mapping != nullptr, c.reached == FileMapping::Step::kDone) << c.name;
  }
  EXPECT_FALSE(FileReference::FromUrl(nullptr));
}

TEST_F(Files, ReadingEndsWithTheFileAndAMappingOutlivesIt) {
  auto reader = ForkReader::Open(*Reference("file"), Fork::kData);
  ASSERT_TRUE(reader);
  uint8_t buffer[16] = {};
  EXPECT_EQ(reader->Read(buffer, 4), 4U);
  EXPECT_EQ(reader->Read(buffer, 16), 6U);
  EXPECT_EQ(buffer[5], '9');
  EXPECT_EQ(reader->Read(buffer, 16), 0U);
  ForkReader moved = std::move(*reader);
  EXPECT_TRUE(moved.Close());
  EXPECT_FALSE(moved.Read(buffer, 1)) << "read from a closed fork";

  auto mapping = FileMapping::Map((folder_ / "file").string()).mapping;
  fs::remove(folder_ / "file");
  ASSERT_TRUE(mapping);
  EXPECT_TRUE(mapping->Bytes().Matches(0, "0123456789"));
  EXPECT_EQ(mapping->Bytes().Size(), 10U);
}

}  // namespace
