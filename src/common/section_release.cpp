#include "common/section_release.hpp"

namespace tessaly {
namespace {

// Whether a SectionRelease lives on this thread.
thread_local bool releaseAllowed = false;
// The section freed child by child and where its text ends (-1 when unknown); the node expected
// to be freed next and where it starts, already looked up as the end of the one before it.
thread_local pugi::xml_node childByChildSection;
thread_local std::ptrdiff_t childByChildEnd = -1;
thread_local pugi::xml_node knownStartNode;
thread_local std::ptrdiff_t knownStart = -1;

// Frees `node` and everything below it, removing only nodes that have no child left, deepest
// first: however deep the nesting, no more stack is needed than for a flat element.
void RemoveLeavesFirst(pugi::xml_node parent, pugi::xml_node node) {
  const pugi::xml_node top = node;
  for (;;) {
    if (pugi::xml_node child = node.last_child()) {
      node = child;
      continue;
    }
    if (node == top) break;
    pugi::xml_node above = node.parent();
    above.remove_child(node);
    node = above;
  }
  parent.remove_child(top);
}

void ReleaseElement(pugi::xml_node parent, pugi::xml_node element, std::ptrdiff_t end, int level);

// Takes `node` out of `parent` and frees it; its text runs from `start` to `end` (-1 when
// unknown). pugixml frees a removed node's children by recursion, one level of stack per level
// of nesting; a node written in fewer than kShallowBytes of the text cannot nest deeper than
// kShallowBytes / 7 levels (each level takes at least "<a>" and "</a>"), so it is removed
// whole. A longer one is taken apart child by child, down to kSplitLevels levels; below that,
// or when the text cannot tell its extent, it is freed leaves first.
void Free(pugi::xml_node parent, pugi::xml_node node, std::ptrdiff_t start, std::ptrdiff_t end, int level) {
  constexpr std::ptrdiff_t kShallowBytes = 4096;
  constexpr int kSplitLevels = 8;
  if (start >= 0 && end > start && end - start <= kShallowBytes) {
    parent.remove_child(node);
  } else if (start >= 0 && end > start && level < kSplitLevels) {
    ReleaseElement(parent, node, end, level + 1);
  } else {
    RemoveLeavesFirst(parent, node);
  }
}

// Takes `element` out of `parent` and frees its nodes, child by child; `end` is where the
// element's text ends (the offset of what follows it), or -1 when unknown.
void ReleaseElement(pugi::xml_node parent, pugi::xml_node element, std::ptrdiff_t end, int level) {
  // Where a child starts is where the one before it ended: each offset is looked up once.
  pugi::xml_node child = element.first_child();
  std::ptrdiff_t start = child ? child.offset_debug() : -1;
  while (child) {
    const pugi::xml_node next = child.next_sibling();
    const std::ptrdiff_t childEnd = next ? next.offset_debug() : end;
    Free(element, child, start, childEnd, level);
    child = next;
    start = childEnd;
  }
  parent.remove_child(element);
}

// Where the text of `node` ends: the start of what follows it, or of what follows its parent
// when it is the last child; -1 when that cannot be told.
std::ptrdiff_t EndOf(pugi::xml_node node) {
  for (; node; node = node.parent())
    if (const pugi::xml_node next = node.next_sibling()) return next.offset_debug();
  return -1;
}

}  // namespace

SectionRelease::SectionRelease() : previous_(releaseAllowed) { releaseAllowed = true; }
SectionRelease::~SectionRelease() { releaseAllowed = previous_; }
bool SectionRelease::Allowed() noexcept { return releaseAllowed; }

void SectionRelease::Release(pugi::xml_node parent, pugi::xml_node section) {
  if (releaseAllowed) ReleaseElement(parent, section, EndOf(section), 0);
}

SectionRelease::ChildByChild::ChildByChild(pugi::xml_node section)
    : previousSection_(childByChildSection), previousEnd_(childByChildEnd) {
  if (!releaseAllowed) return;
  childByChildSection = section;
  childByChildEnd = EndOf(section);
  knownStartNode = pugi::xml_node();
}

SectionRelease::ChildByChild::~ChildByChild() {
  childByChildSection = previousSection_;
  childByChildEnd = previousEnd_;
  knownStartNode = pugi::xml_node();
}

void SectionRelease::ChildRead(pugi::xml_node parent, pugi::xml_node child) {
  if (!childByChildSection || parent != childByChildSection) return;
  bool last = false;
  while (!last) {
    const pugi::xml_node node = parent.first_child();
    if (!node) break;
    last = node == child;
    const std::ptrdiff_t start = node == knownStartNode ? knownStart : node.offset_debug();
    const pugi::xml_node next = node.next_sibling();
    const std::ptrdiff_t end = next ? next.offset_debug() : childByChildEnd;
    Free(parent, node, start, end, 0);
    knownStartNode = next;
    knownStart = end;
  }
}

}  // namespace tessaly
