#include "tessaly/screens/category_items.hpp"

#include <string>
#include <unordered_set>

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/screens/screen_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

constexpr const char* kCategoryLoad = "CategoryItem.loadXml";

// The refusal of a category name already held.
[[noreturn]] void RaiseDuplicateCategory() { Raise(errc::kModel, kLibrarySource, "Duplicate category"); }

}  // namespace

void CategoryItem::clear() {
  // A category without a screen list cannot be cleared; the error goes to the caller of
  // CategoryItems::clear, which stops there.
  if (!Screens_) RaisePlatform(errc::kObjectNotSet);
  Screens_->clear();
  Screens_.reset();
  parent_.reset();
}

void CategoryItem::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Name", categoryName_);
  xml::AppendLf(parNode);
  if (Screens_) {
    Screens_->createXMLnode(parNode);
    xml::AppendLf(parNode);
  }
}

void CategoryItem::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode) {
  Err().Clear();
  if (!xml::ReadText(parNode, "Name", categoryName_)) {
    // Reported and withdrawn at once: the category is kept, nameless and without screens.
    Err().Raise(errc::kModel, kCategoryLoad, "Name undefined, bad category");
    Err().Clear();
    if (auto facade = DiagnosticsOf(parent().get()))
      facade->ReportDiagnostic(Diagnostic::Action::kRepaired, parNode, "Category without Name",
                               "Name undefined, bad category");
    return;
  }
  Screens_ = std::make_shared<ScreenItems>();
  Screens_->loadXml(odoc, parNode, shared_from_this());
}

std::shared_ptr<CategoryItem> CategoryItems::Add(std::string categoryName, std::string_view sKey) {
  auto item = std::make_shared<CategoryItem>();
  item->set_categoryName(std::move(categoryName));
  return Append(item, sKey);
}

std::shared_ptr<CategoryItem> CategoryItems::AddData(const std::shared_ptr<CategoryItem>& vData, std::string_view sKey) {
  if (!vData) RaisePlatform(errc::kObjectNotSet);
  if (ItemName(vData->categoryName())) RaiseDuplicateCategory();
  return Append(vData, sKey);
}

std::shared_ptr<CategoryItem> CategoryItems::ItemName(std::string_view name) const {
  return FindFirst([&](const CategoryItem& c) { return c.categoryName() == name; });
}

void CategoryItems::Delete(const std::shared_ptr<CategoryItem>& item) {
  if (!item) RaisePlatform(errc::kObjectNotSet);
  for (std::int32_t position = 1; position <= Count(); ++position) {
    if (inner_.Item(position)->categoryName() == item->categoryName()) {
      inner_.Remove(position);
      return;
    }
  }
}

void CategoryItems::createXMLnode(xml::Out parNode) const {
  for (const auto& category : *this) category->createXMLnode(xml::AppendElement(parNode, "Category"));
}

void CategoryItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<TargetItem>& parent) {
  Err().Clear();
  // The category names held so far, so that the duplicate refusal of AddData is decided in
  // constant time per category rather than by a scan of the list.
  std::unordered_set<std::string> held;
  for (const auto& item : inner_) held.insert(item->categoryName());
  ReadChildren(*this, parNode, "Category", [&](pugi::xml_node element) {
    auto item = std::make_shared<CategoryItem>();
    item->set_parent(parent);
    item->loadXml(odoc, element);
    // Only the error number -1 keeps a category out; in practice every category meets the
    // duplicate refusal of AddData (decided here through `held`), which is absorbed.
    auto add = [&] {
      if (!held.insert(item->categoryName()).second) RaiseDuplicateCategory();
      Append(item);
    };
    if (Err().Number() != -1 && !Trap(add)) {
      if (auto facade = DiagnosticsOf(parent.get()))
        facade->ReportDiagnostic(Diagnostic::Action::kDropped, element, "Category " + item->categoryName(),
                                 Err().Description());
    }
    Err().Clear();
  });
}

}  // namespace tessaly
