// The preview page of whole documents: what each section shows, escaping, links and folding.
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>

#include "preview/preview.hpp"
#include "preview/preview_fixture.hpp"
#include "support/test_support.hpp"

namespace tessaly::testing {
namespace {

using preview::PreviewOptions;
using preview::RenderPreview;

std::size_t Count(const std::string& text, const std::string& needle) {
  std::size_t n = 0;
  for (std::size_t at = text.find(needle); at != std::string::npos; at = text.find(needle, at + needle.size())) ++n;
  return n;
}

std::vector<std::string> AttributeValues(const std::string& page, const std::string& name) {
  std::vector<std::string> values;
  const std::regex attribute(" " + name + "=\"([^\"]*)\"");
  for (auto it = std::sregex_iterator(page.begin(), page.end(), attribute); it != std::sregex_iterator(); ++it)
    values.push_back((*it)[1].str());
  return values;
}

// A minimal document around the given parameter elements and content.
std::string Document(const std::string& params, const std::string& content) {
  return "<?xml version=\"1.0\"?><xml><tsl:Target Name=\"T\"><Function Name=\"Injection\" Address=\"122\"/>" + params +
         content + "</tsl:Target></xml>";
}

class PreviewPageTest : public ::testing::Test {
 protected:
  PreviewPageTest() : lib_(LoadPreviewEcu()), page_(RenderPreview(*lib_)) {}
  std::unique_ptr<TessalyLibXml> lib_;
  std::string page_;
};

TEST_F(PreviewPageTest, PageIsOneDocumentWithoutScriptOrExternalResource) {
  EXPECT_EQ(page_.rfind("<!DOCTYPE html>\n<html lang=\"en\">", 0), 0U);
  EXPECT_EQ(Count(page_, "<html"), 1U);
  EXPECT_NE(page_.find("<meta charset=\"utf-8\">"), std::string::npos);
  EXPECT_EQ(page_.find("<script"), std::string::npos);
  EXPECT_EQ(page_.find("<link"), std::string::npos);
  EXPECT_EQ(page_.find(" src="), std::string::npos);
  EXPECT_EQ(page_.find("url("), std::string::npos);
  EXPECT_EQ(page_.find("@import"), std::string::npos);
  for (const std::string& href : AttributeValues(page_, "href")) EXPECT_EQ(href.substr(0, 1), "#") << href;
  EXPECT_TRUE(page_.ends_with("</body>\n</html>\n"));
}

TEST_F(PreviewPageTest, EveryLinkLeadsToAnAnchorAndAnchorsAreUnique) {
  const std::vector<std::string> ids = AttributeValues(page_, "id");
  const std::set<std::string> unique(ids.begin(), ids.end());
  EXPECT_EQ(unique.size(), ids.size());
  const std::vector<std::string> hrefs = AttributeValues(page_, "href");
  EXPECT_GT(hrefs.size(), 20U);
  for (const std::string& href : hrefs) EXPECT_TRUE(unique.count(href.substr(1)) == 1) << href;
}

TEST_F(PreviewPageTest, NamesAndTextsAreEscaped) {
  EXPECT_NE(page_.find("<h1>Engine &lt;EMS&gt;</h1>"), std::string::npos);
  EXPECT_NE(page_.find("Engine &lt;live&gt; values"), std::string::npos);
  EXPECT_NE(page_.find("First &amp; &lt;low&gt;"), std::string::npos);
  EXPECT_NE(page_.find("<code>Fault&lt;A&gt;</code>"), std::string::npos);
  EXPECT_NE(page_.find("data-field=\"Fault&lt;A&gt;\""), std::string::npos);
  EXPECT_NE(page_.find("<a class=\"data-link\" href=\"#data-Fault_3cA_3e\">Fault&lt;A&gt;</a>"), std::string::npos);
  EXPECT_NE(page_.find("Read \"VIN\""), std::string::npos);
  EXPECT_NE(page_.find("<title>Button \xE2\x80\x9CRead \"VIN\"\xE2\x80\x9D"), std::string::npos);
  EXPECT_NE(page_.find("aria-label=\"Screen Live &amp; values\""), std::string::npos);
  for (const char* raw : {"<EMS>", "<live>", "<low>", "<A>"}) EXPECT_EQ(page_.find(raw), std::string::npos) << raw;
}

TEST_F(PreviewPageTest, QuotesInAttributeValuesAreEscaped) {
  TessalyLibXml lib;
  auto target = lib.NewTarget();
  auto request = target->Requests()->Add("R\"1'<x>");
  request->set_RequestBytes(std::make_shared<ByteString>("10 81"));
  const std::string page = RenderPreview(lib);
  EXPECT_NE(page.find("data-request=\"R&quot;1&#39;&lt;x&gt;\" data-side=\"sent\""), std::string::npos);
  EXPECT_NE(page.find("id=\"request-R_221_27_3cx_3e\""), std::string::npos);
  EXPECT_NE(page.find("<summary>R\"1'&lt;x&gt; <code"), std::string::npos);
}

TEST_F(PreviewPageTest, HeaderShowsIdentityProtocolTimingsAndFailureType) {
  for (const char* text : {"<th>Function</th><td>Injection</td>", "<th>Address</th><td>122 (0x7A)</td>",
                           "KWP 2000 init rapide monopoint \xE2\x80\x93 init mode 2, mono-point",
                           "<th>Baud rate</th><td>10400 bit/s</td>", "<th>Key bytes</th><td>KW1 0xEF, KW2 0x8F</td>",
                           "<th>Inter-byte delay</th><td>5</td>", "<th>Reply to request delay</th><td>25</td>",
                           "<th>Request to reply timeout</th><td>50</td>", "<th>Tester present period</th><td>2000</td>",
                           "<th>Failure type</th><td>Pannes DTC (3)</td>", "<th>Boot</th><td>BOOT_EMS3</td>",
                           "<th>Release date</th><td>2004-03-17</td>", "<th>Byte order</th><td>big-endian</td>",
                           "<th>Comment</th><td>Petrol engine, bench set-up</td>"})
    EXPECT_NE(page_.find(text), std::string::npos) << text;
  // Fast init keeps no first-request delay, KW2 timeout or KW2 delay.
  EXPECT_EQ(page_.find("First request delay"), std::string::npos);
  EXPECT_EQ(page_.find("KW2 delay"), std::string::npos);
}

TEST_F(PreviewPageTest, HeaderCountsEverything) {
  for (const auto& [name, n] : std::vector<std::pair<std::string, int>>{
           {"data items", 6}, {"value-list entries", 2}, {"requests", 4}, {"parameters placed", 1},
           {"reply data placed", 5}, {"devices", 2}, {"device data links", 2}, {"tests", 1}, {"categories", 2},
           {"screens", 3}, {"labels", 3}, {"displays", 2}, {"input fields", 1}, {"buttons", 2}, {"scenario steps", 4},
           {"auto-identifications", 1}})
    EXPECT_NE(page_.find("<tr><td>" + name + "</td><td class=\"n\">" + std::to_string(n) + "</td></tr>"),
              std::string::npos)
        << name;
}

TEST_F(PreviewPageTest, DataTableShowsSizeSignScalingAndValueLists) {
  EXPECT_NE(page_.find("<tr id=\"data-EngineSpeed\"><td><code>EngineSpeed</code></td><td>N</td><td>16 bits</td>"
                       "<td>unsigned</td><td><code>x \xC3\x97 0.25</code></td><td>rpm</td><td>%.0f</td>"),
            std::string::npos);
  EXPECT_NE(page_.find("<td>8 bits</td><td>signed</td><td><code>x \xE2\x88\x92 40</code></td><td>\xC2\xB0" "C</td>"),
            std::string::npos);
  EXPECT_NE(page_.find("<code>x \xC3\xB7 2</code>"), std::string::npos);
  EXPECT_NE(page_.find("<li><code>0</code> \xE2\x86\x92 Neutral</li>"), std::string::npos);
  EXPECT_NE(page_.find("<li><code>1</code> \xE2\x86\x92 First &amp; &lt;low&gt; <span class=\"note\">(crawler)</span></li>"),
            std::string::npos);
  EXPECT_NE(page_.find("<td>17 bytes, ASCII text</td>"), std::string::npos);
}

TEST_F(PreviewPageTest, LongValueListsAreFolded) {
  TessalyLibXml lib;
  auto target = lib.NewTarget();
  auto data = target->datas()->Add("Mode");
  data->set_liste(true);
  data->set_DataListes(std::make_shared<DataListeItems>());
  for (int v = 0; v < 13; ++v) data->DataListes()->Add(v, "m" + std::to_string(v));
  const std::string page = RenderPreview(lib);
  EXPECT_NE(page.find("<details><summary>13 values</summary><ul class=\"values\">"), std::string::npos);
}

TEST_F(PreviewPageTest, RequestsShowBytesFlagsAndAccessRights) {
  EXPECT_NE(page_.find("<details class=\"item request\" id=\"request-ReadLive\" open><summary>ReadLive "
                       "<code class=\"bytes\">21 01</code> \xE2\x86\x92 <code class=\"bytes\">61 01</code></summary>"),
            std::string::npos);
  EXPECT_NE(page_.find("<th>Minimum reply length</th><td>6 bytes</td>"), std::string::npos);
  EXPECT_NE(page_.find("<th>Sending</th><td>on explicit demand only"), std::string::npos);
  EXPECT_NE(page_.find("<span class=\"tag no\">after-sales \xE2\x9C\x97</span>"), std::string::npos);
  EXPECT_NE(page_.find("<span class=\"tag no\">supplier \xE2\x9C\x97</span>"), std::string::npos);
  EXPECT_NE(page_.find("<span class=\"tag yes\">plant \xE2\x9C\x93</span>"), std::string::npos);
}

TEST_F(PreviewPageTest, RequestDiagramsPlaceParametersAndReplyDataApart) {
  const std::size_t sent = page_.find("data-request=\"WriteIdle\" data-side=\"sent\"");
  const std::size_t reply = page_.find("data-request=\"WriteIdle\" data-side=\"reply\"");
  ASSERT_NE(sent, std::string::npos);
  ASSERT_NE(reply, std::string::npos);
  const std::size_t field = page_.find("data-field=\"IdleTarget\"");
  EXPECT_GT(field, sent);
  EXPECT_LT(field, reply);
  const std::size_t live = page_.find("data-request=\"ReadLive\" data-side=\"reply\"");
  const std::size_t liveEnd = page_.find("</svg>\n", live);
  for (const char* name : {"EngineSpeed", "CoolantTemp", "Gear", "Fault&lt;A&gt;"}) {
    const std::size_t at = page_.find(std::string("data-field=\"") + name + "\"", live);
    EXPECT_LT(at, liveEnd) << name;
  }
}

TEST_F(PreviewPageTest, RequestDiagramsShowByteValuesBitsReferencesAndByteOrder) {
  const std::size_t live = page_.find("data-request=\"ReadLive\" data-side=\"reply\"");
  const std::string diagram = page_.substr(live, page_.find("</svg>\n", live) - live);
  EXPECT_NE(diagram.find(">61</text>"), std::string::npos);
  EXPECT_NE(diagram.find(">#6</text>"), std::string::npos);  // MinBytes 6 draws six bytes
  EXPECT_EQ(diagram.find(">#7</text>"), std::string::npos);
  EXPECT_NE(diagram.find("\xE2\x98\x85" "EngineSpeed</text>"), std::string::npos);  // the reference
  EXPECT_NE(diagram.find("<rect class=\"f f0 ref\""), std::string::npos);
  EXPECT_NE(diagram.find("<use href=\"#byte-frame\" x=\"48\" y=\"0\"/>"), std::string::npos);
  // EngineSpeed is big-endian: its most significant byte is byte 3.
  const std::size_t msb = diagram.find(">MSB</text>");
  const std::size_t lsb = diagram.find(">LSB</text>");
  ASSERT_NE(msb, std::string::npos);
  EXPECT_LT(msb, lsb);
  // IdleTarget is little-endian: its least significant byte comes first.
  const std::size_t sent = page_.find("data-request=\"WriteIdle\" data-side=\"sent\"");
  const std::string write = page_.substr(sent, page_.find("</svg>\n", sent) - sent);
  EXPECT_LT(write.find(">LSB</text>"), write.find(">MSB</text>"));
  EXPECT_NE(page_.find("<td>little-endian</td>"), std::string::npos);
}

TEST_F(PreviewPageTest, OverlappingAndUndrawablePlacementsAreNoted) {
  TessalyLibXml lib;
  lib.ImportUceFromText(Document(
      "", "<Datas><Data Name=\"A\"><Bits count=\"16\"/></Data><Data Name=\"B\"><Bits/></Data>"
          "<Data Name=\"C\"><Bits/></Data></Datas><Requests><Request Name=\"R\"><Sent><SentBytes>22 F1 90</SentBytes>"
          "</Sent><Received><DataItem Name=\"A\" FirstByte=\"2\"/><DataItem Name=\"B\" FirstByte=\"3\"/>"
          "<DataItem Name=\"C\" FirstByte=\"0\"/></Received></Request></Requests>"));
  const std::string page = RenderPreview(lib);
  EXPECT_NE(page.find("<div class=\"warn\">shares bits with B</div>"), std::string::npos);
  EXPECT_NE(page.find("<div class=\"warn\">shares bits with A</div>"), std::string::npos);
  EXPECT_NE(page.find("<div class=\"warn\">this placement cannot be drawn</div>"), std::string::npos);
  EXPECT_EQ(page.find("data-field=\"C\""), std::string::npos);
}

TEST_F(PreviewPageTest, DiagramsStopAtTwoHundredAndFiftySixBytes) {
  TessalyLibXml lib;
  lib.ImportUceFromText(Document("", "<Datas><Data Name=\"Dump\"><Bytes count=\"4000\"/></Data></Datas><Requests>"
                                     "<Request Name=\"R\"><Sent><SentBytes>23</SentBytes></Sent><Received>"
                                     "<DataItem Name=\"Dump\" FirstByte=\"2\"/></Received></Request></Requests>"));
  const std::string page = RenderPreview(lib);
  EXPECT_NE(page.find(">#256</text>"), std::string::npos);
  EXPECT_EQ(page.find(">#257</text>"), std::string::npos);
  EXPECT_NE(page.find("<div class=\"warn\">beyond the drawn bytes</div>"), std::string::npos);
}

TEST_F(PreviewPageTest, BytesTextThatIsNotHexIsShownAsWritten) {
  TessalyLibXml lib;
  lib.ImportUceFromText(Document("", "<Requests><Request Name=\"R\"><Sent><SentBytes>$21 &amp; more</SentBytes>"
                                     "</Sent></Request></Requests>"));
  const std::string page = RenderPreview(lib);
  EXPECT_NE(page.find("<code class=\"bytes\">$21 &amp; more</code>"), std::string::npos);
  EXPECT_NE(page.find("The bytes text is not hex pairs"), std::string::npos);
}

TEST_F(PreviewPageTest, DevicesShowTypeCodesFreezeFrameDataAndTests) {
  EXPECT_NE(page_.find("<tr id=\"device-CoolantSensor\"><td><b>CoolantSensor</b></td><td>CTS</td><td>Entr\xC3\xA9" "e (1)</td>"
                       "<td>277 (0x115)</td><td>277 (0x115)</td><td><a class=\"request-link\" href=\"#request-ReadLive\">"
                       "ReadLive</a></td>"),
            std::string::npos);
  EXPECT_NE(page_.find("<a class=\"data-link\" href=\"#data-Fault_3cA_3e\">Fault&lt;A&gt;</a> <span class=\"tag no\">failure flag</span>"),
            std::string::npos);
  EXPECT_NE(page_.find("<tr><td>3</td><td>Open circuit</td><td>279 (0x117)</td><td>2</td><td>automatic</td>"
                       "<td><a class=\"data-link\" href=\"#data-Fault_3cA_3e\">Fault&lt;A&gt;</a></td>"
                       "<td><a class=\"data-link\" href=\"#data-CoolantTemp\">CoolantTemp</a></td></tr>"),
            std::string::npos);
  EXPECT_NE(page_.find("<td><b>IdleValve</b></td><td></td><td>Sortie (3)</td>"), std::string::npos);
}

TEST_F(PreviewPageTest, NamesThatResolveToNothingAreMarkedMissing) {
  TessalyLibXml lib;
  lib.ImportUceFromText(Document("", "<Devices><Device Name=\"D\" FreezeFrame=\"Gone\"/></Devices>"));
  const std::string page = RenderPreview(lib);
  EXPECT_NE(page.find("<span class=\"missing\" title=\"no request of this name\">Gone</span>"), std::string::npos);
}

TEST_F(PreviewPageTest, ScreensAreDrawnToScaleInTwips) {
  EXPECT_NE(page_.find("width=\"640\" height=\"480\" viewBox=\"0 0 9600 7200\" data-screen-drawing=\"c1s1\""),
            std::string::npos);
  EXPECT_NE(page_.find("width=\"320\" height=\"240\" viewBox=\"0 0 4800 3600\" data-screen-drawing=\"c1s2\""),
            std::string::npos);
  EXPECT_NE(page_.find("width=\"400\" height=\"200\" viewBox=\"0 0 6000 3000\" data-screen-drawing=\"c2s1\""),
            std::string::npos);
  EXPECT_NE(page_.find("9600 \xC3\x97 7200 twips, drawn 640 \xC3\x97 480 pixels"), std::string::npos);
}

TEST_F(PreviewPageTest, ZoomScalesTheScreenDrawings) {
  PreviewOptions options;
  options.zoom = 1.5;
  const std::string page = RenderPreview(*lib_, options);
  EXPECT_NE(page.find("width=\"960\" height=\"720\" viewBox=\"0 0 9600 7200\""), std::string::npos);
}

TEST_F(PreviewPageTest, ColoursAreDecodedWithBlueInTheHighByte) {
  // Screen 12632256 is grey; the first label's background 8388608 (0x800000) is navy and its text
  // 16777215 white; the Doors screen 16711680 is blue; the input's text 16711680 is blue.
  EXPECT_NE(page_.find("<rect class=\"background\" width=\"100%\" height=\"100%\" fill=\"#c0c0c0\"/>"), std::string::npos);
  EXPECT_NE(page_.find("<rect class=\"background\" width=\"100%\" height=\"100%\" fill=\"#0000ff\"/>"), std::string::npos);
  const std::size_t label = page_.find("data-label=\"c1s1l1\"");
  ASSERT_NE(label, std::string::npos);
  const std::string drawn = page_.substr(label, page_.find("</g>", label) - label);
  EXPECT_NE(drawn.find("fill=\"#000080\""), std::string::npos);
  EXPECT_NE(drawn.find("fill=\"#ffffff\""), std::string::npos);
}

TEST_F(PreviewPageTest, LabelsKeepTheirRectangleFontAndAlignment) {
  const std::size_t label = page_.find("data-label=\"c1s1l1\"");
  const std::string drawn = page_.substr(label, page_.find("</g>", label) - label);
  EXPECT_NE(drawn.find("<svg x=\"120\" y=\"120\" width=\"9360\" height=\"400\">"), std::string::npos);
  EXPECT_NE(drawn.find("text-anchor=\"middle\""), std::string::npos);
  EXPECT_NE(drawn.find("font-family=\"&#39;Arial&#39;, sans-serif\" font-size=\"240\" font-weight=\"bold\""),
            std::string::npos);
  EXPECT_NE(drawn.find("<tspan x=\"4680\" y=\"0\">Engine &lt;live&gt; values</tspan>"), std::string::npos);
  const std::size_t second = page_.find("data-label=\"c1s1l2\"");
  const std::string speed = page_.substr(second, page_.find("</g>", second) - second);
  EXPECT_NE(speed.find("text-anchor=\"start\""), std::string::npos);
  EXPECT_NE(speed.find("font-size=\"165\" font-style=\"italic\" fill=\"#ff0000\""), std::string::npos);
  const std::size_t empty = page_.find("data-label=\"c2s1l1\"");
  const std::string frame = page_.substr(empty, page_.find("</g>", empty) - empty);
  EXPECT_NE(frame.find("font-family=\"sans-serif\""), std::string::npos);
  EXPECT_NE(frame.find("text-anchor=\"end\""), std::string::npos);
}

TEST_F(PreviewPageTest, DisplaysSplitIntoCaptionAndValueAreas) {
  const std::size_t display = page_.find("data-display=\"c1s1d1\"");
  ASSERT_NE(display, std::string::npos);
  const std::string drawn = page_.substr(display, page_.find("</g>", display) - display);
  EXPECT_NE(drawn.find("data-kind=\"display\" data-shows=\"data\""), std::string::npos);
  EXPECT_NE(drawn.find("<svg x=\"2400\" y=\"700\" width=\"4000\" height=\"300\">"), std::string::npos);
  EXPECT_NE(drawn.find("<svg x=\"0\" y=\"0\" width=\"2000\" height=\"300\">"), std::string::npos);  // caption
  EXPECT_NE(drawn.find(">EngineSpeed</tspan>"), std::string::npos);
  EXPECT_NE(drawn.find("<rect x=\"2000\" y=\"0\" width=\"2000\" height=\"300\" fill=\"#ffffff\""), std::string::npos);
  EXPECT_NE(drawn.find(">rpm</tspan>"), std::string::npos);
  // The thresholds, as a band of their colours in order.
  EXPECT_LT(drawn.find("fill=\"#00ff00\""), drawn.find("fill=\"#ff0000\""));
  const std::size_t vin = page_.find("data-display=\"c1s1d3\"");
  const std::string request = page_.substr(vin, page_.find("</g>", vin) - vin);
  EXPECT_NE(request.find("data-kind=\"display\" data-shows=\"request\""), std::string::npos);
  EXPECT_NE(request.find("<svg x=\"0\" y=\"0\" width=\"1500\" height=\"300\">"), std::string::npos);
  EXPECT_NE(request.find(">ReadVin</tspan>"), std::string::npos);
}

TEST_F(PreviewPageTest, InputFieldsAreToldApartFromDisplays) {
  const std::size_t input = page_.find("data-display=\"c1s1d2\"");
  const std::string drawn = page_.substr(input, page_.find("</g>", input) - input);
  EXPECT_NE(drawn.find("data-kind=\"input\""), std::string::npos);
  EXPECT_NE(drawn.find("stroke-dasharray"), std::string::npos);
  EXPECT_NE(drawn.find("\xE2\x9C\x8E"), std::string::npos);
  EXPECT_NE(page_.find("<td>2</td><td><b>input field</b> of <a class=\"data-link\" href=\"#data-IdleTarget\">IdleTarget</a>"
                       " in <a class=\"request-link\" href=\"#request-WriteIdle\">WriteIdle</a>"),
            std::string::npos);
}

TEST_F(PreviewPageTest, ThresholdLegendGivesValuesColoursAndSound) {
  EXPECT_NE(page_.find("<li>\xE2\x89\xA5 0 <span class=\"swatch\" style=\"background:#00ff00\" title=\"#00ff00 (65280)\">"
                       "</span>#00ff00</li>"),
            std::string::npos);
  EXPECT_NE(page_.find("<li>\xE2\x89\xA5 6500 <span class=\"swatch\" style=\"background:#ff0000\" title=\"#ff0000 (255)\">"
                       "</span>#ff0000 <span class=\"tag\" title=\"sound\">\xE2\x99\xAA 880</span></li>"),
            std::string::npos);
}

TEST_F(PreviewPageTest, ButtonsAreDrawnAndTheirScenariosListedInOrder) {
  const std::size_t button = page_.find("data-button=\"c1s1b1\"");
  ASSERT_NE(button, std::string::npos);
  const std::string drawn = page_.substr(button, page_.find("</g>", button) - button);
  EXPECT_NE(drawn.find("<svg x=\"6000\" y=\"6300\" width=\"1680\" height=\"420\">"), std::string::npos);
  EXPECT_NE(drawn.find(">Set idle</tspan>"), std::string::npos);
  EXPECT_EQ(page_.find("data-button=\"c1s1b2\""), std::string::npos);  // the init button is not drawn
  EXPECT_NE(page_.find("message \xE2\x80\x9C" "Engine must idle. Continue?\xE2\x80\x9D</td><td><ol class=\"steps\">"
                       "<li>send <a class=\"request-link\" href=\"#request-StartSession\">StartSession</a>, then wait 50</li>"
                       "<li>send <a class=\"request-link\" href=\"#request-WriteIdle\">WriteIdle</a>, then wait 200</li></ol>"),
            std::string::npos);
}

TEST_F(PreviewPageTest, InitButtonScenarioIsListedForItsScreen) {
  EXPECT_NE(page_.find("<b>On opening</b> (init button): <ol class=\"steps\"><li>send <a class=\"request-link\" "
                       "href=\"#request-StartSession\">StartSession</a>, then wait 100</li></ol>"),
            std::string::npos);
  EXPECT_NE(page_.find("<b>On opening</b> (init button): <span class=\"note\">no requests</span>"), std::string::npos);
}

TEST_F(PreviewPageTest, ElementsOutsideTheScreenAreReported) {
  TessalyLibXml lib;
  lib.ImportUceFromText(Document(
      "", "<ds:Categories><Category Name=\"C\"><Screen Name=\"S\" Width=\"1500\" Height=\"1500\">"
          "<Label Text=\"wide\"><Rectangle Left=\"0\" Top=\"0\" Height=\"100\" Width=\"2000\"/></Label>"
          "</Screen></Category></ds:Categories>"));
  const std::string page = RenderPreview(lib);
  EXPECT_NE(page.find("<p class=\"warn\">Not entirely within the screen: label 1 \xE2\x80\x9Cwide\xE2\x80\x9D</p>"),
            std::string::npos);
}

TEST_F(PreviewPageTest, CanEcuShowsItsIdentifiers) {
  TessalyLibXml lib;
  lib.ImportUceFromText(Document("<CAN BaudRate=\"500000\" Multipoint=\"1\">\n<SendId>\n<CANId Value=\"2016\"/>\n"
                                 "</SendId>\n<ReceiveId>\n<CANId Value=\"419369201\" Extended=\"1\"/>\n</ReceiveId>\n</CAN>",
                                 ""));
  const std::string page = RenderPreview(lib);
  EXPECT_NE(page.find("DiagOnCAN \xE2\x80\x93 init mode 3, multi-point"), std::string::npos);
  EXPECT_NE(page.find("<th>Baud rate</th><td>500000 bit/s</td>"), std::string::npos);
  EXPECT_NE(page.find("<th>CAN identifiers</th><td>send 0x7E0, receive 0x18FF10F1 (extended)</td>"), std::string::npos);
  EXPECT_EQ(page.find("Key bytes"), std::string::npos);
}

TEST_F(PreviewPageTest, ProtocolMissingFromTheTableIsNamedByItsMode) {
  TessalyLibXml lib;
  lib.ImportUceFromText(Document("<Protocol InitMode=\"9\" Multipoint=\"0\" BaudRate=\"9600\"/>", ""));
  const std::string page = RenderPreview(lib);
  EXPECT_NE(page.find("initialisation mode 9 \xE2\x80\x93 init mode 9"), std::string::npos);
  EXPECT_NE(page.find("<th>KW2 delay</th>"), std::string::npos);
}

TEST_F(PreviewPageTest, LoadReportIsShownEscaped) {
  PreviewOptions options;
  options.loadReport = {"dropped: Display in screen C/S: request missing", "warning: X: <b>"};
  const std::string page = RenderPreview(*lib_, options);
  EXPECT_NE(page.find("<li>dropped: Display in screen C/S: request missing</li><li>warning: X: &lt;b&gt;</li>"),
            std::string::npos);
  EXPECT_NE(page.find("<a href=\"#loading\">Loading report</a>"), std::string::npos);
  EXPECT_EQ(page_.find("id=\"loading\""), std::string::npos);
}

TEST_F(PreviewPageTest, SourceIsShownInTheHeader) {
  PreviewOptions options;
  options.source = "ecu<1>.xml";
  EXPECT_NE(RenderPreview(*lib_, options).find("\xE2\x80\x93 ecu&lt;1&gt;.xml</div>"), std::string::npos);
}

TEST_F(PreviewPageTest, SingleScreenPageShowsOnlyThatScreen) {
  PreviewOptions options;
  options.onlyCategory = "Body";
  options.onlyScreen = "Doors";
  const std::string page = RenderPreview(*lib_, options);
  EXPECT_NE(page.find("data-screen=\"c2s1\""), std::string::npos);
  EXPECT_NE(page.find("data-button=\"c2s1b1\""), std::string::npos);
  EXPECT_EQ(page.find("data-screen=\"c1s1\""), std::string::npos);
  EXPECT_EQ(page.find("id=\"data\""), std::string::npos);
  // Nothing to link to: names are shown without links.
  EXPECT_TRUE(AttributeValues(page, "href").empty());
  EXPECT_NE(page.find("<li>send ReadVin, then wait 0</li>"), std::string::npos);
  EXPECT_NE(page.find("<title>Engine &lt;EMS&gt; \xE2\x80\x93 Doors \xE2\x80\x93 Tessaly preview</title>"),
            std::string::npos);
}

TEST_F(PreviewPageTest, UnknownScreenIsRefused) {
  PreviewOptions options;
  options.onlyCategory = "Body";
  options.onlyScreen = "Windows";
  EXPECT_TESSALY_ERROR(RenderPreview(*lib_, options), 1, "tessaly.preview",
                       "No screen 'Windows' in a category 'Body'");
}

TEST_F(PreviewPageTest, ZoomThatIsNotPositiveIsRefused) {
  PreviewOptions options;
  options.zoom = 0;
  EXPECT_TESSALY_ERROR(RenderPreview(*lib_, options), 1, "tessaly.preview", "The zoom must be a positive number");
  options.zoom = -1;
  EXPECT_TESSALY_ERROR(RenderPreview(*lib_, options), 1, "tessaly.preview", "The zoom must be a positive number");
}

TEST_F(PreviewPageTest, NoActiveTargetIsObjectNotSet) {
  TessalyLibXml lib;
  EXPECT_TESSALY_ERROR(RenderPreview(lib), 91, "Tessaly", "Object variable or With block variable not set");
}

TEST_F(PreviewPageTest, EmptyTargetGivesAPageWithEmptySections) {
  TessalyLibXml lib;
  lib.NewTarget();
  const std::string page = RenderPreview(lib);
  EXPECT_NE(page.find("<h1>(ECU without a name)</h1>"), std::string::npos);
  EXPECT_NE(page.find("<p class=\"note\">No data items.</p>"), std::string::npos);
  EXPECT_NE(page.find("<p class=\"note\">No requests.</p>"), std::string::npos);
  EXPECT_NE(page.find("<p class=\"note\">No devices.</p>"), std::string::npos);
  EXPECT_NE(page.find("<p class=\"note\">No screens.</p>"), std::string::npos);
}

TEST_F(PreviewPageTest, RenderingLeavesTheDocumentAsItWas) {
  const std::string before = lib_->ExportUceToText();
  RenderPreview(*lib_);
  EXPECT_EQ(lib_->ExportUceToText(), before);
}

TEST_F(PreviewPageTest, ThousandsOfItemsStayFolded) {
  TessalyLibXml lib;
  auto target = lib.NewTarget();
  for (int i = 0; i < 3000; ++i) {
    auto data = target->datas()->Add("D" + std::to_string(i));
    data->set_parent(target);
  }
  for (int i = 0; i < 1000; ++i) {
    auto request = target->Requests()->Add("R" + std::to_string(i));
    request->set_parent(target);
    request->set_RequestBytes(std::make_shared<ByteString>("21 01"));
    request->set_DataPositions(std::make_shared<DataPositionItems>());
    for (int k = 0; k < 3; ++k) {
      auto position = request->DataPositions()->Add("D" + std::to_string(i * 3 + k));
      position->set_StartOctet(k + 2);
    }
  }
  const std::string page = RenderPreview(lib);
  EXPECT_EQ(Count(page, "<tr id=\"data-D"), 3000U);
  EXPECT_EQ(Count(page, "<details class=\"item request\""), 1000U);
  EXPECT_EQ(Count(page, "<details class=\"item request\" id=\"request-R1\" open>"), 0U);
  EXPECT_EQ(Count(page, "data-field=\"D"), 3000U);
}

}  // namespace
}  // namespace tessaly::testing
