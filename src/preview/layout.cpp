#include "preview/layout.hpp"

#include <algorithm>

namespace tessaly::preview {

Box DrawnBox(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) noexcept {
  return Box{static_cast<double>(left), static_cast<double>(top), std::max(0.0, static_cast<double>(width)),
             std::max(0.0, static_cast<double>(height))};
}

double TwipsToPixels(double twips, double zoom) noexcept { return twips / kTwipsPerPixel * zoom; }

double PointsToTwips(double points) noexcept { return points > 0 ? points * kTwipsPerPoint : 0.0; }

DisplayAreas SplitDisplay(const Box& display, std::int32_t captionWidth) noexcept {
  const double caption = std::clamp(static_cast<double>(captionWidth), 0.0, display.width);
  DisplayAreas areas;
  areas.caption = Box{display.x, display.y, caption, display.height};
  areas.value = Box{display.x + caption, display.y, display.width - caption, display.height};
  return areas;
}

Align AlignmentOf(std::int32_t code) noexcept {
  switch (code) {
    case 1: return Align::kRight;
    case 2: return Align::kCenter;
    default: return Align::kLeft;
  }
}

const char* TextAnchor(Align align) noexcept {
  switch (align) {
    case Align::kRight: return "end";
    case Align::kCenter: return "middle";
    case Align::kLeft: break;
  }
  return "start";
}

double AnchorX(Align align, double width, double padding) noexcept {
  switch (align) {
    case Align::kRight: return width - padding;
    case Align::kCenter: return width / 2;
    case Align::kLeft: break;
  }
  return padding;
}

bool InsideScreen(const Box& box, double width, double height) noexcept {
  return box.x >= 0 && box.y >= 0 && box.x + box.width <= width && box.y + box.height <= height;
}

std::vector<Box> ThresholdBand(const Box& area, std::size_t count, double height) {
  std::vector<Box> band;
  if (count == 0 || area.width <= 0) return band;
  const double h = std::clamp(height, 0.0, area.height);
  const double w = area.width / static_cast<double>(count);
  band.reserve(count);
  for (std::size_t i = 0; i < count; ++i)
    band.push_back(Box{area.x + w * static_cast<double>(i), area.y + area.height - h, w, h});
  return band;
}

FieldLayout PlaceField(std::int32_t startOctet, std::int32_t startBit, std::int32_t numberBits,
                       std::int32_t maxBytes) {
  FieldLayout layout;
  if (startOctet < 1 || startBit < 0 || numberBits <= 0) return layout;
  layout.valid = true;
  layout.firstBit = (static_cast<std::int64_t>(startOctet) - 1) * 8 + startBit;
  layout.lastBit = layout.firstBit + numberBits - 1;
  const std::int64_t firstByte = layout.firstBit / 8 + 1;
  layout.lastByte = layout.lastBit / 8 + 1;
  layout.truncated = layout.lastByte > maxBytes;
  const std::int64_t endByte = std::min<std::int64_t>(layout.lastByte, maxBytes);
  for (std::int64_t byte = firstByte; byte <= endByte; ++byte) {
    const std::int64_t byteFirst = (byte - 1) * 8;
    BitSpan span;
    span.byte = static_cast<std::int32_t>(byte);
    span.low = static_cast<int>(std::max(layout.firstBit, byteFirst) - byteFirst);
    span.high = static_cast<int>(std::min(layout.lastBit, byteFirst + 7) - byteFirst);
    layout.spans.push_back(span);
  }
  return layout;
}

std::size_t MostSignificantSpan(const FieldLayout& layout, bool littleEndian) noexcept {
  return littleEndian ? layout.spans.size() - 1 : 0;
}

std::size_t LeastSignificantSpan(const FieldLayout& layout, bool littleEndian) noexcept {
  return littleEndian ? 0 : layout.spans.size() - 1;
}

std::vector<std::pair<std::size_t, std::size_t>> FindOverlaps(const std::vector<FieldLayout>& fields) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < fields.size(); ++i)
    if (fields[i].valid) order.push_back(i);
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return fields[a].firstBit != fields[b].firstBit ? fields[a].firstBit < fields[b].firstBit : a < b;
  });
  // Sweep in order of first bit, keeping the fields still open at the current one.
  std::vector<std::pair<std::size_t, std::size_t>> pairs;
  std::vector<std::size_t> open;
  for (std::size_t current : order) {
    const std::int64_t first = fields[current].firstBit;
    std::erase_if(open, [&](std::size_t k) { return fields[k].lastBit < first; });
    for (std::size_t k : open) pairs.emplace_back(std::min(k, current), std::max(k, current));
    open.push_back(current);
  }
  std::sort(pairs.begin(), pairs.end());
  return pairs;
}

std::int32_t DrawnByteCount(std::int64_t bytesInString, std::int64_t lastFieldByte, std::int64_t minBytes,
                            std::int32_t maxBytes) noexcept {
  const std::int64_t wanted = std::max({bytesInString, lastFieldByte, minBytes, std::int64_t{1}});
  return static_cast<std::int32_t>(std::min<std::int64_t>(wanted, std::max(maxBytes, 1)));
}

double ByteGrid::ByteX(std::int32_t byte) const noexcept {
  const std::int32_t column = (byte - 1) % bytesPerRow;
  return left + column * 8 * bitWidth;
}

double ByteGrid::RowTop(std::int32_t byte) const noexcept { return top + RowOf(byte) * RowHeight(); }

double ByteGrid::BitX(std::int32_t byte, int bit) const noexcept { return ByteX(byte) + (7 - bit) * bitWidth; }

Box ByteGrid::SpanBox(const BitSpan& span) const noexcept {
  const double x = BitX(span.byte, span.high);
  return Box{x, RowTop(span.byte) + headerHeight, (span.high - span.low + 1) * bitWidth, cellHeight};
}

double ByteGrid::Width(std::int32_t bytes) const noexcept {
  const std::int32_t columns = std::clamp(bytes, 1, bytesPerRow);
  return left + columns * 8 * bitWidth + 1;
}

double ByteGrid::Height(std::int32_t bytes) const noexcept {
  const std::int32_t rows = (std::max(bytes, 1) - 1) / bytesPerRow + 1;
  return top + rows * RowHeight() - rowGap + 1;
}

}  // namespace tessaly::preview
