#include <gtest/gtest.h>
#include <unistd.h>

#include <Tova/Tova.hpp>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;

/// A bundle share/<name> near the running program, removed at the end.
class BundleTest : public testing::Test {
 protected:
  BundleTest() {
    Write("Info.plist", "<plist><true/></plist>");
    Write("en/Texts.strings",
          "<plist><dict><key>hello</key><string>Hello</string><key>bye</key><string>Bye</string>"
          "<key>odd</key><integer>1</integer></dict></plist>");
    Write("en/OS_2.strings", "<plist><dict><key>bye</key><string>Bye 2</string></dict></plist>");
    Write("de/Texts.strings", "<plist><dict><key>hello</key><string>Hallo</string></dict></plist>");
    Write("de_AT/Texts.strings", "<plist><dict>malformed");
  }
  ~BundleTest() override { fs::remove_all(folder_); }

  void Write(const std::string& file, const char* text) const {
    fs::create_directories((folder_ / file).parent_path());
    std::ofstream(folder_ / file) << text;
  }
  TovaBundleRef Bundle() const { return TovaBundleGetWithIdentifier(Tova::MakeString("test." + name_).get()); }
  static std::string Localized(TovaBundleRef bundle, const char* key, const std::string& table = "Texts") {
    return std::string(Tova::Text(Tova::Adopt(TovaBundleCopyLocalizedString(
        bundle, Tova::MakeString(key).get(), Tova::MakeString("default").get(), Tova::MakeString(table).get()))));
  }

  std::string name_ = "Bundle" + std::to_string(getpid());
  fs::path folder_ = fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "share" / name_;
};

TEST_F(BundleTest, ResourcesAreFoundByNameAndType) {
  ASSERT_NE(Bundle(), nullptr);
  EXPECT_EQ(Bundle(), Bundle());
  const auto find = [&](const char* name, const char* type) {
    const auto url =
        Tova::Adopt(TovaBundleCopyResourceURL(Bundle(), Tova::MakeString(name).get(), Tova::MakeString(type).get()));
    return url ? std::string(TovaURLGetFileSystemPath(url.get())) : "none";
  };
  EXPECT_EQ(find("Info", "plist"), (fs::canonical(folder_) / "Info.plist").string());
  EXPECT_EQ(find("en/Texts", "strings"), "none");
  EXPECT_EQ(find("..", ""), "none");
  EXPECT_EQ(TovaBundleGetWithIdentifier(Tova::MakeString("test.../share").get()), nullptr);
}

TEST_F(BundleTest, TextsFallBackToTheDefault) {
  const TovaBundleRef bundle = Bundle();
  EXPECT_EQ(Localized(bundle, "bye"), "Bye");
  EXPECT_EQ(Localized(bundle, "odd"), "default");
  EXPECT_EQ(Localized(bundle, "bye", "Missing"), "default");
  EXPECT_EQ(Localized(bundle, "bye", "../en/Texts"), "default");
  EXPECT_EQ(Localized(bundle, "bye", "OS/2"), "Bye 2");
}

// The language is settled once in a process, so each locale gets a process of its own.
TEST_F(BundleTest, TheLanguageComesFromTheFirstVariableSet) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const struct {
    const char *all, *messages, *lang, *hello;
  } cases[] = {{"de_AT.UTF-8", "en_US", "en_US", "Hallo"},
               {"", "de@euro", "en_US", "Hallo"},
               {"C", "de", "de", "Hello"},
               {"", "", "../de", "Hello"}};
  for (const auto& c : cases) {
    const auto run = [&] {
      setenv("LC_ALL", c.all, 1);
      setenv("LC_MESSAGES", c.messages, 1);
      setenv("LANG", c.lang, 1);
      const bool right = Localized(Bundle(), "hello") == c.hello && Localized(Bundle(), "bye") == "Bye";
      fs::remove_all(folder_);
      _exit(right ? 0 : 1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "") << c.all << c.messages << c.lang;
  }
}

}  // namespace
