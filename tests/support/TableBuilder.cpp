#include "support/TableBuilder.h"

namespace test {

TableBuilder& TableBuilder::Text(std::string_view text, const std::string& label) {
  Label(label, text.size());
  bytes_.insert(bytes_.end(), text.begin(), text.end());
  return *this;
}

TableBuilder& TableBuilder::Append(const Bytes& bytes, const std::string& label) {
  Label(label, bytes.size());
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  return *this;
}

TableBuilder& TableBuilder::Patch(const std::string& label, uint64_t value) {
  const Place place = labels_.at(label);
  for (size_t i = 0; i < place.width; ++i) {
    bytes_.at(place.offset + i) = static_cast<uint8_t>(value >> (8 * (place.width - 1 - i)));
  }
  return *this;
}

TableBuilder& TableBuilder::Truncate(size_t size) {
  bytes_.resize(size);
  return *this;
}

TableBuilder& TableBuilder::Put(uint64_t value, size_t width, const std::string& label) {
  Label(label, width);
  for (size_t i = width; i-- > 0;) bytes_.push_back(static_cast<uint8_t>(value >> (8 * i)));
  return *this;
}

void TableBuilder::Label(const std::string& label, size_t width) {
  if (!label.empty()) labels_[label] = {bytes_.size(), width};
}

}  // namespace test
