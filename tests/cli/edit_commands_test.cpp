#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "cli/cli_support.hpp"
#include "support/test_support.hpp"
#include "tessaly/tessaly.hpp"

namespace tessaly {
namespace {

using testing::ReadFileBytes;
using testing::LoadingWarning;
using testing::RunTessaly;
using testing::SamplePath;
using testing::TempDir;
using testing::WriteFileBytes;

// The ECU of the where-used tests: Speed is placed in ReadValues (reference) and ReadFreeze and
// shown through both, Fan links Speed, Pump links Temp and flags Status in test 1, ReadValues
// is shown, sent by the init button and by the button Restart, and is both devices'
// freeze-frame request; Reset has a request display and a step.
const std::string kDocument = std::string(TESSALY_TEST_DOCUMENTS) + "/cli/xref-ecu.xml";

bool Holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// The document the library writes after applying `edit` to the document at `location`.
std::string EditedByTheLibrary(const std::string& location, const std::function<void(TargetItem&)>& edit) {
  TessalyLibXml lib;
  lib.ImportUceFromXml(location);
  edit(*lib.ActiveTarget());
  return lib.ExportUceToText();
}

class EditCommandsTest : public ::testing::Test {
 protected:
  TempDir dir;
  std::string out = dir.File("out.xml");
  const std::string original = ReadFileBytes(kDocument);

  // A copy of the test document that a command may write over.
  std::string Copy() {
    const std::string copy = dir.File("copy.xml");
    WriteFileBytes(copy, original);
    return copy;
  }
};

// --- rename-data ---

TEST_F(EditCommandsTest, RenameDataUpdatesEveryUserAndSavesToTheOutput) {
  auto r = RunTessaly({"rename-data", kDocument, "Speed", "Velocity", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, LoadingWarning(kDocument));
  EXPECT_EQ(r.out,
            "Renamed data Speed to Velocity\n"
            "  data positions updated: 2\n"
            "  displays updated: 2\n"
            "  device data links updated: 1\n"
            "  test flags updated: 0\n"
            "Saved to " + out + "\n");
  const std::string saved = ReadFileBytes(out);
  EXPECT_EQ(saved, EditedByTheLibrary(kDocument, [](TargetItem& target) {
              target.RenameData(target.datas()->ItemName("Speed"), "Velocity");
            }));
  EXPECT_TRUE(Holds(saved, "<Data Name=\"Velocity\">"));
  EXPECT_TRUE(Holds(saved, "<DataItem Name=\"Velocity\" Ref=\"1\" FirstByte=\"3\"/>"));
  EXPECT_TRUE(Holds(saved, "DataName=\"Velocity\" RequestName=\"ReadValues\""));
  EXPECT_TRUE(Holds(saved, "DataName=\"Velocity\" RequestName=\"ReadFreeze\""));
  EXPECT_TRUE(Holds(saved, "<DeviceData Name=\"Velocity\""));
  EXPECT_FALSE(Holds(saved, "\"Speed\""));
  EXPECT_EQ(ReadFileBytes(kDocument), original);
}

TEST_F(EditCommandsTest, RenameDataMovesTheTestFlag) {
  auto r = RunTessaly({"rename-data", kDocument, "Status", "State", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "Renamed data Status to State\n"
            "  data positions updated: 1\n"
            "  displays updated: 0\n"
            "  device data links updated: 0\n"
            "  test flags updated: 1\n"
            "Saved to " + out + "\n");
  const std::string saved = ReadFileBytes(out);
  EXPECT_EQ(saved, EditedByTheLibrary(kDocument, [](TargetItem& target) {
              target.RenameData(target.datas()->ItemName("Status"), "State");
            }));
  EXPECT_TRUE(Holds(saved, "<StoredFlag>State</StoredFlag>"));
  EXPECT_TRUE(Holds(saved, "<PresentFlag>State</PresentFlag>"));
  EXPECT_FALSE(Holds(saved, "Status"));
}

TEST_F(EditCommandsTest, RenameDataInPlaceRewritesTheInput) {
  const std::string copy = Copy();
  auto r = RunTessaly({"rename-data", copy, "Temp", "Temperature", "--in-place"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Holds(r.out, "Saved to " + copy + "\n"));
  EXPECT_EQ(ReadFileBytes(copy), EditedByTheLibrary(kDocument, [](TargetItem& target) {
              target.RenameData(target.datas()->ItemName("Temp"), "Temperature");
            }));
  EXPECT_TRUE(Holds(ReadFileBytes(copy), "<DeviceData Name=\"Temperature\" FailureFlag=\"1\"/>"));
}

TEST_F(EditCommandsTest, RenameDataToATakenNameRefusesAndWritesNothing) {
  auto r = RunTessaly({"rename-data", kDocument, "Speed", "Temp", "-o", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, LoadingWarning(kDocument) + "error 1: DataItems.rename: Duplicate data (Temp)\n");
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(EditCommandsTest, RefusalLeavesAnExistingOutputAsItWas) {
  WriteFileBytes(out, "earlier bytes");
  auto r = RunTessaly({"rename-data", kDocument, "Speed", "TEMP", "-o", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, LoadingWarning(kDocument) + "error 1: DataItems.rename: Duplicate data (TEMP)\n");
  EXPECT_EQ(ReadFileBytes(out), "earlier bytes");
}

TEST_F(EditCommandsTest, RefusalInPlaceLeavesTheInputAsItWas) {
  const std::string copy = Copy();
  auto r = RunTessaly({"rename-request", copy, "Reset", "ReadValues", "--in-place"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, LoadingWarning(copy) + "error 1: RequestItems.rename: Duplicate request (ReadValues)\n");
  EXPECT_EQ(ReadFileBytes(copy), original);
}

TEST_F(EditCommandsTest, SampleRenameOfAFlaggedDataSaysWhatStillNamesTheOldName) {
  // The first device that uses the data follows the rename: its link and the flags of its
  // first test that names the data. Its second test keeps the old name.
  const std::string sample = SamplePath("engine-ecu.xml");
  auto r = RunTessaly({"rename-data", sample, "CoolantSensorStatus", "CoolantStatus", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "Renamed data CoolantSensorStatus to CoolantStatus\n"
            "  data positions updated: 1\n"
            "  displays updated: 1\n"
            "  device data links updated: 1\n"
            "  test flags updated: 1\n"
            "  test flags still naming CoolantSensorStatus: 1\n"
            "Saved to " + out + "\n");
  EXPECT_EQ(ReadFileBytes(out), EditedByTheLibrary(sample, [](TargetItem& target) {
              target.RenameData(target.datas()->ItemName("CoolantSensorStatus"), "CoolantStatus");
            }));
}

TEST_F(EditCommandsTest, RenameToTheSameNameChangesNothing) {
  auto r = RunTessaly({"rename-data", kDocument, "Speed", "Speed", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "The data Speed already has that name; nothing changed\nSaved to " + out + "\n");
  // The test document is in the form the library writes, so an unchanged document saves to the
  // same bytes.
  EXPECT_EQ(ReadFileBytes(out), original);
}

TEST_F(EditCommandsTest, EmptyNewNameIsAUsageErrorAndWritesNothing) {
  for (const char* command : {"rename-data", "rename-request", "rename-device"}) {
    SCOPED_TRACE(command);
    auto r = RunTessaly({command, kDocument, "Speed", "", "-o", out});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "NEW: the new name is empty\nRun with --help for more information.\n");
    EXPECT_FALSE(std::filesystem::exists(out));
  }
}

TEST_F(EditCommandsTest, EmptyOutputNameIsAUsageError) {
  auto r = RunTessaly({"delete-data", kDocument, "Speed", "-o", ""});
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "error 1: tessaly.delete-data: the output file name is empty\n");
}

// --- rename-request ---

TEST_F(EditCommandsTest, RenameRequestUpdatesDisplaysAndStepsButNotDevices) {
  auto r = RunTessaly({"rename-request", kDocument, "ReadValues", "ReadAll", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, LoadingWarning(kDocument));
  EXPECT_EQ(r.out,
            "Renamed request ReadValues to ReadAll\n"
            "  data displays updated: 2\n"
            "  request displays updated: 0\n"
            "  scenario steps updated: 2\n"
            "  freeze-frame devices updated: 0\n"
            "  freeze-frame devices still naming ReadValues: 2\n"
            "Saved to " + out + "\n");
  const std::string saved = ReadFileBytes(out);
  EXPECT_EQ(saved, EditedByTheLibrary(kDocument, [](TargetItem& target) {
              target.RenameRequest(target.Requests()->ItemName("ReadValues"), "ReadAll");
            }));
  EXPECT_TRUE(Holds(saved, "<Request Name=\"ReadAll\">"));
  EXPECT_TRUE(Holds(saved, "DataName=\"Speed\" RequestName=\"ReadAll\""));
  EXPECT_TRUE(Holds(saved, "<Send Delay=\"100\" RequestName=\"ReadAll\"/>"));
  EXPECT_TRUE(Holds(saved, "FreezeFrame=\"ReadValues\""));
  EXPECT_FALSE(Holds(saved, "RequestName=\"ReadValues\""));
}

TEST_F(EditCommandsTest, RenameRequestUpdatesRequestDisplays) {
  auto r = RunTessaly({"rename-request", kDocument, "Reset", "Restart", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "Renamed request Reset to Restart\n"
            "  data displays updated: 0\n"
            "  request displays updated: 1\n"
            "  scenario steps updated: 1\n"
            "  freeze-frame devices updated: 0\n"
            "Saved to " + out + "\n");
  const std::string saved = ReadFileBytes(out);
  EXPECT_EQ(saved, EditedByTheLibrary(kDocument, [](TargetItem& target) {
              target.RenameRequest(target.Requests()->ItemName("Reset"), "Restart");
            }));
  EXPECT_TRUE(Holds(saved, "Color=\"16777215\" RequestName=\"Restart\">"));
  EXPECT_FALSE(Holds(saved, "\"Reset\""));
}

// --- rename-device ---

TEST_F(EditCommandsTest, RenameDeviceRenamesOnlyTheDevice) {
  auto r = RunTessaly({"rename-device", kDocument, "Pump", "FuelPump", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "Renamed device Pump to FuelPump\nSaved to " + out + "\n");
  const std::string saved = ReadFileBytes(out);
  EXPECT_EQ(saved, EditedByTheLibrary(kDocument, [](TargetItem& target) {
              target.RenameDevice(target.Organes()->ItemName("Pump"), "FuelPump");
            }));
  EXPECT_TRUE(Holds(saved, "<Device Name=\"FuelPump\" FreezeFrame=\"ReadValues\">"));
  EXPECT_FALSE(Holds(saved, "\"Pump\""));
}

TEST_F(EditCommandsTest, RenameDeviceToATakenNameRefuses) {
  auto r = RunTessaly({"rename-device", kDocument, "Pump", "Fan", "-o", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, LoadingWarning(kDocument) + "error 1: OrganeItems.rename: Duplicate device (Fan)\n");
  EXPECT_FALSE(std::filesystem::exists(out));
}

// --- delete-data ---

TEST_F(EditCommandsTest, DeleteDataRemovesItsPlacementsDisplaysAndDeviceLink) {
  auto r = RunTessaly({"delete-data", kDocument, "Speed", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, LoadingWarning(kDocument));
  EXPECT_EQ(r.out,
            "Deleted data Speed\n"
            "  data positions removed: 2\n"
            "  displays removed: 2\n"
            "  device data links removed: 1\n"
            "  test flags removed: 0\n"
            "Saved to " + out + "\n");
  const std::string saved = ReadFileBytes(out);
  EXPECT_EQ(saved, EditedByTheLibrary(kDocument, [](TargetItem& target) {
              target.DeleteData(target.datas()->ItemName("Speed"));
            }));
  EXPECT_FALSE(Holds(saved, "Speed"));
  EXPECT_TRUE(Holds(saved, "<Device Name=\"Fan\" FreezeFrame=\"ReadValues\">"));
  EXPECT_TRUE(Holds(saved, "DataName=\"Temp\" RequestName=\"ReadValues\""));
}

TEST_F(EditCommandsTest, DeleteDataOfAFlagRemovesTheFlag) {
  auto r = RunTessaly({"delete-data", kDocument, "Status", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "Deleted data Status\n"
            "  data positions removed: 1\n"
            "  displays removed: 0\n"
            "  device data links removed: 0\n"
            "  test flags removed: 1\n"
            "Saved to " + out + "\n");
  EXPECT_EQ(ReadFileBytes(out), EditedByTheLibrary(kDocument, [](TargetItem& target) {
              target.DeleteData(target.datas()->ItemName("Status"));
            }));
  EXPECT_FALSE(Holds(ReadFileBytes(out), "Status"));
}

TEST_F(EditCommandsTest, SampleDeleteOfALinkedAndFlaggedDataSaysWhatIsLeft) {
  // One reference placement: the device forgets the data once, through its link; the flags of
  // its tests stay and are reported.
  const std::string sample = SamplePath("engine-ecu.xml");
  auto r = RunTessaly({"delete-data", sample, "CoolantSensorStatus", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "Deleted data CoolantSensorStatus\n"
            "  data positions removed: 1\n"
            "  displays removed: 1\n"
            "  device data links removed: 1\n"
            "  test flags removed: 0\n"
            "  test flags still naming CoolantSensorStatus: 2\n"
            "Saved to " + out + "\n");
  EXPECT_EQ(ReadFileBytes(out), EditedByTheLibrary(sample, [](TargetItem& target) {
              target.DeleteData(target.datas()->ItemName("CoolantSensorStatus"));
            }));
  EXPECT_FALSE(Holds(ReadFileBytes(out), "<Data Name=\"CoolantSensorStatus\">"));
}

// --- delete-request ---

TEST_F(EditCommandsTest, DeleteRequestRemovesItsUsersAndClearsFreezeFrames) {
  auto r = RunTessaly({"delete-request", kDocument, "ReadValues", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, LoadingWarning(kDocument));
  EXPECT_EQ(r.out,
            "Deleted request ReadValues\n"
            "  data positions removed: 3\n"
            "  data displays removed: 2\n"
            "  request displays removed: 0\n"
            "  scenario steps removed: 2\n"
            "  freeze-frame devices cleared: 2\n"
            "  device data links removed: 2\n"
            "  test flags removed: 1\n"
            "Saved to " + out + "\n");
  const std::string saved = ReadFileBytes(out);
  EXPECT_EQ(saved, EditedByTheLibrary(kDocument, [](TargetItem& target) {
              target.DeleteRequest(target.Requests()->ItemName("ReadValues"));
            }));
  EXPECT_FALSE(Holds(saved, "ReadValues"));
  EXPECT_TRUE(Holds(saved, "<Device Name=\"Pump\">"));
  EXPECT_TRUE(Holds(saved, "<Data Name=\"Speed\">"));
  EXPECT_TRUE(Holds(saved, "DataName=\"Speed\" RequestName=\"ReadFreeze\""));
}

TEST_F(EditCommandsTest, DeleteRequestOfARequestDisplay) {
  auto r = RunTessaly({"delete-request", kDocument, "Reset", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "Deleted request Reset\n"
            "  data positions removed: 0\n"
            "  data displays removed: 0\n"
            "  request displays removed: 1\n"
            "  scenario steps removed: 1\n"
            "  freeze-frame devices cleared: 0\n"
            "  device data links removed: 0\n"
            "  test flags removed: 0\n"
            "Saved to " + out + "\n");
  EXPECT_EQ(ReadFileBytes(out), EditedByTheLibrary(kDocument, [](TargetItem& target) {
              target.DeleteRequest(target.Requests()->ItemName("Reset"));
            }));
  EXPECT_FALSE(Holds(ReadFileBytes(out), "Reset"));
}

// --- delete-device ---

TEST_F(EditCommandsTest, DeleteDeviceTakesItsLinksAndTestsOnly) {
  const std::string copy = Copy();
  auto r = RunTessaly({"delete-device", copy, "Pump", "--in-place"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "Deleted device Pump\n"
            "  device data links removed: 1\n"
            "  tests removed: 1\n"
            "Saved to " + copy + "\n");
  const std::string saved = ReadFileBytes(copy);
  EXPECT_EQ(saved, EditedByTheLibrary(kDocument, [](TargetItem& target) {
              target.DeleteDevice(target.Organes()->ItemName("Pump"));
            }));
  EXPECT_FALSE(Holds(saved, "<Device Name=\"Pump\""));
  EXPECT_TRUE(Holds(saved, "<Device Name=\"Fan\" FreezeFrame=\"ReadValues\">"));
  EXPECT_TRUE(Holds(saved, "<Data Name=\"Temp\">"));
  EXPECT_TRUE(Holds(saved, "<Request Name=\"ReadValues\">"));
}

// --- what every edit shares ---

TEST_F(EditCommandsTest, EditedDocumentLoadsCleanAndWhereUsedSeesTheNewName) {
  ASSERT_EQ(RunTessaly({"rename-data", kDocument, "Speed", "Velocity", "-o", out}).status, 0);
  auto check = RunTessaly({"check", out});
  EXPECT_EQ(check.status, 0) << check.out;
  auto r = RunTessaly({"where-used", out, "--data", "Velocity"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Holds(r.out, "Data positions: 2\n")) << r.out;
  EXPECT_TRUE(Holds(r.out, "Displays: 2\n")) << r.out;
  EXPECT_TRUE(Holds(r.out, "Device data: 1\n  Fan\n")) << r.out;
}

TEST_F(EditCommandsTest, NamesAreFoundIgnoringLetterCase) {
  auto r = RunTessaly({"delete-device", kDocument, "PUMP", "-o", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Holds(r.out, "Deleted device Pump\n")) << r.out;
}

struct Command {
  std::string name;
  std::vector<std::string> names;  // the unknown item, and the new name of a rename
  std::string what;
};

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands = {
      {"rename-data", {"Torque", "Force"}, "data"},     {"rename-request", {"ReadTorque", "ReadForce"}, "request"},
      {"rename-device", {"Brake", "Clutch"}, "device"}, {"delete-data", {"Torque"}, "data"},
      {"delete-request", {"ReadTorque"}, "request"},    {"delete-device", {"Brake"}, "device"}};
  return commands;
}

std::vector<std::string> Args(const Command& command, const std::string& file, std::vector<std::string> more) {
  std::vector<std::string> args = {command.name, file};
  args.insert(args.end(), command.names.begin(), command.names.end());
  args.insert(args.end(), more.begin(), more.end());
  return args;
}

TEST_F(EditCommandsTest, UnknownNameIsAnErrorNamingItAndWritesNothing) {
  for (const Command& command : Commands()) {
    SCOPED_TRACE(command.name);
    auto r = RunTessaly(Args(command, kDocument, {"-o", out}));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, LoadingWarning(kDocument) + "error 1: tessaly." + command.name + ": no " + command.what + " named '" +
                         command.names[0] + "'\n");
    EXPECT_FALSE(std::filesystem::exists(out));
  }
}

TEST_F(EditCommandsTest, NeitherOutputNorInPlaceIsAUsageError) {
  const std::string copy = Copy();
  for (const Command& command : Commands()) {
    SCOPED_TRACE(command.name);
    auto r = RunTessaly(Args(command, copy, {}));
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err,
              "Exactly 1 option from [-o,--output,--in-place] is required\nRun with --help for more information.\n");
    EXPECT_EQ(ReadFileBytes(copy), original);
  }
}

TEST_F(EditCommandsTest, BothOutputAndInPlaceIsAUsageError) {
  const std::string copy = Copy();
  auto r = RunTessaly({"delete-data", copy, "Speed", "-o", out, "--in-place"});
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err,
            "Exactly 1 option from [-o,--output,--in-place] is required and 2 were given\n"
            "Run with --help for more information.\n");
  EXPECT_FALSE(std::filesystem::exists(out));
  EXPECT_EQ(ReadFileBytes(copy), original);
}

TEST_F(EditCommandsTest, ImportErrorExitsOneAndWritesNothing) {
  const std::string bad = dir.File("bad.xml");
  WriteFileBytes(bad, "<xml><tsl:Target><Function Name=\"F\" Address=\"1\"/></tsl:Target></xml>");
  auto r = RunTessaly({"delete-data", bad, "Speed", "-o", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, LoadingWarning(bad) + "error 1: loadXml: Bad xml file, Target Name not found\n");
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(EditCommandsTest, FailedSaveExitsOneWithTheWarningAndTheReason) {
  const std::string nowhere = dir.File("missing/out.xml");
  auto r = RunTessaly({"rename-device", kDocument, "Pump", "FuelPump", "-o", nowhere});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, LoadingWarning(kDocument) +
                       "warning: ExportParametersToXml: Save error (number : 2)\n"
                       "error 2: ExportUceToXml: cannot write '" + nowhere + "': No such file or directory\n");
}

TEST_F(EditCommandsTest, EncodingOptionShapesTheSavedDocument) {
  auto r = RunTessaly({"rename-device", kDocument, "Pump", "FuelPump", "-o", out, "--encoding", "ISO-8859-1"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Holds(ReadFileBytes(out), "<?xml version='1.0' encoding=\"ISO-8859-1\"?>"));
}

}  // namespace
}  // namespace tessaly
