#include "screens/screen_links.hpp"

#include "tessaly/common/error.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/screens/category_items.hpp"
#include "tessaly/screens/screen_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {

std::shared_ptr<TargetItem> TargetOf(const ScreenItem* screen) {
  if (screen == nullptr) return nullptr;
  std::shared_ptr<CategoryItem> category = screen->parent();
  return category ? category->parent() : nullptr;
}

std::shared_ptr<RequestItems> RequestsOf(const ScreenItem* screen) {
  std::shared_ptr<TargetItem> target = TargetOf(screen);
  if (!target || !target->Requests()) RaisePlatform(errc::kObjectNotSet);
  return target->Requests();
}

std::string ScreenPath(const ScreenItem* screen) {
  if (screen == nullptr) return "/";
  std::shared_ptr<CategoryItem> category = screen->parent();
  return (category ? category->categoryName() : std::string()) + "/" + screen->screenName();
}

}  // namespace tessaly
