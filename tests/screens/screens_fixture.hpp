// The ECU the screen tests work on: a target of a facade that records its event log, holding
// three data items and four requests, and helpers that read a ds:Categories element into it
// and write it back the way the target frames it.
#ifndef TESSALY_TESTS_SCREENS_SCREENS_FIXTURE_HPP_
#define TESSALY_TESTS_SCREENS_SCREENS_FIXTURE_HPP_

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <memory>
#include <string>

#include "support/test_support.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/screens/button_items.hpp"
#include "tessaly/screens/category_items.hpp"
#include "tessaly/screens/display_items.hpp"
#include "tessaly/screens/display_references.hpp"
#include "tessaly/screens/label_items.hpp"
#include "tessaly/screens/range_items.hpp"
#include "tessaly/screens/scenario_items.hpp"
#include "tessaly/screens/screen_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly::testing {

// Data: Speed, Temp, Pressure. Requests: ReadSpeed reads Speed and Pressure from its reply,
// WriteTemp carries Temp as a parameter, Reset and Stop carry no data.
inline constexpr const char* kScreenDatas =
    "<Datas>\n<Data Name=\"Speed\"/>\n<Data Name=\"Temp\"/>\n<Data Name=\"Pressure\"/>\n</Datas>";
inline constexpr const char* kScreenRequests =
    "<Requests>\n"
    "<Request Name=\"ReadSpeed\"><Received><DataItem Name=\"Speed\" FirstByte=\"2\"/>"
    "<DataItem Name=\"Pressure\" FirstByte=\"3\"/></Received></Request>\n"
    "<Request Name=\"WriteTemp\"><Sent><DataItem Name=\"Temp\" FirstByte=\"4\"/></Sent></Request>\n"
    "<Request Name=\"Reset\"/>\n<Request Name=\"Stop\"/>\n</Requests>";

// Wraps screen elements into one category "C" of a ds:Categories element, as written.
inline std::string InCategory(const std::string& screens) {
  return "<ds:Categories>\n<Category Name=\"C\">\n" + screens + "\n</Category></ds:Categories>";
}

// Wraps the content of a screen (what follows its start tag) into a screen "S" of category "C".
inline std::string InScreen(const std::string& content) {
  return InCategory("\n<Screen Name=\"S\" Color=\"16777215\" WindowState=\"0\" Width=\"600\" Height=\"400\">" +
                    content + "</Screen>");
}

class ScreensTest : public ::testing::Test {
 protected:
  ScreensTest() : log_(std::make_shared<RecordingEventLog>()) {
    facade_.set_EventLog(log_);
    target_ = facade_.NewTarget();
    pugi::xml_document datas;
    ParseText(datas, kScreenDatas);
    target_->datas()->loadXml(datas, datas.child("Datas"), target_);
    pugi::xml_document requests;
    ParseText(requests, kScreenRequests);
    target_->Requests()->loadXml(requests, requests.child("Requests"), target_);
    Err().Clear();
  }

  ~ScreensTest() override {
    // A category without a screen list cannot be cleared; give such categories an empty list
    // so that the facade can drop its target.
    if (target_ && target_->Categories())
      for (const auto& category : *target_->Categories())
        if (!category->Screens()) category->set_Screens(std::make_shared<ScreenItems>());
  }

  // Reads `categories` (a whole ds:Categories element) into the target, as the target does.
  void LoadCategories(const std::string& categories) {
    pugi::xml_document doc;
    ParseText(doc, categories);
    target_->Categories()->loadXml(doc, doc.child("ds:Categories"), target_);
  }

  // The target's categories written as the target frames them: ds:Categories (no namespace
  // declaration), a line feed, then the categories.
  std::string WriteCategories() {
    pugi::xml_document doc;
    pugi::xml_node categories = doc.append_child("ds:Categories");
    categories.append_child(pugi::node_pcdata).set_value("\n");
    target_->Categories()->createXMLnode(doc, categories);
    return NodeText(categories);
  }

  // The screen at `screen` of the category at `category` (1-based).
  std::shared_ptr<ScreenItem> ScreenAt(std::int32_t category = 1, std::int32_t screen = 1) {
    return target_->Categories()->Item(category)->Screens()->Item(screen);
  }

  TessalyLibXml facade_;
  std::shared_ptr<RecordingEventLog> log_;
  std::shared_ptr<TargetItem> target_;
};

}  // namespace tessaly::testing

#endif  // TESSALY_TESTS_SCREENS_SCREENS_FIXTURE_HPP_
