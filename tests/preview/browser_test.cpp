// The preview in a real browser: each sample document's page is opened in headless Chromium, and
// the rendered DOM must hold every screen, label, display and button of the document, each laid
// out with a size when the document gives it one; a screenshot of a sample screen is taken.
//
// Skipped when Chromium is not installed. scripts/ci-preview.sh installs it and runs these tests;
// TESSALY_CHROMIUM names another browser binary, TESSALY_PREVIEW_ARTIFACTS a folder that keeps
// the pages and screenshots, and TESSALY_REQUIRE_BROWSER turns a missing browser into a failure.
#include <gtest/gtest.h>
#include <unistd.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "preview/preview.hpp"
#include "preview/preview_fixture.hpp"
#include "support/test_support.hpp"

namespace tessaly::testing {
namespace {

namespace fs = std::filesystem;

std::string FindChromium() {
  if (const char* chosen = std::getenv("TESSALY_CHROMIUM"); chosen != nullptr && *chosen != '\0')
    return ::access(chosen, X_OK) == 0 ? chosen : "";
  const char* path = std::getenv("PATH");
  std::stringstream dirs(path != nullptr ? path : "/usr/bin:/bin");
  std::string dir;
  while (std::getline(dirs, dir, ':'))
    for (const char* name : {"chromium", "chromium-browser"}) {
      const std::string candidate = dir + "/" + name;
      if (::access(candidate.c_str(), X_OK) == 0) return candidate;
    }
  return "";
}

std::string Quote(const std::string& arg) {
  std::string q = "'";
  for (char c : arg) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return q + "'";
}

// Runs headless Chromium on `page` with `mode` ("--dump-dom" or "--screenshot=..."); returns its
// standard output. Fails the test when the browser does not exit cleanly.
std::string RunChromium(const std::string& chromium, const fs::path& work, const fs::path& page,
                        const std::string& mode) {
  static int run = 0;
  const fs::path profile = work / ("profile" + std::to_string(++run));
  const fs::path out = work / "chromium.out";
  const fs::path err = work / "chromium.err";
  const std::string command = "timeout 120 " + Quote(chromium) +
                              " --headless --no-sandbox --disable-gpu --disable-background-networking"
                              " --disable-component-update --disable-sync --no-first-run --hide-scrollbars"
                              " --user-data-dir=" + Quote(profile.string()) + " " + mode + " " +
                              Quote("file://" + page.string()) + " >" + Quote(out.string()) + " 2>" +
                              Quote(err.string()) + " </dev/null";
  const int raw = std::system(command.c_str());
  const int status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  EXPECT_EQ(status, 0) << "chromium failed:\n" << ReadFileBytes(err.string());
  fs::remove_all(profile);
  return ReadFileBytes(out.string());
}

// The keys of every element the page must draw, as the page writes them in its data attributes,
// with whether the document gives the element a size.
struct Expected {
  std::map<std::string, bool> screens, labels, displays, buttons;
};

Expected ExpectedElements(const TargetItem& target) {
  Expected e;
  if (!target.Categories()) return e;
  int c = 0;
  for (const auto& category : *target.Categories()) {
    ++c;
    if (!category->Screens()) continue;
    int s = 0;
    for (const auto& screen : *category->Screens()) {
      const std::string key = "c" + std::to_string(c) + "s" + std::to_string(++s);
      e.screens[key] = screen->ScreenWidth() > 0 && screen->ScreenHeight() > 0;
      int n = 0;
      if (screen->LabelItems())
        for (const auto& label : *screen->LabelItems())
          e.labels[key + "l" + std::to_string(++n)] = label->LabelWidth() > 0 && label->LabelHeight() > 0;
      n = 0;
      if (screen->DisplayItems())
        for (const auto& display : *screen->DisplayItems())
          e.displays[key + "d" + std::to_string(++n)] = display->DisplayWidth() > 0 && display->DisplayHeight() > 0;
      n = 0;
      if (screen->ButtonItems())
        for (const auto& button : *screen->ButtonItems())
          if (!button->InitButton())
            e.buttons[key + "b" + std::to_string(++n)] = button->ButtonWidth() > 0 && button->ButtonHeight() > 0;
    }
  }
  return e;
}

std::vector<std::string> Values(const std::string& dom, const std::string& attribute) {
  std::vector<std::string> values;
  const std::regex pattern(" " + attribute + "=\"([^\"]*)\"");
  for (auto it = std::sregex_iterator(dom.begin(), dom.end(), pattern); it != std::sregex_iterator(); ++it)
    values.push_back((*it)[1].str());
  return values;
}

// Opens every details element, then lists each drawn element's key and laid-out size.
constexpr const char* kMeasure = R"(<script>
for (const d of document.querySelectorAll('details')) d.open = true;
const lines = [];
for (const a of ['data-screen-drawing', 'data-label', 'data-display', 'data-button'])
  for (const el of document.querySelectorAll('[' + a + ']')) {
    const r = el.getBoundingClientRect();
    lines.push(a + ' ' + el.getAttribute(a) + ' ' + r.width.toFixed(2) + ' ' + r.height.toFixed(2));
  }
const pre = document.createElement('pre');
pre.id = 'measured';
pre.textContent = lines.join('\n');
document.body.appendChild(pre);
</script>)";

struct Size {
  double width = 0;
  double height = 0;
};

std::map<std::string, Size> Measured(const std::string& dom) {
  std::map<std::string, Size> sizes;
  const std::size_t begin = dom.find("<pre id=\"measured\">");
  if (begin == std::string::npos) return sizes;
  std::stringstream lines(dom.substr(begin + 19, dom.find("</pre>", begin) - begin - 19));
  std::string attribute, key;
  Size size;
  while (lines >> attribute >> key >> size.width >> size.height) sizes[attribute + " " + key] = size;
  return sizes;
}

struct Sample {
  std::string name;
  std::string text;
};

std::vector<Sample> Samples() {
  std::vector<Sample> samples{{"fixture", kPreviewEcu}};
  const fs::path examples = fs::path(TESSALY_TEST_DOCUMENTS).parent_path().parent_path() / "examples";
  std::vector<fs::path> files;
  if (fs::is_directory(examples))
    for (const auto& entry : fs::directory_iterator(examples))
      if (entry.path().extension() == ".xml") files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  for (const fs::path& file : files) samples.push_back({file.stem().string(), ReadFileBytes(file.string())});
  return samples;
}

class PreviewBrowserTest : public ::testing::Test {
 protected:
  void SetUp() override {
    chromium_ = FindChromium();
    if (chromium_.empty() && std::getenv("TESSALY_REQUIRE_BROWSER") != nullptr)
      FAIL() << "Chromium is required (TESSALY_REQUIRE_BROWSER is set) but was not found";
    if (chromium_.empty())
      GTEST_SKIP() << "Chromium is not installed (install the chromium package, as scripts/ci-preview.sh does, "
                      "or set TESSALY_CHROMIUM)";
    if (const char* kept = std::getenv("TESSALY_PREVIEW_ARTIFACTS"); kept != nullptr && *kept != '\0') {
      artifacts_ = kept;
      fs::create_directories(artifacts_);
    } else {
      artifacts_ = temp_.path();
    }
  }

  std::string chromium_;
  TempDir temp_;
  fs::path artifacts_;
};

TEST_F(PreviewBrowserTest, EveryScreenLabelDisplayAndButtonOfTheSamplesIsDrawn) {
  const std::vector<Sample> samples = Samples();
  EXPECT_GE(samples.size(), 1U);
  for (const Sample& sample : samples) {
    SCOPED_TRACE(sample.name);
    TessalyLibXml lib;
    lib.set_EventLog(std::make_shared<RecordingEventLog>());
    try {
      lib.ImportUceFromText(sample.text);
    } catch (const Error& error) {
      ADD_FAILURE() << "the sample does not load cleanly: " << error.what();
    }
    ASSERT_TRUE(lib.ActiveTarget());
    const Expected expected = ExpectedElements(*lib.ActiveTarget());
    const std::string page = preview::RenderPreview(lib);
    const fs::path pageFile = artifacts_ / ("preview-" + sample.name + ".html");
    WriteFileBytes(pageFile.string(), page);

    // The page as the browser builds it holds exactly the document's elements.
    const std::string dom = RunChromium(chromium_, temp_.path(), pageFile, "--dump-dom");
    ASSERT_NE(dom.find("</html>"), std::string::npos) << "no DOM from chromium";
    const std::vector<std::pair<const char*, const std::map<std::string, bool>*>> kinds = {
        {"data-screen-drawing", &expected.screens},
        {"data-label", &expected.labels},
        {"data-display", &expected.displays},
        {"data-button", &expected.buttons}};
    for (const auto& [attribute, keys] : kinds) {
      std::vector<std::string> want;
      for (const auto& entry : *keys) want.push_back(entry.first);
      std::vector<std::string> found = Values(dom, attribute);
      std::sort(found.begin(), found.end());
      EXPECT_EQ(found, want) << attribute;
    }

    // Laid out: each element that the document gives a size takes room on the page.
    std::string measuring = page;
    measuring.insert(measuring.rfind("</body>"), kMeasure);
    const fs::path measuringFile = temp_.path() / ("measure-" + sample.name + ".html");
    WriteFileBytes(measuringFile.string(), measuring);
    const std::map<std::string, Size> sizes = Measured(RunChromium(chromium_, temp_.path(), measuringFile, "--dump-dom"));
    ASSERT_FALSE(sizes.empty()) << "the measuring script did not run";
    for (const auto& [attribute, keys] : kinds)
      for (const auto& [key, sized] : *keys) {
        auto it = sizes.find(std::string(attribute) + " " + key);
        ASSERT_NE(it, sizes.end()) << attribute << " " << key;
        if (sized) {
          EXPECT_GT(it->second.width, 0) << attribute << " " << key;
          EXPECT_GT(it->second.height, 0) << attribute << " " << key;
        }
      }
    // Screens are drawn at 15 twips to a pixel.
    int c = 0;
    for (const auto& category : *lib.ActiveTarget()->Categories()) {
      ++c;
      int s = 0;
      if (category->Screens())
        for (const auto& screen : *category->Screens()) {
          const Size size = sizes.at("data-screen-drawing c" + std::to_string(c) + "s" + std::to_string(++s));
          EXPECT_NEAR(size.width, screen->ScreenWidth() / 15.0, 0.5) << screen->screenName();
          EXPECT_NEAR(size.height, screen->ScreenHeight() / 15.0, 0.5) << screen->screenName();
        }
    }
  }
}

TEST_F(PreviewBrowserTest, ScreenshotOfASampleScreen) {
  auto lib = LoadPreviewEcu();
  preview::PreviewOptions options;
  options.onlyCategory = "Engine";
  options.onlyScreen = "Live & values";
  const fs::path pageFile = artifacts_ / "preview-screen.html";
  WriteFileBytes(pageFile.string(), preview::RenderPreview(*lib, options));
  const fs::path png = artifacts_ / "preview-screen.png";
  fs::remove(png);
  RunChromium(chromium_, temp_.path(), pageFile, "--screenshot=" + Quote(png.string()) + " --window-size=1200,700");
  const std::string bytes = ReadFileBytes(png.string());
  ASSERT_GT(bytes.size(), 1000U);
  EXPECT_EQ(bytes.substr(0, 8), std::string("\x89PNG\r\n\x1A\n", 8));
}

}  // namespace
}  // namespace tessaly::testing
