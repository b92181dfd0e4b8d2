#include "tessaly/screens/range_items.hpp"

#include <gtest/gtest.h>

#include "screens/screens_fixture.hpp"

namespace tessaly::testing {
namespace {

std::shared_ptr<RangeItem> ReadRange(const std::string& text) {
  pugi::xml_document doc;
  ParseText(doc, text);
  auto range = std::make_shared<RangeItem>();
  range->loadXml(doc, doc.first_child());
  return range;
}

std::string WriteRange(const RangeItem& range) {
  pugi::xml_document doc;
  pugi::xml_node element = doc.append_child("Threshold");
  range.createXMLnode(doc, element);
  return NodeText(element);
}

TEST(ScreensRangeItemTest, NegativeValueWithoutColorIsRedWithoutSound) {
  auto range = ReadRange("<Threshold Value=\"-5\"/>");
  EXPECT_DOUBLE_EQ(range->Seuil(), -5.0);
  EXPECT_EQ(range->Couleur(), 255);
  EXPECT_FALSE(range->SonFlag());
  EXPECT_EQ(range->Son(), 0);
  EXPECT_EQ(range->SoundName(), "");
  EXPECT_EQ(Err().Number(), 0);
  EXPECT_EQ(WriteRange(*range), "<Threshold Value=\"-5\" Color=\"255\"/>");
}

TEST(ScreensRangeItemTest, UnreadableColorIsRedAndLeavesNoError) {
  auto range = ReadRange("<Threshold Value=\"3\" Color=\"green\"/>");
  EXPECT_EQ(range->Couleur(), 255);
  EXPECT_EQ(Err().Number(), 0);
}

TEST(ScreensRangeItemTest, CommaEndsTheThresholdValue) {
  EXPECT_DOUBLE_EQ(ReadRange("<Threshold Value=\"12,5\" Color=\"1\"/>")->Seuil(), 12.0);
  EXPECT_DOUBLE_EQ(ReadRange("<Threshold Value=\" 12.5\" Color=\"1\"/>")->Seuil(), 12.5);
  EXPECT_DOUBLE_EQ(ReadRange("<Threshold Value=\"high\" Color=\"1\"/>")->Seuil(), 0.0);
  EXPECT_DOUBLE_EQ(ReadRange("<Threshold Color=\"1\"/>")->Seuil(), 0.0);
}

TEST(ScreensRangeItemTest, NonNegativeValueIsWrittenWithALeadingBlank) {
  RangeItem range;
  range.set_Seuil(50);
  range.set_Couleur(65280);
  EXPECT_EQ(WriteRange(range), "<Threshold Value=\" 50\" Color=\"65280\"/>");
  range.set_Seuil(0.25);
  EXPECT_EQ(WriteRange(range), "<Threshold Value=\" .25\" Color=\"65280\"/>");
}

TEST(ScreensRangeItemTest, SoundIsReadFromSoundName) {
  auto numeric = ReadRange("<Threshold Value=\"1\" Color=\"2\">\n<Sound Name=\"880\"/></Threshold>");
  EXPECT_TRUE(numeric->SonFlag());
  EXPECT_EQ(numeric->Son(), 880);
  EXPECT_EQ(numeric->SoundName(), "880");
  auto word = ReadRange("<Threshold Value=\"1\" Color=\"2\"><Sound Name=\"beep\"/></Threshold>");
  EXPECT_TRUE(word->SonFlag());
  EXPECT_EQ(word->Son(), 0);
  EXPECT_EQ(word->SoundName(), "beep");
  auto nameless = ReadRange("<Threshold Value=\"1\" Color=\"2\"><Sound/></Threshold>");
  EXPECT_FALSE(nameless->SonFlag());
}

TEST(ScreensRangeItemTest, ThresholdWithSoundWritesALineFeedAndTheSound) {
  RangeItem range;
  range.set_Seuil(-1.5);
  range.set_Couleur(3);
  range.set_SonFlag(true);
  range.set_Son(440);
  EXPECT_EQ(WriteRange(range), "<Threshold Value=\"-1.5\" Color=\"3\">\n<Sound Name=\"440\"/></Threshold>");
}

TEST(ScreensRangeItemTest, SoundWithoutFlagIsNotWritten) {
  RangeItem range;
  range.set_SoundName("beep");
  EXPECT_EQ(WriteRange(range), "<Threshold Value=\" 0\" Color=\"0\"/>");
}

TEST(ScreensRangeItemTest, SonAndSoundNameStayInStep) {
  RangeItem range;
  range.set_Son(880);
  EXPECT_EQ(range.SoundName(), "880");
  range.set_SoundName("beep");
  EXPECT_EQ(range.Son(), 0);
  EXPECT_EQ(range.SoundName(), "beep");
  range.set_SoundName("1200");
  EXPECT_EQ(range.Son(), 1200);
  range.set_SoundName("99999999999");
  EXPECT_EQ(range.Son(), 0);
}

TEST(ScreensRangeItemTest, SoundNameSetterLeavesThePendingErrorAlone) {
  Err().Clear();
  RangeItem range;
  range.set_SoundName("beep");
  EXPECT_EQ(Err().Number(), 0);
}

TEST(ScreensRangeItemsTest, AddSetsTheThresholdAndThresholdsAreWrittenWithoutLineFeeds) {
  RangeItems ranges;
  ranges.Add(1.0)->set_Couleur(1);
  ranges.Add(2.0, "two")->set_Couleur(2);
  EXPECT_EQ(ranges.Item("TWO")->Seuil(), 2.0);
  pugi::xml_document doc;
  pugi::xml_node display = doc.append_child("Display");
  ranges.createXMLnode(doc, display);
  EXPECT_EQ(NodeText(display), "<Display><Threshold Value=\" 1\" Color=\"1\"/><Threshold Value=\" 2\" Color=\"2\"/></Display>");
}

TEST(ScreensRangeItemsTest, ReadingKeepsEveryThresholdInOrderAndLeavesNoError) {
  pugi::xml_document doc;
  ParseText(doc, "<Display><Threshold Value=\"3\"/><Other/><Threshold Value=\"1\" Color=\"x\"/></Display>");
  auto display = std::make_shared<DisplayItem>();
  RangeItems ranges;
  ranges.loadXml(doc, doc.child("Display"), display);
  ASSERT_EQ(ranges.Count(), 2);
  EXPECT_EQ(ranges.Item(1)->Seuil(), 3.0);
  EXPECT_EQ(ranges.Item(2)->Seuil(), 1.0);
  EXPECT_EQ(ranges.Item(2)->parent(), display);
  EXPECT_EQ(Err().Number(), 0);
}

TEST(ScreensRangeItemsTest, DeleteClearsTheRange) {
  auto display = std::make_shared<DisplayItem>();
  RangeItems ranges;
  auto range = ranges.Add(1.0);
  range->set_parent(display);
  ranges.Delete(range);
  EXPECT_EQ(ranges.Count(), 0);
  EXPECT_EQ(range->parent(), nullptr);
}

}  // namespace
}  // namespace tessaly::testing
