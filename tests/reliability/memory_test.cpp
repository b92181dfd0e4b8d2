// Memory: a document that is cleared gives back everything it held, clear breaks every parent
// link, and loading and clearing a document many times does not grow the heap.
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "reliability/reliability_support.hpp"
#include "tessaly/tessaly.hpp"

namespace tessaly::testing {
namespace {

// Every object of a loaded model, held strongly so that no parent can go away by itself, with a
// check per object that tells whether it still points to its parent.
struct ModelObjects {
  std::vector<std::shared_ptr<void>> held;
  std::vector<std::function<bool()>> parentSet;
  std::vector<std::weak_ptr<void>> watched;

  // Lets go of every object, keeping only the watch on them.
  void Release() {
    held.clear();
    parentSet.clear();
  }

  template <class T>
  void Add(const std::shared_ptr<T>& object) {
    held.push_back(object);
    watched.push_back(object);
    parentSet.push_back([object] { return object->parent() != nullptr; });
  }
  template <class T>
  void Watch(const std::shared_ptr<T>& object) {
    held.push_back(object);
    watched.push_back(object);
  }
};

// How many objects still point to their parent.
std::size_t CountLinked(const ModelObjects& m) {
  auto linked = [](const auto& parentSet) { return parentSet(); };
  return static_cast<std::size_t>(std::count_if(m.parentSet.begin(), m.parentSet.end(), linked));
}

// How many objects are still alive.
std::size_t CountAlive(const ModelObjects& m) {
  auto alive = [](const auto& watch) { return !watch.expired(); };
  return static_cast<std::size_t>(std::count_if(m.watched.begin(), m.watched.end(), alive));
}

void AddButton(ModelObjects& m, const std::shared_ptr<ButtonItem>& button) {
  m.Add(button);
  if (!button->HasScenario()) return;
  m.Watch(button->ScenarioItems());
  for (const auto& step : *button->ScenarioItems()) m.Add(step);
}

// Collects every object reachable from the target.
ModelObjects Collect(const std::shared_ptr<TargetItem>& target) {
  ModelObjects m;
  m.Add(target);
  m.Add(target->Parametres());
  m.Watch(target->AutoIdents());
  for (const auto& a : *target->AutoIdents()) m.Add(a);
  m.Watch(target->datas());
  for (const auto& d : *target->datas()) {
    m.Add(d);
    if (!d->DataListes()) continue;
    m.Watch(d->DataListes());
    for (const auto& entry : *d->DataListes()) m.Add(entry);
  }
  m.Watch(target->Requests());
  for (const auto& r : *target->Requests()) {
    m.Add(r);
    if (!r->DataPositions()) continue;
    m.Watch(r->DataPositions());
    for (const auto& p : *r->DataPositions()) m.Add(p);
  }
  m.Watch(target->Organes());
  for (const auto& o : *target->Organes()) {
    m.Add(o);
    if (o->DeviceDatas()) {
      m.Watch(o->DeviceDatas());
      for (const auto& link : *o->DeviceDatas()) m.Add(link);
    }
    if (o->Tests()) {
      m.Watch(o->Tests());
      for (const auto& t : *o->Tests()) m.Add(t);
    }
  }
  m.Watch(target->Categories());
  for (const auto& c : *target->Categories()) {
    m.Add(c);
    if (!c->Screens()) continue;
    m.Watch(c->Screens());
    for (const auto& s : *c->Screens()) {
      m.Add(s);
      if (s->ButtonInit()) AddButton(m, s->ButtonInit());
      if (s->LabelItems()) {
        m.Watch(s->LabelItems());
        for (const auto& l : *s->LabelItems()) m.Add(l);
      }
      if (s->ButtonItems()) {
        m.Watch(s->ButtonItems());
        for (const auto& b : *s->ButtonItems()) AddButton(m, b);
      }
      if (s->DisplayItems()) {
        m.Watch(s->DisplayItems());
        for (const auto& d : *s->DisplayItems()) {
          m.Add(d);
          if (d->DisplayDataItem()) m.Add(d->DisplayDataItem());
          if (d->DisplayExtraItem()) m.Add(d->DisplayExtraItem());
          if (!d->RangeItems()) continue;
          m.Watch(d->RangeItems());
          for (const auto& r : *d->RangeItems()) m.Add(r);
        }
      }
    }
  }
  return m;
}

TEST(MemoryTest, ClearBreaksEveryParentLinkWhileTheObjectsAreStillHeld) {
  RecordingFacade f;
  f.lib.ImportUceFromText(RichEcuDocument());
  ModelObjects m = Collect(f.lib.ActiveTarget());
  ASSERT_GT(m.parentSet.size(), 40u);
  EXPECT_EQ(CountLinked(m), m.parentSet.size()) << "every object is linked to its parent after loading";

  f.lib.ClearTarget();
  EXPECT_EQ(CountLinked(m), 0u) << "objects still linked to their parent after clear";
}

TEST(MemoryTest, ClearedDocumentFreesEveryObject) {
  ModelObjects m;
  {
    RecordingFacade f;
    f.lib.ImportUceFromText(RichEcuDocument());
    m = Collect(f.lib.ActiveTarget());
    f.lib.ClearTarget();
    m.Release();
  }
  EXPECT_EQ(CountAlive(m), 0u);
}

TEST(MemoryTest, DocumentWhoseClearStopsEarlyStillFreesEveryObject) {
  // A category without a name has no screen list, and clearing it fails: the categories after it
  // keep their links, but the links hold nothing alive, so the whole document is freed anyway.
  ModelObjects m;
  {
    RecordingFacade f;
    std::string document = RichEcuDocument();
    document.replace(document.find("<Category Name=\"Engine\">"), 24, "<Category/><Category Name=\"Engine\">");
    f.lib.ImportUceFromText(document);
    ASSERT_EQ(f.lib.ActiveTarget()->Categories()->Count(), 3);
    m = Collect(f.lib.ActiveTarget());
    f.lib.ClearTarget();
    m.Release();
  }
  EXPECT_EQ(CountAlive(m), 0u);
}

TEST(MemoryTest, ReplacingTheDocumentFreesThePreviousOne) {
  RecordingFacade f;
  f.lib.ImportUceFromText(RichEcuDocument());
  ModelObjects m = Collect(f.lib.ActiveTarget());
  m.Release();
  f.lib.ImportUceFromText(RichEcuDocument());
  EXPECT_EQ(CountAlive(m), 0u);
}

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kOwnAllocator = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
constexpr bool kOwnAllocator = true;
#else
constexpr bool kOwnAllocator = false;
#endif
#else
constexpr bool kOwnAllocator = false;
#endif

TEST(MemoryTest, LoadingAndClearingAThousandTimesDoesNotGrowTheHeap) {
  RecordingFacade f;
  const std::string document = RichEcuDocument();
  auto cycle = [&] {
    f.lib.ImportUceFromText(document);
    f.lib.ClearTarget();
    f.warnings.clear();
    f.diagnostics.clear();
  };
  // The first rounds settle the allocator's own bookkeeping.
  for (int i = 0; i < 20; ++i) cycle();
  const std::size_t before = mallinfo2().uordblks;
  for (int i = 0; i < 1000; ++i) cycle();
  const std::size_t after = mallinfo2().uordblks;
  if (kOwnAllocator) GTEST_SKIP() << "a sanitizer replaces the allocator; its leak checker watches this run instead";
  // A single object kept per round would add at least a thousand allocations.
  EXPECT_LT(after > before ? after - before : 0, 16u * 1024u) << "before " << before << ", after " << after;
}

}  // namespace
}  // namespace tessaly::testing
