// Whether TargetItem::loadXml may take the sections it has read out of the DOM. The facade
// loads from a DOM of its own that it throws away afterwards, and opens a SectionRelease around
// the load so that the memory of each section read goes back to the heap for the items of the
// next ones; a DOM handed to loadXml by anyone else is left whole.
#ifndef TESSALY_SRC_TARGET_SECTION_RELEASE_HPP_
#define TESSALY_SRC_TARGET_SECTION_RELEASE_HPP_

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

 private:
  bool previous_;
};

}  // namespace tessaly

#endif  // TESSALY_SRC_TARGET_SECTION_RELEASE_HPP_
