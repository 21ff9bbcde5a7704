#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>

#include "Platform/File.h"
#include "support/TemporaryFolder.h"
#include "support/Values.h"

namespace {

using namespace test;
namespace fs = std::filesystem;
using State = Tova::File::State;

TEST(Files, OnlyRegularFilesOpen) {
  const TemporaryFolder temporary;
  const fs::path folder = temporary.Path();
  fs::create_directory(folder / "folder");
  std::ofstream(folder / "file") << "0123456789";
  std::ofstream(folder / "empty");
  mkfifo((folder / "fifo").c_str(), 0600);
  fs::create_symlink("file", folder / "link");
  fs::create_symlink("nothing", folder / "dangling");
  const struct {
    const char* name;
    bool exists;
    State state;
    int error;
    uint64_t size;
  } cases[] = {{"file", true, State::kOpened, 0, 10},
               {"link", true, State::kOpened, 0, 10},
               {"empty", true, State::kOpened, 0, 0},
               {"folder", true, State::kNotOpened, EISDIR, 0},
               {"fifo", true, State::kNotOpened, EINVAL, 0},
               {"dangling", false, State::kNotOpened, ENOENT, 0},
               {"missing", false, State::kNotOpened, ENOENT, 0},
               {"file/below", false, State::kNotOpened, ENOTDIR, 0}};
  for (const auto& c : cases) {
    const auto file = Tova::File::AtUrl(FileUrl(folder / c.name).get());
    ASSERT_EQ(file != nullptr, c.exists) << c.name;
    if (!file) continue;
    EXPECT_EQ(file->GetState(), c.state) << c.name;
    EXPECT_EQ(file->Error(), c.error) << c.name;
    EXPECT_EQ(file->Path(), folder / c.name);
    const auto fork = file->Open(Tova::Fork::kData);
    EXPECT_EQ(fork.has_value(), c.state == State::kOpened) << c.name;
    EXPECT_EQ(fork.value_or(Tova::ByteView()).Size(), c.size) << c.name;
  }
  EXPECT_FALSE(Tova::File::AtUrl(nullptr));
}

TEST(Files, WhatWasOpenedStaysWhenTheFileGoes) {
  const TemporaryFolder temporary;
  const std::string path = temporary.Write("file", {'0', '1', '2'});
  const auto file = Tova::File::AtUrl(FileUrl(path).get());
  fs::remove(path);
  EXPECT_TRUE(file->IsMapped());
  EXPECT_TRUE(file->Open(Tova::Fork::kData)->Matches(0, "012"));
}

TEST(Files, BytesInMemoryPassForAFile) {
  const uint8_t bytes[] = {'a', 'b', 'c'};
  auto data = Tova::Adopt(TovaDataCreate(bytes, sizeof bytes));
  auto url = Tova::Adopt(TovaURLCreateWithData(data.get(), Tova::MakeString("folder/a b.ttf").get()));
  const auto same = Tova::Adopt(TovaURLCreateWithData(data.get(), Tova::MakeString("folder/a b.ttf").get()));
  const auto other = Tova::Adopt(TovaURLCreateWithData(Tova::Adopt(TovaDataCreate(bytes, 2)).get(), nullptr));
  EXPECT_TRUE(TovaEqual(url.get(), same.get()));
  EXPECT_FALSE(TovaEqual(url.get(), other.get()));
  EXPECT_EQ(Description(url.get()), "memory:folder/a%20b.ttf");
  EXPECT_EQ(Tova::Text(Tova::Adopt(TovaURLCopyLastPathComponent(url.get()))), "a b.ttf");
  EXPECT_EQ(TovaURLGetFileSystemPath(url.get()), nullptr);
  EXPECT_EQ(TovaURLCreateWithData(nullptr, nullptr), nullptr);

  const auto file = Tova::File::AtUrl(url.get());
  data = {};
  url = {};
  ASSERT_TRUE(file);
  EXPECT_FALSE(file->IsMapped());
  EXPECT_EQ(file->Path(), "folder/a b.ttf");
  EXPECT_TRUE(file->Open(Tova::Fork::kData)->Matches(0, "abc"));
}

}  // namespace
