#pragma once

#include <cstdint>
#include <vector>

/// Consecutive numbers, last included, with the rank by which they win over overlapping ones.
struct FTEncodingInterval {
  uint64_t first;
  uint64_t last;
  int64_t rank;
};

/// The same numbers as ascending intervals that do not overlap: where several did, the one of the lowest rank stands.
/// Takes n log n steps for n intervals, however much they overlap, and gives fewer than 2 n.
std::vector<FTEncodingInterval> FTResolveOverlaps(std::vector<FTEncodingInterval> iIntervals);
