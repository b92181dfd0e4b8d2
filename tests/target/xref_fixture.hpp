// Whole ECU documents for the tests of the cross-reference queries and the referential edits,
// built from small pieces in exactly the form the library writes them (so a document loads and
// saves back to the same bytes), and a fixture that applies an edit to a document as loaded and
// to the same document saved and reloaded.
#ifndef TESSALY_TESTS_TARGET_XREF_FIXTURE_HPP_
#define TESSALY_TESTS_TARGET_XREF_FIXTURE_HPP_

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>

#include "support/test_support.hpp"
#include "tessaly/tessaly.hpp"

namespace tessaly::testing::xref {

// --- Data and requests ---

// A numeric 8-bit data item with every default.
inline std::string DataXml(const std::string& name) {
  return "\n<Data Name=\"" + name + "\">\n<Bits>\n<Scaled/>\n</Bits>\n</Data>";
}

inline std::string Datas(std::initializer_list<const char*> names) {
  std::string out;
  for (const char* name : names) out += DataXml(name);
  return out;
}

// A placement inside Sent (a parameter) or Received (reply data); `ref` marks a reference.
inline std::string Placed(const std::string& data, int firstByte, bool ref = false) {
  return "<DataItem Name=\"" + data + "\"" + (ref ? " Ref=\"1\"" : "") + " FirstByte=\"" + std::to_string(firstByte) +
         "\"/>\n";
}

// A request with no bytes: `sent` and `received` are its placements (Placed).
inline std::string RequestXml(const std::string& name, const std::string& sent = {}, const std::string& received = {}) {
  return "\n<Request Name=\"" + name + "\">\n<Sent>\n<SentBytes/>\n" + sent + "</Sent>\n<Received MinBytes=\"1\">\n" +
         received + "</Received>\n</Request>";
}

// --- Devices ---

inline std::string LinkXml(const std::string& data, bool failureFlag = false) {
  return "<DeviceData Name=\"" + data + "\" FailureFlag=\"" + (failureFlag ? "1" : "0") + "\"/>";
}

inline std::string TestXml(int type, std::initializer_list<const char*> stored,
                           std::initializer_list<const char*> present = {}) {
  std::string out = "\r\n<Test Type=\"" + std::to_string(type) + "\">\r\n";
  for (const char* name : stored) out += "<StoredFlag>" + std::string(name) + "</StoredFlag>\r\n";
  for (const char* name : present) out += "<PresentFlag>" + std::string(name) + "</PresentFlag>\r\n";
  return out + "</Test>";
}

// A device as read from a document (it then always has a list of links and of tests).
inline std::string DeviceXml(const std::string& name, const std::string& freezeFrame = {},
                             const std::string& links = {}, const std::string& tests = {}) {
  return "<Device Name=\"" + name + "\"" + (freezeFrame.empty() ? "" : " FreezeFrame=\"" + freezeFrame + "\"") +
         ">\n" + links + "\n" + tests + "\n</Device>\n";
}

// --- Screens ---

inline std::string SendXml(const std::string& request, int delay = 0) {
  return "<Send Delay=\"" + std::to_string(delay) + "\" RequestName=\"" + request + "\"/>";
}

inline std::string ButtonXml(const std::string& text, const std::string& sends = {}) {
  return "\n<Button Text=\"" + text +
         "\">\n<Rectangle Left=\"0\" Top=\"0\" Height=\"0\" Width=\"0\"/>\n"
         "<Font Name=\"\" Size=\" 12\" Bold=\"0\" Italic=\"0\"/>\n<Message Text=\"\"/>\n" +
         sends + "\n</Button>";
}

namespace detail {
inline std::string Field(const char* element, const std::string& names, int top) {
  return std::string("\n<") + element + " Width=\"2000\" Color=\"16777215\"" + names +
         ">\n<Rectangle Left=\"0\" Top=\"" + std::to_string(top) +
         "\" Height=\"300\" Width=\"4000\"/>\n<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"0\" Color=\"0\"/></" +
         element + ">";
}
}  // namespace detail

// A data display of `data` as placed in `request` (from the reply); `top` tells displays apart.
inline std::string DisplayXml(const std::string& data, const std::string& request, int top = 0) {
  return detail::Field("Display", " DataName=\"" + data + "\" RequestName=\"" + request + "\"", top);
}
// The same for data that is a parameter of its request.
inline std::string InputXml(const std::string& data, const std::string& request, int top = 0) {
  return detail::Field("Input", " DataName=\"" + data + "\" RequestName=\"" + request + "\"", top);
}
// A display naming a request only.
inline std::string RequestDisplayXml(const std::string& request, int top = 0) {
  return detail::Field("Display", " RequestName=\"" + request + "\"", top);
}

// A screen: the init button's Send steps, the buttons (ButtonXml), the displays.
inline std::string ScreenXml(const std::string& name, const std::string& initSends = {},
                             const std::string& buttons = {}, const std::string& displays = {}) {
  return "\n<Screen Name=\"" + name + "\" Color=\"16777215\" WindowState=\"0\" Width=\"600\" Height=\"400\">\n\n" +
         initSends + buttons + "\n" + displays + "\n</Screen>";
}

inline std::string CategoryXml(const std::string& name, const std::string& screens) {
  return "<Category Name=\"" + name + "\">\n" + screens + "\n</Category>";
}

// --- Documents ---

// Everything the facade writes before the Datas element for the ECU "Engine" of function
// Injection (122) with default communication parameters.
inline const std::string& DocumentHead() {
  static const std::string head =
      "<?xml version='1.0' encoding=\"UTF-8\"?>\r\n"
      "<?xml-stylesheet type=\"text/xsl\" href=\"http://www.tessaly.org/Tessaly/TSLECUPreview.xsl\"?>\r\n"
      "<xml xmlns:tsl=\"http://www.tessaly.org/2002/ECU\">\n"
      "<tsl:Target Name=\"Engine\" xmlns=\"http://www.tessaly.org/2002/ECU\" "
      "xmlns:ds=\"http://www.tessaly.org/2002/screens\">\n"
      "<Function Name=\"Injection\" Address=\"122\"/>\n"
      "<Language Name=\"English\" Reference=\"1\"/>\n"
      "\n<DateOfficialisation/>\n<Failures Name=\"Ne contient pas de pannes\" Id=\"0\"/>\n"
      "<PowerSupply>\n<Ground/>\n<Vbat/>\n<AfterContact/>\n</PowerSupply>\n"
      "<K BaudRate=\"10400\">\n<KWP Multipoint=\"0\">\n<FastInit><KW1 Value=\"208\"/>\n<KW2 Value=\"143\"/></FastInit>\n"
      "</KWP>\n<InterByte Delay=\"0\"/>\n<ReplyToRequest Delay=\"5\"/>\n<RequestToReply Timeout=\"300\"/>\n"
      "<TesterPresent Delay=\"3000\"/>\n<OnError Delay=\"300\"/>\n</K>\n"
      "<AutoIdents>\n</AutoIdents>\n";
  return head;
}

// A whole document as the facade writes it: `datas` (DataXml pieces), `requests` (RequestXml),
// `devices` (DeviceXml), `categories` (CategoryXml).
inline std::string Document(const std::string& datas, const std::string& requests, const std::string& devices = {},
                            const std::string& categories = {}) {
  return DocumentHead() + "<Datas>\n" + datas + "</Datas>\n<Requests Endian=\"Big\">\n" + requests +
         "</Requests>\n<Devices>\n" + devices +
         "</Devices>\n<ds:Categories xmlns=\"http://www.tessaly.org/2002/screens\">\n" + categories +
         "</ds:Categories></tsl:Target></xml>\r\n";
}

class CrossRefFixture : public ::testing::Test {
 protected:
  CrossRefFixture() : log_(std::make_shared<RecordingEventLog>()) {}

  ~CrossRefFixture() override {
    // No reader had to drop anything from the documents of these tests.
    EXPECT_TRUE(log_->entries.empty());
  }

  // Loads `document` into `lib` and returns its target; the document must load cleanly.
  std::shared_ptr<TargetItem> Load(TessalyLibXml& lib, const std::string& document) {
    lib.set_EventLog(log_);
    lib.ImportUceFromText(document);
    EXPECT_EQ(Err().Number(), 0);
    return lib.ActiveTarget();
  }

  // Applies `edit` to `document` as loaded and saves it; does the same to `document` as saved
  // before the edit and loaded again, expects the two saves to be the same bytes, and returns
  // the first.
  std::string EditAndSave(const std::string& document, const std::function<void(TargetItem&)>& edit) {
    TessalyLibXml first;
    std::shared_ptr<TargetItem> target = Load(first, document);
    const std::string saved = first.ExportUceToText();
    edit(*target);
    const std::string result = first.ExportUceToText();

    TessalyLibXml second;
    std::shared_ptr<TargetItem> reloaded = Load(second, saved);
    edit(*reloaded);
    EXPECT_EQ(second.ExportUceToText(), result) << "the edit gave another document after a save and a reload";
    return result;
  }

  std::shared_ptr<RecordingEventLog> log_;
};

}  // namespace tessaly::testing::xref

#endif  // TESSALY_TESTS_TARGET_XREF_FIXTURE_HPP_
