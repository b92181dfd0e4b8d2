// The benchmark's reference phases run as children of the benchmark: each prints its figures as
// NAME=VALUE lines, and stops with a message and status 1 on a document it cannot measure.
#include <gtest/gtest.h>

#include <string>

#include "ecu_generator.hpp"
#include "support/test_support.hpp"

namespace tessaly::testing {
namespace {

CommandResult RunPhase(const std::string& phase, const std::string& file) {
  return RunProgram(TESSALY_BENCHMARK_PATH, {"--phase", phase, file});
}

// The value printed as NAME=VALUE on a line of its own, or -1 when there is none.
double Figure(const std::string& out, const std::string& name) {
  const std::size_t at = out.find(name + "=");
  if (at == std::string::npos || (at > 0 && out[at - 1] != '\n')) return -1;
  return std::stod(out.substr(at + name.size() + 1));
}

class BenchmarkPhases : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    const std::string path = dir_.File(name);
    WriteFileBytes(path, text);
    return path;
  }
  std::string Generated() { return Write("ecu.xml", bench::GenerateEcuDocument(7, bench::EcuShape{2})); }

  // The phase measures a generated document and prints PHASE_cpu and PHASE_wall.
  void ExpectTimes(const std::string& phase) {
    const CommandResult r = RunPhase(phase, Generated());
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_GE(Figure(r.out, phase + "_cpu"), 0.0) << r.out;
    EXPECT_GE(Figure(r.out, phase + "_wall"), 0.0) << r.out;
  }

  // The phase stops with status 1 and "tessaly-benchmark: " + `message` + the file's path.
  void ExpectRefusal(const std::string& phase, const std::string& document, const std::string& message) {
    const std::string file = Write("refused.xml", document);
    const CommandResult r = RunPhase(phase, file);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "tessaly-benchmark: " + message + file + "\n");
    EXPECT_EQ(r.out, "");
  }

 private:
  TempDir dir_;
};

TEST_F(BenchmarkPhases, WalkPrintsItsWallAndProcessorTimes) { ExpectTimes("walk"); }

TEST_F(BenchmarkPhases, WalkRefusesADocumentThatDoesNotParse) {
  ExpectRefusal("walk", "<Target><Datas></Target>", "pugixml cannot parse ");
}

TEST_F(BenchmarkPhases, WalkRefusesADocumentWithoutAttributesSinceItWouldMeasureNothing) {
  ExpectRefusal("walk", "<Target><Datas/></Target>", "no attribute read in ");
}

#ifdef TESSALY_BENCH_LIBXML2
TEST_F(BenchmarkPhases, SaxParsePrintsItsWallAndProcessorTimes) { ExpectTimes("sax"); }

TEST_F(BenchmarkPhases, SaxParseRefusesADocumentThatDoesNotParse) {
  ExpectRefusal("sax", "<Target><Datas></Target>", "libxml2 cannot parse ");
}
#endif

TEST_F(BenchmarkPhases, AnUnknownPhaseIsRefused) {
  const CommandResult r = RunPhase("nothing", Generated());
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "tessaly-benchmark: unknown phase nothing\n");
}

}  // namespace
}  // namespace tessaly::testing
