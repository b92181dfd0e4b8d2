#include "tessaly/screens/category_items.hpp"

#include <gtest/gtest.h>

#include "screens/screens_fixture.hpp"

namespace tessaly::testing {
namespace {

using ScreensCategoryItemsTest = ScreensTest;

TEST_F(ScreensCategoryItemsTest, AddDataRefusesACategoryNameAlreadyHeld) {
  CategoryItems categories;
  categories.Add("Engine");
  auto second = std::make_shared<CategoryItem>();
  second->set_categoryName("Engine");
  EXPECT_TESSALY_ERROR(categories.AddData(second), 1, "Tessaly", "Duplicate category");
  EXPECT_EQ(categories.Count(), 1);
}

TEST_F(ScreensCategoryItemsTest, DuplicateTestComparesNamesExactly) {
  CategoryItems categories;
  categories.Add("Engine");
  auto other = std::make_shared<CategoryItem>();
  other->set_categoryName("ENGINE");
  EXPECT_EQ(categories.AddData(other, "kEngine2"), other);
  EXPECT_EQ(categories.Count(), 2);
  EXPECT_EQ(categories.Item("KENGINE2"), other);
}

TEST_F(ScreensCategoryItemsTest, AddWithoutKeyIsReachableByPositionOnly) {
  CategoryItems categories;
  auto added = categories.Add("Engine");
  EXPECT_EQ(categories.Item(1), added);
  EXPECT_EQ(added->Screens(), nullptr);
  EXPECT_TESSALY_ERROR(categories.Item("Engine"), 5, "Tessaly", "Invalid procedure call or argument");
}

TEST_F(ScreensCategoryItemsTest, ItemNameIsExactAndReturnsTheFirstMatch) {
  CategoryItems categories;
  auto first = categories.Add("Engine");
  categories.Add("Engine");
  EXPECT_EQ(categories.ItemName("Engine"), first);
  EXPECT_EQ(categories.ItemName("engine"), nullptr);
}

TEST_F(ScreensCategoryItemsTest, DeleteRemovesTheFirstCategoryOfThatNameWithoutClearingIt) {
  CategoryItems categories;
  auto first = categories.Add("Engine");
  auto second = categories.Add("Engine");
  first->set_parent(target_);
  auto lookalike = std::make_shared<CategoryItem>();
  lookalike->set_categoryName("Engine");
  categories.Delete(lookalike);
  ASSERT_EQ(categories.Count(), 1);
  EXPECT_EQ(categories.Item(1), second);
  // Not cleared: the removed category keeps its links.
  EXPECT_EQ(first->parent(), target_);
}

TEST_F(ScreensCategoryItemsTest, DeleteOfAnUnknownNameChangesNothing) {
  CategoryItems categories;
  categories.Add("Engine");
  auto other = std::make_shared<CategoryItem>();
  other->set_categoryName("Body");
  categories.Delete(other);
  EXPECT_EQ(categories.Count(), 1);
}

TEST_F(ScreensCategoryItemsTest, ClearOfACategoryWithoutScreenListFailsWithObjectNotSet) {
  CategoryItems categories;
  categories.Add("Engine");
  EXPECT_TESSALY_ERROR(categories.clear(), 91, "Tessaly", "Object variable or With block variable not set");
  EXPECT_EQ(categories.Count(), 1);
}

TEST_F(ScreensCategoryItemsTest, ClearClearsEveryCategoryAndItsScreens) {
  LoadCategories(InCategory("\n<Screen Name=\"A\"/>\n<Screen Name=\"B\"/>"));
  auto category = target_->Categories()->Item(1);
  auto screens = category->Screens();
  auto screen = screens->Item(1);
  target_->Categories()->clear();
  EXPECT_EQ(target_->Categories()->Count(), 0);
  EXPECT_EQ(screens->Count(), 0);
  EXPECT_EQ(category->Screens(), nullptr);
  EXPECT_EQ(category->parent(), nullptr);
  EXPECT_EQ(screen->parent(), nullptr);
  EXPECT_EQ(screen->ButtonInit(), nullptr);
  EXPECT_EQ(screen->ButtonItems(), nullptr);
}

TEST_F(ScreensCategoryItemsTest, RepeatedCategoryIsDroppedWithItsScreensAndNoErrorReachesTheCaller) {
  LoadCategories(
      "<ds:Categories>\n<Category Name=\"Engine\">\n\n<Screen Name=\"First\"/>\n</Category>"
      "<Category Name=\"Engine\">\n\n<Screen Name=\"Second\"/>\n</Category>"
      "<Category Name=\"Body\">\n</Category></ds:Categories>");
  EXPECT_EQ(Err().Number(), 0);
  ASSERT_EQ(target_->Categories()->Count(), 2);
  auto engine = target_->Categories()->Item(1);
  EXPECT_EQ(engine->categoryName(), "Engine");
  ASSERT_EQ(engine->Screens()->Count(), 1);
  EXPECT_EQ(engine->Screens()->Item(1)->screenName(), "First");
  EXPECT_EQ(target_->Categories()->Item(2)->categoryName(), "Body");
}

TEST_F(ScreensCategoryItemsTest, CategoryWithoutNameIsKeptNamelessWithoutScreens) {
  LoadCategories("<ds:Categories>\n<Category>\n\n<Screen Name=\"Lost\"/>\n</Category></ds:Categories>");
  EXPECT_EQ(Err().Number(), 0);
  ASSERT_EQ(target_->Categories()->Count(), 1);
  auto category = target_->Categories()->Item(1);
  EXPECT_EQ(category->categoryName(), "");
  EXPECT_EQ(category->Screens(), nullptr);
  EXPECT_EQ(category->parent(), target_);
}

TEST_F(ScreensCategoryItemsTest, SecondNamelessCategoryIsDroppedAsADuplicate) {
  LoadCategories("<ds:Categories><Category/><Category/></ds:Categories>");
  EXPECT_EQ(Err().Number(), 0);
  EXPECT_EQ(target_->Categories()->Count(), 1);
}

TEST_F(ScreensCategoryItemsTest, CategoryLoadReportsAndWithdrawsTheMissingName) {
  pugi::xml_document doc;
  ParseText(doc, "<Category/>");
  auto category = std::make_shared<CategoryItem>();
  Err().Raise(13, "x", "earlier");
  category->loadXml(doc, doc.child("Category"));
  EXPECT_EQ(Err().Number(), 0);
  EXPECT_EQ(category->Screens(), nullptr);
}

TEST_F(ScreensCategoryItemsTest, CategoryWithoutScreenListWritesASingleLineFeed) {
  target_->Categories()->Add("Engine");
  EXPECT_EQ(WriteCategories(), "<ds:Categories>\n<Category Name=\"Engine\">\n</Category></ds:Categories>");
}

TEST_F(ScreensCategoryItemsTest, CategoriesAreWrittenWithoutLineFeedsBetweenThem) {
  const std::string text =
      "<ds:Categories>\n<Category Name=\"A\">\n\n</Category><Category Name=\"B\">\n\n</Category></ds:Categories>";
  LoadCategories(text);
  EXPECT_EQ(WriteCategories(), text);
}

TEST_F(ScreensCategoryItemsTest, EmptyCategoryListWritesOnlyTheTargetsLineFeed) {
  EXPECT_EQ(WriteCategories(), "<ds:Categories>\n</ds:Categories>");
}

TEST_F(ScreensCategoryItemsTest, ReadingIgnoresOtherChildElements) {
  LoadCategories("<ds:Categories>\n<Other Name=\"X\"/><Category Name=\"A\"/>\n</ds:Categories>");
  ASSERT_EQ(target_->Categories()->Count(), 1);
  EXPECT_EQ(target_->Categories()->Item(1)->categoryName(), "A");
}

}  // namespace
}  // namespace tessaly::testing
