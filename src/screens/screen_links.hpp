// How the items of a screen reach the rest of the document: up the parent links to the target
// (screen -> category -> target) and from there to its requests, and the names that locate an
// element of a screen in drop and repair diagnostics.
#ifndef TESSALY_SRC_SCREENS_SCREEN_LINKS_HPP_
#define TESSALY_SRC_SCREENS_SCREEN_LINKS_HPP_

#include <memory>
#include <string>

namespace tessaly {

class TargetItem;
class RequestItems;
class ScreenItem;

// The target `screen` belongs to, or null when the screen or a link above it is missing.
std::shared_ptr<TargetItem> TargetOf(const ScreenItem* screen);

// The request list of the target `screen` belongs to. Throws error 91 when the screen, a link
// above it or the list is missing.
std::shared_ptr<RequestItems> RequestsOf(const ScreenItem* screen);

// "Category/Screen" for `screen` (empty parts for what is missing).
std::string ScreenPath(const ScreenItem* screen);

}  // namespace tessaly

#endif  // TESSALY_SRC_SCREENS_SCREEN_LINKS_HPP_
