#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/TableBuilder.h"

namespace test {

/// Makes a resource file from resources of any type, ID and name, in the order in which they were given, and packs
/// forks into the files that hold them.
class SuitcaseBuilder {
 public:
  SuitcaseBuilder& Add(const std::string& type, int id, Bytes data, const std::string& name = "");

  /// The fork. Labels: "dataOffset", "mapOffset", "dataLength", "mapLength", "typeList", "nameList", "typeCount"; of a
  /// type "POST.count", "POST.references"; of a resource "POST.501.id", ".name", ".data", ".length".
  TableBuilder Build() const;

 private:
  struct Entry {
    std::string type;
    int id;
    Bytes data;
    std::string name;
  };
  std::vector<Entry> entries_;
};

/// What a sidecar "._NAME" holds: the fork, and the file's type where one is given.
TableBuilder Sidecar(const Bytes& resourceFork, const std::string& type = "");
/// One file with both forks, by a table of entries.
TableBuilder OneFile(const Bytes& dataFork, const Bytes& resourceFork, const std::string& type = "");
/// One file with both forks behind a header of 128 bytes. Labels: "zero", "nameLength", "zero74", "dataLength",
/// "resourceLength", "crc"; a change of the others needs a new crc.
TableBuilder HeaderForm(const Bytes& dataFork, const Bytes& resourceFork, const std::string& type);

/// A font family. Labels: those of the header ("widthOffset", "kernOffset", "styleOffset", "fatCount"), "fat.0.size"
/// and so on, and each table's.
struct FamilyBuilder {
  struct Association {
    int size, style, id;
  };
  struct KernEntry {
    int style, pairs;
  };
  std::vector<Association> fat = {{0, 0, 128}};
  bool hasOffsets = true;            ///< "offsetCount" with one offset, "boxCount"
  int boxes = 1;                     ///< "box.0" ...; below 1: no table
  std::vector<std::string> strings;  ///< "styles", "glyphEncoding", "index.0" ..., "stringCount"; empty: no table
  std::vector<int> indexes;          ///< of styles 0 ...; the others are 1
  std::vector<KernEntry> kerning;    ///< "kernCount", "kern.0.pairs"; empty: no table
  bool hasWidths = false;            ///< "widths"
  TableBuilder Build() const;
};

/// The pieces of an outline file, as 'POST' resources from 501 on: text, binary, end.
std::vector<Bytes> OutlinePieces();
SuitcaseBuilder OutlineFile(const std::vector<Bytes>& pieces = OutlinePieces());

}  // namespace test
