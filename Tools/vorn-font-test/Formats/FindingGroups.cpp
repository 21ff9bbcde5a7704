#include "Formats/FindingGroups.h"

#include <algorithm>
#include <functional>
#include <map>
#include <tuple>
#include <utility>

#include "Formats/GlyphNames.h"

namespace tool {
namespace {

class Grouping {
 public:
  explicit Grouping(size_t placesKept) : placesKept_(placesKept) {}

  void Add(const TestRecord& test) {
    for (size_t i = 0; i < test.messages.size(); ++i) {
      if (test.messages.JudgementAt(i).standing == Standing::kCounts) AddMessage(test, i, test.messages[i]);
    }
    for (const Severity severity : kSeverities) {
      if (test.unexplained.Has(severity)) {
        groups_.push_back({.severity = severity, .rule = nullptr, .format = {}, .count = 1});
        groups_.back().places.push_back({&test, test.messages.size()});
        words_.emplace_back();
      }
    }
  }

  std::vector<FindingGroup> Take() {
    for (FindingGroup& group : groups_) {
      std::ranges::sort(group.glyphs);
      group.glyphs.erase(std::unique(group.glyphs.begin(), group.glyphs.end()), group.glyphs.end());
    }
    std::ranges::stable_sort(groups_, std::greater(), &FindingGroup::severity);
    return std::move(groups_);
  }

 private:
  void AddMessage(const TestRecord& test, size_t index, const Message& message) {
    const std::string_view format = message.rule ? std::string_view() : message.format;
    const auto [place, isNew] = places_.emplace(std::tuple(message.rule, format, message.severity), groups_.size());
    if (isNew) {
      groups_.push_back({.severity = message.severity, .rule = message.rule, .format = format});
      words_.emplace_back(Words(message));
    }
    FindingGroup& group = groups_[place->second];
    ++group.count;
    if (message.glyph) group.glyphs.push_back(*message.glyph);
    group.areAlike = group.areAlike && message.glyph && words_[place->second] == Words(message);
    if (group.places.size() < placesKept_) group.places.push_back({&test, index});
  }

  size_t placesKept_;
  std::vector<FindingGroup> groups_;
  std::vector<std::string_view> words_;  ///< of the first message of each group
  std::map<std::tuple<const Rule*, std::string_view, Severity>, size_t> places_;
};

}  // namespace

std::vector<FindingGroup> GroupFindings(const FontRecord& font, size_t placesKept) {
  Grouping grouping(placesKept);
  for (const TestRecord& test : font.tests) grouping.Add(test);
  return grouping.Take();
}

}  // namespace tool
