#include "bench_queries.hpp"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <unordered_set>
#include <utility>

#include "tessaly/tessaly.hpp"

namespace tessaly::bench {
namespace {

using Clock = std::chrono::steady_clock;

double CpuNow() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// Wall-clock and processor time of `step`.
std::pair<double, double> Seconds(const std::function<void()>& step) {
  const double cpu = CpuNow();
  const Clock::time_point start = Clock::now();
  step();
  return {std::chrono::duration<double>(Clock::now() - start).count(), CpuNow() - cpu};
}

void Expect(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error("benchmark operation had no effect: " + what);
}

// A data display: the data it shows and the request it shows it through.
struct Shown {
  std::string data;
  std::string request;
};

// Data displays taken from the screens of the middle categories outwards, one per request and
// per data, so that each edit works on objects no earlier edit touched.
std::vector<Shown> MiddleDisplays(const TargetItem& target, std::size_t wanted) {
  std::vector<Shown> found;
  std::unordered_set<std::string> used;
  const std::int32_t count = target.Categories()->Count();
  for (std::int32_t step = 0; step < count && found.size() < wanted; ++step) {
    // middle, middle+1, middle-1, middle+2, ...
    const std::int32_t offset = (step + 1) / 2 * (step % 2 == 1 ? 1 : -1);
    const std::int32_t position = count / 2 + 1 + offset;
    if (position < 1 || position > count) continue;
    for (const auto& screen : *target.Categories()->Item(position)->Screens()) {
      for (const auto& display : *screen->DisplayItems()) {
        if (display->TypeDisplay() != kDataDisplay || found.size() >= wanted) continue;
        const std::string& data = display->DisplayDataItem()->dataName();
        const std::string& request = display->DisplayDataItem()->requestName();
        if (used.count("d" + data) || used.count("r" + request)) continue;
        used.insert("d" + data);
        used.insert("r" + request);
        found.push_back({data, request});
      }
    }
  }
  Expect(found.size() == wanted, "enough data displays in the document");
  return found;
}

// The request that the most scenario steps send.
std::shared_ptr<RequestItem> MostSentRequest(const TargetItem& target) {
  std::shared_ptr<RequestItem> best;
  std::int32_t bestCount = -1;
  for (std::int32_t position = 1; position <= std::min(target.Requests()->Count(), 8); ++position) {
    const std::shared_ptr<RequestItem>& request = target.Requests()->Item(position);
    std::int32_t count = target.GetScreensScenarioUsingRequest(request->requestName())->Count();
    if (count > bestCount) best = request, bestCount = count;
  }
  return best;
}

}  // namespace

std::vector<QueryTiming> TimeQueries(TargetItem& target) {
  std::vector<QueryTiming> out;
  const std::vector<Shown> shown = MiddleDisplays(target, 8);
  const std::shared_ptr<OrganeItem> device = target.Organes()->Item(target.Organes()->Count() / 2 + 1);
  const std::string deviceData = device->DeviceDatas()->Item(1)->dataName();
  const std::shared_ptr<RequestItem> mostSent = MostSentRequest(target);
  const std::string mostSentName = mostSent->requestName();
  const std::string unknown = "NoSuchName";

  // Queries: read only, so the best of five runs is kept.
  auto query = [&](const std::string& name, const std::function<std::int32_t()>& run, bool expectHit) {
    QueryTiming best{name, 1e9, 1e9};
    std::int32_t hits = 0;
    for (int i = 0; i < 5; ++i) {
      auto [wall, cpu] = Seconds([&] { hits = run(); });
      best.seconds = std::min(best.seconds, wall);
      best.cpu = std::min(best.cpu, cpu);
    }
    Expect((hits > 0) == expectHit, name);
    out.push_back(best);
  };
  auto count = [](const auto& collection) { return collection ? collection->Count() : 0; };
  auto found = [](const auto& object) { return object ? 1 : 0; };
  const Shown& q = shown[0];
  query("GetRequestsUsingData", [&] { return count(target.GetRequestsUsingData(q.data)); }, true);
  query("GetScreensUsingData", [&] { return count(target.GetScreensUsingData(q.data)); }, true);
  query("GetScreensDataUsingRequest", [&] { return count(target.GetScreensDataUsingRequest(q.request)); }, true);
  query("GetScreensExtraDataUsingRequest", [&] { return count(target.GetScreensExtraDataUsingRequest(q.request)); },
        false);
  query("GetScreensScenarioUsingRequest (most sent)",
        [&] { return count(target.GetScreensScenarioUsingRequest(mostSentName)); }, true);
  query("GetDeviceUsingRequest", [&] { return count(target.GetDeviceUsingRequest(device->requestName())); }, true);
  query("GetDeviceDataUsingData", [&] { return found(target.GetDeviceDataUsingData(deviceData)); }, true);
  query("GetDeviceUsingData", [&] { return found(target.GetDeviceUsingData(deviceData)); }, true);
  query("GetDeviceUsingData (unknown name)", [&] { return found(target.GetDeviceUsingData(unknown)); }, false);
  query("GetDataPositionFromRefData", [&] { return found(target.GetDataPositionFromRefData(q.data)); }, true);
  query("GetDataPositionFromRefData (unknown name)", [&] { return found(target.GetDataPositionFromRefData(unknown)); },
        false);

  // Edits: each changes the document, so each runs once, on objects of its own.
  auto edit = [&](const std::string& name, const std::function<void()>& run, const std::function<bool()>& done) {
    auto [wall, cpu] = Seconds(run);
    out.push_back({name, wall, cpu});
    Expect(done(), name);
  };
  {
    std::shared_ptr<DataItem> data = target.datas()->ItemName(shown[1].data);
    const std::string renamed = shown[1].data + "_renamed";
    edit("RenameData", [&] { target.RenameData(data, renamed); },
         [&] { return target.GetScreensUsingData(renamed)->Count() > 0; });
  }
  {
    std::shared_ptr<RequestItem> request = target.Requests()->ItemName(shown[2].request);
    const std::string renamed = shown[2].request + "_renamed";
    edit("RenameRequest", [&] { target.RenameRequest(request, renamed); },
         [&] { return target.GetScreensDataUsingRequest(renamed)->Count() > 0; });
  }
  {
    const std::string renamed = mostSentName + "_renamed";
    edit("RenameRequest (most sent)", [&] { target.RenameRequest(mostSent, renamed); },
         [&] { return target.GetScreensScenarioUsingRequest(renamed)->Count() > 0; });
  }
  {
    const std::string renamed = device->organeName() + "_renamed";
    edit("RenameDevice", [&] { target.RenameDevice(device, renamed); },
         [&] { return target.Organes()->ItemName(renamed) != nullptr; });
  }
  {
    std::shared_ptr<DataPositionItem> position =
        target.Requests()->ItemDataPositionName(shown[3].request, shown[3].data);
    std::shared_ptr<DataItem> other = target.datas()->ItemName(shown[7].data);
    edit("ReplaceDataPosition", [&] { target.ReplaceDataPosition(position, other); },
         [&] { return position->dataName() == shown[7].data; });
  }
  {
    std::shared_ptr<DataPositionItem> position =
        target.Requests()->ItemDataPositionName(shown[4].request, shown[4].data);
    std::shared_ptr<RequestItem> request = target.Requests()->ItemName(shown[4].request);
    edit("DeleteDataPosition", [&] { target.DeleteDataPosition(position); },
         [&] { return request->DataPositions()->ItemName(shown[4].data) == nullptr; });
  }
  {
    std::shared_ptr<DataItem> data = target.datas()->ItemName(shown[5].data);
    edit("DeleteData", [&] { target.DeleteData(data); },
         [&] { return target.datas()->ItemName(shown[5].data) == nullptr; });
  }
  edit("DeleteDataByName", [&] { target.DeleteDataByName(shown[6].data); },
       [&] { return target.datas()->ItemName(shown[6].data) == nullptr; });
  {
    std::shared_ptr<RequestItem> request = target.Requests()->ItemName(shown[0].request);
    edit("DeleteRequest", [&] { target.DeleteRequest(request); },
         [&] { return target.Requests()->ItemName(shown[0].request) == nullptr; });
  }
  {
    const std::string name = mostSent->requestName();
    edit("DeleteRequest (most sent)", [&] { target.DeleteRequest(mostSent); },
         [&] { return target.GetScreensScenarioUsingRequest(name)->Count() == 0; });
  }
  {
    const std::string name = device->organeName();
    edit("DeleteDevice", [&] { target.DeleteDevice(device); }, [&] { return target.Organes()->ItemName(name) == nullptr; });
  }
  return out;
}

}  // namespace tessaly::bench
