#pragma once

#include <Tova/Tova.hpp>
#include <map>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/Value.h"

/// A folder of resources; immortal. Its string tables are read once, at their first use, by whichever thread.
struct TovaBundle final : Tova::Object {
  explicit TovaBundle(std::string folder) : Object(kTovaTypeBundle, Lifetime::kImmortal), path(std::move(folder)) {}

  bool IsEqual(const Object& other, int depth) const override;
  size_t Hash(int depth) const override;
  void Describe(std::string& out, int depth) const override;
  void Destroy() const override {}

  /// The text for a key; null when no table of the name has it.
  Tova::String FindText(std::string_view table, TovaStringRef key) const;

  const std::string path;

 private:
  /// A string table in the languages wanted, the preferred one first.
  using Table = std::vector<Tova::Dictionary>;
  const Table& FindTable(std::string_view name) const;

  mutable std::shared_mutex mutex_;
  mutable std::map<std::string, Table, std::less<>> tables_;  ///< grows only; entries never change
};
