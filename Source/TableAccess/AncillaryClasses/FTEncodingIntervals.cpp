#include "TableAccess/AncillaryClasses/FTEncodingIntervals.h"

#include <algorithm>
#include <queue>

std::vector<FTEncodingInterval> FTResolveOverlaps(std::vector<FTEncodingInterval> iIntervals) {
  std::ranges::sort(iIntervals, {}, &FTEncodingInterval::first);
  const auto tWins = [](const FTEncodingInterval& iLeft, const FTEncodingInterval& iRight) {
    return iLeft.rank > iRight.rank;
  };
  // Those that have begun, the winner on top. One that has ended leaves when it comes to the top.
  std::priority_queue<FTEncodingInterval, std::vector<FTEncodingInterval>, decltype(tWins)> tOpen(tWins);

  std::vector<FTEncodingInterval> tResolved;
  auto tNext = iIntervals.begin();
  uint64_t tPosition = 0;
  while (tNext != iIntervals.end() || !tOpen.empty()) {
    if (tOpen.empty()) tPosition = std::max(tPosition, tNext->first);
    for (; tNext != iIntervals.end() && tNext->first <= tPosition; ++tNext) tOpen.push(*tNext);
    while (!tOpen.empty() && tOpen.top().last < tPosition) tOpen.pop();
    if (tOpen.empty()) continue;

    const int64_t tRank = tOpen.top().rank;
    uint64_t tLast = tOpen.top().last;
    if (tNext != iIntervals.end()) tLast = std::min(tLast, tNext->first - 1);
    if (!tResolved.empty() && tResolved.back().rank == tRank && tResolved.back().last + 1 == tPosition) {
      tResolved.back().last = tLast;
    } else {
      tResolved.push_back({tPosition, tLast, tRank});
    }
    tPosition = tLast + 1;
  }
  return tResolved;
}
