// tessaly preview, run as a user runs it.
#include <gtest/gtest.h>

#include <filesystem>

#include "cli/cli_support.hpp"
#include "preview/preview_fixture.hpp"
#include "support/test_support.hpp"

namespace tessaly::testing {
namespace {

class PreviewCommandTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (RunTessaly({"--help"}).out.find("\n  preview ") == std::string::npos)
      GTEST_SKIP() << "this tessaly binary has no preview command registered";
    WriteFileBytes(in, kPreviewEcu);
  }
  TempDir dir;
  std::string in = dir.File("ecu.xml");
  std::string out = dir.File("ecu.html");
};

TEST_F(PreviewCommandTest, WritesThePageAndReportsTheLoadingWarning) {
  auto r = RunTessaly({"preview", in, "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "warning: TessalyDatabase: Loading url : " + in + "\n");
  const std::string page = ReadFileBytes(out);
  EXPECT_EQ(page.rfind("<!DOCTYPE html>", 0), 0U);
  EXPECT_NE(page.find("<h1>Engine &lt;EMS&gt;</h1>"), std::string::npos);
  EXPECT_NE(page.find("data-screen=\"c2s1\""), std::string::npos);
  EXPECT_NE(page.find("<li>warning: TessalyDatabase: Loading url : " + in + "</li>"), std::string::npos);
}

TEST_F(PreviewCommandTest, DroppedElementsAreLoggedAndListedInThePage) {
  WriteFileBytes(in, "<xml><tsl:Target Name=\"T\"><Function Name=\"F\" Address=\"1\"/><ds:Categories><Category "
                     "Name=\"C\"><Screen Name=\"S\"><Display RequestName=\"Gone\"/></Screen></Category>"
                     "</ds:Categories></tsl:Target></xml>");
  auto r = RunTessaly({"preview", in, "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.err.find("log: DisplayItem.loadXml : request missing (Gone)\n"), std::string::npos);
  const std::string page = ReadFileBytes(out);
  EXPECT_NE(page.find("<li>log: DisplayItem.loadXml : request missing (Gone)</li>"), std::string::npos);
  EXPECT_NE(page.find("<li>dropped: Display in screen C/S: request missing (line 1, column"), std::string::npos);
}

TEST_F(PreviewCommandTest, LoadErrorWritesNoPage) {
  WriteFileBytes(in, "<xml><tsl:Target><Function Name=\"F\" Address=\"1\"/></tsl:Target></xml>");
  auto r = RunTessaly({"preview", in, "-o", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("error 1: loadXml: Bad xml file, Target Name not found\n"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(PreviewCommandTest, ForceWritesThePageOfAPartlyLoadedDocument) {
  WriteFileBytes(in, "<xml><tsl:Target><Function Name=\"F\" Address=\"1\"/></tsl:Target></xml>");
  auto r = RunTessaly({"preview", in, "-o", out, "--force"});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(ReadFileBytes(out).find("<li>error 1: loadXml: Bad xml file, Target Name not found</li>"),
            std::string::npos);
}

TEST_F(PreviewCommandTest, UnreadableDocumentIsAnError) {
  auto r = RunTessaly({"preview", dir.File("missing.xml"), "-o", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("error 1: TessalyDatabase.ImportUceFromXml: Bad xml file, Reason=cannot open"),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(PreviewCommandTest, ScreenOptionWritesThatScreenOnly) {
  auto r = RunTessaly({"preview", in, "-o", out, "--screen", "Body/Doors", "--zoom", "2"});
  EXPECT_EQ(r.status, 0) << r.err;
  const std::string page = ReadFileBytes(out);
  EXPECT_NE(page.find("data-screen=\"c2s1\""), std::string::npos);
  EXPECT_EQ(page.find("data-screen=\"c1s1\""), std::string::npos);
  EXPECT_NE(page.find("width=\"800\" height=\"400\" viewBox=\"0 0 6000 3000\""), std::string::npos);
}

TEST_F(PreviewCommandTest, ScreenOptionFindsNamesThatHoldSlashes) {
  WriteFileBytes(in, "<xml><tsl:Target Name=\"T\"><Function Name=\"F\" Address=\"1\"/><ds:Categories><Category "
                     "Name=\"A/B\"><Screen Name=\"C/D\"/></Category></ds:Categories></tsl:Target></xml>");
  auto r = RunTessaly({"preview", in, "-o", out, "--screen", "A/B/C/D"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(ReadFileBytes(out).find("<h3>C/D</h3>"), std::string::npos);
}

TEST_F(PreviewCommandTest, UnknownScreenIsAnError) {
  auto r = RunTessaly({"preview", in, "-o", out, "--screen", "Body/Windows"});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("error 1: tessaly.preview: No screen 'Windows' in a category 'Body'\n"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(PreviewCommandTest, ScreenWithoutCategoryIsAnError) {
  auto r = RunTessaly({"preview", in, "-o", out, "--screen", "Doors"});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("error 1: tessaly.preview: --screen takes CATEGORY/SCREEN, not 'Doors'\n"), std::string::npos);
}

TEST_F(PreviewCommandTest, OutputIsRequired) { EXPECT_EQ(RunTessaly({"preview", in}).status, 2); }

TEST_F(PreviewCommandTest, ZoomMustBePositive) {
  EXPECT_EQ(RunTessaly({"preview", in, "-o", out, "--zoom", "0"}).status, 2);
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(PreviewCommandTest, UnwritableOutputIsAnError) {
  auto r = RunTessaly({"preview", in, "-o", dir.File("no/such/dir/ecu.html")});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("error 2: "), std::string::npos) << r.err;
}

}  // namespace
}  // namespace tessaly::testing
