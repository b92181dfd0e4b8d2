// PLACEHOLDER: the preview work replaces this with the HTML preview writer.
#ifndef TESSALY_SRC_PREVIEW_PREVIEW_HPP_
#define TESSALY_SRC_PREVIEW_PREVIEW_HPP_
namespace tessaly::preview {}
#endif
