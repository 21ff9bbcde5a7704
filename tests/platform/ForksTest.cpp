#include <gtest/gtest.h>

#include "Platform/File.h"
#include "Platform/ResourceFile.h"
#include "support/SuitcaseBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/Values.h"

namespace {

using namespace test;
using Tova::ByteView;
using Tova::Fork;
using Tova::ResourceFile;

ByteView View(const Bytes& bytes) { return ByteView(bytes.data(), bytes.size()); }
Bytes Text(const char* text) { return TableBuilder().Text(text); }

class Forks : public testing::Test {
 protected:
  std::shared_ptr<const Tova::File> Open(const Bytes& bytes, const std::string& name = "file") {
    return Tova::File::AtUrl(FileUrl(folder_.Write(name, bytes)).get());
  }
  /// The fork's bytes as text; "none" without the fork.
  static std::string Read(const Tova::File& file, Fork fork) {
    const auto bytes = file.Open(fork);
    if (!bytes) return "none";
    std::string text;
    for (uint64_t i = 0; i < bytes->Size(); ++i) text += static_cast<char>(bytes->U8(i));
    return text;
  }
  /// Both forks and the type.
  static std::string Describe(const Tova::File& file) {
    const auto type = file.TypeCode();
    const TableBuilder code = type ? TableBuilder().U32(*type) : TableBuilder().Text("none");
    return Read(file, Fork::kData) + "," + Read(file, Fork::kResource) + "," +
           std::string(code.Data().begin(), code.Data().end());
  }

  TemporaryFolder folder_;
};

TEST_F(Forks, LieInTheFileItselfInOneFileOrBesideIt) {
  EXPECT_EQ(Describe(*Open(Text("plain"))), "plain,none,none");
  EXPECT_EQ(Describe(*Open(OneFile(Text("data"), Text("resource"), "FFIL"))), "data,resource,FFIL");
  EXPECT_EQ(Describe(*Open(OneFile(Text("data"), Text("resource")))), "data,resource,none");
  EXPECT_EQ(Describe(*Open(HeaderForm(Text("data"), Text("resource"), "LWFN"))), "data,resource,LWFN");
  EXPECT_EQ(Describe(*Open(OneFile({}, {}))), ",,none");

  folder_.Write("._file", Sidecar(Text("beside"), "TYPE"));
  EXPECT_EQ(Describe(*Open(Text("plain"))), "plain,beside,TYPE");
  EXPECT_EQ(Describe(*Open(OneFile(Text("data"), Text("resource"), "FFIL"))), "data,beside,TYPE");
  folder_.Write("._file", Sidecar(Text("beside")).Patch("entry.2", 3));
  EXPECT_EQ(Describe(*Open(OneFile(Text("data"), Text("resource"), "FFIL"))), "data,resource,FFIL");
}

TEST_F(Forks, BrokenFormatsAreNone) {
  const TableBuilder sidecar = Sidecar(Text("beside"), "TYPE");
  for (const auto& [label, value, expected] :
       std::vector<std::tuple<std::string, uint64_t, std::string>>{{"magic", 0x00051600, "plain,none,none"},
                                                                   {"version", 0x00010000, "plain,none,none"},
                                                                   {"entry.2.length", 7, "plain,none,TYPE"},
                                                                   {"entry.2.offset", 0xFFFFFFFF, "plain,none,TYPE"},
                                                                   {"entry.9.length", 3, "plain,beside,none"},
                                                                   {"entryCount", 1, "plain,none,TYPE"},
                                                                   {"entryCount", 0xFFFF, "plain,beside,TYPE"}}) {
    folder_.Write("._file", sidecar.With(label, value));
    EXPECT_EQ(Describe(*Open(Text("plain"))), expected) << label;
  }
  std::filesystem::remove(folder_.File("._file"));

  const TableBuilder header = HeaderForm(Text("data"), Text("resource"), "LWFN");
  for (const char* label : {"zero", "nameLength", "zero74", "dataLength", "crc"}) {
    const auto file = Open(header.With(label, 64));
    EXPECT_EQ(Read(*file, Fork::kData).size(), header.Size()) << label << ": a plain file";
  }
  EXPECT_EQ(Read(*Open(Bytes(127)), Fork::kData).size(), 127u);
}

TEST_F(Forks, SiblingsAreFilesOfTheSameFolder) {
  const auto file = Open(Text("one"), "one");
  folder_.Write("two", Text("two"));
  std::filesystem::create_symlink("one", folder_.File("link"));
  ASSERT_TRUE(file->Sibling("two"));
  EXPECT_EQ(Read(*file->Sibling("two"), Fork::kData), "two");
  EXPECT_FALSE(file->IsSameAs(*file->Sibling("two")));
  EXPECT_TRUE(file->IsSameAs(*file->Sibling("link")));
  for (const char* name : {"three", "", ".", "..", "../one"}) EXPECT_FALSE(file->Sibling(name)) << name;
}

TableBuilder Fork() {
  SuitcaseBuilder suitcase;
  suitcase.Add("FOND", 128, Text("family"), "Name").Add("NFNT", -1, Text("bitmap")).Add("FOND", 129, {});
  return suitcase.Build();
}
constexpr uint32_t kFamilies = 0x464F4E44, kBitmaps = 0x4E464E54, kOutlines = 0x73666E74;

TEST(Resources, AreListedByTypeWithTheirIdsAndNames) {
  const Bytes fork = Fork();
  const auto file = ResourceFile::Open(View(fork));
  ASSERT_TRUE(file);
  EXPECT_EQ(file->List(kOutlines).Count(), 0u);
  const Tova::ResourceList families = file->List(kFamilies);
  ASSERT_EQ(families.Count(), 2u);
  EXPECT_TRUE(families[0]->id == 128 && families[0]->name == View(Text("Name")));
  EXPECT_TRUE(families[0]->data == View(Text("family")));
  EXPECT_TRUE(families[1]->name.Empty() && families[1]->data.Empty());
  EXPECT_FALSE(families[2]);
  EXPECT_EQ(file->List(kBitmaps)[0]->id, -1);
}

TEST(Resources, AMapThatLeavesTheForkOpensNothing) {
  const TableBuilder fork = Fork();
  const auto opens = [&](const char* label, uint64_t value) {
    return ResourceFile::Open(View(fork.With(label, value))).has_value();
  };
  EXPECT_TRUE(opens("dataOffset", 16));
  EXPECT_FALSE(opens("mapOffset", fork.Offset("map") + 1) || opens("mapOffset", 0xFFFFFFFF));
  EXPECT_FALSE(opens("mapLength", 29) || opens("mapLength", 0xFFFFFFFF) || opens("typeList", 0xFFFF));
  EXPECT_FALSE(ResourceFile::Open(View(Bytes(15))) || ResourceFile::Open(View(Bytes(1000))));
}

TEST(Resources, WhatLeavesTheForkIsNoResource) {
  const TableBuilder fork = Fork();
  TableBuilder damaged;
  const auto list = [&](const char* label, uint64_t value) {
    damaged = fork.With(label, value);
    return ResourceFile::Open(View(damaged))->List(kFamilies);
  };
  for (const auto& [label, value] : {std::pair<const char*, uint64_t>{"FOND.128.data", 0xFFFFFF},
                                     {"FOND.128.length", 70},
                                     {"FOND.128.length", 0xFFFFFFFF},
                                     {"FOND.references", 0xFFFF},
                                     {"dataOffset", 0xFFFFFFFF}}) {
    EXPECT_FALSE(list(label, value)[0]) << label;
  }
  EXPECT_TRUE(list("FOND.128.name", 1000)[0]->name.Empty());
  EXPECT_EQ(list("FOND.count", 0xFFFF).Count(), 65536u);
  EXPECT_EQ(list("typeCount", 0xFFFF).Count(), 0u) << "no types";
}

}  // namespace
