// The devices as one table: identity and codes, the freeze-frame request, the data that belong
// to the device, and its failure tests with the data that flag them.
#include "preview/format.hpp"
#include "preview/page.hpp"
#include "tessaly/common/convert.hpp"

namespace tessaly::preview {
namespace {

std::string Code(std::int32_t value) { return value == 0 ? std::string() : DecimalAndHex(value); }

void WriteFlags(Page& page, const FlagList& flags) {
  bool first = true;
  for (const auto& position : flags) {
    if (!first) page << ", ";
    first = false;
    page.DataLink(position->dataName());
  }
}

void WriteTests(Page& page, const TestItems& tests) {
  if (tests.Count() == 0) return;
  page << "<table class=\"tests\"><tr><th>Type</th><th>Description</th><th>OBD</th><th>Severity</th>"
          "<th>Check</th><th>Stored flag</th><th>Present flag</th></tr>";
  for (const auto& test : tests) {
    page << "<tr><td>" << IntText(test->testType()) << "</td><td>";
    page.Text(test->Description()) << "</td><td>" << Code(test->OBD()) << "</td><td>"
                                   << (test->Severity() == 0 ? std::string() : IntText(test->Severity()))
                                   << "</td><td>" << (test->Autocheck() ? "automatic" : "on demand") << "</td><td>";
    WriteFlags(page, test->StoredFlag());
    page << "</td><td>";
    WriteFlags(page, test->PresentFlag());
    page << "</td></tr>";
  }
  page << "</table>";
}

void WriteRow(Page& page, const OrganeItem& device) {
  page << "<tr";
  page.Attr("id", page.DeviceAnchor(device));
  page << "><td><b>";
  page.Text(device.organeName()) << "</b></td><td>";
  page.Text(device.Mnemonique()) << "</td><td>";
  page.Text(device.OrganeTypeName()) << " (" << IntText(device.OrganeTypeId()) << ")</td><td>"
                                     << Code(device.OrganeDTC()) << "</td><td>" << Code(device.OrganeOBD())
                                     << "</td><td>";
  if (!device.requestName().empty()) page.RequestLink(device.requestName());
  page << "</td><td>";
  if (const auto& links = device.DeviceDatas()) {
    bool first = true;
    for (const auto& link : *links) {
      if (!first) page << "<br>";
      first = false;
      page.DataLink(link->dataName());
      if (link->FlagPanne()) page << " <span class=\"tag no\">failure flag</span>";
    }
  }
  page << "</td><td>";
  if (device.HasTests()) WriteTests(page, *device.Tests());
  page << "</td></tr>\n";
}

}  // namespace

void WriteDeviceSection(Page& page) {
  const auto& devices = page.target().Organes();
  const std::size_t count = devices ? static_cast<std::size_t>(devices->Count()) : 0;
  page << "<details class=\"section\" id=\"devices\" open><summary>Devices <span class=\"count\">("
       << IntText(static_cast<std::int64_t>(count)) << ")</span></summary>\n";
  if (count == 0) {
    page << "<p class=\"note\">No devices.</p></details>\n";
    return;
  }
  page << "<table class=\"devices\"><tr><th>Device</th><th>Mnemonic</th><th>Type</th><th>DTC</th><th>OBD</th>"
          "<th>Freeze frame</th><th>Data</th><th>Tests</th></tr>\n";
  for (const auto& device : *devices) WriteRow(page, *device);
  page << "</table></details>\n";
}

}  // namespace tessaly::preview
