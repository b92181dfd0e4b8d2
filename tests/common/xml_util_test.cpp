#include "common/xml_util.hpp"

#include <gtest/gtest.h>

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
    pugi::xml_node a, b, c, abc;
    const pugi::xml_node comment = FindChildren(root, {{"a", &a}, {"b", &b}, {"c", &c}, {"abc", &abc}});
    EXPECT_EQ(a, Child(root, "a")) << text;
    EXPECT_EQ(b, Child(root, "b")) << text;
    EXPECT_EQ(c, Child(root, "c")) << text;
    EXPECT_EQ(abc, Child(root, "abc")) << text;
    EXPECT_EQ(comment, FirstComment(root)) << text;
  }
}

TEST(FindChildrenTest, TakesTheFirstElementOfEachNameAndPassesOverOtherNodes) {
  pugi::xml_document doc;
  const pugi::xml_node root = Parse(doc, "<r><?Sent x?>\n<Sent n=\"1\"/><!--c--><Received/><Sent n=\"2\"/></r>");
  pugi::xml_node sent, received, missing = root;
  const pugi::xml_node comment = FindChildren(root, {{"Sent", &sent}, {"Received", &received}, {"Missing", &missing}});
  ASSERT_TRUE(sent);
  EXPECT_STREQ(sent.attribute("n").value(), "1");
  EXPECT_STREQ(received.name(), "Received");
  // A place that held a node before is emptied when no child has the name.
  EXPECT_FALSE(missing);
  EXPECT_STREQ(comment.value(), "c");
}

TEST(FindChildrenTest, EmptyNodeFindsNothing) {
  pugi::xml_node found;
  EXPECT_FALSE(FindChildren(pugi::xml_node(), {{"a", &found}}));
  EXPECT_FALSE(found);
}

}  // namespace
}  // namespace tessaly::xml
