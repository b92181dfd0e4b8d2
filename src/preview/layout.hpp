// The arithmetic of the drawings: screen geometry (twips to pixels, display areas, text
// alignment) and the byte-and-bit layout of the data placed in a request.
//
// Screen geometry is in twips, the unit of the tool's forms: 1440 per inch, so 15 per pixel on a
// 96 dpi display and 20 per point of font size. A 9600 x 7200 screen is drawn 640 x 480 pixels.
//
// Bits of a placed data item: the field starts at bit BitOffset (0 = least significant bit) of
// byte FirstByte (counted from 1), runs towards the most significant bit, and continues at bit 0
// of the following byte. Its byte order tells which end is significant: big-endian puts the most
// significant part in the first byte, little-endian the least significant part.
#ifndef TESSALY_SRC_PREVIEW_LAYOUT_HPP_
#define TESSALY_SRC_PREVIEW_LAYOUT_HPP_

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tessaly::preview {

inline constexpr double kTwipsPerPixel = 15.0;
inline constexpr double kTwipsPerPoint = 20.0;

struct Box {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  friend bool operator==(const Box&, const Box&) = default;
};

// A rectangle of the document as it is drawn: a negative width or height draws nothing (0).
Box DrawnBox(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) noexcept;

// Pixels for a length in twips at `zoom` (1 = 96 dpi).
double TwipsToPixels(double twips, double zoom) noexcept;

// A font size in points as a length in twips; a negative size draws nothing (0).
double PointsToTwips(double points) noexcept;

// A display is one rectangle: the caption area is its left part, CaptionWidth wide (kept within
// 0 and the rectangle's width), and the value area the rest.
struct DisplayAreas {
  Box caption;
  Box value;
};
DisplayAreas SplitDisplay(const Box& display, std::int32_t captionWidth) noexcept;

// Text alignment codes of labels: 0 left, 1 right, 2 centred; any other code is drawn left.
enum class Align { kLeft, kRight, kCenter };
Align AlignmentOf(std::int32_t code) noexcept;
// The SVG text-anchor of an alignment ("start", "end", "middle").
const char* TextAnchor(Align align) noexcept;
// Where the text anchor sits in a box `width` wide, `padding` in from the edge it aligns to.
double AnchorX(Align align, double width, double padding) noexcept;

// True when the box lies entirely within a screen `width` x `height`.
bool InsideScreen(const Box& box, double width, double height) noexcept;

// The band that shows a display's thresholds: `count` equal segments across `area`, each
// `height` high at the bottom of it (the band is at most the area's height).
std::vector<Box> ThresholdBand(const Box& area, std::size_t count, double height);

// The bits of one byte that a field occupies: bits `low`..`high` (0 = least significant) of
// byte `byte` (counted from 1).
struct BitSpan {
  std::int32_t byte = 0;
  int low = 0;
  int high = 0;
  friend bool operator==(const BitSpan&, const BitSpan&) = default;
};

struct FieldLayout {
  // False when the placement cannot be drawn: a first byte below 1, a negative bit offset or a
  // width of no bits.
  bool valid = false;
  // First and last bit of the field counted over the whole byte string (byte 1 bit 0 is 0).
  std::int64_t firstBit = 0;
  std::int64_t lastBit = 0;
  // One span per byte, in byte order, limited to the first `maxBytes` bytes.
  std::vector<BitSpan> spans;
  // True when the field reaches beyond `maxBytes` (its spans there are left out).
  bool truncated = false;
  // The last byte the field occupies (may exceed `maxBytes`).
  std::int64_t lastByte = 0;
};

// Where a field of `numberBits` bits placed at byte `startOctet`, bit `startBit` lies. A bit
// offset of 8 or more moves into the following bytes.
FieldLayout PlaceField(std::int32_t startOctet, std::int32_t startBit, std::int32_t numberBits,
                       std::int32_t maxBytes);

// Index in `layout.spans` of the span that holds the most / the least significant bits, by the
// field's byte order. REQUIRES: !layout.spans.empty().
std::size_t MostSignificantSpan(const FieldLayout& layout, bool littleEndian) noexcept;
std::size_t LeastSignificantSpan(const FieldLayout& layout, bool littleEndian) noexcept;

// Pairs (i, j), i < j, of valid fields that share at least one bit, ordered by i then j.
std::vector<std::pair<std::size_t, std::size_t>> FindOverlaps(const std::vector<FieldLayout>& fields);

// How many bytes a diagram draws: enough for the bytes of the byte string, for every field and
// for `minBytes`, at least one, and at most `maxBytes`.
std::int32_t DrawnByteCount(std::int64_t bytesInString, std::int64_t lastFieldByte, std::int64_t minBytes,
                            std::int32_t maxBytes) noexcept;

// The grid of a byte diagram: bytes left to right, `bytesPerRow` to a row; in each byte the bits
// from 7 (most significant, left) to 0 (right).
struct ByteGrid {
  std::int32_t bytesPerRow = 8;
  double bitWidth = 12;
  double left = 48;       // room for the row labels
  double top = 0;
  double headerHeight = 26;  // byte number, byte value and bit numbers above each row
  double cellHeight = 30;
  double rowGap = 10;

  double RowHeight() const noexcept { return headerHeight + cellHeight + rowGap; }
  std::int32_t RowOf(std::int32_t byte) const noexcept { return (byte - 1) / bytesPerRow; }
  // Left edge of byte `byte` (counted from 1).
  double ByteX(std::int32_t byte) const noexcept;
  // Top of the header of the row that holds `byte`.
  double RowTop(std::int32_t byte) const noexcept;
  // Left edge of bit `bit` (0..7) of `byte`.
  double BitX(std::int32_t byte, int bit) const noexcept;
  // The cells a span covers.
  Box SpanBox(const BitSpan& span) const noexcept;
  // Width and height of a diagram of `bytes` bytes.
  double Width(std::int32_t bytes) const noexcept;
  double Height(std::int32_t bytes) const noexcept;
};

}  // namespace tessaly::preview

#endif  // TESSALY_SRC_PREVIEW_LAYOUT_HPP_
