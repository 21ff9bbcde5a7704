#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"
#include "support/Values.h"

namespace {

using namespace test;
namespace fs = std::filesystem;

/// A fresh $XDG_CONFIG_HOME; each test has domains of its own, as they stay in memory.
class Preferences : public testing::Test {
 protected:
  Preferences() { setenv("XDG_CONFIG_HOME", folder_.c_str(), 1); }
  ~Preferences() override { unsetenv("XDG_CONFIG_HOME"); }

  void WriteFile(const std::string& domain, const std::string& text) const {
    fs::create_directories(folder_);
    std::ofstream(folder_ / (domain + ".plist")) << text;
  }
  std::string ReadFile(const std::string& domain) const {
    std::ifstream file(folder_ / (domain + ".plist"));
    return std::string(std::istreambuf_iterator<char>(file), {});
  }
  static std::string Get(const char* key, const std::string& domain) {
    const auto value =
        Tova::Adopt(TovaPreferencesCopyValue(Tova::MakeString(key).get(), Tova::MakeString(domain).get()));
    return value ? Description(value.get()) : "none";
  }
  static void Set(const char* key, TovaTypeRef value, const std::string& domain) {
    TovaPreferencesSetValue(Tova::MakeString(key).get(), value, Tova::MakeString(domain).get());
  }
  static bool Synchronize(const std::string& domain) {
    return TovaPreferencesSynchronize(Tova::MakeString(domain).get());
  }

  TemporaryFolder temporary_;
  fs::path folder_ = temporary_.Path() / "config";
  const Tova::String text_ = Tova::MakeString("text");
};

TEST_F(Preferences, ValuesAreKeptInMemoryAndWrittenOnRequest) {
  EXPECT_EQ(Get("key", "test.kept"), "none");
  EXPECT_TRUE(Synchronize("test.kept"));
  EXPECT_FALSE(fs::exists(folder_));
  Set("key", text_.get(), "test.kept");
  EXPECT_EQ(Get("key", "test.kept"), "text");
  EXPECT_TRUE(Synchronize("test.kept"));
  EXPECT_NE(ReadFile("test.kept").find("<key>key</key>"), std::string::npos);
  Set("key", nullptr, "test.kept");
  EXPECT_EQ(Get("key", "test.kept"), "none");
  EXPECT_TRUE(Synchronize("test.kept"));
  EXPECT_EQ(ReadFile("test.kept").find("<key>"), std::string::npos);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 1) << "a temporary file was left";
}

TEST_F(Preferences, OtherProgramsChangesSurvive) {
  WriteFile("test.shared", "<plist><dict><key>mine</key><true/></dict></plist>");
  EXPECT_EQ(Get("mine", "test.shared"), "true");
  WriteFile("test.shared", "<plist><dict><key>theirs</key><true/></dict></plist>");
  Set("mine", text_.get(), "test.shared");
  EXPECT_TRUE(Synchronize("test.shared"));
  EXPECT_EQ(Get("mine", "test.shared") + Get("theirs", "test.shared"), "texttrue");
  EXPECT_NE(ReadFile("test.shared").find("theirs"), std::string::npos);
}

TEST_F(Preferences, WhatCannotBeReadIsEmptyAndWhatCannotBeWrittenFails) {
  WriteFile("test.malformed", "<plist><dict>");
  WriteFile("test.other", "<plist><array/></plist>");
  fs::create_directories(folder_ / "test.folder.plist");
  for (const char* domain : {"test.malformed", "test.other", "test.folder", "../test", ""}) {
    EXPECT_EQ(Get("key", domain), "none") << domain;
  }
  for (const char* domain : {"test.malformed", "test.other", "test.folder", "../test", ""}) {
    Set("key", text_.get(), domain);
    EXPECT_EQ(Get("key", domain), "text") << domain;
    EXPECT_FALSE(Synchronize(domain)) << domain;
    EXPECT_EQ(Get("key", domain), "text") << domain;
  }
  EXPECT_EQ(ReadFile("test.malformed"), "<plist><dict>") << "left as it was";
  EXPECT_EQ(ReadFile("test.other"), "<plist><array/></plist>");
  Set("key", FileUrl("/x").get(), "test.unwritable");
  EXPECT_FALSE(Synchronize("test.unwritable"));
}

}  // namespace
