#include <gmock/gmock.h>

#include "Answer.h"
#include "InstalledFonts.h"
#include "support/InstalledFolder.h"
#include "support/MessagePorts.h"
#include "support/Values.h"

namespace {

using namespace test;
using namespace testing;
namespace fs = std::filesystem;

class Installed : public testing::Test {
 protected:
  const InstalledFolder folder_;
  const Variable configuration_{"FONTCONFIG_FILE", folder_.Configuration().c_str()};
};

TEST_F(Installed, AFileIsNoDuplicateOfItself) {
  const std::string first = folder_.Write("fonts/first.ttf", "Twice");
  const std::string second = folder_.Write("fonts/second.ttf", "Twice");
  const std::string single = folder_.Write("fonts/single.ttf", "Once");
  const std::string copy = folder_.Write("copy.ttf", "Once");
  const std::string link = (folder_.Fonts().parent_path() / "link.ttf").string();
  fs::create_symlink(single, link);
  conduit::InstalledFonts fonts;
  EXPECT_EQ(fonts.Count(), 3u);
  EXPECT_EQ(fonts.Find("Twice", first), second);
  EXPECT_EQ(fonts.Find("Twice", second), first);
  EXPECT_EQ(fonts.Find("Once", copy), single);
  for (const std::string& same : {single, link, (folder_.Fonts() / ".." / "fonts" / "single.ttf").string()}) {
    EXPECT_EQ(fonts.Find("Once", same), "") << same;
  }
  EXPECT_EQ(fonts.Find("Once", "/no such file"), single);
  EXPECT_EQ(fonts.Find("once", copy), "");
  EXPECT_EQ(fonts.Find("", copy), "");
}

TEST_F(Installed, FontsThatComeAndGoAreNoticedAtOnce) {
  conduit::InstalledFonts fonts;
  EXPECT_EQ(fonts.Find("New", ""), "");
  for (const char* path : {"fonts/new.ttf", "fonts/deep/er/new.ttf", "later/new.ttf"}) {
    const std::string font = folder_.Write(path, "New");
    EXPECT_EQ(fonts.Find("New", ""), font);
    fs::remove(font);
    EXPECT_EQ(fonts.Find("New", ""), "") << path;
  }
}

TEST_F(Installed, WhatIsNoRequestGetsAnEmptyReplyAndALogLine) {
  conduit::InstalledFonts fonts;
  const LogLines log;
  const std::string url = "<key>FileURLKey</key><string>file:///x</string>";
  const std::string name = "<key>PostscritNameKey</key><string>Name</string>";
  const std::string wants = "<key>WantsDupKey</key><true/>";
  const std::string malformed[] = {
      "",
      "junk",
      "<plist><array/></plist>",
      "<plist><dict>" + url + name + "</dict></plist>",
      "<plist><dict>" + url + wants + "</dict></plist>",
      "<plist><dict>" + name + wants + "</dict></plist>",
      "<plist><dict>" + url + name + "<key>WantsDupKey</key><string/></dict></plist>",
      "<plist><dict><key>FileURLKey</key><string>x</string>" + name + wants + "</dict></plist>"};
  for (const std::string& request : malformed) EXPECT_FALSE(Answer(fonts, 0, MakeData(request).get())) << request;
  EXPECT_THAT(log.Get(), AllOf(SizeIs(std::size(malformed)), Each(StartsWith("Refused a malformed request: "))));
  const std::string request = "<plist><dict>" + url + name + wants + "</dict></plist>";
  EXPECT_FALSE(Answer(fonts, 1, MakeData(request).get()));
  EXPECT_EQ(log.Get().back(), "Refused a message of the unknown id 1.");

  const std::string font = folder_.Write("fonts/a b.ttf", "Name");
  const auto reply = Answer(fonts, 0, MakeData(request).get());
  EXPECT_EQ(Description(Tova::Adopt(TovaPropertyListCreateWithData(reply.get(), nullptr)).get()),
            "{Result: true, FileURLKey: " + Description(FileUrl(font).get()) + "}");
}

}  // namespace
