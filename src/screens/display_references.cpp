#include "tessaly/screens/display_references.hpp"

#include "screens/screen_links.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/data/data_position_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/screens/display_items.hpp"
#include "tessaly/screens/screen_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {

std::shared_ptr<DataPositionItem> DisplayDataItem::DataPosition() const {
  // Any missing link, request or placement gives null; the look-up never fails.
  try {
    std::shared_ptr<DisplayItem> display = parent();
    std::shared_ptr<ScreenItem> screen = display ? display->parent() : nullptr;
    std::shared_ptr<TargetItem> target = TargetOf(screen.get());
    if (!target || !target->Requests()) return nullptr;
    std::shared_ptr<RequestItem> request = target->Requests()->ItemName(requestName_);
    if (!request || !request->DataPositions()) return nullptr;
    return request->DataPositions()->ItemName(dataName_);
  } catch (const Error&) {
    return nullptr;
  }
}

void DisplayDataItem::set_DataPosition(const std::shared_ptr<DataPositionItem>& value) {
  if (!value) return;
  std::shared_ptr<DataItem> data = value->data();
  std::shared_ptr<RequestItem> request = value->parent();
  if (!data || !request) RaisePlatform(errc::kObjectNotSet);
  dataName_ = data->dataName();
  requestName_ = request->requestName();
}

std::shared_ptr<RequestItem> DisplayExtraItem::request() const {
  std::shared_ptr<DisplayItem> display = parent();
  if (!display) RaisePlatform(errc::kObjectNotSet);
  return RequestsOf(display->parent().get())->ItemName(requestName_);
}

void DisplayExtraItem::set_request(const std::shared_ptr<RequestItem>& value) {
  if (value) requestName_ = value->requestName();
}

}  // namespace tessaly
