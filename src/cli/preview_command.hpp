// tessaly preview FILE -o OUT.html: load an ECU document and write its visual preview, one
// self-contained HTML page.
#ifndef TESSALY_SRC_CLI_PREVIEW_COMMAND_HPP_
#define TESSALY_SRC_CLI_PREVIEW_COMMAND_HPP_

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <string>

#include "cli/console.hpp"

namespace tessaly::cli {

struct PreviewRequest {
  std::string in;
  std::string out;
  bool force = false;       // write the page of a document whose loading raised an error
  double zoom = 1.0;        // scale of the screen drawings
  std::string screen;       // "CATEGORY/SCREEN": a page of that screen only
  FacadeOptions facade;
};

// Registers the command; its exit status is stored into `status` when it runs.
void AddPreviewCommand(CLI::App& app, int& status);

// Loads the document and writes the page. Returns 0 on success, 1 when loading raised an error
// (the page is then written only with `force`, and the status stays 1) or the page could not be
// made or written. Diagnostics go to `err` in the command line's forms.
int RunPreview(const PreviewRequest& request, std::ostream& err);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_PREVIEW_COMMAND_HPP_
