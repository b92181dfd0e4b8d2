#include <gtest/gtest.h>

#include <filesystem>

#include "cli/cli_support.hpp"
#include "support/test_support.hpp"

namespace tessaly {
namespace {

using testing::ReadFileBytes;
using testing::RunTessaly;
using testing::TempDir;
using testing::WriteFileBytes;

const std::string kDocument =
    "<?xml version=\"1.0\"?><xml><tsl:Target Name=\"ECU1\"><Function Name=\"Injection\" Address=\"122\"/>"
    "</tsl:Target></xml>";

class ConvertCommandTest : public ::testing::Test {
 protected:
  TempDir dir;
  std::string in = dir.File("in.xml");
  std::string out = dir.File("out.xml");
};

TEST_F(ConvertCommandTest, ConvertsAndPrintsTheLoadingWarning) {
  WriteFileBytes(in, kDocument);
  auto r = RunTessaly({"convert", in, out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "warning: TessalyDatabase: Loading url : " + in + "\n");
  EXPECT_NE(ReadFileBytes(out).find("<tsl:Target Name=\"ECU1\""), std::string::npos);
}

TEST_F(ConvertCommandTest, SecondConversionIsByteForByteTheSame) {
  WriteFileBytes(in, kDocument);
  ASSERT_EQ(RunTessaly({"convert", in, out}).status, 0);
  std::string again = dir.File("again.xml");
  ASSERT_EQ(RunTessaly({"convert", out, again}).status, 0);
  EXPECT_EQ(ReadFileBytes(again), ReadFileBytes(out));
}

TEST_F(ConvertCommandTest, ImportErrorExitsOneAndWritesNothing) {
  WriteFileBytes(in, "<xml><tsl:Target><Function Name=\"F\" Address=\"1\"/></tsl:Target></xml>");
  auto r = RunTessaly({"convert", in, out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "warning: TessalyDatabase: Loading url : " + in +
                       "\nerror 1: loadXml: Bad xml file, Target Name not found\n");
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(ConvertCommandTest, ForceSavesThePartialDocument) {
  WriteFileBytes(in, "<xml><tsl:Target><Function Name=\"F\" Address=\"1\"/></tsl:Target></xml>");
  auto r = RunTessaly({"convert", in, out, "--force"});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(ReadFileBytes(out).find("<tsl:Target Name=\"\""), std::string::npos);
}

TEST_F(ConvertCommandTest, UnreadableInputIsAnError) {
  auto r = RunTessaly({"convert", in, out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "error 1: TessalyDatabase.ImportUceFromXml: Bad xml file, Reason=cannot open '" + in +
                       "': No such file or directory\n");
}

TEST_F(ConvertCommandTest, FailedSaveExitsOneWithTheWarningAndTheReason) {
  WriteFileBytes(in, kDocument);
  std::string bad = dir.File("missing/out.xml");
  auto r = RunTessaly({"convert", in, bad});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "warning: TessalyDatabase: Loading url : " + in +
                       "\nwarning: ExportParametersToXml: Save error (number : 2)\n"
                       "error 2: ExportUceToXml: cannot write '" + bad + "': No such file or directory\n");
}

TEST_F(ConvertCommandTest, OptionsShapeTheWrittenDocument) {
  WriteFileBytes(in, kDocument);
  auto r = RunTessaly({"convert", in, out, "--stylesheet", "", "--encoding", "ISO-8859-1"});
  EXPECT_EQ(r.status, 0) << r.err;
  std::string text = ReadFileBytes(out);
  EXPECT_TRUE(text.starts_with("<?xml version='1.0' encoding=\"ISO-8859-1\"?>\r\n<xml ")) << text;
}

TEST_F(ConvertCommandTest, FunctionsTableGivesTheFunctionItsAddress) {
  WriteFileBytes(in, "<xml><tsl:Target Name=\"E\"><Function Name=\"Injection\"/></tsl:Target></xml>");
  std::string functions = dir.File("functions.xml");
  WriteFileBytes(functions, "<Functions><Function Name=\"Injection\" Address=\"122\"/></Functions>");
  auto r = RunTessaly({"convert", in, out, "--functions", functions});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(ReadFileBytes(out).find("<Function Name=\"Injection\" Address=\"122\"/>"), std::string::npos);
}

TEST_F(ConvertCommandTest, BadParameterDocumentIsAnError) {
  WriteFileBytes(in, kDocument);
  std::string params = dir.File("params.xml");
  auto r = RunTessaly({"convert", in, out, "--params", params});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "error 1: Tessaly: Error when reading parameters " + params + "  msg = cannot open '" + params +
                       "': No such file or directory\n");
}

TEST_F(ConvertCommandTest, MissingArgumentIsAUsageError) {
  auto r = RunTessaly({"convert", in});
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.err.find("OUT"), std::string::npos) << r.err;
}

TEST_F(ConvertCommandTest, HelpSucceeds) {
  auto r = RunTessaly({"convert", "--help"});
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.out.find("--force"), std::string::npos);
}

}  // namespace
}  // namespace tessaly
