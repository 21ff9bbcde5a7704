#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "TableAccess/AncillaryClasses/FTBitmapLocation.h"
#include "TableAccess/AncillaryClasses/FTEncodingIntervals.h"

/// Looks through the index subtables of one strike and the images that they lead to, and counts what is wrong with
/// them: each kind of fault once, with its first case. Reports nothing itself.
class SbitStrikeImages {
 public:
  /// The kinds of faults, in the order in which they are reported.
  enum Fault : uint8_t {
    kRangeReversed,          ///< subtable, first glyph, last glyph
    kRangeBeyondFont,        ///< subtable, last glyph, glyphs of the font
    kRangeOutsideStrike,     ///< strike's first and last glyph, subtable, its first and last glyph
    kUnaligned,              ///< subtable
    kSubtableCutOff,         ///< table's size, subtable, its end
    kUnknownIndexFormat,     ///< subtable, format
    kUnknownImageFormat,     ///< subtable, format
    kNoMetrics,              ///< subtable
    kListOutOfOrder,         ///< subtable, glyph
    kListOutsideRange,       ///< subtable, glyph, first glyph, last glyph
    kImageReversed,          ///< glyph
    kImageBeyondData,        ///< size of the data, glyph, its end
    kImageCutOff,            ///< glyph, width, height, bytes needed, bytes there
    kImageByteAligned,       ///< glyph
    kImageTooLong,           ///< glyph, bytes needed, bytes there
    kComponentBeyondFont,    ///< glyph, component
    kComponentWithoutImage,  ///< glyph, component
    kComponentCircle,        ///< glyph
    kFaultCount,
  };
  struct Tally {
    uint64_t count = 0;
    std::array<uint64_t, 5> firstCase = {};
  };

  /// Work that is left for all strikes of a table pair, in index elements, images and components.
  struct Budget {
    uint64_t left = 0;
    /// False when there was not so much.
    bool Spend(uint64_t iUnits) {
      const bool tIsEnough = iUnits <= left;
      left -= tIsEnough ? iUnits : left;
      return tIsEnough;
    }
  };

  /// iGlyphCount: those of the font, 0 when their number is not known. iIsVeltrin: whether the tables are 'bloc' and
  /// 'bdat', which have compressed images, too.
  SbitStrikeImages(const FTBitmapLocation& iLocation, const FTBitmapStrike& iStrike, uint32_t iGlyphCount,
                   bool iIsVeltrin)
      : _fLocation(iLocation), _fStrike(iStrike), _fGlyphCount(iGlyphCount), _fIsVeltrin(iIsVeltrin) {}

  /// Looks at everything. False when the budget did not suffice, and the counts mean nothing.
  bool Examine(Budget& ioBudget);
  const Tally& TallyOf(Fault iFault) const { return _fTallies[iFault]; }
  /// Subtables with a range, as overlaps and order go: the faulty one and the one before it.
  struct Neighbours {
    uint32_t before;
    uint32_t subtable;
  };
  std::optional<Neighbours> FirstOverlap() const;
  std::optional<uint32_t> FirstOutOfOrder() const;

 private:
  struct Size {
    uint64_t width;
    uint64_t height;
    uint64_t bytes;        ///< that the image needs
    uint64_t byteAligned;  ///< that it would take with rows that end on bytes
  };
  /// An image made of other glyphs' images.
  struct Composite {
    uint32_t glyph;
    Tova::ByteView components;  ///< those that lie inside the image
  };
  using Subtable = FTBitmapSubtable;

  void Count(Fault iFault, const std::array<uint64_t, 5>& iCase, uint64_t iCount = 1);
  bool CheckSubtable(uint32_t iIndex, const Subtable& iSubtable);
  bool CheckFormats(uint32_t iIndex, const Subtable& iSubtable);
  void CheckGlyphList(uint32_t iIndex, const Subtable& iSubtable);
  void CheckImages(uint32_t iIndex, const Subtable& iSubtable);
  void CheckImagesOfOneSize(uint32_t iIndex, const Subtable& iSubtable);
  void CheckConstantMetrics(const Subtable& iSubtable);
  void MeasureImage(uint32_t iIndex, uint64_t iEntry, const FTBitmapImage& iImage);
  void Judge(uint16_t iFormat, uint32_t iGlyph, const Size& iSize, uint64_t iLength, uint64_t iCount);
  Size SizeOf(const FTBitmapImage& iImage) const;
  Size SizeOfPixels(uint64_t iWidth, uint64_t iHeight, bool iBitAligned) const;
  bool BitDepthIsKnown() const;

  void FindOwners();
  std::optional<uint32_t> OwnerOf(uint32_t iGlyph) const;
  std::optional<uint64_t> EntryOf(uint32_t iSubtable, uint32_t iGlyph);
  bool HasImage(uint32_t iGlyph);
  void SelectComposites();
  bool CheckComponents(Budget& ioBudget);
  void CheckCircles();

  FTBitmapLocation _fLocation;
  FTBitmapStrike _fStrike;
  uint32_t _fGlyphCount;
  bool _fIsVeltrin;

  std::array<Tally, kFaultCount> _fTallies = {};
  std::vector<Subtable> _fSubtables;
  std::vector<bool> _fSkipped;  // by subtable

  /// Measured images that may have components: where they were found.
  struct Candidate {
    uint32_t subtable;
    uint64_t entry;
    FTBitmapImage image;
  };
  std::vector<Candidate> _fCandidates;
  std::vector<Composite> _fComposites;
  std::vector<FTEncodingInterval> _fOwners;                  // glyphs and the subtable that is asked for them
  std::map<uint32_t, std::map<uint32_t, uint64_t>> _fLists;  // by subtable: glyphs listed and their first entry
};
