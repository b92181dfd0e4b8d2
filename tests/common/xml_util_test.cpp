#include "common/xml_util.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace tessaly::xml {
namespace {

constexpr unsigned kOptions = pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_comments | pugi::parse_pi;

pugi::xml_node Parse(pugi::xml_document& doc, const char* text) {
  EXPECT_TRUE(doc.load_string(text, kOptions)) << text;
  return doc.document_element();
}

TEST(FindChildrenTest, FindsWhatChildAndFirstCommentFindOneByOne) {
  const char* documents[] = {
      "<r/>",
      "<r>\n<a/>\n<b x=\"1\"/>\n<a x=\"2\"/>\n</r>",
      "<r><!--first--><b/><!--second--><c><a/></c></r>",
      "<r><?a pi?><a/><?b?></r>",
      "<r>text<ab/><a/><abc/></r>",
  };
  for (const char* text : documents) {
    pugi::xml_document doc;
    const pugi::xml_node root = Parse(doc, text);
    std::array<pugi::xml_node, 4> found;
    const pugi::xml_node comment = FindChildren(root, {"a", "b", "c", "abc"}, found);
    EXPECT_EQ(found[0], Child(root, "a")) << text;
    EXPECT_EQ(found[1], Child(root, "b")) << text;
    EXPECT_EQ(found[2], Child(root, "c")) << text;
    EXPECT_EQ(found[3], Child(root, "abc")) << text;
    EXPECT_EQ(comment, FirstComment(root)) << text;
  }
}

TEST(FindChildrenTest, TakesTheFirstElementOfEachNameAndPassesOverOtherNodes) {
  pugi::xml_document doc;
  const pugi::xml_node root = Parse(doc, "<r><?Sent x?>\n<Sent n=\"1\"/><!--c--><Received/><Sent n=\"2\"/></r>");
  std::array<pugi::xml_node, 3> found;
  const pugi::xml_node comment = FindChildren(root, {"Sent", "Received", "Missing"}, found);
  ASSERT_TRUE(found[0]);
  EXPECT_STREQ(found[0].attribute("n").value(), "1");
  EXPECT_STREQ(found[1].name(), "Received");
  EXPECT_FALSE(found[2]);
  EXPECT_STREQ(comment.value(), "c");
}

TEST(FindChildrenTest, EmptyNodeFindsNothing) {
  std::array<pugi::xml_node, 1> found;
  EXPECT_FALSE(FindChildren(pugi::xml_node(), {"a"}, found));
  EXPECT_FALSE(found[0]);
}

}  // namespace
}  // namespace tessaly::xml
