#include "support/MetadataBuilder.h"

#include "support/FontBuilder.h"

namespace test {

std::string Utf16(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit >> 8);
    bytes += static_cast<char>(unit & 0xFF);
  }
  return bytes;
}

NameRecord MicrosoftName(uint16_t code, std::string_view text, uint16_t language) {
  return {3, 1, language, code, Utf16(std::u16string(text.begin(), text.end()))};
}

TableBuilder NameRecordsTable(const std::vector<NameRecord>& records, const std::vector<std::string>& tags) {
  TableBuilder table;
  TableBuilder storage;
  const size_t tag_size = tags.empty() ? 0 : 2 + 4 * tags.size();
  table.U16(tags.empty() ? 0 : 1, "format").U16(records.size(), "count");
  table.U16(6 + 12 * records.size() + tag_size, "stringOffset");
  for (size_t i = 0; i < records.size(); ++i) {
    const auto& [platform, script, language, code, bytes] = records[i];
    const std::string index = std::to_string(i);
    table.U16(platform).U16(script).U16(language, "language" + index).U16(code, "code" + index);
    table.U16(bytes.size(), "length" + index).U16(storage.Size(), "offset" + index);
    storage.Text(bytes);
  }
  if (!tags.empty()) table.U16(tags.size(), "tagCount");
  for (size_t i = 0; i < tags.size(); ++i) {
    const std::string bytes = Utf16(std::u16string(tags[i].begin(), tags[i].end()));
    const std::string index = std::to_string(i);
    table.U16(bytes.size(), "tagLength" + index).U16(storage.Size(), "tagOffset" + index);
    storage.Text(bytes);
  }
  return table.Append(storage);
}

TableBuilder StoredNamesTable(const std::vector<uint16_t>& indices, const std::vector<std::string>& names) {
  TableBuilder post = PostTable().Patch("version", 0x00020000);
  post.U16(indices.size(), "numGlyphs");
  for (size_t i = 0; i < indices.size(); ++i) post.U16(indices[i], "index" + std::to_string(i));
  for (size_t i = 0; i < names.size(); ++i) post.U8(names[i].size(), "length" + std::to_string(i)).Text(names[i]);
  return post;
}

TableBuilder NameOffsetsTable(const std::vector<int8_t>& offsets) {
  TableBuilder post = PostTable().Patch("version", 0x00025000);
  post.U16(offsets.size(), "numGlyphs");
  for (size_t i = 0; i < offsets.size(); ++i) post.S8(offsets[i], "offset" + std::to_string(i));
  return post;
}

TableBuilder OS2Table(uint16_t version) {
  TableBuilder table;
  table.U16(version, "version").S16(600, "xAvgCharWidth").U16(400, "usWeightClass").U16(5, "usWidthClass");
  table.U16(0, "fsType");
  for (const char* kind : {"ySubscript", "ySuperscript"}) {
    for (const char* field : {"XSize", "YSize", "XOffset", "YOffset"}) table.S16(300, std::string(kind) + field);
  }
  table.S16(50, "yStrikeoutSize").S16(250, "yStrikeoutPosition").U16(0, "sFamilyClass");
  for (int i = 0; i < 10; ++i) table.U8(0, "panose" + std::to_string(i));
  for (int i = 1; i <= 4; ++i) table.U32(i == 1 ? 1 : 0, "ulUnicodeRange" + std::to_string(i));
  table.U32(0x54455354, "achVendID").U16(0x0040, "fsSelection");
  table.U16(' ', "usFirstCharIndex").U16('A', "usLastCharIndex");
  table.S16(800, "sTypoAscender").S16(-200, "sTypoDescender").S16(0, "sTypoLineGap");
  table.U16(800, "usWinAscent").U16(200, "usWinDescent");
  if (version >= 1) table.U32(1, "ulCodePageRange1").U32(0, "ulCodePageRange2");
  if (version >= 2) {
    table.S16(500, "sxHeight").S16(700, "sCapHeight").U16(0, "usDefaultChar").U16(' ', "usBreakChar");
    table.U16(0, "usMaxContext");
  }
  if (version >= 5) table.U16(0, "usLowerOpticalPointSize").U16(0xFFFF, "usUpperOpticalPointSize");
  return table;
}

}  // namespace test
