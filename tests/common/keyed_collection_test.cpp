#include "tessaly/common/keyed_collection.hpp"

#include <gtest/gtest.h>

#include "support/test_support.hpp"

namespace tessaly {
namespace {

using Texts = KeyedCollection<std::string>;

std::shared_ptr<std::string> S(const char* text) { return std::make_shared<std::string>(text); }

TEST(KeyedCollectionTest, KeepsInsertionOrderWithOneBasedPositions) {
  Texts c;
  c.Append(S("a"));
  c.Append(S("b"), "kb");
  c.InsertBefore(1, S("z"));
  ASSERT_EQ(c.Count(), 3);
  EXPECT_EQ(*c.Item(1), "z");
  EXPECT_EQ(*c.Item(2), "a");
  EXPECT_EQ(*c.Item(3), "b");
}

TEST(KeyedCollectionTest, KeysIgnoreLetterCase) {
  Texts c;
  c.Append(S("speed"), "kSpeed");
  EXPECT_EQ(*c.Item("KSPEED"), "speed");
  EXPECT_TESSALY_ERROR(c.Append(S("x"), "kspeed"), 457, "Tessaly",
                       "This key is already associated with an element of this collection");
  EXPECT_EQ(c.Count(), 1);
}

TEST(KeyedCollectionTest, MissingKeyAndBadPositionAreErrors) {
  Texts c;
  c.Append(S("a"));
  EXPECT_TESSALY_ERROR(c.Item("a"), 5, "Tessaly", "Invalid procedure call or argument");
  EXPECT_TESSALY_ERROR(c.Item(0), 9, "Tessaly", "Subscript out of range");
  EXPECT_TESSALY_ERROR(c.Item(2), 9, "Tessaly", "Subscript out of range");
  EXPECT_TESSALY_ERROR(c.Remove(5), 9, "Tessaly", "Subscript out of range");
  EXPECT_EQ(c.Find("nothing"), nullptr);
}

TEST(KeyedCollectionTest, RemoveFreesTheKey) {
  Texts c;
  c.Append(S("a"), "ka");
  c.Append(S("b"), "kb");
  c.Remove("KA");
  EXPECT_EQ(c.Count(), 1);
  EXPECT_FALSE(c.ContainsKey("ka"));
  c.Append(S("a2"), "ka");
  c.Remove(1);
  EXPECT_EQ(*c.Item(1), "a2");
}

TEST(KeyedCollectionTest, UnkeyedEntryIsReachableByPositionOnly) {
  Texts c;
  c.Append(S("Speed"), "");
  EXPECT_EQ(*c.Item(1), "Speed");
  EXPECT_TESSALY_ERROR(c.Item("Speed"), 5, "Tessaly", "Invalid procedure call or argument");
}

TEST(KeyedCollectionTest, PositionOfComparesIdentity) {
  Texts c;
  auto a = S("x");
  auto b = S("x");
  c.Append(a);
  EXPECT_EQ(c.PositionOf(a.get()), 1);
  EXPECT_EQ(c.PositionOf(b.get()), 0);
}

}  // namespace
}  // namespace tessaly
