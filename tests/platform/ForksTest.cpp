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
  const auto beside = [&](TableBuilder broken) {
    folder_.Write("._file", broken);
    return Describe(*Open(Text("plain")));
  };
  EXPECT_EQ(beside(TableBuilder(sidecar).Patch("magic", 0x00051600)), "plain,none,none");
  EXPECT_EQ(beside(TableBuilder(sidecar).Patch("version", 0x00010000)), "plain,none,none");
  EXPECT_EQ(beside(TableBuilder(sidecar).Patch("entry.2.length", 7)), "plain,none,TYPE") << "beyond the end";
  EXPECT_EQ(beside(TableBuilder(sidecar).Patch("entry.2.offset", 0xFFFFFFFF)), "plain,none,TYPE");
  EXPECT_EQ(beside(TableBuilder(sidecar).Patch("entry.9.length", 3)), "plain,beside,none");
  EXPECT_EQ(beside(TableBuilder(sidecar).Patch("entryCount", 1)), "plain,none,TYPE");
  EXPECT_EQ(beside(TableBuilder(sidecar).Patch("entryCount", 0xFFFF)), "plain,beside,TYPE");
  std::filesystem::remove(folder_.File("._file"));

  const TableBuilder header = HeaderForm(Text("data"), Text("resource"), "LWFN");
  for (const char* label : {"zero", "nameLength", "zero74", "dataLength", "crc"}) {
    const auto file = Open(TableBuilder(header).Patch(label, 64));
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

TEST(Resources, AreListedByTypeWithTheirIdsAndNames) {
  const TableBuilder fork = SuitcaseBuilder()
                                .Add("FOND", 128, Text("family"), "Name")
                                .Add("NFNT", -1, Text("bitmap"))
                                .Add("FOND", 129, {}, "Second")
                                .Build();
  const auto file = ResourceFile::Open(View(fork));
  ASSERT_TRUE(file);
  EXPECT_EQ(file->List(0x73666E74).Count(), 0u);
  const Tova::ResourceList families = file->List(0x464F4E44);
  ASSERT_EQ(families.Count(), 2u);
  EXPECT_EQ(families[0]->id, 128);
  EXPECT_TRUE(families[0]->name.Matches(0, "Name") && families[0]->name.Size() == 4);
  EXPECT_TRUE(families[0]->data.Matches(0, "family") && families[0]->data.Size() == 6);
  EXPECT_EQ(families[1]->data.Size(), 0u);
  EXPECT_FALSE(families[2]);
  EXPECT_EQ((*file->List(0x4E464E54)[0]).id, -1);
  EXPECT_TRUE((*file->List(0x4E464E54)[0]).name.Empty());
}

TEST(Resources, AMapThatLeavesTheForkOpensNothing) {
  const TableBuilder fork = SuitcaseBuilder().Add("FOND", 128, Text("family"), "Name").Build();
  const auto opens = [&](const char* label, uint64_t value) {
    return ResourceFile::Open(View(TableBuilder(fork).Patch(label, value))).has_value();
  };
  EXPECT_TRUE(opens("dataOffset", 16));
  EXPECT_FALSE(opens("mapOffset", fork.Offset("map") + 1));
  EXPECT_FALSE(opens("mapOffset", 0xFFFFFFFF));
  EXPECT_FALSE(opens("mapLength", 29));
  EXPECT_FALSE(opens("mapLength", 0xFFFFFFFF));
  EXPECT_FALSE(opens("typeList", 0xFFFF));
  EXPECT_FALSE(ResourceFile::Open(View(Bytes(15))));
  EXPECT_FALSE(ResourceFile::Open(View(Bytes(1000))));
  const auto empty = ResourceFile::Open(View(TableBuilder(fork).Patch("typeCount", 0xFFFF)));
  EXPECT_EQ(empty->List(0x464F4E44).Count(), 0u) << "no types";
}

TEST(Resources, WhatLeavesTheForkIsNoResource) {
  const TableBuilder fork = SuitcaseBuilder().Add("FOND", 128, Text("family"), "Name").Build();
  const auto family = [&](const char* label, uint64_t value) {
    return ResourceFile::Open(View(TableBuilder(fork).Patch(label, value)))->List(0x464F4E44)[0];
  };
  EXPECT_TRUE(family("FOND.128.name", 0));
  EXPECT_FALSE(family("FOND.128.data", 0xFFFFFF));
  EXPECT_FALSE(family("FOND.128.length", 7));
  EXPECT_FALSE(family("FOND.128.length", 0xFFFFFFFF));
  EXPECT_FALSE(family("FOND.references", 0xFFFF));
  EXPECT_FALSE(family("dataOffset", 0xFFFFFFFF));
  EXPECT_TRUE(family("FOND.128.name", 1000)->name.Empty());
  EXPECT_EQ(ResourceFile::Open(View(TableBuilder(fork).Patch("FOND.count", 0xFFFF)))->List(0x464F4E44).Count(), 65536u);
}

}  // namespace
