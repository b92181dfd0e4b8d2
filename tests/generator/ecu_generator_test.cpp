// The synthetic ECU generator: deterministic for a seed, close to the requested size, a document
// that loads without any element dropped or repaired and saves back to the same bytes, and one
// that holds every kind of element.
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "ecu_generator.hpp"
#include "support/test_support.hpp"
#include "tessaly/tessaly.hpp"

namespace tessaly::testing {
namespace {

// A facade that records every warning, event-log entry and drop or repair diagnostic.
struct WatchedFacade {
  WatchedFacade() : log(std::make_shared<RecordingEventLog>()) {
    facade.set_EventLog(log);
    facade.set_WarningInfo([this](const std::string& cls, const std::string& msg) {
      // Every import announces the location it loads; that is not a remark on the document.
      if (msg.rfind("Loading url : ", 0) != 0) warnings.push_back(cls + ": " + msg);
    });
    facade.set_Diagnostics([this](const Diagnostic& d) { diagnostics.push_back(d.what + ": " + d.why); });
  }
  TessalyLibXml facade;
  std::shared_ptr<RecordingEventLog> log;
  std::vector<std::string> warnings;
  std::vector<std::string> diagnostics;
};

// The lines of `lines`, each followed by a line feed.
std::string Joined(const std::vector<std::string>& lines) {
  std::string out;
  for (const std::string& line : lines) out += line + "\n";
  return out;
}

// Where two texts first differ, with some context, instead of both whole documents.
std::string FirstDifference(const std::string& a, const std::string& b) {
  std::size_t at = 0;
  while (at < a.size() && at < b.size() && a[at] == b[at]) ++at;
  const std::size_t from = at < 200 ? 0 : at - 200;
  return "first difference at byte " + std::to_string(at) + "\nexpected: ..." + b.substr(from, 400) +
         "\nactual:   ..." + a.substr(from, 400);
}

// Element counts of a loaded ECU, by kind.
struct Census {
  std::int32_t scaled = 0, lists = 0, listEntries = 0, entryNotes = 0, byteStrings = 0, asciiStrings = 0;
  std::int32_t requests = 0, sentPositions = 0, receivedPositions = 0, referencePositions = 0, deniedRequests = 0;
  std::int32_t devices = 0, deviceLinks = 0, failureFlags = 0, tests = 0, storedFlags = 0, presentFlags = 0,
               obdCodes = 0;
  std::int32_t categories = 0, screens = 0, labels = 0, dataDisplays = 0, requestDisplays = 0, inputs = 0,
               thresholds = 0, sounds = 0, buttons = 0, buttonSteps = 0, initSteps = 0;
  std::int32_t autoIdents = 0, projects = 0;
};

Census Count(const TargetItem& target) {
  Census c;
  for (const auto& data : *target.datas()) {
    if (!data->numerique()) {
      ++c.byteStrings;
      if (data->Ascii()) ++c.asciiStrings;
    } else if (data->liste()) {
      ++c.lists;
      for (const auto& entry : *data->DataListes()) {
        ++c.listEntries;
        if (!entry->Info().empty()) ++c.entryNotes;
      }
    } else {
      ++c.scaled;
    }
  }
  for (const auto& request : *target.Requests()) {
    ++c.requests;
    if (!request->AccesApresVente() || !request->AccesUsine() || !request->AccesTous()) ++c.deniedRequests;
    for (const auto& position : *request->DataPositions()) {
      ++(position->param() ? c.sentPositions : c.receivedPositions);
      if (position->reference()) ++c.referencePositions;
    }
  }
  for (const auto& device : *target.Organes()) {
    ++c.devices;
    for (const auto& link : *device->DeviceDatas()) {
      ++c.deviceLinks;
      if (link->FlagPanne()) ++c.failureFlags;
    }
    for (const auto& test : *device->Tests()) {
      ++c.tests;
      c.storedFlags += test->StoredFlag().Count();
      c.presentFlags += test->PresentFlag().Count();
      if (test->OBD() != 0) ++c.obdCodes;
    }
  }
  for (const auto& category : *target.Categories()) {
    ++c.categories;
    for (const auto& screen : *category->Screens()) {
      ++c.screens;
      c.labels += screen->LabelItems()->Count();
      c.initSteps += screen->ButtonInit()->ScenarioItems()->Count();
      for (const auto& button : *screen->ButtonItems()) {
        if (button->InitButton()) continue;
        ++c.buttons;
        c.buttonSteps += button->ScenarioItems()->Count();
      }
      for (const auto& display : *screen->DisplayItems()) {
        if (display->TypeDisplay() == kDataDisplay) ++c.dataDisplays;
        if (display->TypeDisplay() == kRequestDisplay) {
          ++c.requestDisplays;
          if (display->DisplayExtraItem()->param()) ++c.inputs;
        }
        for (const auto& range : *display->RangeItems()) {
          ++c.thresholds;
          if (range->SonFlag()) ++c.sounds;
        }
      }
    }
  }
  c.autoIdents = target.AutoIdents()->Count();
  c.projects = target.Projects()->Count();
  return c;
}

TEST(GeneratorTest, SameSeedAndSizeGiveTheSameBytes) {
  const std::string first = bench::GenerateEcuDocument(7, std::size_t{200000});
  const std::string second = bench::GenerateEcuDocument(7, std::size_t{200000});
  EXPECT_EQ(first, second);
}

TEST(GeneratorTest, AnotherSeedGivesAnotherDocument) {
  EXPECT_NE(bench::GenerateEcuDocument(7, std::size_t{200000}), bench::GenerateEcuDocument(8, std::size_t{200000}));
}

TEST(GeneratorTest, DocumentSizeIsWithinFivePerCentOfTheRequest) {
  for (std::size_t requested : {std::size_t{300000}, std::size_t{1000000}, std::size_t{3000000}}) {
    const std::size_t size = bench::GenerateEcuDocument(11, requested).size();
    EXPECT_GT(size, requested * 95 / 100) << requested;
    EXPECT_LT(size, requested * 105 / 100) << requested;
  }
}

TEST(GeneratorTest, TinyRequestStillGivesOneWholeBlock) {
  EXPECT_EQ(bench::BlocksForSize(3, 10), 1U);
  const std::string document = bench::GenerateEcuDocument(3, std::size_t{10});
  EXPECT_EQ(document, bench::GenerateEcuDocument(3, bench::EcuShape{1}));
}

TEST(GeneratorTest, BlockCountGrowsInProportionToTheRequestedSize) {
  const std::size_t ten = bench::BlocksForSize(5, 10000000);
  const std::size_t hundred = bench::BlocksForSize(5, 100000000);
  EXPECT_GT(ten, 100U);
  EXPECT_NEAR(static_cast<double>(hundred) / static_cast<double>(ten), 10.0, 0.2);
}

TEST(GeneratorTest, DocumentIsUtf8WithTheLibrarysDeclaration) {
  const std::string document = bench::GenerateEcuDocument(1, bench::EcuShape{2});
  EXPECT_EQ(document.rfind("<?xml version='1.0' encoding=\"UTF-8\"?>\r\n", 0), 0U);
  // Units and notes carry non-ASCII characters, written as UTF-8.
  EXPECT_NE(document.find("\xC2\xB0"), std::string::npos);
}

TEST(GeneratorTest, DocumentLoadsWithNoDropRepairWarningOrLogEntry) {
  const std::string document = bench::GenerateEcuDocument(21, std::size_t{1000000});
  WatchedFacade watched;
  ASSERT_NO_THROW(watched.facade.ImportUceFromText(document));
  EXPECT_EQ(Joined(watched.diagnostics), "");
  EXPECT_EQ(Joined(watched.warnings), "");
  EXPECT_EQ(Joined(watched.log->entries), "");
  EXPECT_EQ(Err().Number(), 0);
}

TEST(GeneratorTest, SavingTheLoadedDocumentGivesTheSameBytes) {
  for (std::uint64_t seed : {1U, 2U, 99U}) {
    const std::string document = bench::GenerateEcuDocument(seed, std::size_t{500000});
    TessalyLibXml facade;
    facade.ImportUceFromText(document);
    const std::string saved = facade.ExportUceToText();
    EXPECT_TRUE(saved == document) << "seed " << seed << ": " << FirstDifference(saved, document);
  }
}

TEST(GeneratorTest, LoadedModelHoldsWhatWasBuilt) {
  TessalyLibXml built;
  std::shared_ptr<TargetItem> original = bench::BuildEcu(built, 4, bench::EcuShape{20});
  const Census expected = Count(*original);
  const std::string document = built.ExportUceToText();

  TessalyLibXml loaded;
  loaded.ImportUceFromText(document);
  const Census got = Count(*loaded.ActiveTarget());
  EXPECT_EQ(got.scaled, expected.scaled);
  EXPECT_EQ(got.lists, expected.lists);
  EXPECT_EQ(got.listEntries, expected.listEntries);
  EXPECT_EQ(got.byteStrings, expected.byteStrings);
  EXPECT_EQ(got.requests, expected.requests);
  EXPECT_EQ(got.sentPositions, expected.sentPositions);
  EXPECT_EQ(got.receivedPositions, expected.receivedPositions);
  EXPECT_EQ(got.referencePositions, expected.referencePositions);
  EXPECT_EQ(got.devices, expected.devices);
  EXPECT_EQ(got.deviceLinks, expected.deviceLinks);
  EXPECT_EQ(got.tests, expected.tests);
  EXPECT_EQ(got.storedFlags, expected.storedFlags);
  EXPECT_EQ(got.presentFlags, expected.presentFlags);
  EXPECT_EQ(got.obdCodes, expected.obdCodes);
  EXPECT_EQ(got.screens, expected.screens);
  EXPECT_EQ(got.labels, expected.labels);
  EXPECT_EQ(got.dataDisplays, expected.dataDisplays);
  EXPECT_EQ(got.requestDisplays, expected.requestDisplays);
  EXPECT_EQ(got.thresholds, expected.thresholds);
  EXPECT_EQ(got.buttons, expected.buttons);
  EXPECT_EQ(got.buttonSteps, expected.buttonSteps);
  EXPECT_EQ(got.initSteps, expected.initSteps);
  EXPECT_EQ(got.autoIdents, expected.autoIdents);
  EXPECT_EQ(got.projects, expected.projects);
}

TEST(GeneratorTest, EveryElementKindIsPresent) {
  TessalyLibXml facade;
  facade.ImportUceFromText(bench::GenerateEcuDocument(13, std::size_t{1000000}));
  const Census c = Count(*facade.ActiveTarget());
  EXPECT_GT(c.scaled, 0);
  EXPECT_GT(c.lists, 0);
  EXPECT_GT(c.entryNotes, 0);
  EXPECT_GT(c.byteStrings, 0);
  EXPECT_GT(c.asciiStrings, 0);
  EXPECT_GT(c.sentPositions, 0);
  EXPECT_GT(c.receivedPositions, 0);
  EXPECT_GT(c.referencePositions, 0);
  EXPECT_GT(c.deniedRequests, 0);
  EXPECT_GT(c.failureFlags, 0);
  EXPECT_GT(c.storedFlags, 0);
  EXPECT_GT(c.presentFlags, 0);
  EXPECT_GT(c.obdCodes, 0);
  EXPECT_GT(c.categories, 1);
  EXPECT_GT(c.labels, 0);
  EXPECT_GT(c.dataDisplays, 0);
  EXPECT_GT(c.requestDisplays, 0);
  EXPECT_GT(c.inputs, 0);
  EXPECT_GT(c.thresholds, 0);
  EXPECT_GT(c.sounds, 0);
  EXPECT_GT(c.buttons, 0);
  EXPECT_GT(c.buttonSteps, 0);
  EXPECT_GT(c.initSteps, 0);
  EXPECT_GT(c.autoIdents, 0);
  EXPECT_EQ(c.projects, 3);
}

TEST(GeneratorTest, ProportionsResembleAnEngineEcu) {
  TessalyLibXml facade;
  facade.ImportUceFromText(bench::GenerateEcuDocument(17, std::size_t{2000000}));
  const Census c = Count(*facade.ActiveTarget());
  const std::int32_t data = c.scaled + c.lists + c.byteStrings;
  // Mostly scaled values, a fifth enumerated, some byte strings.
  EXPECT_GT(c.scaled * 100 / data, 50);
  EXPECT_GT(c.lists * 100 / data, 15);
  EXPECT_GT(c.byteStrings * 100 / data, 10);
  // Two to three data items per request, a few data displays per screen, a device per ten data.
  EXPECT_GT(data * 10 / c.requests, 20);
  EXPECT_LT(data * 10 / c.requests, 40);
  EXPECT_GT(c.dataDisplays / c.screens, 4);
  EXPECT_GT(data / c.devices, 5);
  EXPECT_LT(data / c.devices, 20);
}

}  // namespace
}  // namespace tessaly::testing
