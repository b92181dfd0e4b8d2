#include "preview/layout.hpp"

#include <gtest/gtest.h>

namespace tessaly::preview {
namespace {

TEST(PreviewLayoutTest, TwipsAreFifteenToAPixel) {
  EXPECT_DOUBLE_EQ(TwipsToPixels(9600, 1), 640);
  EXPECT_DOUBLE_EQ(TwipsToPixels(7200, 1), 480);
  EXPECT_DOUBLE_EQ(TwipsToPixels(9600, 2), 1280);
  EXPECT_DOUBLE_EQ(TwipsToPixels(15, 0.5), 0.5);
}

TEST(PreviewLayoutTest, PointsAreTwentyTwips) {
  EXPECT_DOUBLE_EQ(PointsToTwips(10), 200);
  EXPECT_DOUBLE_EQ(PointsToTwips(8.25), 165);
  EXPECT_DOUBLE_EQ(PointsToTwips(0), 0);
  EXPECT_DOUBLE_EQ(PointsToTwips(-3), 0);
}

TEST(PreviewLayoutTest, NegativeSizesDrawNothing) {
  EXPECT_EQ(DrawnBox(10, 20, 300, 40), (Box{10, 20, 300, 40}));
  EXPECT_EQ(DrawnBox(-10, -20, -300, 40), (Box{-10, -20, 0, 40}));
  EXPECT_EQ(DrawnBox(0, 0, 5, -1), (Box{0, 0, 5, 0}));
}

TEST(PreviewLayoutTest, DisplayCaptionIsTheLeftPartOfTheRectangle) {
  const DisplayAreas areas = SplitDisplay(Box{240, 720, 6000, 360}, 3600);
  EXPECT_EQ(areas.caption, (Box{240, 720, 3600, 360}));
  EXPECT_EQ(areas.value, (Box{3840, 720, 2400, 360}));
}

TEST(PreviewLayoutTest, CaptionWiderThanTheDisplayLeavesNoValueArea) {
  const DisplayAreas areas = SplitDisplay(Box{0, 0, 4000, 300}, 5000);
  EXPECT_EQ(areas.caption, (Box{0, 0, 4000, 300}));
  EXPECT_EQ(areas.value, (Box{4000, 0, 0, 300}));
}

TEST(PreviewLayoutTest, NegativeCaptionWidthGivesTheWholeRectangleToTheValue) {
  const DisplayAreas areas = SplitDisplay(Box{0, 0, 4000, 300}, -20);
  EXPECT_EQ(areas.caption, (Box{0, 0, 0, 300}));
  EXPECT_EQ(areas.value, (Box{0, 0, 4000, 300}));
}

TEST(PreviewLayoutTest, AlignmentCodes) {
  EXPECT_EQ(AlignmentOf(0), Align::kLeft);
  EXPECT_EQ(AlignmentOf(1), Align::kRight);
  EXPECT_EQ(AlignmentOf(2), Align::kCenter);
  EXPECT_EQ(AlignmentOf(7), Align::kLeft);
  EXPECT_EQ(AlignmentOf(-1), Align::kLeft);
  EXPECT_STREQ(TextAnchor(Align::kLeft), "start");
  EXPECT_STREQ(TextAnchor(Align::kRight), "end");
  EXPECT_STREQ(TextAnchor(Align::kCenter), "middle");
}

TEST(PreviewLayoutTest, AnchorPositionFollowsTheAlignment) {
  EXPECT_DOUBLE_EQ(AnchorX(Align::kLeft, 1000, 45), 45);
  EXPECT_DOUBLE_EQ(AnchorX(Align::kRight, 1000, 45), 955);
  EXPECT_DOUBLE_EQ(AnchorX(Align::kCenter, 1000, 45), 500);
}

TEST(PreviewLayoutTest, InsideScreenNeedsTheWholeBox) {
  EXPECT_TRUE(InsideScreen(Box{0, 0, 9600, 7200}, 9600, 7200));
  EXPECT_FALSE(InsideScreen(Box{6000, 0, 3601, 10}, 9600, 7200));
  EXPECT_FALSE(InsideScreen(Box{-1, 0, 10, 10}, 9600, 7200));
  EXPECT_FALSE(InsideScreen(Box{0, 7000, 10, 201}, 9600, 7200));
}

TEST(PreviewLayoutTest, ThresholdBandSplitsTheValueAreaEqually) {
  const std::vector<Box> band = ThresholdBand(Box{100, 0, 300, 400}, 3, 60);
  ASSERT_EQ(band.size(), 3U);
  EXPECT_EQ(band[0], (Box{100, 340, 100, 60}));
  EXPECT_EQ(band[1], (Box{200, 340, 100, 60}));
  EXPECT_EQ(band[2], (Box{300, 340, 100, 60}));
}

TEST(PreviewLayoutTest, ThresholdBandIsNoTallerThanTheArea) {
  const std::vector<Box> band = ThresholdBand(Box{0, 10, 100, 30}, 1, 60);
  ASSERT_EQ(band.size(), 1U);
  EXPECT_EQ(band[0], (Box{0, 10, 100, 30}));
  EXPECT_TRUE(ThresholdBand(Box{0, 0, 0, 30}, 2, 60).empty());
  EXPECT_TRUE(ThresholdBand(Box{0, 0, 100, 30}, 0, 60).empty());
}

TEST(PreviewLayoutTest, FieldWithinOneByte) {
  const FieldLayout f = PlaceField(6, 2, 3, 256);
  ASSERT_TRUE(f.valid);
  EXPECT_EQ(f.firstBit, 42);
  EXPECT_EQ(f.lastBit, 44);
  EXPECT_EQ(f.lastByte, 6);
  EXPECT_FALSE(f.truncated);
  EXPECT_EQ(f.spans, (std::vector<BitSpan>{{6, 2, 4}}));
}

TEST(PreviewLayoutTest, FieldRunsTowardsTheMostSignificantBitThenIntoTheNextByte) {
  const FieldLayout f = PlaceField(1, 6, 12, 256);
  EXPECT_EQ(f.spans, (std::vector<BitSpan>{{1, 6, 7}, {2, 0, 7}, {3, 0, 1}}));
  EXPECT_EQ(f.lastByte, 3);
}

TEST(PreviewLayoutTest, WholeBytesField) {
  const FieldLayout f = PlaceField(3, 0, 16, 256);
  EXPECT_EQ(f.spans, (std::vector<BitSpan>{{3, 0, 7}, {4, 0, 7}}));
}

TEST(PreviewLayoutTest, BitOffsetOfEightOrMoreMovesToLaterBytes) {
  const FieldLayout f = PlaceField(2, 12, 4, 256);
  EXPECT_EQ(f.spans, (std::vector<BitSpan>{{3, 4, 7}}));
  EXPECT_EQ(f.firstBit, 20);
}

TEST(PreviewLayoutTest, PlacementsThatCannotBeDrawnAreInvalid) {
  EXPECT_FALSE(PlaceField(0, 0, 8, 256).valid);
  EXPECT_FALSE(PlaceField(1, -1, 8, 256).valid);
  EXPECT_FALSE(PlaceField(1, 0, 0, 256).valid);
  EXPECT_FALSE(PlaceField(1, 0, -8, 256).valid);
  EXPECT_TRUE(PlaceField(1, 0, 0, 256).spans.empty());
}

TEST(PreviewLayoutTest, FieldsBeyondTheDrawnBytesAreTruncated) {
  const FieldLayout f = PlaceField(4, 0, 24, 5);
  EXPECT_TRUE(f.truncated);
  EXPECT_EQ(f.lastByte, 6);
  EXPECT_EQ(f.spans, (std::vector<BitSpan>{{4, 0, 7}, {5, 0, 7}}));
  const FieldLayout huge = PlaceField(1, 0, 2000000000, 256);
  EXPECT_TRUE(huge.truncated);
  EXPECT_EQ(huge.spans.size(), 256U);
}

TEST(PreviewLayoutTest, ByteOrderTellsWhichEndIsSignificant) {
  const FieldLayout f = PlaceField(3, 0, 16, 256);
  EXPECT_EQ(MostSignificantSpan(f, false), 0U);
  EXPECT_EQ(LeastSignificantSpan(f, false), 1U);
  EXPECT_EQ(MostSignificantSpan(f, true), 1U);
  EXPECT_EQ(LeastSignificantSpan(f, true), 0U);
}

TEST(PreviewLayoutTest, OverlapsArePairsOfFieldsSharingABit) {
  const std::vector<FieldLayout> fields = {PlaceField(3, 0, 16, 256),  // bits 16..31
                                           PlaceField(5, 0, 8, 256),   // 32..39
                                           PlaceField(4, 7, 2, 256),   // 31..32
                                           PlaceField(0, 0, 8, 256),   // invalid
                                           PlaceField(1, 0, 8, 256)};  // 0..7
  EXPECT_EQ(FindOverlaps(fields), (std::vector<std::pair<std::size_t, std::size_t>>{{0, 2}, {1, 2}}));
}

TEST(PreviewLayoutTest, FieldsThatOnlyTouchDoNotOverlap) {
  const std::vector<FieldLayout> fields = {PlaceField(1, 0, 4, 256), PlaceField(1, 4, 4, 256)};
  EXPECT_TRUE(FindOverlaps(fields).empty());
}

TEST(PreviewLayoutTest, DrawnByteCountCoversBytesFieldsAndMinimum) {
  EXPECT_EQ(DrawnByteCount(2, 6, 0, 256), 6);
  EXPECT_EQ(DrawnByteCount(4, 3, 0, 256), 4);
  EXPECT_EQ(DrawnByteCount(2, 0, 19, 256), 19);
  EXPECT_EQ(DrawnByteCount(0, 0, 0, 256), 1);
  EXPECT_EQ(DrawnByteCount(0, 100000, 0, 256), 256);
}

TEST(PreviewLayoutTest, ByteGridPlacesBytesInRowsAndBitsFromSevenToZero) {
  ByteGrid grid;  // 8 bytes to a row, 12 wide bits, 48 of margin, rows of 26 + 30 + 10
  EXPECT_DOUBLE_EQ(grid.ByteX(1), 48);
  EXPECT_DOUBLE_EQ(grid.ByteX(2), 48 + 96);
  EXPECT_DOUBLE_EQ(grid.ByteX(9), 48);
  EXPECT_DOUBLE_EQ(grid.RowTop(8), 0);
  EXPECT_DOUBLE_EQ(grid.RowTop(9), 66);
  EXPECT_DOUBLE_EQ(grid.BitX(1, 7), 48);
  EXPECT_DOUBLE_EQ(grid.BitX(1, 0), 48 + 84);
  EXPECT_EQ(grid.SpanBox(BitSpan{2, 2, 4}), (Box{48 + 96 + 36, 26, 36, 30}));
  EXPECT_EQ(grid.SpanBox(BitSpan{10, 0, 7}), (Box{48 + 96, 66 + 26, 96, 30}));
}

TEST(PreviewLayoutTest, ByteGridSize) {
  ByteGrid grid;
  EXPECT_DOUBLE_EQ(grid.Width(3), 48 + 3 * 96 + 1);
  EXPECT_DOUBLE_EQ(grid.Width(20), 48 + 8 * 96 + 1);
  EXPECT_DOUBLE_EQ(grid.Height(8), 56 + 1);
  EXPECT_DOUBLE_EQ(grid.Height(9), 66 + 56 + 1);
}

}  // namespace
}  // namespace tessaly::preview
