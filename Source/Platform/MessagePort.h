#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

#include "Platform/Descriptor.h"
#include "Platform/Value.h"

/// A connection to the server of a message port. The first request that fails ends it: a late reply would otherwise
/// pass for that of the next request.
struct TovaMessagePort final : Tova::Object {
  explicit TovaMessagePort(Tova::Descriptor socket) : Object(kTovaTypeMessagePort), socket_(std::move(socket)) {}

  bool IsEqual(const Object& other, int /*depth*/) const override { return this == &other; }
  size_t Hash(int depth) const override;
  void Describe(std::string& out, int depth) const override;
  void Destroy() const override { delete this; }

  /// Time-outs are in seconds. The reply is only meant after a success.
  TovaMessagePortStatus SendRequest(int32_t messageId, std::string_view data, double sendTimeout, double receiveTimeout,
                                    std::string& reply) const;

 private:
  mutable std::mutex mutex_;
  mutable Tova::Descriptor socket_;
};
