#include "common/character_references.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace tessaly::io {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

TEST(CharacterReferencesTest, DocumentWithoutReferencesPasses) {
  EXPECT_EQ(FindInvalidCharacterReference("<a b=\"1\">text &amp; more</a>"), kNone);
}

TEST(CharacterReferencesTest, ReferencesToCharactersAndControlCharactersPass) {
  EXPECT_EQ(FindInvalidCharacterReference("<a b=\"&#65;&#x41;&#xe9;&#x10FFFF;\">&#1;&#x1F;&#9;&#xFFFD;&#x10000;</a>"),
            kNone);
}

TEST(CharacterReferencesTest, FormsTheParserLeavesAsTextPass) {
  // No ';', no digit, or an upper-case X: the parser keeps the text as it is.
  EXPECT_EQ(FindInvalidCharacterReference("<a>&#0 &#; &#x; &#X0; &#xZ0;</a>"), kNone);
}

TEST(CharacterReferencesTest, NulIsRefusedInText) {
  const std::string text = "<a>ab&#0;cd</a>";
  EXPECT_EQ(FindInvalidCharacterReference(text), text.find("&#0;"));
}

TEST(CharacterReferencesTest, SurrogatesAndTheTwoNonCharactersAreRefused) {
  for (const char* reference : {"&#xD800;", "&#xdfff;", "&#55296;", "&#xFFFE;", "&#65535;"}) {
    const std::string text = std::string("<a>x</a><!-- c --><b>") + reference + "</b>";
    EXPECT_EQ(FindInvalidCharacterReference(text), text.find("&#", text.find("<b>"))) << reference;
  }
}

TEST(CharacterReferencesTest, NumbersBeyondTheLastCodePointAreRefusedEvenWhenTheyWouldWrapAround) {
  // 4294967361 is 2^32 + 65: the parser's 32-bit arithmetic would make an 'A' of it.
  for (const char* reference : {"&#x110000;", "&#1114112;", "&#4294967361;", "&#4444444444444444444444460;",
                                "&#xFFFFFFFFFFFF41;"}) {
    const std::string text = std::string("<a>") + reference + "</a>";
    EXPECT_EQ(FindInvalidCharacterReference(text), 3u) << reference;
  }
}

TEST(CharacterReferencesTest, AttributeValuesInEitherQuoteAreChecked) {
  const std::string doubled = "<a b=\"x&#0;\"/>";
  EXPECT_EQ(FindInvalidCharacterReference(doubled), doubled.find("&#"));
  const std::string single = "<a b='x' c='&#xD800;'/>";
  EXPECT_EQ(FindInvalidCharacterReference(single), single.find("&#"));
}

TEST(CharacterReferencesTest, MarkupInsideAnAttributeValueDoesNotHideALaterReference) {
  // The parser takes "<!--" and ">" inside a value as text.
  const std::string text = "<a b=\"<!-- > \" c=\"&#0;\"/><!-- -->";
  EXPECT_EQ(FindInvalidCharacterReference(text), text.find("&#"));
}

TEST(CharacterReferencesTest, CommentsCdataInstructionsAndTheDocumentTypeAreNotDecoded) {
  EXPECT_EQ(FindInvalidCharacterReference("<?xml version=\"1.0\"?><?pi &#0;?><!DOCTYPE a [<!ENTITY e \"&#0;\">"
                                          "<!-- &#0; --><?p &#0;?>]><a><!-- &#0; --><![CDATA[&#0;]]></a>"),
            kNone);
}

TEST(CharacterReferencesTest, ReferenceAfterTheDocumentTypeIsChecked) {
  const std::string text = "<!DOCTYPE a [<!ENTITY e \"x>y\">]><a>&#0;</a>";
  EXPECT_EQ(FindInvalidCharacterReference(text), text.find("&#0;</a>"));
}

TEST(CharacterReferencesTest, UnclosedMarkupEndsTheSearchWithoutReadingPastTheText) {
  EXPECT_EQ(FindInvalidCharacterReference("<a b=\"&#65;"), kNone);
  EXPECT_EQ(FindInvalidCharacterReference("<a>&#65;<!-- &#0;"), kNone);
  EXPECT_EQ(FindInvalidCharacterReference("<!DOCTYPE a [ &#0;"), kNone);
  EXPECT_EQ(FindInvalidCharacterReference("<a>&#"), kNone);
  EXPECT_EQ(FindInvalidCharacterReference("<a>&#x"), kNone);
}

}  // namespace
}  // namespace tessaly::io
