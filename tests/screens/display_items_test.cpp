#include "tessaly/screens/display_items.hpp"

#include <gtest/gtest.h>

#include "screens/screens_fixture.hpp"
#include "tessaly/data/data_position_items.hpp"
#include "tessaly/data/request_items.hpp"

namespace tessaly::testing {
namespace {

using ScreensDisplayItemsTest = ScreensTest;

// The tail of a display element with default geometry and font, and no thresholds.
constexpr const char* kDefaultBody =
    ">\n<Rectangle Left=\"0\" Top=\"0\" Height=\"300\" Width=\"4000\"/>\n"
    "<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"0\" Color=\"0\"/>";

// A screen holding exactly `displays` (each preceded by its line feed).
std::string ScreenWithDisplays(const std::string& displays) {
  return InScreen("\n\n\n" + displays + "\n");
}

TEST_F(ScreensDisplayItemsTest, DataDisplayLoadsAsTypeThreeAndKeepsDisplayWhenTheDataIsRead) {
  const std::string text = ScreenWithDisplays(
      "\n<Display Width=\"2000\" Color=\"16777215\" DataName=\"Speed\" RequestName=\"ReadSpeed\"" +
      std::string(kDefaultBody) + "</Display>");
  LoadCategories(text);
  auto displays = ScreenAt()->DisplayItems();
  ASSERT_EQ(displays->Count(), 1);
  auto display = displays->Item(1);
  EXPECT_EQ(display->TypeDisplay(), 3);
  ASSERT_NE(display->DisplayDataItem(), nullptr);
  EXPECT_EQ(display->DisplayExtraItem(), nullptr);
  EXPECT_EQ(display->DisplayDataItem()->dataName(), "Speed");
  EXPECT_EQ(display->DisplayDataItem()->requestName(), "ReadSpeed");
  EXPECT_EQ(display->DisplayDataItem()->parent(), display);
  ASSERT_NE(display->RangeItems(), nullptr);
  EXPECT_EQ(display->RangeItems()->Count(), 0);
  EXPECT_TRUE(log_->entries.empty());
  EXPECT_EQ(WriteCategories(), text);
}

TEST_F(ScreensDisplayItemsTest, DataDisplayIsWrittenAsInputWhenItsDataIsAParameter) {
  LoadCategories(ScreenWithDisplays("\n<Display DataName=\"Speed\" RequestName=\"ReadSpeed\"/>"));
  target_->Requests()->ItemName("ReadSpeed")->DataPositions()->ItemName("Speed")->set_param(true);
  EXPECT_EQ(WriteCategories(),
            ScreenWithDisplays("\n<Input Width=\"2000\" Color=\"16777215\" DataName=\"Speed\" RequestName=\"ReadSpeed\"" +
                               std::string(kDefaultBody) + "</Input>"));
}

TEST_F(ScreensDisplayItemsTest, InputElementOfAReadDataIsWrittenAsDisplay) {
  LoadCategories(ScreenWithDisplays("\n<Input DataName=\"Pressure\" RequestName=\"ReadSpeed\"/>"));
  EXPECT_EQ(WriteCategories(),
            ScreenWithDisplays("\n<Display Width=\"2000\" Color=\"16777215\" DataName=\"Pressure\" "
                               "RequestName=\"ReadSpeed\"" + std::string(kDefaultBody) + "</Display>"));
}

TEST_F(ScreensDisplayItemsTest, DataDisplayOfAParameterRoundTripsAsInput) {
  const std::string text = ScreenWithDisplays(
      "\n<Input Width=\"1500\" Color=\"255\" DataName=\"Temp\" RequestName=\"WriteTemp\"" + std::string(kDefaultBody) +
      "</Input>");
  LoadCategories(text);
  EXPECT_EQ(WriteCategories(), text);
}

TEST_F(ScreensDisplayItemsTest, InputWithOnlyARequestIsAnInputRequestDisplay) {
  const std::string text = ScreenWithDisplays(
      "\n<Input Width=\"2000\" Color=\"16777215\" RequestName=\"Reset\"" + std::string(kDefaultBody) + "</Input>");
  LoadCategories(text);
  auto display = ScreenAt()->DisplayItems()->Item(1);
  EXPECT_EQ(display->TypeDisplay(), 1);
  ASSERT_NE(display->DisplayExtraItem(), nullptr);
  EXPECT_EQ(display->DisplayDataItem(), nullptr);
  EXPECT_TRUE(display->DisplayExtraItem()->param());
  EXPECT_EQ(display->DisplayExtraItem()->requestName(), "Reset");
  EXPECT_EQ(display->DisplayExtraItem()->request(), target_->Requests()->ItemName("Reset"));
  EXPECT_EQ(WriteCategories(), text);
}

TEST_F(ScreensDisplayItemsTest, DisplayWithOnlyARequestIsAPlainRequestDisplay) {
  const std::string text = ScreenWithDisplays(
      "\n<Display Width=\"2000\" Color=\"16777215\" RequestName=\"Reset\"" + std::string(kDefaultBody) + "</Display>");
  LoadCategories(text);
  EXPECT_FALSE(ScreenAt()->DisplayItems()->Item(1)->DisplayExtraItem()->param());
  EXPECT_EQ(WriteCategories(), text);
}

TEST_F(ScreensDisplayItemsTest, RequestNameIsFoundIgnoringCaseAndTakesTheRequestsSpelling) {
  LoadCategories(ScreenWithDisplays("\n<Display RequestName=\"RESET\"/>\n<Display DataName=\"Speed\" RequestName=\"readspeed\"/>"));
  auto displays = ScreenAt()->DisplayItems();
  ASSERT_EQ(displays->Count(), 2);
  EXPECT_EQ(displays->Item(1)->DisplayExtraItem()->requestName(), "Reset");
  EXPECT_EQ(displays->Item(2)->DisplayDataItem()->requestName(), "ReadSpeed");
  EXPECT_TRUE(log_->entries.empty());
}

TEST_F(ScreensDisplayItemsTest, DataNameIsMatchedExactly) {
  LoadCategories(ScreenWithDisplays("\n<Display DataName=\"speed\" RequestName=\"ReadSpeed\"/>"));
  EXPECT_EQ(ScreenAt()->DisplayItems()->Count(), 0);
  EXPECT_EQ(log_->entries, std::vector<std::string>{"DisplayItem.loadXml : request/data missing (ReadSpeed/speed)"});
}

TEST_F(ScreensDisplayItemsTest, DataNotPlacedInTheRequestDropsOnlyThatDisplay) {
  LoadCategories(ScreenWithDisplays(
      "\n<Display RequestName=\"Reset\"/>\n<Display DataName=\"Temp\" RequestName=\"ReadSpeed\"/>"
      "\n<Input RequestName=\"Stop\"/>"));
  EXPECT_EQ(Err().Number(), 0);
  EXPECT_EQ(log_->entries, std::vector<std::string>{"DisplayItem.loadXml : request/data missing (ReadSpeed/Temp)"});
  auto displays = ScreenAt()->DisplayItems();
  ASSERT_EQ(displays->Count(), 2);
  EXPECT_EQ(displays->Item(1)->DisplayExtraItem()->requestName(), "Reset");
  EXPECT_EQ(displays->Item(2)->DisplayExtraItem()->requestName(), "Stop");
}

// Reads one display element into a display of the fixture's screen and returns it; the error
// the reading left stays pending.
class ScreensDisplayLoadTest : public ScreensTest {
 protected:
  ScreensDisplayLoadTest() {
    LoadCategories(InCategory("\n<Screen Name=\"S\"/>"));
    Err().Clear();
  }
  std::shared_ptr<DisplayItem> Read(const std::string& text) {
    ParseText(doc_, text);
    auto display = std::make_shared<DisplayItem>();
    display->set_parent(ScreenAt());
    display->loadXml(doc_, doc_.first_child());
    return display;
  }
  pugi::xml_document doc_;
};

TEST_F(ScreensDisplayLoadTest, RequestDisplayWithoutRequestNameFails) {
  auto display = Read("<Display Width=\"5\"><Threshold Value=\"1\"/></Display>");
  EXPECT_PENDING_ERROR(1, "DisplayItem.loadXml", "requestName missing");
  EXPECT_EQ(log_->entries, std::vector<std::string>{"DisplayItem.loadXml : requestName missing"});
  EXPECT_EQ(display->TypeDisplay(), 1);
  EXPECT_EQ(display->RangeItems(), nullptr);
  Err().Clear();
}

TEST_F(ScreensDisplayLoadTest, RequestDisplayWithEmptyRequestNameFails) {
  Read("<Input RequestName=\"\"/>");
  EXPECT_PENDING_ERROR(1, "DisplayItem.loadXml", "requestName missing");
  EXPECT_EQ(log_->entries, std::vector<std::string>{"DisplayItem.loadXml : requestName missing"});
  Err().Clear();
}

TEST_F(ScreensDisplayLoadTest, RequestDisplayOfAnUnknownRequestFails) {
  auto display = Read("<Display RequestName=\"Nowhere\"><Threshold Value=\"1\"/></Display>");
  EXPECT_PENDING_ERROR(1, "DisplayItem.loadXml", "request missing");
  EXPECT_EQ(log_->entries, std::vector<std::string>{"DisplayItem.loadXml : request missing (Nowhere)"});
  EXPECT_EQ(display->RangeItems(), nullptr);
  Err().Clear();
}

TEST_F(ScreensDisplayLoadTest, DataDisplayWithEmptyDataNameFails) {
  Read("<Display DataName=\"\" RequestName=\"ReadSpeed\"/>");
  EXPECT_PENDING_ERROR(1, "DisplayItem.loadXml", "requestName/dataName missing");
  EXPECT_EQ(log_->entries, std::vector<std::string>{"DisplayItem.loadXml : dataName or requestName missing"});
  Err().Clear();
}

TEST_F(ScreensDisplayLoadTest, DataDisplayWithoutRequestNameFails) {
  auto display = Read("<Display DataName=\"Speed\"/>");
  EXPECT_PENDING_ERROR(1, "DisplayItem.loadXml", "requestName/dataName missing");
  EXPECT_EQ(log_->entries, std::vector<std::string>{"DisplayItem.loadXml : dataName or requestName missing"});
  EXPECT_EQ(display->TypeDisplay(), 3);
  Err().Clear();
}

TEST_F(ScreensDisplayLoadTest, DataDisplayOfAnUnknownRequestFails) {
  Read("<Display DataName=\"Speed\" RequestName=\"Nowhere\"/>");
  EXPECT_PENDING_ERROR(1, "DisplayItem.loadXml", "request/data missing");
  EXPECT_EQ(log_->entries, std::vector<std::string>{"DisplayItem.loadXml : request/data missing (Nowhere/Speed)"});
  Err().Clear();
}

TEST_F(ScreensDisplayLoadTest, SuccessfulReadLeavesNoErrorEvenAfterUnreadableGeometry) {
  auto display = Read("<Display Width=\"wide\" Color=\"12\" RequestName=\"Reset\"><Rectangle Left=\"x\" Top=\"7\"/></Display>");
  EXPECT_EQ(Err().Number(), 0);
  EXPECT_EQ(display->CaptionWidth(), 2000);
  EXPECT_EQ(display->DisplayColor(), 12);
  EXPECT_EQ(display->DisplayLeft(), 0);
  EXPECT_EQ(display->DisplayTop(), 7);
}

TEST_F(ScreensDisplayLoadTest, ReadingStartsFromAClearErrorState) {
  Err().Raise(13, "Tessaly", "Type mismatch");
  Read("<Display RequestName=\"Reset\"/>");
  EXPECT_EQ(Err().Number(), 0);
}

TEST_F(ScreensDisplayLoadTest, FontSizeIsRoundedHalfToEvenAfterCommaReplacement) {
  EXPECT_EQ(Read("<Display RequestName=\"Reset\"><Font Size=\"9,75\"/></Display>")->FontSize(), 10);
  EXPECT_EQ(Read("<Display RequestName=\"Reset\"><Font Size=\"abc\"/></Display>")->FontSize(), 0);
  EXPECT_EQ(Read("<Display RequestName=\"Reset\"><Font Name=\"Tahoma\"/></Display>")->FontSize(), 10);
  EXPECT_EQ(Read("<Display RequestName=\"Reset\"><Font Size=\"8,5\"/></Display>")->FontSize(), 8);
  EXPECT_EQ(Read("<Display RequestName=\"Reset\"><Font Size=\" 10\"/></Display>")->FontSize(), 10);
  EXPECT_EQ(Read("<Display RequestName=\"Reset\"><Font Size=\"11.5\"/></Display>")->FontSize(), 12);
}

TEST_F(ScreensDisplayLoadTest, FontValuesAreRead) {
  auto display = Read(
      "<Display RequestName=\"Reset\"><Font Name=\"Tahoma\" Bold=\"true\" Italic=\"-1\" Color=\"128\"/></Display>");
  EXPECT_EQ(display->FontName(), "Tahoma");
  EXPECT_TRUE(display->FontBold());
  EXPECT_TRUE(display->FontItalic());
  EXPECT_EQ(display->FontColor(), 128);
}

TEST_F(ScreensDisplayItemsTest, DisplayListKeepsDocumentOrderOfDisplaysAndInputs) {
  LoadCategories(ScreenWithDisplays(
      "\n<Input RequestName=\"Reset\"/>\n<Display RequestName=\"Stop\"/>\n<Input RequestName=\"WriteTemp\"/>"
      "\n<Display DataName=\"Speed\" RequestName=\"ReadSpeed\"/>"));
  auto displays = ScreenAt()->DisplayItems();
  ASSERT_EQ(displays->Count(), 4);
  EXPECT_EQ(displays->Item(1)->DisplayExtraItem()->requestName(), "Reset");
  EXPECT_EQ(displays->Item(2)->DisplayExtraItem()->requestName(), "Stop");
  EXPECT_EQ(displays->Item(3)->DisplayExtraItem()->requestName(), "WriteTemp");
  EXPECT_EQ(displays->Item(4)->DisplayDataItem()->dataName(), "Speed");
}

TEST_F(ScreensDisplayItemsTest, RequestDisplayWithoutReferenceWritesOnlyItsLineFeed) {
  LoadCategories(InCategory("\n<Screen Name=\"S\"/>"));
  auto display = ScreenAt()->DisplayItems()->Add();
  display->set_TypeDisplay(1);
  EXPECT_EQ(WriteCategories(), ScreenWithDisplays("\n"));
}

TEST_F(ScreensDisplayItemsTest, DataDisplayWithoutReferenceWritesOnlyItsLineFeed) {
  LoadCategories(InCategory("\n<Screen Name=\"S\"/>"));
  ScreenAt()->DisplayItems()->Add();
  EXPECT_EQ(WriteCategories(), ScreenWithDisplays("\n"));
}

TEST_F(ScreensDisplayItemsTest, RequestDisplayWithADanglingNameIsWrittenUnchanged) {
  LoadCategories(ScreenWithDisplays("\n<Display RequestName=\"Reset\"/>"));
  ScreenAt()->DisplayItems()->Item(1)->DisplayExtraItem()->set_requestName("Gone");
  EXPECT_NE(WriteCategories().find("RequestName=\"Gone\""), std::string::npos);
}

TEST_F(ScreensDisplayItemsTest, WritingADataDisplayWhoseRequestIsGoneFailsWithObjectNotSet) {
  LoadCategories(ScreenWithDisplays("\n<Display DataName=\"Speed\" RequestName=\"ReadSpeed\"/>"));
  target_->Requests()->Delete(target_->Requests()->ItemName("ReadSpeed"));
  EXPECT_TESSALY_ERROR(WriteCategories(), 91, "Tessaly", "Object variable or With block variable not set");
}

TEST_F(ScreensDisplayItemsTest, WritingADataDisplayWhoseDataLeftTheRequestFailsWithObjectNotSet) {
  LoadCategories(ScreenWithDisplays("\n<Display DataName=\"Speed\" RequestName=\"ReadSpeed\"/>"));
  auto positions = target_->Requests()->ItemName("ReadSpeed")->DataPositions();
  positions->Delete(positions->ItemName("Speed"));
  EXPECT_TESSALY_ERROR(WriteCategories(), 91, "Tessaly", "Object variable or With block variable not set");
}

TEST_F(ScreensDisplayItemsTest, DisplayOfAnotherTypeIsWrittenAsADisplayNamingItsDataOnly) {
  LoadCategories(ScreenWithDisplays("\n<Display DataName=\"Temp\" RequestName=\"WriteTemp\"/>"));
  ScreenAt()->DisplayItems()->Item(1)->set_TypeDisplay(2);
  EXPECT_EQ(WriteCategories(), ScreenWithDisplays("\n<Display Width=\"2000\" Color=\"16777215\" DataName=\"Temp\"" +
                                                  std::string(kDefaultBody) + "</Display>"));
}

TEST_F(ScreensDisplayItemsTest, DisplayOfAnotherTypeWithoutDataFailsToWrite) {
  LoadCategories(InCategory("\n<Screen Name=\"S\"/>"));
  ScreenAt()->DisplayItems()->Add()->set_TypeDisplay(0);
  EXPECT_TESSALY_ERROR(WriteCategories(), 91, "Tessaly", "Object variable or With block variable not set");
}

TEST_F(ScreensDisplayItemsTest, DataPositionResolvesThroughTheTargetAndIsNullWhenDetached) {
  LoadCategories(ScreenWithDisplays("\n<Display DataName=\"Pressure\" RequestName=\"ReadSpeed\"/>"));
  auto reference = ScreenAt()->DisplayItems()->Item(1)->DisplayDataItem();
  auto position = reference->DataPosition();
  ASSERT_NE(position, nullptr);
  EXPECT_EQ(position->dataName(), "Pressure");
  EXPECT_EQ(position->StartOctet(), 3);
  DisplayDataItem detached;
  detached.set_dataName("Pressure");
  detached.set_requestName("ReadSpeed");
  EXPECT_EQ(detached.DataPosition(), nullptr);
}

TEST_F(ScreensDisplayItemsTest, SettingDataPositionCopiesBothNamesAndNullChangesNothing) {
  DisplayDataItem reference;
  reference.set_dataName("x");
  reference.set_requestName("y");
  reference.set_DataPosition(nullptr);
  EXPECT_EQ(reference.dataName(), "x");
  reference.set_DataPosition(target_->Requests()->ItemDataPositionName("WriteTemp", "Temp"));
  EXPECT_EQ(reference.dataName(), "Temp");
  EXPECT_EQ(reference.requestName(), "WriteTemp");
}

TEST_F(ScreensDisplayItemsTest, RequestOfADetachedRequestDisplayFailsWithObjectNotSet) {
  DisplayExtraItem reference;
  reference.set_requestName("Reset");
  EXPECT_TESSALY_ERROR(reference.request(), 91, "Tessaly", "Object variable or With block variable not set");
  reference.set_request(target_->Requests()->ItemName("Stop"));
  EXPECT_EQ(reference.requestName(), "Stop");
  reference.set_request(nullptr);
  EXPECT_EQ(reference.requestName(), "Stop");
}

TEST_F(ScreensDisplayItemsTest, DisplayClearReleasesReferencesAndThresholds) {
  LoadCategories(ScreenWithDisplays("\n<Display RequestName=\"Reset\"><Threshold Value=\"1\"/></Display>"));
  auto display = ScreenAt()->DisplayItems()->Item(1);
  auto extra = display->DisplayExtraItem();
  auto ranges = display->RangeItems();
  display->clear();
  EXPECT_EQ(display->DisplayExtraItem(), nullptr);
  EXPECT_EQ(display->RangeItems(), nullptr);
  EXPECT_EQ(display->parent(), nullptr);
  EXPECT_EQ(extra->parent(), nullptr);
  EXPECT_EQ(ranges->Count(), 0);
}

TEST_F(ScreensDisplayItemsTest, DisplaysWithThresholdsRoundTripByteForByte) {
  const std::string text = ScreenWithDisplays(
      "\n<Display Width=\"1800\" Color=\"12632256\" DataName=\"Speed\" RequestName=\"ReadSpeed\">\n"
      "<Rectangle Left=\"100\" Top=\"200\" Height=\"350\" Width=\"5000\"/>\n"
      "<Font Name=\"MS Sans Serif\" Size=\" 12\" Bold=\"1\" Italic=\"0\" Color=\"8421504\"/>"
      "<Threshold Value=\"-5\" Color=\"255\"/><Threshold Value=\" 0\" Color=\"65280\"/>"
      "<Threshold Value=\" 120.5\" Color=\"16711680\">\n<Sound Name=\"880\"/></Threshold>"
      "<Threshold Value=\" 200\" Color=\"0\">\n<Sound Name=\"alarm.wav\"/></Threshold></Display>"
      "\n<Input Width=\"2000\" Color=\"16777215\" DataName=\"Temp\" RequestName=\"WriteTemp\"" +
      std::string(kDefaultBody) + "<Threshold Value=\" .5\" Color=\"1\"/></Input>"
      "\n<Input Width=\"2000\" Color=\"16777215\" RequestName=\"Reset\"" + std::string(kDefaultBody) + "</Input>"
      "\n<Display Width=\"3000\" Color=\"0\" RequestName=\"Stop\">\n"
      "<Rectangle Left=\"-1\" Top=\"0\" Height=\"300\" Width=\"4000\"/>\n"
      "<Font Name=\"Arial\" Size=\"-2\" Bold=\"0\" Italic=\"1\" Color=\"0\"/></Display>");
  LoadCategories(text);
  EXPECT_EQ(ScreenAt()->DisplayItems()->Count(), 4);
  EXPECT_EQ(WriteCategories(), text);
}

}  // namespace
}  // namespace tessaly::testing
