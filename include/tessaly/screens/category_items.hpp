// Screen categories: the named groups in which the screens of an ECU are shown. The target owns
// one CategoryItems list, read from and written to its ds:Categories element; each category
// owns the ScreenItems list of its screens.
//
// Thread safety: none; a category list belongs to one document, used from one thread at a time.
#ifndef TESSALY_SCREENS_CATEGORY_ITEMS_HPP_
#define TESSALY_SCREENS_CATEGORY_ITEMS_HPP_

#include <pugixml.hpp>

#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class TargetItem;
class ScreenItems;

class CategoryItem : public std::enable_shared_from_this<CategoryItem> {
 public:
  // The category's name: its identity for the duplicate refusal and for Delete.
  const std::string& categoryName() const { return categoryName_; }
  void set_categoryName(std::string value) { categoryName_ = std::move(value); }
  // The screens; null until loadXml creates the list (or the host sets one).
  const std::shared_ptr<ScreenItems>& Screens() const { return Screens_; }
  void set_Screens(std::shared_ptr<ScreenItems> value) { Screens_ = std::move(value); }
  // The owning target, or null.
  std::shared_ptr<TargetItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<TargetItem>& value) { parent_ = value; }

  // Clears the screen list, then releases it and the parent. A category without a screen list
  // (made by Add, or read without a Name) throws error 91 and stays as it was.
  void clear();
  // Fills the Category element: Name, a line feed, and when there is a screen list the screens
  // followed by one more line feed.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads a Category element. Without a Name attribute the category keeps an empty name and
  // gets no screen list; that is reported and cleared at once, so the category is still kept.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  std::string categoryName_;
  std::shared_ptr<ScreenItems> Screens_;
  std::weak_ptr<TargetItem> parent_;
};

class CategoryItems : public Collection<CategoryItem> {
 public:
  // Creates a category with that name and adds it, under `sKey` when not empty. No duplicate
  // test.
  std::shared_ptr<CategoryItem> Add(std::string categoryName, std::string_view sKey = {});
  // Adds an existing category, under `sKey` when not empty. A category of the same name
  // (exact comparison) already held: error 1 "Duplicate category", nothing added.
  std::shared_ptr<CategoryItem> AddData(const std::shared_ptr<CategoryItem>& vData, std::string_view sKey = {});
  // The first category whose name equals `name` exactly, or null.
  std::shared_ptr<CategoryItem> ItemName(std::string_view name) const;
  // Removes the first entry whose name equals the item's name; the entry is not cleared.
  void Delete(const std::shared_ptr<CategoryItem>& item);
  // Clears and removes every category, first to last; stops at the first category that cannot
  // be cleared (see CategoryItem::clear), whose error reaches the caller.
  void clear() { ClearItems(); }

  // Writes one Category element per category into ds:Categories, with no line feeds between.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every Category child of ds:Categories. A category whose name repeats an earlier one
  // is dropped silently; the error state is clear when this returns.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<TargetItem>& parent);
};

}  // namespace tessaly

#endif  // TESSALY_SCREENS_CATEGORY_ITEMS_HPP_
