#pragma once

#include <Tova/Tova.hpp>
#include <string>
#include <utility>

#include "Platform/Value.h"

/// A URL: its text as it was given, and what the text means; or a name and the bytes that it stands for. File URLs of
/// this machine are equal when their paths are, others when their texts are, and their bytes where they carry some.
struct TovaURL final : Tova::Object {
  TovaURL(std::string contents, std::string decodedPath, bool isLocal, Tova::Data carried = {})
      : Object(kTovaTypeURL),
        text(std::move(contents)),
        path(std::move(decodedPath)),
        isLocalFile(isLocal),
        data(std::move(carried)) {}

  bool IsEqual(const Object& other, int depth) const override;
  size_t Hash(int depth) const override;
  void Describe(std::string& out, int depth) const override;
  void Destroy() const override { delete this; }

  const std::string text;
  const std::string path;  ///< without escapes: any bytes but NUL
  const bool isLocalFile;
  const Tova::Data data;  ///< none but for a URL that carries its bytes
};
