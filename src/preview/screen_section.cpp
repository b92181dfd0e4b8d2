// The screens, drawn to scale in SVG as their properties say, each with a legend that lists
// what its displays show, their thresholds, and the scenarios of its buttons.
//
// Drawing rules: the screen's client area is filled with its colour; labels come first (they are
// often frames behind other controls), then displays, then buttons. Every element is a nested
// SVG viewport, so its text is clipped to its rectangle as in the tool. Label text starts at the
// top of the label and is aligned by its alignment code; display and button texts are centred
// vertically. Texts are not word-wrapped: each line break of a text starts a new line.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "preview/colour.hpp"
#include "preview/format.hpp"
#include "preview/layout.hpp"
#include "preview/page.hpp"
#include "tessaly/common/convert.hpp"

namespace tessaly::preview {
namespace {

constexpr double kPadding = 45;          // 3 pixels, in twips
constexpr double kBandHeight = 60;       // threshold band, 4 pixels
constexpr const char* kButtonFace = "#d4d0c8";

std::string Num(double value) { return NumberText(value); }

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines(1);
  for (char c : text) {
    if (c == '\r') continue;
    if (c == '\n') lines.emplace_back();
    else lines.back() += c;
  }
  return lines;
}

struct Font {
  std::string name;
  double points = 0;
  bool bold = false;
  bool italic = false;
  std::int32_t colour = 0;
};

// The attributes of an SVG text in `font`.
void FontAttrs(Page& page, const Font& font) {
  page.Attr("font-family", FontFamily(font.name));
  page.Attr("font-size", Num(PointsToTwips(font.points)));
  if (font.bold) page << " font-weight=\"bold\"";
  if (font.italic) page << " font-style=\"italic\"";
  page.Attr("fill", CssColour(font.colour));
}

// The lines of `text` anchored at `x`: with `centred` the block is centred on `y`, otherwise its
// first line starts at `y`.
void TextBlock(Page& page, std::string_view text, const Font& font, Align align, double x, double y, bool centred) {
  const std::vector<std::string> lines = Lines(text);
  const double lineHeight = PointsToTwips(font.points) * 1.2;
  double first = y;
  if (centred) first = y - lineHeight * static_cast<double>(lines.size() - 1) / 2;
  page << "<text xml:space=\"preserve\"";
  page.Attr("text-anchor", TextAnchor(align));
  page.Attr("dominant-baseline", centred ? "central" : "text-before-edge");
  FontAttrs(page, font);
  page << ">";
  for (std::size_t i = 0; i < lines.size(); ++i) {
    page << "<tspan x=\"" << Num(x) << "\" y=\"" << Num(first + lineHeight * static_cast<double>(i)) << "\">";
    page.Text(lines[i]) << "</tspan>";
  }
  page << "</text>";
}

void OpenViewport(Page& page, const Box& box) {
  page << "<svg x=\"" << Num(box.x) << "\" y=\"" << Num(box.y) << "\" width=\"" << Num(box.width) << "\" height=\""
       << Num(box.height) << "\">";
}

// "left 240, top 720, 6000 × 360".
std::string RectText(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
  return "left " + IntText(left) + ", top " + IntText(top) + ", " + IntText(width) + " \xC3\x97 " + IntText(height);
}

// The rectangle in a legend cell: position, then size on a line of its own.
void LegendRect(Page& page, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
  page << "left " << IntText(left) << ", top " << IntText(top) << "<br>" << IntText(width) << " \xC3\x97 "
       << IntText(height);
}

std::string FontText(const Font& font) {
  std::string text = (font.name.empty() ? std::string("(default font)") : font.name) + " " +
                     NumberText(font.points) + " pt";
  if (font.bold) text += " bold";
  if (font.italic) text += " italic";
  return text;
}

void DrawLabel(Page& page, const LabelItem& label, const std::string& key) {
  const Box box = DrawnBox(label.LabelLeft(), label.LabelTop(), label.LabelWidth(), label.LabelHeight());
  const Font font{label.FontName(), label.FontSize(), label.FontBold(), label.FontItalic(), label.FontColor()};
  const Align align = AlignmentOf(label.Alignment());
  page << "<g class=\"label\"";
  page.Attr("data-label", key);
  page << "><title>";
  page.Text("Label \xE2\x80\x9C" + label.LabelText() + "\xE2\x80\x9D, " +
            RectText(label.LabelLeft(), label.LabelTop(), label.LabelWidth(), label.LabelHeight()) + ", " +
            FontText(font));
  page << "</title>";
  OpenViewport(page, box);
  page << "<rect width=\"100%\" height=\"100%\"";
  page.Attr("fill", CssColour(label.LabelColor()));
  page << "/>";
  TextBlock(page, label.LabelText(), font, align, AnchorX(align, box.width, kPadding), 0, false);
  page << "</svg></g>";
}

void DrawDisplay(Page& page, const DisplayItem& display, const DisplayView& view, const std::string& key) {
  const Box box = DrawnBox(display.DisplayLeft(), display.DisplayTop(), display.DisplayWidth(), display.DisplayHeight());
  const DisplayAreas areas = SplitDisplay(Box{0, 0, box.width, box.height}, display.CaptionWidth());
  const Font font{display.FontName(), static_cast<double>(display.FontSize()), display.FontBold(),
                  display.FontItalic(), display.FontColor()};
  const std::string caption = view.byRequest ? view.requestName : view.dataName;
  page << "<g class=\"display\"";
  page.Attr("data-display", key).Attr("data-kind", view.input ? "input" : "display");
  page.Attr("data-shows", view.byRequest ? "request" : "data");
  page << "><title>";
  page.Text(std::string(view.input ? "Input field " : "Display ") + (view.byRequest ? "of request " : "of data ") +
            caption + (view.byRequest ? "" : " in request " + view.requestName) + ", " +
            RectText(display.DisplayLeft(), display.DisplayTop(), display.DisplayWidth(), display.DisplayHeight()) +
            ", caption width " + IntText(display.CaptionWidth()));
  page << "</title>";
  OpenViewport(page, box);
  page << "<rect width=\"100%\" height=\"100%\"";
  page.Attr("fill", CssColour(display.DisplayColor()));
  page << "/>";
  OpenViewport(page, areas.caption);
  TextBlock(page, caption, font, Align::kLeft, kPadding, areas.caption.height / 2, true);
  page << "</svg>";
  // The value area: a sunken white field; input fields are framed in dashed blue.
  page << "<rect x=\"" << Num(areas.value.x) << "\" y=\"0\" width=\"" << Num(areas.value.width) << "\" height=\""
       << Num(areas.value.height) << "\" fill=\"#ffffff\" vector-effect=\"non-scaling-stroke\"";
  if (view.input) page << " stroke=\"#1a56a8\" stroke-width=\"2\" stroke-dasharray=\"4 2\"";
  else page << " stroke=\"#808080\" stroke-width=\"1\"";
  page << "/>";
  OpenViewport(page, areas.value);
  if (view.input) {
    Font marker = font;
    marker.colour = 0xA8561A;  // the dashed frame's blue, 0x00BBGGRR
    TextBlock(page, "\xE2\x9C\x8E", marker, Align::kLeft, kPadding, areas.value.height / 2, true);  // ✎
  }
  std::string unit;
  if (view.data && view.data->numerique() && !view.data->liste()) unit = view.data->Unite();
  if (!unit.empty()) TextBlock(page, unit, font, Align::kRight, areas.value.width - kPadding, areas.value.height / 2, true);
  page << "</svg>";
  if (const auto& ranges = display.RangeItems(); ranges && ranges->Count() != 0) {
    const std::vector<Box> band =
        ThresholdBand(areas.value, static_cast<std::size_t>(ranges->Count()), kBandHeight);
    std::size_t i = 0;
    for (const auto& range : *ranges) {
      if (i >= band.size()) break;
      const Box& b = band[i++];
      page << "<rect x=\"" << Num(b.x) << "\" y=\"" << Num(b.y) << "\" width=\"" << Num(b.width) << "\" height=\""
           << Num(b.height) << "\"";
      page.Attr("fill", CssColour(range->Couleur()));
      page << "/>";
    }
  }
  page << "</svg></g>";
}

void DrawButton(Page& page, const ButtonItem& button, const std::string& key) {
  const Box box = DrawnBox(button.ButtonLeft(), button.ButtonTop(), button.ButtonWidth(), button.ButtonHeight());
  const Font font{button.FontName(), button.FontSize(), button.FontBold(), button.FontItalic(), 0};
  page << "<g class=\"button\"";
  page.Attr("data-button", key);
  page << "><title>";
  page.Text("Button \xE2\x80\x9C" + button.caption() + "\xE2\x80\x9D, " +
            RectText(button.ButtonLeft(), button.ButtonTop(), button.ButtonWidth(), button.ButtonHeight()) + ", " +
            FontText(font));
  page << "</title>";
  OpenViewport(page, box);
  const std::string w = Num(box.width);
  const std::string h = Num(box.height);
  page << "<rect width=\"100%\" height=\"100%\" fill=\"" << kButtonFace << "\"/>"
       << "<path d=\"M0 " << h << "V0H" << w << "\" fill=\"none\" stroke=\"#ffffff\" stroke-width=\"2\" "
          "vector-effect=\"non-scaling-stroke\"/><path d=\"M0 " << h << "H" << w << "V0\" fill=\"none\" "
          "stroke=\"#404040\" stroke-width=\"2\" vector-effect=\"non-scaling-stroke\"/>";
  TextBlock(page, button.caption(), font, Align::kCenter, box.width / 2, box.height / 2, true);
  page << "</svg></g>";
}

void WriteSteps(Page& page, ButtonItem& button) {
  if (!button.HasScenario() || button.ScenarioItems()->Count() == 0) {
    page << "<span class=\"note\">no requests</span>";
    return;
  }
  page << "<ol class=\"steps\">";
  for (const auto& step : *button.ScenarioItems()) {
    page << "<li>send ";
    page.RequestLink(step->requestName());
    page << ", then wait " << IntText(step->delay()) << "</li>";
  }
  page << "</ol>";
}

void WriteThresholds(Page& page, const DisplayItem& display) {
  const auto& ranges = display.RangeItems();
  if (!ranges || ranges->Count() == 0) return;
  page << "<ul class=\"values\">";
  for (const auto& range : *ranges) {
    page << "<li>\xE2\x89\xA5 " << NumberText(range->Seuil()) << " ";  // ≥
    page.Swatch(range->Couleur());
    if (range->SonFlag()) {
      page << " <span class=\"tag\" title=\"sound\">\xE2\x99\xAA ";  // ♪
      page.Text(range->SoundName()) << "</span>";
    }
    page << "</li>";
  }
  page << "</ul>";
}

const char* WindowStateText(std::int32_t state) {
  switch (state) {
    case 0: return "normal";
    case 1: return "minimised";
    case 2: return "maximised";
    default: return "unknown";
  }
}

}  // namespace

void WriteScreen(Page& page, const ScreenItem& screen, const CategoryItem& category, const std::string& key) {
  const double width = std::max(0, screen.ScreenWidth());
  const double height = std::max(0, screen.ScreenHeight());
  const double zoom = page.options().zoom;
  const std::string id =
      page.ids().Unique(AnchorId("screen", category.categoryName()) + "." + IdPart(screen.screenName()));
  std::vector<std::string> outside;

  page << "<div class=\"screen\"";
  page.Attr("id", id).Attr("data-screen", key);
  page << "><h3>";
  page.Text(screen.screenName().empty() ? "(screen without a name)" : screen.screenName()) << "</h3><p class=\"note\">";
  page.Text(IntText(screen.ScreenWidth()) + " \xC3\x97 " + IntText(screen.ScreenHeight()) + " twips, drawn " +
            NumberText(std::round(TwipsToPixels(width, zoom))) + " \xC3\x97 " +
            NumberText(std::round(TwipsToPixels(height, zoom))) + " pixels; background ");
  page.Swatch(screen.ScreenColor(), true);
  page.Text("; window state " + IntText(screen.WindowState()) + " (" + WindowStateText(screen.WindowState()) + ")");
  page << "</p><div class=\"screen-row\">";

  // The drawing.
  page << "<svg class=\"screen-drawing\" xmlns=\"http://www.w3.org/2000/svg\" role=\"img\"";
  page.Attr("width", Num(TwipsToPixels(width, zoom))).Attr("height", Num(TwipsToPixels(height, zoom)));
  page.Attr("viewBox", "0 0 " + Num(width) + " " + Num(height)).Attr("data-screen-drawing", key);
  page.Attr("aria-label", "Screen " + screen.screenName());
  page << "><rect class=\"background\" width=\"100%\" height=\"100%\"";
  page.Attr("fill", CssColour(screen.ScreenColor()));
  page << "/>";
  std::int32_t n = 0;
  if (const auto& labels = screen.LabelItems())
    for (const auto& label : *labels) {
      const std::string labelKey = key + "l" + IntText(++n);
      DrawLabel(page, *label, labelKey);
      if (!InsideScreen(DrawnBox(label->LabelLeft(), label->LabelTop(), label->LabelWidth(), label->LabelHeight()),
                        width, height))
        outside.push_back("label " + IntText(n) + " \xE2\x80\x9C" + label->LabelText() + "\xE2\x80\x9D");
    }
  std::vector<DisplayView> views;
  n = 0;
  if (const auto& displays = screen.DisplayItems())
    for (const auto& display : *displays) {
      views.push_back(ViewOf(page, *display));
      DrawDisplay(page, *display, views.back(), key + "d" + IntText(++n));
      if (!InsideScreen(DrawnBox(display->DisplayLeft(), display->DisplayTop(), display->DisplayWidth(),
                                 display->DisplayHeight()),
                        width, height))
        outside.push_back("display " + IntText(n));
    }
  std::vector<std::shared_ptr<ButtonItem>> buttons;
  if (const auto& list = screen.ButtonItems())
    for (const auto& button : *list)
      if (!button->InitButton()) buttons.push_back(button);
  n = 0;
  for (const auto& button : buttons) {
    DrawButton(page, *button, key + "b" + IntText(++n));
    if (!InsideScreen(DrawnBox(button->ButtonLeft(), button->ButtonTop(), button->ButtonWidth(),
                               button->ButtonHeight()),
                      width, height))
      outside.push_back("button " + IntText(n) + " \xE2\x80\x9C" + button->caption() + "\xE2\x80\x9D");
  }
  page << "</svg>";

  // The legend.
  page << "<div class=\"legend\">";
  if (!outside.empty()) {
    page << "<p class=\"warn\">Not entirely within the screen: ";
    for (std::size_t i = 0; i < outside.size(); ++i) page.Text((i == 0 ? "" : "; ") + outside[i]);
    page << "</p>";
  }
  page << "<div><b>On opening</b> (init button): ";
  if (const auto& init = screen.ButtonInit()) {
    if (!init->Message().empty()) {
      page << "message \xE2\x80\x9C";
      page.Text(init->Message()) << "\xE2\x80\x9D; ";
    }
    WriteSteps(page, *init);
  } else {
    page << "<span class=\"note\">no init button</span>";
  }
  page << "</div>";
  if (const auto& displays = screen.DisplayItems(); displays && displays->Count() != 0) {
    page << "<table><tr><th>#</th><th>Shows</th><th>Caption, rectangle</th><th>Font, text on back</th>"
            "<th>Thresholds</th></tr>";
    n = 0;
    for (const auto& display : *displays) {
      const DisplayView& view = views[static_cast<std::size_t>(n)];
      page << "<tr><td>" << IntText(++n) << "</td><td>" << (view.input ? "<b>input field</b> of " : "display of ");
      if (view.byRequest) {
        page << "request ";
        page.RequestLink(view.requestName);
      } else {
        page.DataLink(view.dataName);
        page << " in ";
        page.RequestLink(view.requestName);
        if (display->TypeDisplay() != kDataDisplay)
          page << " <span class=\"note\">type " << IntText(display->TypeDisplay()) << "</span>";
      }
      page << "</td><td class=\"nw\">caption " << IntText(display->CaptionWidth()) << "<br>";
      LegendRect(page, display->DisplayLeft(), display->DisplayTop(), display->DisplayWidth(), display->DisplayHeight());
      page << "</td><td class=\"nw\">";
      page.Text(FontText(Font{display->FontName(), static_cast<double>(display->FontSize()), display->FontBold(),
                              display->FontItalic(), 0}));
      page << "<br>";
      page.Swatch(display->FontColor());
      page << " on ";
      page.Swatch(display->DisplayColor());
      page << "</td><td class=\"nw\">";
      WriteThresholds(page, *display);
      page << "</td></tr>";
    }
    page << "</table>";
  }
  if (!buttons.empty()) {
    page << "<table><tr><th>#</th><th>Button</th><th>Scenario</th></tr>";
    n = 0;
    for (const auto& button : buttons) {
      page << "<tr><td>" << IntText(++n) << "</td><td><b>";
      page.Text(button->caption()) << "</b><br><span class=\"note\">";
      page.Text(RectText(button->ButtonLeft(), button->ButtonTop(), button->ButtonWidth(), button->ButtonHeight()) +
                "; " + FontText(Font{button->FontName(), button->FontSize(), button->FontBold(), button->FontItalic(), 0}));
      page << "</span>";
      if (!button->Message().empty()) {
        page << "<br>message \xE2\x80\x9C";
        page.Text(button->Message()) << "\xE2\x80\x9D";
      }
      page << "</td><td>";
      WriteSteps(page, *button);
      page << "</td></tr>";
    }
    page << "</table>";
  }
  if (const auto& labels = screen.LabelItems(); labels && labels->Count() != 0) {
    page << "<details><summary>Labels <span class=\"count\">(" << IntText(labels->Count())
         << ")</span></summary><table><tr><th>#</th><th>Text</th><th>Rectangle</th><th>Font, colours, alignment</th></tr>";
    n = 0;
    for (const auto& label : *labels) {
      const Font font{label->FontName(), label->FontSize(), label->FontBold(), label->FontItalic(), 0};
      page << "<tr><td>" << IntText(++n) << "</td><td>";
      page.Text(label->LabelText()) << "</td><td>";
      page.Text(RectText(label->LabelLeft(), label->LabelTop(), label->LabelWidth(), label->LabelHeight()));
      page << "</td><td>";
      page.Text(FontText(font)) << "<br>text ";
      page.Swatch(label->FontColor());
      page << "<br>back ";
      page.Swatch(label->LabelColor());
      page << "<br>alignment " << IntText(label->Alignment()) << " ("
           << TextAnchor(AlignmentOf(label->Alignment())) << ")</td></tr>";
    }
    page << "</table></details>";
  }
  page << "</div></div></div>\n";
}

void WriteScreenSection(Page& page) {
  const auto& categories = page.target().Categories();
  std::size_t screens = 0;
  if (categories)
    for (const auto& category : *categories)
      if (category->Screens()) screens += static_cast<std::size_t>(category->Screens()->Count());
  const std::size_t categoryCount = categories ? static_cast<std::size_t>(categories->Count()) : 0;
  page << "<details class=\"section\" id=\"screens\" open><summary>Screens <span class=\"count\">("
       << IntText(static_cast<std::int64_t>(screens)) << " in " << IntText(static_cast<std::int64_t>(categoryCount))
       << (categoryCount == 1 ? " category" : " categories") << ")</span></summary>\n";
  if (categoryCount == 0) {
    page << "<p class=\"note\">No screens.</p></details>\n";
    return;
  }
  page << "<p class=\"note\">Screens are drawn to scale, 15 twips to a pixel. Labels, then displays, then buttons; "
          "a display's caption area (its caption width) shows the name of its data or request, its value area "
          "the unit, and a band at its foot the colours of its thresholds. Input fields have a dashed blue value "
          "area and a pencil. Hover an element for its properties.</p>\n";
  std::int32_t c = 0;
  for (const auto& category : *categories) {
    ++c;
    const std::size_t count = category->Screens() ? static_cast<std::size_t>(category->Screens()->Count()) : 0;
    // Categories start folded when the document has many screens.
    page.OpenDetails(page.ids().Unique(AnchorId("category", category->categoryName())), "category",
                     "Category " + category->categoryName(), count, true, screens > kOpenLimit);
    std::int32_t s = 0;
    if (category->Screens())
      for (const auto& screen : *category->Screens())
        WriteScreen(page, *screen, *category, "c" + IntText(c) + "s" + IntText(++s));
    page << "</details>\n";
  }
  page << "</details>\n";
}

}  // namespace tessaly::preview
