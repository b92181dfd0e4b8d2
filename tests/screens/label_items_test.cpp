#include "tessaly/screens/label_items.hpp"

#include <gtest/gtest.h>

#include "screens/screens_fixture.hpp"

namespace tessaly::testing {
namespace {

using ScreensLabelItemsTest = ScreensTest;

std::shared_ptr<LabelItem> ReadLabel(const std::string& text) {
  pugi::xml_document doc;
  ParseText(doc, text);
  auto label = std::make_shared<LabelItem>();
  label->loadXml(doc, doc.first_child());
  return label;
}

std::string WriteLabel(const LabelItem& label) {
  pugi::xml_document doc;
  pugi::xml_node element = doc.append_child("Label");
  label.createXMLnode(doc, element);
  return NodeText(element);
}

TEST_F(ScreensLabelItemsTest, BareLabelLoadsEmptyAndWritesEveryValue) {
  auto label = ReadLabel("<Label/>");
  EXPECT_EQ(label->LabelText(), "");
  EXPECT_EQ(label->LabelLeft(), 0);
  EXPECT_EQ(label->LabelTop(), 0);
  EXPECT_EQ(label->LabelHeight(), 0);
  EXPECT_EQ(label->LabelWidth(), 0);
  EXPECT_EQ(label->FontName(), "");
  EXPECT_EQ(label->FontSize(), 0.0F);
  EXPECT_FALSE(label->FontBold());
  EXPECT_FALSE(label->FontItalic());
  EXPECT_EQ(label->FontColor(), 0);
  EXPECT_EQ(label->LabelColor(), 0);
  EXPECT_EQ(label->Alignment(), 0);
  EXPECT_EQ(Err().Number(), 0);
  EXPECT_EQ(WriteLabel(*label),
            "<Label Text=\"\" Color=\"0\" Alignment=\"0\">\n<Rectangle Left=\"0\" Top=\"0\" Height=\"0\" Width=\"0\"/>\n"
            "<Font Name=\"\" Size=\" 0\" Bold=\"0\" Italic=\"0\" Color=\"0\"/></Label>");
}

TEST_F(ScreensLabelItemsTest, CommaSizeReadsAsPointAndIsWrittenWithAPoint) {
  auto label = ReadLabel("<Label><Font Size=\"8,25\"/></Label>");
  EXPECT_FLOAT_EQ(label->FontSize(), 8.25F);
  EXPECT_NE(WriteLabel(*label).find("Size=\" 8.25\""), std::string::npos);
}

TEST_F(ScreensLabelItemsTest, SizeReadsTheLeadingNumberOnly) {
  EXPECT_FLOAT_EQ(ReadLabel("<Label><Font Size=\"  9.5pt\"/></Label>")->FontSize(), 9.5F);
  EXPECT_FLOAT_EQ(ReadLabel("<Label><Font Size=\"big\"/></Label>")->FontSize(), 0.0F);
}

TEST_F(ScreensLabelItemsTest, UnconvertibleValueKeepsThePropertyAndLeavesTheErrorPending) {
  auto label = ReadLabel("<Label Text=\"T\" Color=\"red\" Alignment=\"2\"><Font Bold=\"maybe\" Color=\"5\"/></Label>");
  EXPECT_EQ(label->LabelText(), "T");
  EXPECT_EQ(label->LabelColor(), 0);
  EXPECT_EQ(label->Alignment(), 2);
  EXPECT_FALSE(label->FontBold());
  EXPECT_EQ(label->FontColor(), 5);
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  Err().Clear();
}

TEST_F(ScreensLabelItemsTest, FullLabelRoundTripsByteForByte) {
  const std::string text =
      "<Label Text=\"Engine speed\" Color=\"65535\" Alignment=\"2\">\n"
      "<Rectangle Left=\"10\" Top=\"20\" Height=\"30\" Width=\"400\"/>\n"
      "<Font Name=\"Courier New\" Size=\" 10.5\" Bold=\"1\" Italic=\"1\" Color=\"255\"/></Label>";
  auto label = ReadLabel(text);
  EXPECT_EQ(label->LabelWidth(), 400);
  EXPECT_TRUE(label->FontItalic());
  EXPECT_EQ(WriteLabel(*label), text);
}

TEST_F(ScreensLabelItemsTest, LabelsKeepDocumentOrderAndLabelIdIsNotStored) {
  LoadCategories(InScreen("\n<Label Text=\"A\"/>\n<Label Text=\"B\"/>\n<Label Text=\"C\"/>"));
  auto labels = ScreenAt()->LabelItems();
  ASSERT_EQ(labels->Count(), 3);
  EXPECT_EQ(labels->Item(1)->LabelText(), "A");
  EXPECT_EQ(labels->Item(2)->LabelText(), "B");
  EXPECT_EQ(labels->Item(3)->LabelText(), "C");
  EXPECT_EQ(labels->Item(1)->parent(), ScreenAt());
  labels->Item(1)->set_LabelId(42);
  const std::string written = WriteCategories();
  EXPECT_EQ(written.find("42"), std::string::npos);
  target_->Categories()->clear();
  LoadCategories(written);
  EXPECT_EQ(ScreenAt()->LabelItems()->Item(1)->LabelId(), 0);
}

TEST_F(ScreensLabelItemsTest, LabelWithUnreadableValueIsStillKept) {
  LoadCategories(InScreen("\n<Label Text=\"A\" Color=\"x\"/>\n<Label Text=\"B\"/>"));
  EXPECT_EQ(ScreenAt()->LabelItems()->Count(), 2);
}

TEST_F(ScreensLabelItemsTest, ScreenWithLabelsRoundTripsByteForByte) {
  const std::string text = InScreen(
      "\n\n<Label Text=\"A\" Color=\"0\" Alignment=\"0\">\n<Rectangle Left=\"1\" Top=\"2\" Height=\"3\" Width=\"4\"/>\n"
      "<Font Name=\"Arial\" Size=\" 8\" Bold=\"0\" Italic=\"0\" Color=\"0\"/></Label>"
      "\n<Label Text=\"B &amp; C\" Color=\"16711680\" Alignment=\"1\">\n<Rectangle Left=\"5\" Top=\"6\" Height=\"7\" Width=\"8\"/>\n"
      "<Font Name=\"Arial\" Size=\" 12.75\" Bold=\"1\" Italic=\"0\" Color=\"32768\"/></Label>\n\n\n");
  LoadCategories(text);
  EXPECT_EQ(WriteCategories(), text);
}

TEST_F(ScreensLabelItemsTest, AddSetsTheIdentifierAndKeysWhenAsked) {
  LabelItems labels;
  auto a = labels.Add(7, "first");
  auto b = labels.Add(8);
  EXPECT_EQ(a->LabelId(), 7);
  EXPECT_EQ(labels.Item("FIRST"), a);
  EXPECT_EQ(labels.Item(2), b);
}

TEST_F(ScreensLabelItemsTest, DeleteClearsAndRemovesTheVerySameLabel) {
  auto screen = std::make_shared<ScreenItem>();
  LabelItems labels;
  auto a = labels.Add(1);
  a->set_parent(screen);
  auto twin = std::make_shared<LabelItem>();
  labels.Delete(twin);
  EXPECT_EQ(labels.Count(), 1);
  labels.Delete(a);
  EXPECT_EQ(labels.Count(), 0);
  EXPECT_EQ(a->parent(), nullptr);
}

}  // namespace
}  // namespace tessaly::testing
