#include <gtest/gtest.h>

#include "cli/cli_support.hpp"
#include "support/test_support.hpp"

namespace tessaly {
namespace {

using testing::RunTessaly;

TEST(ParamsCommandTest, ListsTheBuiltInTablesInFrench) {
  auto r = RunTessaly({"params"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("     4     2  no     KWP 2000 init rapide monopoint\n"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("     0  Ne contient pas de pannes\n"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("     1  Entr\xC3\xA9" "e\n"), std::string::npos) << r.out;
  EXPECT_EQ(r.err, "");
}

TEST(ParamsCommandTest, LangPicksTheEnglishNames) {
  auto r = RunTessaly({"params", "--lang", "en"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("     8   255  yes    CAN Messaging\n"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("     1  Input\n"), std::string::npos) << r.out;
}

TEST(ParamsCommandTest, JsonListsEveryEntry) {
  auto r = RunTessaly({"params", "--json", "--lang", "en"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("\"code\": 7,\n      \"initMode\": 3,\n      \"multiPoint\": true,\n      \"name\": \"DiagOnCAN\""),
            std::string::npos)
      << r.out;
  EXPECT_NE(r.out.find("\"failureTypes\""), std::string::npos);
  EXPECT_NE(r.out.find("\"name\": \"Other\""), std::string::npos);
}

TEST(ParamsCommandTest, UnreadableParameterDocumentFails) {
  auto r = RunTessaly({"params", "--params", "/nonexistent/p.xml"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "error 1: Tessaly: Error when reading parameters /nonexistent/p.xml  msg = cannot open "
                   "'/nonexistent/p.xml': No such file or directory\n");
}

}  // namespace
}  // namespace tessaly
