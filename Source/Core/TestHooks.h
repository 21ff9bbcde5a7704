#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>

// Where a cache of results, keyed by font and test, would sit. Without one every test always runs.

/// Called before a report, and before each test; the token goes to CompleteTests.
inline uint64_t SetupTests() { return 0; }

inline void CompleteTests(uint64_t) {}

/// The record of an earlier run of the test over the font; none without a cache.
inline Tova::Dictionary GetCachedTestResults(TovaDictionaryRef, TovaStringRef, TovaDictionaryRef) { return {}; }

inline void AddResultToCache(TovaDictionaryRef, TovaDictionaryRef, TovaStringRef, TovaDictionaryRef) {}
