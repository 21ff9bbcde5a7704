#include "TableAccess/FontClasses/FTSfntDirectory.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <vector>

namespace {

constexpr uint64_t kHeaderSize = 12;
constexpr uint64_t kEntrySize = 16;

/// The range of a directory entry, end computed in 32 bits: a length that wraps puts the end before the start.
struct Range {
  uint32_t start;
  uint32_t end;
};

/// How an entry's range meets those of the entries after it.
enum class Meeting { kNone, kInsideAnother, kPartial };

/// Holds the ranges of the entries from some index on, added from the last entry backwards, and tells how one more
/// range meets them: the first entry, in directory order, whose range shares bytes with it decides. Each operation
/// costs amortized logarithmic time, so that a directory of 65,535 entries is no burden.
class LaterEntries {
 public:
  Meeting Meet(Range iRange, const std::vector<Range>& iAll) const {
    if (iRange.start >= iRange.end) return CoversEmpty(iRange) ? Meeting::kInsideAnother : Meeting::kNone;
    size_t tFirst = iAll.size();
    auto tPiece = pieces_.upper_bound(iRange.start);
    if (tPiece != pieces_.begin()) --tPiece;
    for (; tPiece != pieces_.end() && tPiece->first < iRange.end; ++tPiece) {
      if (tPiece->second.end > iRange.start) tFirst = std::min(tFirst, tPiece->second.entry);
    }
    if (tFirst == iAll.size()) return Meeting::kNone;
    const Range tOther = iAll[tFirst];
    const bool tInside = tOther.start <= iRange.start && iRange.end <= tOther.end;
    // quirk: one-sided-overlap. An entry may lie inside a later one, but not around it.
    return tInside ? Meeting::kInsideAnother : Meeting::kPartial;
  }

  void Add(Range iRange, size_t iEntry) {
    AddToStaircase(iRange);
    if (iRange.start >= iRange.end) return;
    SplitAt(iRange.start);
    SplitAt(iRange.end);
    pieces_.erase(pieces_.lower_bound(iRange.start), pieces_.lower_bound(iRange.end));
    pieces_[iRange.start] = {iRange.end, iEntry};
  }

 private:
  /// A stretch of bytes and the smallest entry (so far) that covers it.
  struct Piece {
    uint32_t end;
    size_t entry;
  };

  /// Whether some range starts at or before an empty one and ends at or after it.
  bool CoversEmpty(Range iRange) const {
    auto tStep = staircase_.upper_bound(iRange.start);
    return tStep != staircase_.begin() && std::prev(tStep)->second >= iRange.end;
  }

  void AddToStaircase(Range iRange) {
    auto tStep = staircase_.upper_bound(iRange.start);
    if (tStep != staircase_.begin() && std::prev(tStep)->second >= iRange.end) return;
    while (tStep != staircase_.end() && tStep->second <= iRange.end) tStep = staircase_.erase(tStep);
    staircase_[iRange.start] = iRange.end;
  }

  void SplitAt(uint32_t iPosition) {
    auto tPiece = pieces_.upper_bound(iPosition);
    if (tPiece == pieces_.begin()) return;
    --tPiece;
    const Piece tWhole = tPiece->second;
    if (tPiece->first == iPosition || tWhole.end <= iPosition) return;
    tPiece->second.end = iPosition;
    pieces_[iPosition] = tWhole;
  }

  std::map<uint32_t, Piece> pieces_;        // by start; they do not overlap
  std::map<uint32_t, uint32_t> staircase_;  // start -> greatest end of the ranges that start there or before
};

std::vector<Meeting> MeetLaterEntries(const std::vector<Range>& iRanges) {
  std::vector<Meeting> tMeetings(iRanges.size());
  LaterEntries tLater;
  for (size_t i = iRanges.size(); i-- > 0;) {
    tMeetings[i] = tLater.Meet(iRanges[i], iRanges);
    tLater.Add(iRanges[i], i);
  }
  return tMeetings;
}

}  // namespace

uint64_t FTSfntDirectory::GetSize() const { return kHeaderSize + kEntrySize * CountEntries(); }

FTSfntDirectoryEntry FTSfntDirectory::GetEntry(uint64_t iIndex) const {
  const uint64_t tAt = kHeaderSize + kEntrySize * iIndex;
  return {_fDirectory.U32(tAt), _fDirectory.U32(tAt + 4), _fDirectory.U32(tAt + 8), _fDirectory.U32(tAt + 12)};
}

FTSfntDirectory::Fault FTSfntDirectory::Validate() const {
  const uint64_t tFileSize = _fFile.Size();
  if (tFileSize < kHeaderSize) {
    return {"GetUnswappedDataLength() < sizeof( SFNTDirectory )", "The font's directory is invalid"};
  }
  std::vector<Range> tRanges;
  tRanges.reserve(CountEntries());
  for (uint64_t i = 0; i < CountEntries(); ++i) {
    const FTSfntDirectoryEntry tEntry = GetEntry(i);
    tRanges.push_back({tEntry.offset, Tova::Wrap32(uint64_t{tEntry.offset} + tEntry.length)});
  }

  const std::vector<Meeting> tMeetings = MeetLaterEntries(tRanges);
  uint32_t tTotal = Tova::Wrap32(GetSize());
  for (size_t i = 0; i < tRanges.size(); ++i) {
    if (tRanges[i].start > tFileSize) {
      return {"tStart > GetUnswappedDataLength()", "The font's directory contains an invalid table offset"};
    }
    if (tRanges[i].end > tFileSize) {
      return {"tEnd > GetUnswappedDataLength()", "The font's directory contains an invalid table length"};
    }
    if (tMeetings[i] == Meeting::kPartial) {
      return {"tOverlapEnd > tOverlapStart && tPartial", "The font contains two tables which overlap"};
    }
    if (tMeetings[i] == Meeting::kNone) tTotal = Tova::Wrap32(uint64_t{tTotal} + GetEntry(i).length);
  }
  if (tTotal > tFileSize) {
    return {"tTotal > GetUnswappedDataLength()",
            "The font's tables contain more data than can physically fit into the font", true};
  }
  return {};
}
