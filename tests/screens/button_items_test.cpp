#include "tessaly/screens/button_items.hpp"

#include <gtest/gtest.h>

#include "screens/screens_fixture.hpp"

namespace tessaly::testing {
namespace {

using ScreensButtonItemsTest = ScreensTest;

std::string WriteButton(const ButtonItem& button) {
  pugi::xml_document doc;
  pugi::xml_node element = doc.append_child("Button");
  button.createXMLnode(doc, element);
  return NodeText(element);
}

// A screen holding exactly `buttons` (each preceded by its line feed) and no init steps.
std::string ScreenWithButtons(const std::string& buttons) { return InScreen("\n\n" + buttons + "\n\n"); }

TEST_F(ScreensButtonItemsTest, NewButtonWritesEveryPartAndMessageEvenWhenEmpty) {
  ButtonItem button;
  EXPECT_EQ(button.FontSize(), 12.0F);
  EXPECT_FALSE(button.HasScenario());
  EXPECT_EQ(WriteButton(button),
            "<Button Text=\"\">\n<Rectangle Left=\"0\" Top=\"0\" Height=\"0\" Width=\"0\"/>\n"
            "<Font Name=\"\" Size=\" 12\" Bold=\"0\" Italic=\"0\"/>\n<Message Text=\"\"/>\n</Button>");
}

TEST_F(ScreensButtonItemsTest, InitButtonFlagIsWrittenOnlyWhenSet) {
  ButtonItem button;
  button.set_InitButton(true);
  EXPECT_EQ(WriteButton(button).rfind("<Button Text=\"\" InitButton=\"1\">", 0), 0U);
}

TEST_F(ScreensButtonItemsTest, ScenarioGetterCreatesAnEmptyListOnce) {
  ButtonItem button;
  auto scenario = button.ScenarioItems();
  ASSERT_NE(scenario, nullptr);
  EXPECT_EQ(button.ScenarioItems(), scenario);
  EXPECT_TRUE(button.HasScenario());
  EXPECT_TRUE(WriteButton(button).ends_with("<Message Text=\"\"/>\n\n</Button>"));
}

TEST_F(ScreensButtonItemsTest, ButtonsWithScenariosRoundTripByteForByte) {
  const std::string text = ScreenWithButtons(
      "\n<Button Text=\"Start\">\n<Rectangle Left=\"10\" Top=\"20\" Height=\"25\" Width=\"90\"/>\n"
      "<Font Name=\"Arial\" Size=\" 8.25\" Bold=\"1\" Italic=\"0\"/>\n<Message Text=\"Start the engine?\"/>\n"
      "<Send Delay=\"100\" RequestName=\"WriteTemp\"/><Send Delay=\"0\" RequestName=\"ReadSpeed\"/>\n</Button>"
      "\n<Button Text=\"Idle\">\n<Rectangle Left=\"0\" Top=\"0\" Height=\"0\" Width=\"0\"/>\n"
      "<Font Name=\"\" Size=\" 12\" Bold=\"0\" Italic=\"1\"/>\n<Message Text=\"\"/>\n\n</Button>");
  LoadCategories(text);
  auto buttons = ScreenAt()->ButtonItems();
  ASSERT_EQ(buttons->Count(), 3);
  auto start = buttons->Item(2);
  EXPECT_EQ(start->caption(), "Start");
  EXPECT_EQ(start->ButtonLeft(), 10);
  EXPECT_EQ(start->ButtonTop(), 20);
  EXPECT_EQ(start->ButtonHeight(), 25);
  EXPECT_EQ(start->ButtonWidth(), 90);
  EXPECT_FLOAT_EQ(start->FontSize(), 8.25F);
  EXPECT_TRUE(start->FontBold());
  EXPECT_EQ(start->Message(), "Start the engine?");
  EXPECT_EQ(start->parent(), ScreenAt());
  ASSERT_EQ(start->ScenarioItems()->Count(), 2);
  EXPECT_EQ(start->ScenarioItems()->Item(1)->Index(), 1);
  EXPECT_EQ(start->ScenarioItems()->Item(2)->Index(), 2);
  EXPECT_EQ(start->ScenarioItems()->Item(2)->parent(), start);
  EXPECT_EQ(buttons->Item(3)->ScenarioItems()->Count(), 0);
  EXPECT_EQ(WriteCategories(), text);
}

TEST_F(ScreensButtonItemsTest, FontSizeWithCommaReadsAsPoint) {
  LoadCategories(ScreenWithButtons("\n<Button Text=\"B\"><Font Size=\"8,25\"/></Button>"));
  auto button = ScreenAt()->ButtonItems()->Item(2);
  EXPECT_FLOAT_EQ(button->FontSize(), 8.25F);
  EXPECT_NE(WriteCategories().find("Size=\" 8.25\""), std::string::npos);
}

TEST_F(ScreensButtonItemsTest, FontSizeIsWrittenWithSignPositionAndPoint) {
  ButtonItem button;
  button.set_FontSize(8.25F);
  EXPECT_NE(WriteButton(button).find("<Font Name=\"\" Size=\" 8.25\" Bold=\"0\" Italic=\"0\"/>"), std::string::npos);
}

TEST_F(ScreensButtonItemsTest, MissingOrUnreadableValuesKeepTheDefaults) {
  LoadCategories(ScreenWithButtons("\n<Button><Rectangle Left=\"x\" Width=\"9\"/><Font Bold=\"perhaps\"/></Button>"));
  auto button = ScreenAt()->ButtonItems()->Item(2);
  EXPECT_EQ(button->caption(), "");
  EXPECT_EQ(button->ButtonLeft(), 0);
  EXPECT_EQ(button->ButtonWidth(), 9);
  EXPECT_FALSE(button->FontBold());
  EXPECT_FLOAT_EQ(button->FontSize(), 12.0F);
  EXPECT_EQ(button->Message(), "");
  EXPECT_FALSE(button->InitButton());
}

TEST_F(ScreensButtonItemsTest, EveryButtonIsKeptEvenAfterAnUnreadableValue) {
  LoadCategories(ScreenWithButtons("\n<Button Text=\"A\" InitButton=\"x\"/>\n<Button Text=\"B\"/>"));
  auto buttons = ScreenAt()->ButtonItems();
  ASSERT_EQ(buttons->Count(), 3);
  EXPECT_EQ(buttons->Item(2)->caption(), "A");
  EXPECT_FALSE(buttons->Item(2)->InitButton());
  EXPECT_EQ(buttons->Item(3)->caption(), "B");
}

TEST_F(ScreensButtonItemsTest, FlaggedButtonBecomesTheInitButtonAndLeavesTheButtonList) {
  LoadCategories(ScreenWithButtons(
      "\n<Button Text=\"Before\"/>\n<Button Text=\"Boot\" InitButton=\"1\"><Message Text=\"Wait\"/>"
      "<Send Delay=\"3\" RequestName=\"Reset\"/></Button>\n<Button Text=\"After\"/>"));
  auto screen = ScreenAt();
  auto buttons = screen->ButtonItems();
  ASSERT_EQ(buttons->Count(), 4);
  EXPECT_TRUE(buttons->Item(1)->InitButton());
  EXPECT_EQ(screen->ButtonInit(), buttons->Item(3));
  EXPECT_EQ(screen->ButtonInit()->caption(), "Boot");
  EXPECT_EQ(screen->ButtonInit()->Message(), "Wait");
  const std::string written = WriteCategories();
  EXPECT_EQ(written.find("Boot"), std::string::npos);
  EXPECT_EQ(written,
            ScreenWithButtons("<Message>Wait</Message><Send Delay=\"3\" RequestName=\"Reset\"/>"
                              "\n<Button Text=\"Before\">\n<Rectangle Left=\"0\" Top=\"0\" Height=\"0\" Width=\"0\"/>\n"
                              "<Font Name=\"\" Size=\" 12\" Bold=\"0\" Italic=\"0\"/>\n<Message Text=\"\"/>\n\n</Button>"
                              "\n<Button Text=\"After\">\n<Rectangle Left=\"0\" Top=\"0\" Height=\"0\" Width=\"0\"/>\n"
                              "<Font Name=\"\" Size=\" 12\" Bold=\"0\" Italic=\"0\"/>\n<Message Text=\"\"/>\n\n</Button>"));
}

TEST_F(ScreensButtonItemsTest, FlaggedButtonReplacesTheStepsOfTheScreen) {
  LoadCategories(ScreenWithButtons(
      "<Send Delay=\"1\" RequestName=\"Stop\"/>\n<Button Text=\"Boot\" InitButton=\"1\">"
      "<Send Delay=\"2\" RequestName=\"Reset\"/></Button>"));
  auto screen = ScreenAt();
  EXPECT_EQ(screen->ButtonItems()->Item(1)->ScenarioItems()->Item(1)->requestName(), "Stop");
  const std::string written = WriteCategories();
  EXPECT_EQ(written, ScreenWithButtons("<Send Delay=\"2\" RequestName=\"Reset\"/>"));
}

TEST_F(ScreensButtonItemsTest, FlaggedButtonWithoutScreenIsStillKept) {
  pugi::xml_document doc;
  ParseText(doc, "<Screen><Button Text=\"Boot\" InitButton=\"1\"/></Screen>");
  ButtonItems buttons;
  buttons.loadXml(doc, doc.child("Screen"), nullptr);
  ASSERT_EQ(buttons.Count(), 1);
  EXPECT_TRUE(buttons.Item(1)->InitButton());
  EXPECT_TRUE(buttons.Item(1)->HasScenario());
}

TEST_F(ScreensButtonItemsTest, StepsOfAButtonAreNumberedFromOne) {
  LoadCategories(ScreenWithButtons(
      "\n<Button Text=\"B\"><Send RequestName=\"Reset\"/><Send RequestName=\"Stop\" Delay=\"7\"/></Button>"));
  auto steps = ScreenAt()->ButtonItems()->Item(2)->ScenarioItems();
  ASSERT_EQ(steps->Count(), 2);
  EXPECT_EQ(steps->Item(1)->Index(), 1);
  EXPECT_EQ(steps->Item(1)->delay(), 0);
  EXPECT_EQ(steps->Item(2)->Index(), 2);
  EXPECT_EQ(steps->Item(2)->delay(), 7);
}

TEST_F(ScreensButtonItemsTest, AddAndDeleteOfButtons) {
  auto screen = std::make_shared<ScreenItem>();
  ButtonItems buttons;
  auto go = buttons.Add("Go", "kGo");
  go->set_parent(screen);
  go->ScenarioItems()->Add("Reset", 1);
  EXPECT_EQ(go->caption(), "Go");
  EXPECT_EQ(buttons.Item("KGO"), go);
  buttons.Delete(std::make_shared<ButtonItem>());
  EXPECT_EQ(buttons.Count(), 1);
  auto scenario = go->ScenarioItems();
  buttons.Delete(go);
  EXPECT_EQ(buttons.Count(), 0);
  EXPECT_EQ(go->parent(), nullptr);
  EXPECT_FALSE(go->HasScenario());
  EXPECT_EQ(scenario->Count(), 0);
}

TEST_F(ScreensButtonItemsTest, ButtonListWritesNothingButInitButtonsSkipped) {
  ButtonItems buttons;
  buttons.Add("A")->set_InitButton(true);
  pugi::xml_document doc;
  pugi::xml_node screen = doc.append_child("Screen");
  buttons.createXMLnode(doc, screen);
  EXPECT_EQ(NodeText(screen), "<Screen/>");
}

}  // namespace
}  // namespace tessaly::testing
