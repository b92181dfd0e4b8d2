// Round-trip stability: a document that was loaded and saved once is saved again byte for byte
// after loading, and loading the saved document gives the same model as loading the original.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

#include "reliability/model_text.hpp"
#include "reliability/reliability_support.hpp"
#include "tessaly/tessaly.hpp"

#if defined(TESSALY_HAS_GENERATOR)
#include "ecu_generator.hpp"
#endif

namespace tessaly::testing {
namespace {

struct Loaded {
  std::string saved;
  std::string model;
  std::size_t diagnostics = 0;
};

// Loads `document` into a new facade; returns what it saves and the model it holds.
Loaded LoadAndSave(const std::string& document) {
  RecordingFacade f;
  f.lib.ImportUceFromText(document);
  Loaded out;
  out.saved = f.lib.ExportUceToText();
  out.model = ModelText(*f.lib.ActiveTarget());
  out.diagnostics = f.diagnostics.size();
  return out;
}

// The first line where two texts differ, with its number, for a readable failure message.
std::string FirstDifference(const std::string& a, const std::string& b) {
  std::size_t line = 1;
  std::size_t start = 0;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    if (a[i] != b[i]) {
      auto lineOf = [&](const std::string& text) { return text.substr(start, text.find('\n', start) - start); };
      return "line " + std::to_string(line) + ":\n  " + lineOf(a) + "\n  " + lineOf(b);
    }
    if (a[i] == '\n') ++line, start = i + 1;
  }
  return a.size() == b.size() ? std::string("no difference") : "one text ends at line " + std::to_string(line);
}

// save(load(save(load(x)))) == save(load(x)), and the model of load(save(load(x))) is that of
// load(x).
void ExpectStable(const std::string& document) {
  const Loaded first = LoadAndSave(document);
  EXPECT_EQ(first.diagnostics, 0u) << "the document is expected to load without repairs";
  const Loaded second = LoadAndSave(first.saved);
  EXPECT_TRUE(second.saved == first.saved) << FirstDifference(first.saved, second.saved);
  EXPECT_TRUE(second.model == first.model) << FirstDifference(first.model, second.model);
}

// The hand-written document of every kind of element, in the form the library writes: lists that
// a hand-written element leaves out (a request without any Sent or Received) are written empty.
std::string RichDocumentAsWritten() { return LoadAndSave(RichEcuDocument()).saved; }

TEST(RoundTripStabilityTest, DocumentWithEveryKindOfElementIsStable) { ExpectStable(RichDocumentAsWritten()); }

TEST(RoundTripStabilityTest, DocumentWithEveryKindOfElementIsStableInOtherEncodings) {
  for (const char* encoding : {"windows-1252", "UTF-16", "ISO-8859-1"}) {
    RecordingFacade f;
    f.lib.ImportUceFromText(RichDocumentAsWritten());
    const std::string model = ModelText(*f.lib.ActiveTarget());
    f.lib.set_xmlEncoding(encoding);
    const std::string saved = f.lib.ExportUceToText();
    RecordingFacade again;
    again.lib.set_xmlEncoding(encoding);
    again.lib.ImportUceFromText(saved);
    const std::string againModel = ModelText(*again.lib.ActiveTarget());
    const std::string againSaved = again.lib.ExportUceToText();
    EXPECT_TRUE(againModel == model) << encoding << ": " << FirstDifference(model, againModel);
    EXPECT_TRUE(againSaved == saved) << encoding << ": " << FirstDifference(saved, againSaved);
  }
}

TEST(RoundTripStabilityTest, ModelTextSeesADifferenceOfOneValue) {
  // The comparison above is only worth something if the model text tells models apart.
  RecordingFacade a;
  a.lib.ImportUceFromText(RichEcuDocument());
  RecordingFacade b;
  b.lib.ImportUceFromText(RichEcuDocument());
  ASSERT_EQ(ModelText(*a.lib.ActiveTarget()), ModelText(*b.lib.ActiveTarget()));
  b.lib.ActiveTarget()->datas()->ItemName("Speed")->set_CoeffA(std::nextafter(0.01, 1.0));
  EXPECT_NE(ModelText(*a.lib.ActiveTarget()), ModelText(*b.lib.ActiveTarget()));
}

#if defined(TESSALY_HAS_GENERATOR)

constexpr std::uint64_t kSeeds = 40;

TEST(RoundTripStabilityTest, GeneratedDocumentsOfManySeedsAreStable) {
  for (std::uint64_t seed = 1; seed <= kSeeds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    bench::EcuShape shape;
    shape.blocks = 1 + seed % 3;
    ExpectStable(bench::GenerateEcuDocument(seed, shape));
  }
}

TEST(RoundTripStabilityTest, LargeGeneratedDocumentIsStable) {
  ExpectStable(bench::GenerateEcuDocument(20240601, std::size_t{2} << 20));
}

#endif

}  // namespace
}  // namespace tessaly::testing
