#include "Report/JsonReader.h"

#include <VornFontTest/VornFontTest.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "Report/EscapedText.h"

namespace tool {
namespace {

/// How deep arrays and objects may lie in one another.
constexpr size_t kMaximumDepth = 512;

/// Follows a text with nothing to do; what a reader cares for, it overrides. Returning false ends the reading.
class Follower : public nlohmann::json_sax<nlohmann::json> {
 public:
  bool null() override { return true; }
  bool boolean(bool) override { return true; }
  bool number_integer(int64_t) override { return true; }
  bool number_unsigned(uint64_t) override { return true; }
  bool number_float(double, const std::string&) override { return true; }
  bool string(std::string&) override { return true; }
  bool binary(nlohmann::json::binary_t&) override { return false; }
  bool start_object(size_t) override { return ++depth_ <= kMaximumDepth; }
  bool key(std::string&) override { return true; }
  bool end_object() override { return --depth_, true; }
  bool start_array(size_t) override { return ++depth_ <= kMaximumDepth; }
  bool end_array() override { return --depth_, true; }
  bool parse_error(size_t, const std::string&, const nlohmann::json::exception&) override { return false; }

 protected:
  size_t Depth() const { return depth_; }

 private:
  size_t depth_ = 0;
};

class Surveyor : public Follower {
 public:
  bool key(std::string& name) override {
    if (Depth() == 1) key_ = name;
    if (Depth() == 1 && name == "problem") survey.hasProblem = true;
    return true;
  }
  bool string(std::string& text) override {
    if (Depth() == 1 && key_ == "path") survey.path = text;
    if (Depth() == 1 && key_ == "pathBytes") survey.path = PercentDecoded(text);
    return true;
  }

  ReportLineSurvey survey;

 private:
  std::string key_;
};

/// The date that a text tells; null when it tells none.
Tova::Date DateOf(const std::string& text) {
  int year = 0;
  unsigned month = 0, day = 0, hour = 0, minute = 0, second = 0;
  if (std::sscanf(text.c_str(), "%d-%u-%uT%u:%u:%uZ", &year, &month, &day, &hour, &minute, &second) != 6) return {};
  const std::chrono::sys_days date = std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day);
  const auto seconds = std::chrono::seconds(date.time_since_epoch()).count() + hour * 3600 + minute * 60 + second;
  return Tova::Adopt(TovaDateCreate(static_cast<double>(seconds)));
}

class Builder : public Follower {
 public:
  Tova::Dictionary Result() const { return root_; }

  bool boolean(bool value) override { return Add(Tova::Share(Tova::Boolean(value))); }
  bool number_integer(int64_t value) override { return Add(Tova::Adopt(TovaNumberCreateWithInteger(value))); }
  bool number_unsigned(uint64_t value) override {
    if (value > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) {
      return Add(Tova::Adopt(TovaNumberCreateWithReal(static_cast<double>(value))));
    }
    return number_integer(static_cast<int64_t>(value));
  }
  bool number_float(double value, const std::string&) override {
    return Add(Tova::Adopt(TovaNumberCreateWithReal(value)));
  }
  bool string(std::string& text) override {
    const bool isDate = !levels_.empty() && levels_.back().key == Tova::Text(kVornFontTestTimeStampKey);
    const Tova::Date date = isDate ? DateOf(text) : Tova::Date();
    if (date) return Add(date);
    return Add(Tova::MakeString(text));
  }
  bool start_object(size_t size) override {
    const auto dictionary = Tova::Adopt(TovaDictionaryCreateMutable());
    if (levels_.empty()) root_ = dictionary;
    if (!levels_.empty()) Add(dictionary);
    levels_.push_back({.dictionary = dictionary, .array = {}, .key = {}});
    return Follower::start_object(size);
  }
  bool key(std::string& name) override {
    levels_.back().key = name;
    return true;
  }
  bool end_object() override {
    levels_.pop_back();
    return Follower::end_object();
  }
  bool start_array(size_t size) override {
    if (levels_.empty()) return false;
    const auto array = Tova::Adopt(TovaArrayCreateMutable());
    Add(array);
    levels_.push_back({.dictionary = {}, .array = array, .key = {}});
    return Follower::start_array(size);
  }
  bool end_array() override {
    levels_.pop_back();
    return Follower::end_array();
  }

 private:
  /// An array or a dictionary that is being filled.
  struct Level {
    Tova::MutableDictionary dictionary;
    Tova::MutableArray array;
    std::string key;  ///< of the value that comes next
  };

  bool Add(const Tova::Value& value) {
    if (levels_.empty()) return false;
    const Level& level = levels_.back();
    if (level.array) {
      TovaArrayAppendValue(level.array.get(), value.get());
    } else if (levels_.size() == 1 || level.key.starts_with("kVornFontTest")) {
      TovaDictionarySetValue(level.dictionary.get(), Tova::MakeString(level.key).get(), value.get());
    }
    return true;
  }

  Tova::Dictionary root_;
  std::vector<Level> levels_;
};

}  // namespace

ReportLineSurvey SurveyReportLine(std::string_view line) {
  Surveyor surveyor;
  surveyor.survey.isWhole = nlohmann::json::sax_parse(line, &surveyor);
  return surveyor.survey;
}

Tova::Dictionary ReadJsonLine(std::string_view line) {
  Builder builder;
  return nlohmann::json::sax_parse(line, &builder) ? builder.Result() : Tova::Dictionary();
}

}  // namespace tool
