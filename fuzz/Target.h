#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "support/TableBuilder.h"

/// What a fuzz target does with an input: each file of targets/ defines it once. Survival is the expectation, and what
/// the target itself asserts. -1 for an input that is not worth keeping.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fuzz {

using test::Bytes;
using Input = std::span<const uint8_t>;

/// How many messages of a test a report keeps: few take a fuzzer less time.
enum class Messages { kFew, kAll };
/// The one or the other for an input: all for one in eight, by its size.
inline Messages MessagesFor(size_t size) { return size % 8 == 0 ? Messages::kAll : Messages::kFew; }

/// Makes the full report with details of a file in memory, by every test; none asks a conduit.
void ReportOn(Input file, const char* name = nullptr, Messages messages = Messages::kAll);

/// Ends the program when a property does not hold, so that the fuzzer takes the input for a finding.
void Check(bool holds, const char* property);

/// Keeps what the library has to say beside its results to itself, from now on.
void SilenceLog();

}  // namespace fuzz
