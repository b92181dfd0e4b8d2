#include "tessaly/screens/scenario_items.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "screens/screens_fixture.hpp"
#include "tessaly/data/request_items.hpp"

namespace tessaly::testing {
namespace {

// "name:index" of every step, in list order.
std::vector<std::string> Steps(const ScenarioItems& steps) {
  std::vector<std::string> out;
  for (const auto& step : steps) out.push_back(step->requestName() + ":" + std::to_string(step->Index()));
  return out;
}

using Texts = std::vector<std::string>;

TEST(ScreensScenarioItemsTest, AddNumbersDeleteRenumbersAndSortOrdersByIndex) {
  ScenarioItems steps;
  auto a = steps.Add("A", 10);
  auto b = steps.Add("B", 20);
  auto c = steps.Add("C", 30);
  EXPECT_EQ(Steps(steps), (Texts{"A:1", "B:2", "C:3"}));
  EXPECT_EQ(b->delay(), 20);
  steps.Delete(b);
  EXPECT_EQ(Steps(steps), (Texts{"A:1", "C:2"}));
  a->set_Index(5);
  c->set_Index(2);
  steps.sort();
  EXPECT_EQ(Steps(steps), (Texts{"C:1", "A:2"}));
}

TEST(ScreensScenarioItemsTest, DeleteDoesNotClearTheStep) {
  auto button = std::make_shared<ButtonItem>();
  ScenarioItems steps;
  auto a = steps.Add("A", 0);
  a->set_parent(button);
  steps.Delete(a);
  EXPECT_EQ(steps.Count(), 0);
  EXPECT_EQ(a->parent(), button);
}

TEST(ScreensScenarioItemsTest, DeleteOfAStepNotHeldStillRenumbers) {
  ScenarioItems steps;
  steps.Add("A", 0)->set_Index(4);
  steps.Add("B", 0)->set_Index(9);
  steps.Delete(std::make_shared<ScenarioItem>());
  EXPECT_EQ(Steps(steps), (Texts{"A:1", "B:2"}));
}

TEST(ScreensScenarioItemsTest, AddDataContinuesAfterTheLargestIndex) {
  ScenarioItems steps;
  steps.Add("A", 0);
  steps.Add("B", 0)->set_Index(7);
  auto added = std::make_shared<ScenarioItem>();
  added->set_requestName("C");
  added->set_Index(3);
  EXPECT_EQ(steps.AddData(added), added);
  EXPECT_EQ(added->Index(), 8);
  EXPECT_EQ(Steps(steps), (Texts{"A:1", "B:7", "C:8"}));
}

TEST(ScreensScenarioItemsTest, RemoveDoesNotRenumber) {
  ScenarioItems steps;
  steps.Add("A", 0);
  steps.Add("B", 0);
  steps.Add("C", 0);
  steps.Remove(1);
  EXPECT_EQ(Steps(steps), (Texts{"B:2", "C:3"}));
}

TEST(ScreensScenarioItemsTest, SortKeepsTheEarlierPositionFirstAmongEqualIndexes) {
  ScenarioItems steps;
  steps.Add("A", 0)->set_Index(2);
  steps.Add("B", 0)->set_Index(1);
  steps.Add("C", 0)->set_Index(2);
  steps.Add("D", 0)->set_Index(1);
  steps.sort();
  EXPECT_EQ(Steps(steps), (Texts{"B:1", "D:2", "A:3", "C:4"}));
}

TEST(ScreensScenarioItemsTest, UpOnTheFirstAndDownOnTheLastChangeNothingNotEvenNumbers) {
  ScenarioItems steps;
  auto a = steps.Add("A", 0);
  auto b = steps.Add("B", 0);
  a->set_Index(5);
  b->set_Index(9);
  steps.up(a);
  EXPECT_EQ(Steps(steps), (Texts{"A:5", "B:9"}));
  steps.down(b);
  EXPECT_EQ(Steps(steps), (Texts{"A:5", "B:9"}));
}

TEST(ScreensScenarioItemsTest, UpAndDownOnASingleStepChangeNothing) {
  ScenarioItems steps;
  auto a = steps.Add("A", 0);
  a->set_Index(3);
  steps.up(std::make_shared<ScenarioItem>());
  steps.down(std::make_shared<ScenarioItem>());
  EXPECT_EQ(Steps(steps), (Texts{"A:3"}));
}

TEST(ScreensScenarioItemsTest, UpOrDownOfAStepNotHeldOnlyRenumbers) {
  ScenarioItems steps;
  steps.Add("A", 0)->set_Index(4);
  steps.Add("B", 0)->set_Index(6);
  steps.up(std::make_shared<ScenarioItem>());
  EXPECT_EQ(Steps(steps), (Texts{"A:1", "B:2"}));
  steps.Item(1)->set_Index(8);
  steps.down(std::make_shared<ScenarioItem>());
  EXPECT_EQ(Steps(steps), (Texts{"A:1", "B:2"}));
}

TEST(ScreensScenarioItemsTest, UpSwapsWithThePredecessorAndDownWithTheSuccessor) {
  ScenarioItems steps;
  auto a = steps.Add("A", 0);
  steps.Add("B", 0);
  auto c = steps.Add("C", 0);
  steps.up(c);
  EXPECT_EQ(Steps(steps), (Texts{"A:1", "C:2", "B:3"}));
  steps.down(a);
  EXPECT_EQ(Steps(steps), (Texts{"C:1", "A:2", "B:3"}));
}

TEST(ScreensScenarioItemsTest, DownOfTheSecondToLastStepMovesItLast) {
  ScenarioItems steps;
  steps.Add("A", 0);
  auto b = steps.Add("B", 0);
  steps.Add("C", 0);
  steps.down(b);
  EXPECT_EQ(Steps(steps), (Texts{"A:1", "C:2", "B:3"}));
}

TEST(ScreensScenarioItemsTest, UpMovesTheEarlierAndDownTheLaterOccurrenceOfAStepHeldTwice) {
  ScenarioItems up;
  up.Add("A", 0);
  auto x = up.Add("X", 0);
  up.Add("B", 0);
  up.AddData(x);
  up.Add("C", 0);
  up.up(x);
  // One object in two places carries one number: the one of its last place.
  EXPECT_EQ(Steps(up), (Texts{"X:4", "A:2", "B:3", "X:4", "C:5"}));
  EXPECT_EQ(up.Item(1), x);

  ScenarioItems down;
  down.Add("A", 0);
  auto y = down.Add("Y", 0);
  down.Add("B", 0);
  down.AddData(y);
  down.Add("C", 0);
  down.down(y);
  EXPECT_EQ(Steps(down), (Texts{"A:1", "Y:5", "B:3", "C:4", "Y:5"}));
  EXPECT_EQ(down.Item(5), y);
}

TEST(ScreensScenarioItemsTest, ClearClearsEveryStepWithoutRenumbering) {
  auto button = std::make_shared<ButtonItem>();
  ScenarioItems steps;
  auto a = steps.Add("A", 0);
  a->set_parent(button);
  steps.clear();
  EXPECT_EQ(steps.Count(), 0);
  EXPECT_EQ(a->parent(), nullptr);
  EXPECT_EQ(a->Index(), 1);
}

using ScreensScenarioLoadTest = ScreensTest;

TEST_F(ScreensScenarioLoadTest, StepOfAMissingRequestIsLoggedAndDroppedAndLaterStepsCloseTheGap) {
  LoadCategories(InScreen(
      "\n\n<Send Delay=\"1\" RequestName=\"Reset\"/><Send Delay=\"2\" RequestName=\"Nowhere\"/>"
      "<Send Delay=\"3\" RequestName=\"Stop\"/>\n\n"));
  EXPECT_EQ(log_->entries, (Texts{"ScenarioItem.loadXml : request (Nowhere) missing "}));
  auto steps = ScreenAt()->ButtonInit()->ScenarioItems();
  EXPECT_EQ(Steps(*steps), (Texts{"Reset:1", "Stop:2"}));
  EXPECT_EQ(Err().Number(), 0);
}

TEST_F(ScreensScenarioLoadTest, StepWithoutRequestNameIsLoggedAndDropped) {
  LoadCategories(InScreen("\n\n<Send Delay=\"1\"/><Send RequestName=\"\"/><Send RequestName=\"Stop\"/>\n\n"));
  EXPECT_EQ(log_->entries,
            (Texts{"ScenarioItem.loadXml : requestName missing ", "ScenarioItem.loadXml : requestName missing "}));
  EXPECT_EQ(Steps(*ScreenAt()->ButtonInit()->ScenarioItems()), (Texts{"Stop:1"}));
}

TEST_F(ScreensScenarioLoadTest, FailedStepLeavesError1Pending) {
  LoadCategories(InCategory("\n<Screen Name=\"S\"/>"));
  auto button = ScreenAt()->ButtonInit();
  pugi::xml_document doc;
  ParseText(doc, "<Button><Send RequestName=\"Reset\"/><Send RequestName=\"Nowhere\"/></Button>");
  ScenarioItems steps;
  steps.loadXml(doc, doc.child("Button"), button);
  EXPECT_EQ(steps.Count(), 1);
  EXPECT_PENDING_ERROR(1, "ScenarioItem.loadXml", "request missing");
  ParseText(doc, "<Button><Send/></Button>");
  steps.loadXml(doc, doc.child("Button"), button);
  EXPECT_PENDING_ERROR(1, "ScenarioItem.loadXml", "requestName missing");
  Err().Clear();
}

TEST_F(ScreensScenarioLoadTest, RequestIsFoundIgnoringCaseAndTheNameIsKeptAsRead) {
  const std::string text = InScreen("\n\n<Send Delay=\"0\" RequestName=\"RESET\"/>\n\n");
  LoadCategories(text);
  auto step = ScreenAt()->ButtonInit()->ScenarioItems()->Item(1);
  EXPECT_EQ(step->request(), target_->Requests()->ItemName("Reset"));
  EXPECT_EQ(step->requestName(), "RESET");
  EXPECT_EQ(WriteCategories(), text);
}

TEST_F(ScreensScenarioLoadTest, UnreadableDelayKeepsZeroAndTheStep) {
  LoadCategories(InScreen("\n\n<Send Delay=\"soon\" RequestName=\"Reset\"/>\n\n"));
  auto steps = ScreenAt()->ButtonInit()->ScenarioItems();
  ASSERT_EQ(steps->Count(), 1);
  EXPECT_EQ(steps->Item(1)->delay(), 0);
}

TEST_F(ScreensScenarioLoadTest, StepWhoseRequestWasRemovedIsWrittenAsAnEmptySend) {
  LoadCategories(InScreen(
      "\n\n\n<Button Text=\"B\"><Send Delay=\"4\" RequestName=\"Reset\"/><Send Delay=\"5\" RequestName=\"Stop\"/>"
      "</Button>\n\n"));
  target_->Requests()->Delete(target_->Requests()->ItemName("Reset"));
  const std::string written = WriteCategories();
  EXPECT_NE(written.find("<Message Text=\"\"/>\n<Send/><Send Delay=\"5\" RequestName=\"Stop\"/>\n</Button>"),
            std::string::npos);
  // Read back, the empty step is dropped with its report.
  target_->Categories()->clear();
  log_->entries.clear();
  LoadCategories(written);
  EXPECT_EQ(log_->entries, (Texts{"ScenarioItem.loadXml : requestName missing "}));
  EXPECT_EQ(Steps(*ScreenAt()->ButtonItems()->Item(2)->ScenarioItems()), (Texts{"Stop:1"}));
}

TEST_F(ScreensScenarioLoadTest, RequestOfADetachedStepFailsWithObjectNotSet) {
  ScenarioItem step;
  step.set_requestName("Reset");
  EXPECT_TESSALY_ERROR(step.request(), 91, "Tessaly", "Object variable or With block variable not set");
  step.set_request(target_->Requests()->ItemName("Stop"));
  EXPECT_EQ(step.requestName(), "Stop");
  step.set_request(nullptr);
  EXPECT_EQ(step.requestName(), "Stop");
}

TEST_F(ScreensScenarioLoadTest, StepIsWrittenWithDelayThenRequestName) {
  ScenarioItem step;
  step.set_requestName("Reset");
  step.set_delay(250);
  step.set_Index(4);
  pugi::xml_document doc;
  pugi::xml_node send = doc.append_child("Send");
  step.createXMLnode(doc, send);
  EXPECT_EQ(NodeText(send), "<Send Delay=\"250\" RequestName=\"Reset\"/>");
}

}  // namespace
}  // namespace tessaly::testing
