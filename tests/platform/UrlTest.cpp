#include <gtest/gtest.h>

#include <filesystem>

#include "support/Values.h"

namespace {

using namespace test;

std::string OrNone(const char* text) { return text ? text : "none"; }

TEST(Urls, TextIsTakenApart) {
  const struct {
    const char *text, *fileSystemPath, *path, *last;
  } cases[] = {{"file:///tmp/a%20b.ttf", "/tmp/a b.ttf", "/tmp/a b.ttf", "a b.ttf"},
               {"FILE://LocalHost/tmp/dir/", "/tmp/dir/", "/tmp/dir/", "dir"},
               {"file:/x%2Fy?q%41#f", "/x/y", "/x/y", "y"},
               {"file:///%FFx", "/\xFFx", "/\uFFFDx", "\uFFFDx"},
               {"file://server/share/x", "none", "/share/x", "x"},
               {"file:relative", "none", "relative", "relative"},
               {"https://example.org?x/y", "none", "", ""}};
  for (const auto& c : cases) {
    const auto url = Tova::Adopt(TovaURLCreateWithString(Tova::MakeString(c.text).get()));
    ASSERT_TRUE(url) << c.text;
    EXPECT_EQ(OrNone(TovaURLGetFileSystemPath(url.get())), c.fileSystemPath) << c.text;
    EXPECT_EQ(Tova::Text(Tova::Adopt(TovaURLCopyPath(url.get()))), c.path) << c.text;
    EXPECT_EQ(Tova::Text(Tova::Adopt(TovaURLCopyLastPathComponent(url.get()))), c.last) << c.text;
    EXPECT_EQ(Tova::Text(Tova::Adopt(TovaURLCopyString(url.get()))), c.text);
  }
  for (const char* text : {"", "/tmp/a.ttf", "a.ttf", ":x", "1f:///x", "fi le:///x", "file:///%", "file:///%4",
                           "file:///%4g", "file:///a%00b", "https://x/?%zz"}) {
    EXPECT_EQ(TovaURLCreateWithString(Tova::MakeString(text).get()), nullptr) << text;
  }
}

TEST(Urls, AnyPathSurvivesItsEscapes) {
  for (const std::string path : {"/tmp/a b%20#?;.ttf", "/\xFF\xFE/\xC3\xA9", "/-._~"}) {
    const auto url = FileUrl(path);
    EXPECT_EQ(OrNone(TovaURLGetFileSystemPath(url.get())), path);
    const auto text = Tova::Adopt(TovaURLCopyString(url.get()));
    const auto again = Tova::Adopt(TovaURLCreateWithString(text.get()));
    EXPECT_EQ(OrNone(TovaURLGetFileSystemPath(again.get())), path) << Tova::Text(text);
    EXPECT_TRUE(TovaEqual(url.get(), again.get()));
  }
  EXPECT_EQ(OrNone(TovaURLGetFileSystemPath(FileUrl("x.ttf").get())),
            (std::filesystem::current_path() / "x.ttf").string());
  EXPECT_EQ(TovaURLCreateWithFilePath(""), nullptr);
}

}  // namespace
