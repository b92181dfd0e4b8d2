// Separate facades used on separate threads at the same time share no state: each thread loads,
// edits and saves its own document and gets exactly what the same work gives on one thread.
// The CI runs this file under ThreadSanitizer as well.
#include <gtest/gtest.h>

#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "reliability/model_text.hpp"
#include "reliability/reliability_support.hpp"
#include "tessaly/tessaly.hpp"

namespace tessaly::testing {
namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 5;

// What one thread reports back: the saved bytes and the model after reading them again, the
// error its own damaged document left, and what went to its own sinks.
struct Outcome {
  std::string saved;
  std::string model;
  std::int32_t errorNumber = 0;
  std::string errorDescription;
  std::size_t warnings = 0;
  std::size_t logEntries = 0;
};

// The work of thread `n`: load the shared document, edit it in ways that differ per thread
// (names, a new data item placed in a request, a renamed device, a deleted screen), save it to
// its own file, read the file back; then load a damaged document whose error must stay its own.
Outcome Work(int n, const std::string& document, const std::string& path) {
  RecordingFacade f;
  Outcome out;
  f.lib.ImportUceFromText(document);
  auto target = f.lib.ActiveTarget();
  const std::string tag = std::to_string(n);
  target->set_name("Engine " + tag);
  auto data = target->datas()->Add("Extra" + tag);
  data->set_parent(target);
  data->set_NumberBits(8 + n);
  auto position = target->Requests()->ItemName("ReadSpeed")->DataPositions()->Add("Extra" + tag);
  position->set_parent(target->Requests()->ItemName("ReadSpeed"));
  position->set_StartOctet(10 + n);
  target->Organes()->rename(target->Organes()->ItemName("Fan"), "Fan" + tag);
  auto screens = target->Categories()->ItemName("Engine")->Screens();
  if (n % 2 == 0) screens->Delete(screens->ItemName("Second"));
  f.lib.ExportUceToXml(path);
  out.saved = ReadFileBytes(path);

  RecordingFacade again;
  again.lib.ImportUceFromXml(path);
  out.model = ModelText(*again.lib.ActiveTarget());

  // A damaged document: its overflow is this thread's pending error, and only this thread's.
  std::string damaged = document;
  damaged.replace(damaged.find("DiagVersion=\"12\""), 16, "DiagVersion=\"9999999999" + tag + "\"");
  try {
    f.lib.ImportUceFromText(damaged);
  } catch (const Error& e) {
    out.errorNumber = e.Number();
    out.errorDescription = e.Description();
  }
  out.warnings = f.warnings.size();
  out.logEntries = f.logEntries().size();
  return out;
}

TEST(ThreadsTest, EightThreadsLoadEditAndSaveTheirOwnDocumentsAsOneThreadWould) {
  const std::string document = RichEcuDocument();
  TempDir dir;

  // What each thread's work gives when done alone.
  std::vector<Outcome> expected;
  for (int n = 0; n < kThreads; ++n) expected.push_back(Work(n, document, dir.File("alone" + std::to_string(n) + ".xml")));
  ASSERT_EQ(expected[0].errorNumber, errc::kOverflow);
  ASSERT_NE(expected[0].saved, expected[1].saved);

  std::vector<std::vector<Outcome>> results(kThreads);
  std::latch start(kThreads);
  std::vector<std::thread> threads;
  for (int n = 0; n < kThreads; ++n) {
    threads.emplace_back([&, n] {
      start.arrive_and_wait();
      for (int round = 0; round < kRounds; ++round)
        results[static_cast<std::size_t>(n)].push_back(
            Work(n, document, dir.File("thread" + std::to_string(n) + "-" + std::to_string(round) + ".xml")));
    });
  }
  for (auto& t : threads) t.join();

  for (int n = 0; n < kThreads; ++n) {
    const Outcome& want = expected[static_cast<std::size_t>(n)];
    for (const Outcome& got : results[static_cast<std::size_t>(n)]) {
      EXPECT_EQ(got.saved, want.saved) << "thread " << n;
      EXPECT_EQ(got.model, want.model) << "thread " << n;
      EXPECT_EQ(got.errorNumber, want.errorNumber) << "thread " << n;
      EXPECT_EQ(got.errorDescription, want.errorDescription) << "thread " << n;
      EXPECT_EQ(got.warnings, want.warnings) << "thread " << n;
      EXPECT_EQ(got.logEntries, want.logEntries) << "thread " << n;
    }
  }
}

TEST(ThreadsTest, PendingErrorOfOneThreadIsNotSeenByAnother) {
  Err().Raise(7, "here", "this thread's error");
  std::int32_t seen = -1;
  std::thread other([&] {
    seen = Err().Number();
    Err().Raise(9, "there", "the other thread's error");
  });
  other.join();
  EXPECT_EQ(seen, 0);
  EXPECT_PENDING_ERROR(7, "here", "this thread's error");
  Err().Clear();
}

}  // namespace
}  // namespace tessaly::testing
