#include <gmock/gmock.h>

#include "Answer.h"
#include "InstalledFonts.h"
#include "support/InstalledFolder.h"
#include "support/Values.h"

namespace {

using namespace test;
using namespace testing;
namespace fs = std::filesystem;

TEST(InstalledFonts, AFileIsNoDuplicateOfItself) {
  const InstalledFolder folder;
  const std::string first = folder.WriteFont("fonts/first.ttf", "Twice");
  const std::string second = folder.WriteFont("fonts/second.ttf", "Twice");
  const std::string single = folder.WriteFont("fonts/single.ttf", "Once");
  const std::string copy = folder.WriteFont("copy.ttf", "Once");
  const std::string link = folder.File("link.ttf");
  fs::create_symlink(single, link);
  conduit::InstalledFonts fonts;
  EXPECT_EQ(fonts.Find("Twice", first), second);
  EXPECT_EQ(fonts.Find("Twice", second), first);
  for (const std::string& other : {copy, std::string("/no such file")}) EXPECT_EQ(fonts.Find("Once", other), single);
  for (const std::string& same : {single, link}) EXPECT_EQ(fonts.Find("Once", same), "") << same;
  for (const char* name : {"once", ""}) EXPECT_EQ(fonts.Find(name, copy), "") << name;
}

TEST(InstalledFonts, ThatComeAndGoAreNoticedAtOnce) {
  const InstalledFolder folder;
  conduit::InstalledFonts fonts;
  for (const char* path : {"fonts/new.ttf", "fonts/deep/er/new.ttf", "later/new.ttf"}) {
    EXPECT_EQ(fonts.Find("New", ""), "") << path;
    const std::string font = folder.WriteFont(path, "New");
    EXPECT_EQ(fonts.Find("New", ""), font);
    fs::remove(font);
  }
}

TEST(Answers, WhatIsNoRequestGetsAnEmptyReplyAndALogLine) {
  const InstalledFolder folder;
  conduit::InstalledFonts fonts;
  const LogLines log;
  const std::string url = "<key>FileURLKey</key><string>file:///x</string>";
  const std::string name = "<key>PostscritNameKey</key><string>Name</string>";
  const std::string wants = "<key>WantsDupKey</key><true/>";
  const auto answer = [&](int32_t id, const std::string& entries) {
    return Answer(fonts, id, MakeData("<plist><dict>" + entries + "</dict></plist>").get());
  };
  for (const std::string& entries :
       {std::string("<"), url + name, url + wants, name + wants, url + name + "<key>WantsDupKey</key><string/>",
        "<key>FileURLKey</key><string>x</string>" + name + wants}) {
    EXPECT_FALSE(answer(0, entries)) << entries;
  }
  EXPECT_THAT(log.lines, AllOf(SizeIs(6), Each(StartsWith("Refused a malformed request: "))));
  EXPECT_FALSE(answer(1, url + name + wants));
  EXPECT_EQ(log.lines.back(), "Refused a message of the unknown id 1.");

  const std::string font = Description(FileUrl(folder.WriteFont("fonts/a b.ttf", "Name")).get());
  const auto reply = Tova::Adopt(TovaPropertyListCreateWithData(answer(0, url + name + wants).get(), nullptr));
  EXPECT_EQ(Description(reply.get()), "{Result: true, FileURLKey: " + font + "}");
}

}  // namespace
