// Taking the sections of a document out of its DOM once they are read. The facade loads from a
// DOM of its own that it throws away afterwards, and opens a SectionRelease around the load:
// the memory of what has been read goes back to the heap, where the items read next are built,
// instead of the DOM and the whole model being held at the same time. A DOM handed to a loadXml
// by anyone else is left whole.
#ifndef TESSALY_SRC_COMMON_SECTION_RELEASE_HPP_
#define TESSALY_SRC_COMMON_SECTION_RELEASE_HPP_

#include <pugixml.hpp>

#include <cstddef>

namespace tessaly {

// Allows the release on this thread while it lives.
class SectionRelease {
 public:
  SectionRelease();
  ~SectionRelease();
  SectionRelease(const SectionRelease&) = delete;
  SectionRelease& operator=(const SectionRelease&) = delete;

  // True while a SectionRelease lives on this thread.
  static bool Allowed() noexcept;

  // When allowed: takes `section` out of `parent` and frees its nodes.
  static void Release(pugi::xml_node parent, pugi::xml_node section);

  // While one lives and the release is allowed, the children of `section` are freed as they
  // are read (see ChildRead), so that the items of a long section are built in the memory of
  // the elements read before them instead of in memory the system must hand out afresh.
  class ChildByChild {
   public:
    explicit ChildByChild(pugi::xml_node section);
    ~ChildByChild();
    ChildByChild(const ChildByChild&) = delete;
    ChildByChild& operator=(const ChildByChild&) = delete;

   private:
    pugi::xml_node previousSection_;
    std::ptrdiff_t previousEnd_;
  };

  // Called by a reader once it has read `child` of `parent`. When `parent` is the section being
  // freed child by child, frees `child` and every node before it in the section (the line
  // feeds and comments between the elements, and elements the reader passed over: a page of
  // the DOM goes back to the heap only once every node in it is freed). Does nothing otherwise.
  static void ChildRead(pugi::xml_node parent, pugi::xml_node child);

 private:
  bool previous_;
};

}  // namespace tessaly

#endif  // TESSALY_SRC_COMMON_SECTION_RELEASE_HPP_
