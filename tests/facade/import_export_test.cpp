#include <gtest/gtest.h>

#include <filesystem>
#include <grp.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include <vector>

#include "support/test_support.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

using testing::LoopbackHttpServer;
using testing::ReadFileBytes;
using testing::TempDir;
using testing::WriteFileBytes;

constexpr const char* kImport = "TessalyDatabase.ImportUceFromXml";

const std::string kSmallDocument =
    "<?xml version=\"1.0\"?><xml><tsl:Target Name=\"ECU1\"><Function Name=\"Injection\" Address=\"122\"/>"
    "</tsl:Target></xml>";

struct Warning {
  std::string cls;
  std::string msg;
};

class FacadeTest : public ::testing::Test {
 protected:
  FacadeTest() {
    lib.set_WarningInfo([this](const std::string& c, const std::string& m) { warnings.push_back({c, m}); });
  }
  TessalyLibXml lib;
  std::vector<Warning> warnings;
  TempDir dir;
};

TEST_F(FacadeTest, XmlnsAndXmlEcuSchemaAreOneValue) {
  lib.set_xmlEcuSchema("urn:a");
  EXPECT_EQ(lib.xmlns(), "urn:a");
  lib.set_xmlns("urn:b");
  EXPECT_EQ(lib.xmlEcuSchema(), "urn:b");
}

TEST_F(FacadeTest, ConstructionSetsTheDefaults) {
  EXPECT_EQ(lib.lang(), "fr");
  EXPECT_EQ(lib.xmlEncoding(), "UTF-8");
  EXPECT_EQ(lib.xmlns(), "http://www.tessaly.org/2002/ECU");
  EXPECT_EQ(lib.xmlScreenSchema(), "http://www.tessaly.org/2002/screens");
  EXPECT_EQ(lib.xmlStyleSheet(), "http://www.tessaly.org/Tessaly/TSLECUPreview.xsl");
  EXPECT_EQ(lib.ActiveTarget(), nullptr);
  EXPECT_EQ(lib.functions(), nullptr);
}

TEST_F(FacadeTest, ExportWritesTheDeclarationStyleSheetAndRoot) {
  lib.ImportUceFromText(kSmallDocument);
  std::string text = lib.ExportUceToText();
  EXPECT_TRUE(text.starts_with(
      "<?xml version='1.0' encoding=\"UTF-8\"?>\r\n"
      "<?xml-stylesheet type=\"text/xsl\" href=\"http://www.tessaly.org/Tessaly/TSLECUPreview.xsl\"?>\r\n"
      "<xml xmlns:tsl=\"http://www.tessaly.org/2002/ECU\">\n<tsl:Target Name=\"ECU1\""))
      << text;
  EXPECT_TRUE(text.ends_with("</tsl:Target></xml>\r\n")) << text;
}

TEST_F(FacadeTest, EmptyStyleSheetAndNamespaceAreLeftOut) {
  lib.ImportUceFromText(kSmallDocument);
  lib.set_xmlStyleSheet("");
  lib.set_xmlns("");
  std::string text = lib.ExportUceToText();
  EXPECT_TRUE(text.starts_with("<?xml version='1.0' encoding=\"UTF-8\"?>\r\n<xml>\n<tsl:Target")) << text;
  EXPECT_EQ(text.find("xml-stylesheet"), std::string::npos);
  EXPECT_EQ(text.find("xmlns:tsl"), std::string::npos);
}

TEST_F(FacadeTest, ImportRaisesTheLoadingWarningWithTheLocation) {
  std::string path = dir.File("ecu.xml");
  WriteFileBytes(path, kSmallDocument);
  lib.ImportUceFromXml(path);
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_EQ(warnings[0].cls, "TessalyDatabase");
  EXPECT_EQ(warnings[0].msg, "Loading url : " + path);
  EXPECT_EQ(lib.ActiveTarget()->name(), "ECU1");
}

TEST_F(FacadeTest, ImportOfMissingFileRaisesAndKeepsThePreviousDocument) {
  lib.ImportUceFromText(kSmallDocument);
  auto previous = lib.ActiveTarget();
  std::string path = dir.File("nothing.xml");
  EXPECT_TESSALY_ERROR(lib.ImportUceFromXml(path), 1, kImport,
                       "Bad xml file, Reason=cannot open '" + path + "': No such file or directory");
  EXPECT_EQ(lib.ActiveTarget(), previous);
}

TEST_F(FacadeTest, ImportOfOtherRootRaisesAndLeavesAnEmptyNewTarget) {
  lib.ImportUceFromText(kSmallDocument);
  auto previous = lib.ActiveTarget();
  EXPECT_TESSALY_ERROR(lib.ImportUceFromText("<root/>"), 1, kImport, "Bad xml file, RootNode \"xml\" not found");
  ASSERT_NE(lib.ActiveTarget(), nullptr);
  EXPECT_NE(lib.ActiveTarget(), previous);
  EXPECT_EQ(lib.ActiveTarget()->name(), "");
  // The previous document was cleared when the new one was made.
  EXPECT_EQ(previous->datas(), nullptr);
}

TEST_F(FacadeTest, MalformedDocumentNamesLineAndColumn) {
  EXPECT_TESSALY_ERROR(lib.ImportUceFromText("<xml>\n<a>\n</xml>"), 1, kImport,
                       "Bad xml file, Reason=Start-end tags mismatch at line 3, column 3");
}

TEST_F(FacadeTest, EmptyDocumentHasNoRootElement) {
  EXPECT_TESSALY_ERROR(lib.ImportUceFromText(""), 1, kImport, "Bad xml file, Reason=No document element found");
}

TEST_F(FacadeTest, ImportFromFileUrl) {
  std::string path = dir.File("ecu file.xml");
  WriteFileBytes(path, kSmallDocument);
  std::string url = "file://" + dir.path().string() + "/ecu%20file.xml";
  lib.ImportUceFromXml(url);
  EXPECT_EQ(lib.ActiveTarget()->name(), "ECU1");
  EXPECT_EQ(warnings.back().msg, "Loading url : " + url);
}

TEST_F(FacadeTest, ImportFromHttpOnLoopback) {
  LoopbackHttpServer server(200, kSmallDocument);
  lib.ImportUceFromXml(server.Url("/ecu.xml"));
  EXPECT_EQ(lib.ActiveTarget()->name(), "ECU1");
}

TEST_F(FacadeTest, HttpErrorStatusIsALoadFailure) {
  LoopbackHttpServer server(404, "gone");
  std::string url = server.Url("/ecu.xml");
  try {
    lib.ImportUceFromXml(url);
    ADD_FAILURE() << "expected an error";
  } catch (const Error& e) {
    EXPECT_EQ(e.Number(), 1);
    EXPECT_EQ(e.Source(), kImport);
    EXPECT_TRUE(e.Description().starts_with("Bad xml file, Reason=cannot download '" + url + "': ")) << e.Description();
    EXPECT_NE(e.Description().find("404"), std::string::npos) << e.Description();
  }
}

TEST_F(FacadeTest, Windows1252DocumentIsDecoded) {
  lib.ImportUceFromText("<?xml version=\"1.0\" encoding=\"windows-1252\"?><xml><tsl:Target Name=\"Entr\xE9" "e \x80\">"
                        "<Function Name=\"F\" Address=\"1\"/></tsl:Target></xml>");
  EXPECT_EQ(lib.ActiveTarget()->name(), "Entr\xC3\xA9" "e \xE2\x82\xAC");
}

TEST_F(FacadeTest, Utf16DocumentWithByteOrderMarkLoads) {
  std::string utf8 = "<?xml version=\"1.0\" encoding=\"UTF-16\"?><xml><tsl:Target Name=\"\xC3\xA9t\xC3\xA9\">"
                     "<Function Name=\"F\" Address=\"1\"/></tsl:Target></xml>";
  std::string utf16 = "\xFF\xFE";
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    unsigned char c = static_cast<unsigned char>(utf8[i]);
    if (c == 0xC3) {  // only é occurs beyond ASCII here
      utf16 += "\xE9";
      utf16 += '\0';
      ++i;
    } else {
      utf16 += static_cast<char>(c);
      utf16 += '\0';
    }
  }
  lib.ImportUceFromText(utf16);
  EXPECT_EQ(lib.ActiveTarget()->name(), "\xC3\xA9t\xC3\xA9");
}

TEST_F(FacadeTest, UnknownEncodingIsALoadFailure) {
  EXPECT_TESSALY_ERROR(lib.ImportUceFromText("<?xml version=\"1.0\" encoding=\"x-nothing\"?><xml/>"), 1, kImport,
                       "Bad xml file, Reason=unsupported encoding 'x-nothing'");
}

TEST_F(FacadeTest, InvalidUtf8IsALoadFailure) {
  EXPECT_TESSALY_ERROR(lib.ImportUceFromText("<xml>\n<a b=\"\xC3(\"/></xml>"), 1, kImport,
                       "Bad xml file, Reason=invalid UTF-8 byte sequence at line 2, column 7");
}

TEST_F(FacadeTest, ExportInWindows1252EncodesAndEscapes) {
  lib.ImportUceFromText(kSmallDocument);
  lib.ActiveTarget()->set_name("Entr\xC3\xA9" "e \xE2\x82\xAC \xCE\xA9");
  lib.set_xmlEncoding("windows-1252");
  std::string path = dir.File("out.xml");
  lib.ExportUceToXml(path);
  std::string bytes = ReadFileBytes(path);
  EXPECT_TRUE(bytes.starts_with("<?xml version='1.0' encoding=\"windows-1252\"?>\r\n"));
  EXPECT_NE(bytes.find("Name=\"Entr\xE9" "e \x80 &#937;\""), std::string::npos) << bytes;
  TessalyLibXml again;
  again.ImportUceFromXml(path);
  EXPECT_EQ(again.ActiveTarget()->name(), "Entr\xC3\xA9" "e \xE2\x82\xAC \xCE\xA9");
}

TEST_F(FacadeTest, ExportInUtf8KeepsCharacters) {
  lib.ImportUceFromText(kSmallDocument);
  lib.ActiveTarget()->set_name("\xCE\xA9");
  std::string path = dir.File("out.xml");
  lib.ExportUceToXml(path);
  EXPECT_NE(ReadFileBytes(path).find("Name=\"\xCE\xA9\""), std::string::npos);
}

TEST_F(FacadeTest, ExportToUnwritableLocationOnlyWarns) {
  lib.ImportUceFromText(kSmallDocument);
  warnings.clear();
  EXPECT_NO_THROW(lib.ExportUceToXml(dir.File("no/such/dir/out.xml")));
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_EQ(warnings[0].cls, "ExportParametersToXml");
  EXPECT_EQ(warnings[0].msg, "Save error (number : 2)");
  ASSERT_TRUE(lib.LastSaveError().has_value());
  EXPECT_NE(lib.LastSaveError()->Description().find("No such file or directory"), std::string::npos);
}

// Runs `step` in a child process that has given up root's rights (it becomes the user
// "nobody"), so that directory permissions apply even when the tests run as root. The child's
// exit status is `step`'s result: 0 for success.
int RunWithoutPrivileges(const std::function<int()>& step) {
  if (::geteuid() != 0) return step();
  const pid_t child = ::fork();
  if (child == 0) {
    constexpr uid_t kNobody = 65534;
    if (::setgroups(0, nullptr) != 0 || ::setresgid(kNobody, kNobody, kNobody) != 0 ||
        ::setresuid(kNobody, kNobody, kNobody) != 0)
      ::_exit(100);
    ::_exit(step());
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 101;
}

TEST_F(FacadeTest, FailedSaveInAReadOnlyDirectoryLeavesTheExistingFileAndNoTemporary) {
  lib.ImportUceFromText(kSmallDocument);
  std::string path = dir.File("keep.xml");
  WriteFileBytes(path, "old content");
  namespace fs = std::filesystem;
  fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  fs::permissions(dir.path(), fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_read |
                                  fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec);
  const int result = RunWithoutPrivileges([&] {
    warnings.clear();
    lib.ExportUceToXml(path);
    if (warnings.empty()) return 1;
    if (warnings.back().msg != "Save error (number : 13)") return 2;
    return lib.LastSaveError().has_value() ? 0 : 3;
  });
  fs::permissions(dir.path(), fs::perms::owner_all);
  EXPECT_EQ(result, 0) << "1: no warning, 2: another warning, 3: no save error kept, 100: could not drop rights";
  EXPECT_EQ(ReadFileBytes(path), "old content");
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), {}), 1);
}

TEST_F(FacadeTest, WriteFailingMidwayLeavesTheExistingFileAndNoTemporary) {
  lib.ImportUceFromText(kSmallDocument);
  std::string path = dir.File("keep.xml");
  WriteFileBytes(path, "old content");
  // A file-size limit makes the write of the temporary fail part way, as a full disk would.
  rlimit saved{};
  ::getrlimit(RLIMIT_FSIZE, &saved);
  rlimit small = saved;
  small.rlim_cur = 16;
  auto previous_handler = std::signal(SIGXFSZ, SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &small);
  lib.ExportUceToXml(path);
  ::setrlimit(RLIMIT_FSIZE, &saved);
  std::signal(SIGXFSZ, previous_handler);
  EXPECT_EQ(ReadFileBytes(path), "old content");
  ASSERT_FALSE(warnings.empty());
  EXPECT_EQ(warnings.back().msg, "Save error (number : 27)");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

TEST_F(FacadeTest, SavingOverADirectoryFailsWithAWarning) {
  lib.ImportUceFromText(kSmallDocument);
  std::filesystem::create_directory(dir.File("d"));
  lib.ExportUceToXml(dir.File("d"));
  ASSERT_FALSE(warnings.empty());
  EXPECT_EQ(warnings.back().msg, "Save error (number : 21)");
  EXPECT_TRUE(std::filesystem::is_directory(dir.File("d")));
}

TEST_F(FacadeTest, SuccessfulSaveReplacesTheFileAndLeavesNoTemporary) {
  lib.ImportUceFromText(kSmallDocument);
  std::string path = dir.File("ecu.xml");
  WriteFileBytes(path, "old");
  lib.ExportUceToXml(path);
  EXPECT_EQ(ReadFileBytes(path), lib.ExportUceToText());
  EXPECT_FALSE(lib.LastSaveError().has_value());
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

TEST_F(FacadeTest, ExportWithoutTargetIsObjectNotSet) {
  EXPECT_TESSALY_ERROR(lib.ExportUceToXml(dir.File("x.xml")), 91, "Tessaly",
                       "Object variable or With block variable not set");
  EXPECT_FALSE(std::filesystem::exists(dir.File("x.xml")));
}

TEST_F(FacadeTest, ClearTargetTwiceIsHarmless) {
  lib.ImportUceFromText(kSmallDocument);
  lib.ClearTarget();
  EXPECT_EQ(lib.ActiveTarget(), nullptr);
  lib.ClearTarget();
  EXPECT_EQ(lib.ActiveTarget(), nullptr);
}

TEST_F(FacadeTest, NewTargetIsParentedAndReplacesTheOld) {
  auto first = lib.NewTarget();
  auto second = lib.NewTarget();
  EXPECT_NE(first, second);
  EXPECT_EQ(second->parent().get(), &lib);
  EXPECT_EQ(first->parent(), nullptr);
}

TEST_F(FacadeTest, ExportParametersToXmlDoesNothing) {
  auto protocols = lib.protocols();
  lib.ExportParametersToXml(dir.File("p.xml"), "anything");
  EXPECT_FALSE(std::filesystem::exists(dir.File("p.xml")));
  EXPECT_EQ(lib.protocols(), protocols);
  EXPECT_TRUE(warnings.empty());
}

TEST_F(FacadeTest, TargetOutlivingItsFacadeSeesNoParent) {
  std::shared_ptr<TargetItem> kept;
  {
    TessalyLibXml temporary;
    kept = temporary.NewTarget();
    temporary.set_ActiveTarget(nullptr);
    EXPECT_NE(kept->parent(), nullptr);
  }
  EXPECT_EQ(kept->parent(), nullptr);
}

}  // namespace
}  // namespace tessaly
