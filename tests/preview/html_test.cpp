#include "preview/html.hpp"

#include <gtest/gtest.h>

namespace tessaly::preview {
namespace {

TEST(PreviewEscapeTest, TextEscapesMarkupCharacters) {
  EXPECT_EQ(EscapeText("<b>Fish & \"chips\"</b>"), "&lt;b&gt;Fish &amp; \"chips\"&lt;/b&gt;");
  EXPECT_EQ(EscapeText("a'b"), "a'b");
}

TEST(PreviewEscapeTest, AttributeEscapesQuotesToo) {
  EXPECT_EQ(EscapeAttr("a\"b'c<d>&e"), "a&quot;b&#39;c&lt;d&gt;&amp;e");
}

TEST(PreviewEscapeTest, AttributeKeepsLineBreaksAndTabsAsReferences) {
  EXPECT_EQ(EscapeAttr("a\tb\r\nc"), "a&#9;b&#13;&#10;c");
  EXPECT_EQ(EscapeText("a\tb\r\nc"), "a\tb\r\nc");
}

TEST(PreviewEscapeTest, ValidUtf8PassesUnchanged) {
  EXPECT_EQ(EscapeText("Entr\xC3\xA9" "e \xE2\x86\x92 \xF0\x9F\x94\xA7"), "Entr\xC3\xA9" "e \xE2\x86\x92 \xF0\x9F\x94\xA7");
}

TEST(PreviewEscapeTest, InvalidUtf8AndControlCharactersBecomeReplacementCharacters) {
  EXPECT_EQ(EscapeText(std::string("a\xFF" "b")), "a\xEF\xBF\xBD" "b");
  EXPECT_EQ(EscapeText(std::string("\xC3")), "\xEF\xBF\xBD");             // truncated sequence
  EXPECT_EQ(EscapeText(std::string("\xC0\xAF")), "\xEF\xBF\xBD\xEF\xBF\xBD");  // overlong "/"
  EXPECT_EQ(EscapeText(std::string("\xED\xA0\x80")), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");  // surrogate
  EXPECT_EQ(EscapeText(std::string("x\x01y\x7F", 4)), "x\xEF\xBF\xBDy\xEF\xBF\xBD");
  EXPECT_EQ(EscapeAttr(std::string("\0", 1)), "\xEF\xBF\xBD");
}

TEST(PreviewEscapeTest, AppendAttrWritesNameAndQuotedEscapedValue) {
  std::string out = "<a";
  AppendAttr(out, "title", "x\"<y");
  EXPECT_EQ(out, "<a title=\"x&quot;&lt;y\"");
}

TEST(PreviewEscapeTest, AnchorIdKeepsLettersDigitsAndDashes) {
  EXPECT_EQ(AnchorId("data", "Engine-Speed2"), "data-Engine-Speed2");
}

TEST(PreviewEscapeTest, AnchorIdEncodesEveryOtherByte) {
  EXPECT_EQ(AnchorId("data", "a b_c<\"'"), "data-a_20b_5fc_3c_22_27");
  EXPECT_EQ(AnchorId("data", "\xC3\xA9"), "data-_c3_a9");
  EXPECT_EQ(IdPart("x y"), "x_20y");
}

TEST(PreviewEscapeTest, AnchorIdsOfDifferentNamesDiffer) {
  EXPECT_NE(AnchorId("d", "a_20"), AnchorId("d", "a "));
  EXPECT_NE(AnchorId("d", "A"), AnchorId("d", "a"));
}

TEST(PreviewEscapeTest, FontFamilyQuotesTheNameAndAddsTheGenericFamily) {
  EXPECT_EQ(FontFamily("MS Sans Serif"), "'MS Sans Serif', sans-serif");
  EXPECT_EQ(FontFamily("Courier New", "monospace"), "'Courier New', monospace");
}

TEST(PreviewEscapeTest, FontFamilyDropsCharactersThatCouldEndTheDeclaration) {
  EXPECT_EQ(FontFamily("Ar'ial\"; color:red}{<x>\\"), "'Arial color:redx', sans-serif");
}

TEST(PreviewEscapeTest, EmptyFontNameGivesTheGenericFamily) {
  EXPECT_EQ(FontFamily(""), "sans-serif");
  EXPECT_EQ(FontFamily("  '' "), "sans-serif");
}

TEST(PreviewEscapeTest, IdRegistryNumbersRepeatedIds) {
  IdRegistry ids;
  EXPECT_EQ(ids.Unique("screen-a"), "screen-a");
  EXPECT_EQ(ids.Unique("screen-a"), "screen-a~2");
  EXPECT_EQ(ids.Unique("screen-a"), "screen-a~3");
  EXPECT_EQ(ids.Unique("screen-b"), "screen-b");
}

}  // namespace
}  // namespace tessaly::preview
