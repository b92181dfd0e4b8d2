#include "tessaly/screens/screen_items.hpp"

#include <gtest/gtest.h>

#include "screens/screens_fixture.hpp"

namespace tessaly::testing {
namespace {

using ScreensScreenItemsTest = ScreensTest;

TEST_F(ScreensScreenItemsTest, ScreenWithOnlyANameLoadsWithDefaultsAndAnInitButton) {
  LoadCategories(InCategory("\n<Screen Name=\"S\"/>"));
  auto screen = ScreenAt();
  EXPECT_EQ(screen->screenName(), "S");
  EXPECT_EQ(screen->WindowState(), 0);
  EXPECT_EQ(screen->ScreenWidth(), 600);
  EXPECT_EQ(screen->ScreenHeight(), 400);
  EXPECT_EQ(screen->ScreenColor(), 16777215);
  EXPECT_EQ(screen->InitId(), 0);
  ASSERT_NE(screen->ButtonInit(), nullptr);
  EXPECT_TRUE(screen->ButtonInit()->InitButton());
  EXPECT_EQ(screen->ButtonInit()->parent(), screen);
  ASSERT_EQ(screen->ButtonItems()->Count(), 1);
  EXPECT_EQ(screen->ButtonItems()->Item(1), screen->ButtonInit());
  EXPECT_EQ(screen->ButtonInit()->ScenarioItems()->Count(), 0);
  EXPECT_EQ(screen->LabelItems()->Count(), 0);
  EXPECT_EQ(screen->DisplayItems()->Count(), 0);
}

TEST_F(ScreensScreenItemsTest, ScreenAttributesAreWrittenInFixedOrderWithDefaults) {
  LoadCategories(InCategory("\n<Screen Name=\"S\"/>"));
  EXPECT_EQ(WriteCategories(),
            "<ds:Categories>\n<Category Name=\"C\">\n"
            "\n<Screen Name=\"S\" Color=\"16777215\" WindowState=\"0\" Width=\"600\" Height=\"400\">\n\n\n\n</Screen>"
            "\n</Category></ds:Categories>");
}

TEST_F(ScreensScreenItemsTest, ScreenAttributesInAnyOrderAreReadAndWrittenInFixedOrder) {
  LoadCategories(InCategory("\n<Screen Height=\"480\" Width=\"640\" Color=\"255\" WindowState=\"2\" Name=\"S\"/>"));
  auto screen = ScreenAt();
  EXPECT_EQ(screen->WindowState(), 2);
  EXPECT_EQ(screen->ScreenWidth(), 640);
  EXPECT_EQ(screen->ScreenHeight(), 480);
  EXPECT_EQ(screen->ScreenColor(), 255);
  EXPECT_NE(WriteCategories().find("<Screen Name=\"S\" Color=\"255\" WindowState=\"2\" Width=\"640\" Height=\"480\">"),
            std::string::npos);
}

TEST_F(ScreensScreenItemsTest, UnreadableColorKeepsTheDefaultAndTheRestLoads) {
  LoadCategories(InCategory(
      "\n<Screen Name=\"S\" Color=\"abc\" Width=\"700\">\n<Label Text=\"L\"/>\n"
      "<Display RequestName=\"Reset\"/>\n</Screen>"));
  EXPECT_EQ(Err().Number(), 0);
  ASSERT_EQ(target_->Categories()->Item(1)->Screens()->Count(), 1);
  auto screen = ScreenAt();
  EXPECT_EQ(screen->ScreenColor(), 16777215);
  EXPECT_EQ(screen->ScreenWidth(), 700);
  EXPECT_EQ(screen->LabelItems()->Count(), 1);
  EXPECT_EQ(screen->DisplayItems()->Count(), 1);
}

TEST_F(ScreensScreenItemsTest, ScreenNamesDifferingOnlyInCaseClashWithinACategory) {
  LoadCategories(
      "<ds:Categories>\n<Category Name=\"A\">\n\n<Screen Name=\"Main\" Width=\"1\"/>\n<Screen Name=\"MAIN\" Width=\"2\"/>"
      "\n<Screen Name=\"Other\"/>\n</Category>"
      "<Category Name=\"B\">\n\n<Screen Name=\"Main\"/>\n<Screen Name=\"MAIN\" Width=\"3\"/>\n</Category>"
      "</ds:Categories>");
  EXPECT_EQ(Err().Number(), 0);
  auto first = target_->Categories()->Item(1)->Screens();
  ASSERT_EQ(first->Count(), 2);
  EXPECT_EQ(first->Item(1)->screenName(), "Main");
  EXPECT_EQ(first->Item(1)->ScreenWidth(), 1);
  EXPECT_EQ(first->Item(2)->screenName(), "Other");
  auto second = target_->Categories()->Item(2)->Screens();
  ASSERT_EQ(second->Count(), 1);
  EXPECT_EQ(second->Item(1)->screenName(), "Main");
}

TEST_F(ScreensScreenItemsTest, SameScreenNameInTwoCategoriesIsKeptInBoth) {
  LoadCategories(
      "<ds:Categories>\n<Category Name=\"A\">\n\n<Screen Name=\"Main\"/>\n</Category>"
      "<Category Name=\"B\">\n\n<Screen Name=\"Main\"/>\n</Category></ds:Categories>");
  EXPECT_EQ(ScreenAt(1)->screenName(), "Main");
  EXPECT_EQ(ScreenAt(2)->screenName(), "Main");
}

TEST_F(ScreensScreenItemsTest, KeyClashOfTheLastScreenStaysPendingAfterTheScreenList) {
  pugi::xml_document doc;
  ParseText(doc, "<Category Name=\"A\"><Screen Name=\"Main\"/><Screen Name=\"main\"/></Category>");
  auto category = std::make_shared<CategoryItem>();
  category->set_parent(target_);
  ScreenItems screens;
  screens.loadXml(doc, doc.child("Category"), category);
  EXPECT_EQ(screens.Count(), 1);
  EXPECT_PENDING_ERROR(457, "Tessaly", "This key is already associated with an element of this collection");
  Err().Clear();
}

TEST_F(ScreensScreenItemsTest, ScreenWithoutNameIsKeptUnderKeyKWithoutContents) {
  LoadCategories(InCategory("\n<Screen Width=\"900\"><Label Text=\"L\"/><Button Text=\"B\"/></Screen>"));
  EXPECT_EQ(Err().Number(), 0);
  auto screens = target_->Categories()->Item(1)->Screens();
  ASSERT_EQ(screens->Count(), 1);
  auto screen = screens->Item("k");
  EXPECT_EQ(screen->screenName(), "");
  EXPECT_EQ(screen->ScreenWidth(), 600);
  EXPECT_EQ(screen->ButtonInit(), nullptr);
  EXPECT_EQ(screen->ButtonItems(), nullptr);
  EXPECT_EQ(screen->LabelItems(), nullptr);
  EXPECT_EQ(screen->DisplayItems(), nullptr);
}

TEST_F(ScreensScreenItemsTest, ScreenWithoutNameWritesOnlyItsAttributesAndOneLineFeed) {
  LoadCategories(InCategory("\n<Screen/>"));
  EXPECT_EQ(WriteCategories(),
            "<ds:Categories>\n<Category Name=\"C\">\n"
            "\n<Screen Name=\"\" Color=\"16777215\" WindowState=\"0\" Width=\"600\" Height=\"400\">\n</Screen>"
            "\n</Category></ds:Categories>");
}

TEST_F(ScreensScreenItemsTest, ScreenLoadReportsAndWithdrawsTheMissingName) {
  pugi::xml_document doc;
  ParseText(doc, "<Screen/>");
  auto screen = std::make_shared<ScreenItem>();
  screen->loadXml(doc, doc.child("Screen"));
  EXPECT_EQ(Err().Number(), 0);
}

TEST_F(ScreensScreenItemsTest, InitButtonMessageIsWrittenButNotReadBack) {
  LoadCategories(InCategory("\n<Screen Name=\"S\"/>"));
  ScreenAt()->ButtonInit()->set_Message("Hello");
  const std::string written = WriteCategories();
  EXPECT_EQ(written,
            "<ds:Categories>\n<Category Name=\"C\">\n"
            "\n<Screen Name=\"S\" Color=\"16777215\" WindowState=\"0\" Width=\"600\" Height=\"400\">\n\n"
            "<Message>Hello</Message>\n\n</Screen>"
            "\n</Category></ds:Categories>");
  target_->Categories()->clear();
  LoadCategories(written);
  EXPECT_EQ(ScreenAt()->ButtonInit()->Message(), "");
}

TEST_F(ScreensScreenItemsTest, InitButtonStepsAreWrittenInTheScreenBeforeTheButtons) {
  const std::string text = InScreen(
      "\n\n<Send Delay=\"10\" RequestName=\"Reset\"/><Send Delay=\"0\" RequestName=\"ReadSpeed\"/>"
      "\n<Button Text=\"Go\">\n<Rectangle Left=\"0\" Top=\"0\" Height=\"0\" Width=\"0\"/>\n"
      "<Font Name=\"\" Size=\" 12\" Bold=\"0\" Italic=\"0\"/>\n<Message Text=\"\"/>\n"
      "<Send Delay=\"5\" RequestName=\"Stop\"/>\n</Button>\n\n");
  LoadCategories(text);
  auto screen = ScreenAt();
  auto init = screen->ButtonInit()->ScenarioItems();
  ASSERT_EQ(init->Count(), 2);
  EXPECT_EQ(init->Item(1)->requestName(), "Reset");
  EXPECT_EQ(init->Item(1)->delay(), 10);
  EXPECT_EQ(init->Item(2)->requestName(), "ReadSpeed");
  ASSERT_EQ(screen->ButtonItems()->Count(), 2);
  auto go = screen->ButtonItems()->Item(2);
  ASSERT_EQ(go->ScenarioItems()->Count(), 1);
  EXPECT_EQ(go->ScenarioItems()->Item(1)->requestName(), "Stop");
  EXPECT_EQ(WriteCategories(), text);
}

TEST_F(ScreensScreenItemsTest, ScreenWithoutChildListsWritesOnlyItsAttributesAndOneLineFeed) {
  auto category = target_->Categories()->Add("C");
  category->set_Screens(std::make_shared<ScreenItems>());
  category->Screens()->Add("S");
  EXPECT_EQ(WriteCategories(),
            "<ds:Categories>\n<Category Name=\"C\">\n"
            "\n<Screen Name=\"S\" Color=\"16777215\" WindowState=\"0\" Width=\"600\" Height=\"400\">\n</Screen>"
            "\n</Category></ds:Categories>");
}

TEST_F(ScreensScreenItemsTest, AddKeysTheScreenByKAndItsName) {
  ScreenItems screens;
  auto added = screens.Add("X");
  EXPECT_EQ(screens.Item("kX"), added);
  EXPECT_EQ(screens.Item("KX"), added);
  EXPECT_TESSALY_ERROR(screens.Item("X"), 5, "Tessaly", "Invalid procedure call or argument");
}

TEST_F(ScreensScreenItemsTest, AddDataOfANameAlreadyUsedFailsWithTheKeyError) {
  ScreenItems screens;
  screens.Add("Main");
  auto clash = std::make_shared<ScreenItem>();
  clash->set_screenName("MAIN");
  EXPECT_TESSALY_ERROR(screens.AddData(clash), 457, "Tessaly",
                       "This key is already associated with an element of this collection");
  EXPECT_EQ(screens.Count(), 1);
}

TEST_F(ScreensScreenItemsTest, ItemNameIsExact) {
  ScreenItems screens;
  auto main = screens.Add("Main");
  EXPECT_EQ(screens.ItemName("Main"), main);
  EXPECT_EQ(screens.ItemName("MAIN"), nullptr);
}

TEST_F(ScreensScreenItemsTest, DeleteRemovesByNameWithoutClearing) {
  LoadCategories(InCategory("\n<Screen Name=\"A\"/>\n<Screen Name=\"B\"/>"));
  auto screens = target_->Categories()->Item(1)->Screens();
  auto a = screens->Item(1);
  auto lookalike = std::make_shared<ScreenItem>();
  lookalike->set_screenName("A");
  screens->Delete(lookalike);
  ASSERT_EQ(screens->Count(), 1);
  EXPECT_EQ(screens->Item(1)->screenName(), "B");
  EXPECT_NE(a->ButtonItems(), nullptr);
  EXPECT_NE(a->parent(), nullptr);
  // The key of the removed screen is free again.
  screens->Add("a");
  EXPECT_EQ(screens->Count(), 2);
}

TEST_F(ScreensScreenItemsTest, InitIdIsNeitherWrittenNorRead) {
  LoadCategories(InCategory("\n<Screen Name=\"S\" InitId=\"7\"/>"));
  EXPECT_EQ(ScreenAt()->InitId(), 0);
  ScreenAt()->set_InitId(9);
  EXPECT_EQ(WriteCategories().find("InitId"), std::string::npos);
}

TEST_F(ScreensScreenItemsTest, ScreenClearReleasesEverything) {
  LoadCategories(InScreen("\n<Label/>\n<Button Text=\"B\"/>\n<Display RequestName=\"Reset\"/>"));
  auto screen = ScreenAt();
  auto buttons = screen->ButtonItems();
  auto labels = screen->LabelItems();
  auto displays = screen->DisplayItems();
  auto button = buttons->Item(2);
  screen->clear();
  EXPECT_EQ(screen->parent(), nullptr);
  EXPECT_EQ(screen->ButtonInit(), nullptr);
  EXPECT_EQ(screen->ButtonItems(), nullptr);
  EXPECT_EQ(screen->LabelItems(), nullptr);
  EXPECT_EQ(screen->DisplayItems(), nullptr);
  EXPECT_EQ(buttons->Count(), 0);
  EXPECT_EQ(labels->Count(), 0);
  EXPECT_EQ(displays->Count(), 0);
  EXPECT_EQ(button->parent(), nullptr);
}

}  // namespace
}  // namespace tessaly::testing
