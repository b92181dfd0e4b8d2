#include "tessaly/common/keyed_collection.hpp"

#include <gtest/gtest.h>

#include <cctype>
#include <random>
#include <string>
#include <utility>
#include <vector>

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

TEST(KeyedCollectionTest, FirstKeyAfterUnkeyedItemsLeavesTheEarlierOnesUnkeyed) {
  Texts c;
  c.Reserve(3);
  c.Append(S("a"));
  c.Append(S("b"));
  c.InsertBefore(2, S("k"), "kk");
  c.Append(S("c"));
  ASSERT_EQ(c.Count(), 4);
  EXPECT_EQ(c.KeyAt(1), "");
  EXPECT_EQ(c.KeyAt(2), "kk");
  EXPECT_EQ(c.KeyAt(3), "");
  EXPECT_EQ(c.KeyAt(4), "");
  EXPECT_EQ(*c.Item("KK"), "k");
  c.Remove(1);
  EXPECT_EQ(*c.Item("kk"), "k");
  EXPECT_EQ(c.KeyAt(1), "kk");
  Texts copy(c);
  EXPECT_EQ(copy.KeyAt(1), "kk");
  EXPECT_EQ(copy.KeyAt(2), "");
  EXPECT_EQ(*copy.Item(3), "c");
}

TEST(KeyedCollectionTest, ShrinkToFitKeepsItemsPositionsAndKeys) {
  Texts c;
  c.Reserve(100);
  c.Append(S("a"));
  c.Append(S("b"), "kb");
  c.ShrinkToFit();
  c.Append(S("c"), "kc");
  c.ShrinkToFit();
  ASSERT_EQ(c.Count(), 3);
  EXPECT_EQ(*c.Item(1), "a");
  EXPECT_EQ(*c.Item("KB"), "b");
  EXPECT_EQ(c.PositionOfKey("kc"), 3);
  EXPECT_EQ(c.KeyAt(1), "");
  c.Remove("kb");
  EXPECT_EQ(*c.Item("kc"), "c");
  EXPECT_EQ(c.PositionOfKey("kc"), 2);
}

TEST(KeyedCollectionTest, CollectionWithoutKeysCopiesAndAnswersKeyQuestions) {
  Texts c;
  c.Append(S("a"));
  c.Append(S("b"));
  Texts copy(c);
  EXPECT_EQ(copy.Count(), 2);
  EXPECT_EQ(copy.KeyAt(2), "");
  EXPECT_FALSE(copy.ContainsKey("a"));
  EXPECT_EQ(copy.Find("b"), nullptr);
}

TEST(KeyedCollectionTest, PositionOfKeyIgnoresLetterCaseAndGivesZeroForMissing) {
  Texts c;
  c.Append(S("a"));
  c.Append(S("s"), "kSpeed");
  c.Append(S("r"), "kRpm");
  EXPECT_EQ(c.PositionOfKey("KSPEED"), 2);
  EXPECT_EQ(c.PositionOfKey("krpm"), 3);
  EXPECT_EQ(c.PositionOfKey("kGone"), 0);
  EXPECT_EQ(c.PositionOfKey(""), 0);
  c.Remove(1);
  EXPECT_EQ(c.PositionOfKey("kRPM"), 2);
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


// A plain model of the collection: items and keys in order, keys found by a scan.
struct Model {
  std::vector<std::pair<std::string, std::string>> entries;  // item text, key
  std::ptrdiff_t Find(std::string_view key) const {
    if (key.empty()) return -1;
    for (std::size_t i = 0; i < entries.size(); ++i)
      if (FoldCase(entries[i].second) == FoldCase(key)) return static_cast<std::ptrdiff_t>(i);
    return -1;
  }
};

void ExpectSame(const Texts& c, const Model& m, const std::vector<std::string>& keys) {
  ASSERT_EQ(c.Count(), static_cast<std::int32_t>(m.entries.size()));
  for (std::size_t i = 0; i < m.entries.size(); ++i) {
    EXPECT_EQ(*c.Item(static_cast<std::int32_t>(i + 1)), m.entries[i].first);
    EXPECT_EQ(c.KeyAt(static_cast<std::int32_t>(i + 1)), m.entries[i].second);
  }
  for (const std::string& key : keys) {
    std::ptrdiff_t at = m.Find(key);
    ASSERT_EQ(c.ContainsKey(key), at >= 0) << key;
    if (at >= 0) {
      EXPECT_EQ(*c.Find(key), m.entries[static_cast<std::size_t>(at)].first) << key;
    }
  }
}

TEST(KeyedCollectionTest, RandomEditsAgreeWithAPlainModel) {
  // Few distinct keys in mixed letter case, so that insertions collide with held keys, removals
  // empty slots in the middle of probe runs, and the index grows and is renumbered often.
  std::vector<std::string> keys;
  for (int i = 0; i < 300; ++i) {
    keys.push_back("k" + std::to_string(i));
    keys.push_back("K" + std::to_string(i));
  }
  std::mt19937 random(7);
  auto pick = [&](std::size_t n) { return static_cast<std::size_t>(random() % n); };
  Texts c;
  Model m;
  int serial = 0;
  for (int step = 0; step < 6000; ++step) {
    const std::string text = "item" + std::to_string(serial++);
    const std::string key = pick(4) == 0 ? std::string() : keys[pick(keys.size())];
    switch (pick(6)) {
      case 0:
      case 1:
      case 2: {
        const bool clash = m.Find(key) >= 0;
        const std::size_t at = m.entries.empty() ? 0 : pick(m.entries.size() + 1);
        try {
          if (at == m.entries.size()) c.Append(S(text.c_str()), key);
          else c.InsertBefore(static_cast<std::int32_t>(at + 1), S(text.c_str()), key);
          ASSERT_FALSE(clash) << key;
          m.entries.insert(m.entries.begin() + static_cast<std::ptrdiff_t>(at), {text, key});
        } catch (const Error& e) {
          ASSERT_TRUE(clash) << key;
          EXPECT_EQ(e.Number(), 457);
        }
        break;
      }
      case 3:
        if (!m.entries.empty()) {
          const std::size_t at = pick(m.entries.size());
          c.Remove(static_cast<std::int32_t>(at + 1));
          m.entries.erase(m.entries.begin() + static_cast<std::ptrdiff_t>(at));
        }
        break;
      case 4: {
        const std::ptrdiff_t at = m.Find(key);
        if (at >= 0) {
          c.Remove(key);
          m.entries.erase(m.entries.begin() + at);
        }
        break;
      }
      default:
        if (pick(40) == 0) {
          const std::size_t count = pick(5);
          c.RemoveFirst(count);
          m.entries.erase(m.entries.begin(), m.entries.begin() + static_cast<std::ptrdiff_t>(std::min(count, m.entries.size())));
        }
    }
    if (step % 250 == 0) ExpectSame(c, m, keys);
  }
  ExpectSame(c, m, keys);
  Texts copy(c);
  ExpectSame(copy, m, keys);
}

TEST(KeyedCollectionTest, ManyKeysStayReachableAfterGrowthAndRemovals) {
  Texts c;
  for (int i = 0; i < 20000; ++i) c.Append(S(std::to_string(i).c_str()), "kData_" + std::to_string(i));
  for (int i = 0; i < 20000; i += 3) c.Remove("KDATA_" + std::to_string(i));
  EXPECT_EQ(c.Count(), 20000 - 6667);
  for (int i = 0; i < 20000; ++i) {
    const std::string key = "kdata_" + std::to_string(i);
    if (i % 3 == 0) {
      EXPECT_FALSE(c.ContainsKey(key));
    } else {
      ASSERT_TRUE(c.ContainsKey(key)) << key;
      EXPECT_EQ(*c.Item(key), std::to_string(i));
    }
  }
}

TEST(KeyedCollectionTest, KeysStayReachableWhenTheTextOfRemovedKeysIsGivenBack) {
  // Keys of many lengths, nine in ten of them removed in mixed letter case, in an order that is
  // neither the order of insertion nor its reverse; the texts of the removed keys are given back
  // several times on the way.
  auto key = [](int i) { return "kSignal" + std::string(static_cast<std::size_t>(i % 37), 'x') + std::to_string(i); };
  auto upper = [](std::string text) {
    for (char& ch : text) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    return text;
  };
  Texts c;
  c.Append(S("0"), key(0));
  for (int i = 1; i < 1000; ++i) c.InsertBefore((i % 7) % c.Count() + 1, S(std::to_string(i).c_str()), key(i));
  for (int round = 0; round < 3; ++round)
    for (int i = round; i < 1000; i += 3)
      if (i % 10 != 0) c.Remove(upper(key(i)));
  ASSERT_EQ(c.Count(), 100);
  for (std::int32_t at = 1; at <= c.Count(); ++at) {
    const int i = std::stoi(*c.Item(at));
    EXPECT_EQ(i % 10, 0);
    EXPECT_EQ(c.KeyAt(at), key(i));
    EXPECT_EQ(c.PositionOfKey(upper(key(i))), at);
  }
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(c.ContainsKey(key(i)), i % 10 == 0) << i;
  // The removed keys are free again, and every key is found under its own item.
  for (int i = 0; i < 1000; ++i)
    if (i % 10 != 0) c.Append(S(std::to_string(i).c_str()), key(i));
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(*c.Item(key(i)), std::to_string(i)) << i;
}

TEST(KeyedCollectionTest, KeyViewingTheCollectionsOwnKeysIsCopiedBeforeTheKeysGrow) {
  // Each key is a view into the text of the key before it, held by the collection itself, and
  // every append makes the held texts grow.
  Texts c;
  const std::string first = "kSpeedSensorOfTheFrontLeftWheelWithAVeryLongName";
  c.Append(S("0"), first);
  for (std::int32_t n = 1; n < 40; ++n) c.Append(S(std::to_string(n).c_str()), c.KeyAt(n).substr(1));
  for (std::int32_t n = 1; n <= 40; ++n) {
    EXPECT_EQ(c.KeyAt(n), first.substr(static_cast<std::size_t>(n - 1))) << n;
    EXPECT_EQ(*c.Item(first.substr(static_cast<std::size_t>(n - 1))), std::to_string(n - 1)) << n;
  }
}

}  // namespace
}  // namespace tessaly
