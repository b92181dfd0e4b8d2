// What a display shows, by name: a data display names a request and a data item placed in it
// (DisplayDataItem), a request display names a request only (DisplayExtraItem). Neither holds
// the request or the placement itself: both are looked up through the target each time they
// are asked for, so renaming a request or a data item only has to update the names.
//
// Thread safety: none; a display belongs to one document, used from one thread at a time.
#ifndef TESSALY_SCREENS_DISPLAY_REFERENCES_HPP_
#define TESSALY_SCREENS_DISPLAY_REFERENCES_HPP_

#include <memory>
#include <string>

namespace tessaly {

class DisplayItem;
class DataPositionItem;
class RequestItem;

class DisplayDataItem {
 public:
  const std::string& dataName() const { return dataName_; }
  void set_dataName(std::string value) { dataName_ = std::move(value); }
  const std::string& requestName() const { return requestName_; }
  void set_requestName(std::string value) { requestName_ = std::move(value); }
  // The placement of the data in the request, looked up through display, screen, category and
  // target; null when any of them, the request or the placement is missing. Never throws.
  std::shared_ptr<DataPositionItem> DataPosition() const;
  // Copies the names of the position's data and of its request; null changes nothing. Throws
  // error 91 when the position has no data item or no request.
  void set_DataPosition(const std::shared_ptr<DataPositionItem>& value);
  // The owning display, or null.
  std::shared_ptr<DisplayItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<DisplayItem>& value) { parent_ = value; }

  // Releases the parent.
  void clear() { parent_.reset(); }

 private:
  std::string dataName_;
  std::string requestName_;
  std::weak_ptr<DisplayItem> parent_;
};

class DisplayExtraItem {
 public:
  const std::string& requestName() const { return requestName_; }
  void set_requestName(std::string value) { requestName_ = std::move(value); }
  // True when the display is an input field (written as an Input element).
  bool param() const { return param_; }
  void set_param(bool value) { param_ = value; }
  // The target's request of that name (letter case ignored), or null when there is none.
  // Throws error 91 when the display is not attached to a target through its screen and
  // category.
  std::shared_ptr<RequestItem> request() const;
  // Copies the request's name; null changes nothing.
  void set_request(const std::shared_ptr<RequestItem>& value);
  // The owning display, or null.
  std::shared_ptr<DisplayItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<DisplayItem>& value) { parent_ = value; }

  // Releases the parent.
  void clear() { parent_.reset(); }

 private:
  std::string requestName_;
  bool param_ = false;
  std::weak_ptr<DisplayItem> parent_;
};

}  // namespace tessaly

#endif  // TESSALY_SCREENS_DISPLAY_REFERENCES_HPP_
