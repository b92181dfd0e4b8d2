#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/document_io.hpp"
#include "common/xml_text_writer.hpp"
#include "common/xml_util.hpp"

namespace tessaly::xml {
namespace {

using Writing = std::function<void(Out)>;

// The text pugixml gives for a DOM that `write` filled, as the DOM export wrote documents.
std::string ThroughDom(const Writing& write) {
  pugi::xml_document doc;
  write(doc);
  return io::Serialize(doc, "UTF-8");
}

std::string ThroughTextWriter(const Writing& write) {
  TextWriter writer;
  write(writer.Document());
  return writer.Finish();
}

// Every byte from 1 to 255 but NUL, which ends a value.
std::string AllBytes() {
  std::string bytes;
  for (int c = 1; c < 256; ++c) bytes.push_back(static_cast<char>(c));
  return bytes;
}

TEST(XmlTextWriterTest, EveryByteInAnAttributeIsEscapedAsInTheDom) {
  Writing write = [](Out doc) { SetAttr(AppendElement(doc, "e"), "a", AllBytes()); };
  EXPECT_EQ(ThroughTextWriter(write), ThroughDom(write));
  EXPECT_NE(ThroughTextWriter(write).find("&#01;&#02;"), std::string::npos);
  EXPECT_NE(ThroughTextWriter(write).find("&quot;"), std::string::npos);
}

TEST(XmlTextWriterTest, EveryByteInTextIsEscapedAsInTheDom) {
  Writing write = [](Out doc) { AppendText(AppendElement(doc, "e"), AllBytes()); };
  std::string text = ThroughTextWriter(write);
  EXPECT_EQ(text, ThroughDom(write));
  EXPECT_NE(text.find("&#08;\t\n&#11;&#12;\r&#14;"), std::string::npos);
  EXPECT_NE(text.find("&lt;=&gt;"), std::string::npos);
}

TEST(XmlTextWriterTest, ValuesEndAtANulCharacter) {
  using namespace std::string_view_literals;
  Writing write = [](Out doc) {
    Out e = AppendElement(doc, "e");
    SetAttr(e, "a", "before\0after"sv);
    AppendText(e, "text\0hidden"sv);
    AppendCData(e, "cdata\0hidden"sv);
    doc.sink().AppendProcessingInstruction(doc.handle(), "pi", "value\0hidden"sv);
  };
  EXPECT_EQ(ThroughTextWriter(write), ThroughDom(write));
  EXPECT_EQ(ThroughTextWriter(write).find("hidden"), std::string::npos);
}

TEST(XmlTextWriterTest, CDataHoldingTheEndMarkerIsSplitAsInTheDom) {
  Writing write = [](Out doc) {
    Out e = AppendElement(doc, "e");
    AppendCData(e, "a]]>b]]>");
    AppendCData(e, "");
    AppendCData(e, "]]]>>");
  };
  EXPECT_EQ(ThroughTextWriter(write), ThroughDom(write));
  EXPECT_EQ(ThroughTextWriter(write),
            "<e><![CDATA[a]]]]><![CDATA[>b]]]]><![CDATA[>]]><![CDATA[]]><![CDATA[]]]]]><![CDATA[>>]]></e>\r\n");
}

TEST(XmlTextWriterTest, EmptyElementsAndEmptyTextAreWrittenAsInTheDom) {
  Writing write = [](Out doc) {
    Out root = AppendElement(doc, "root");
    AppendElement(root, "empty");
    SetAttr(AppendElement(root, "withAttribute"), "a", "1");
    AppendText(AppendElement(root, "emptyText"), "");
    Out nested = AppendElement(AppendElement(root, "outer"), "inner");
    AppendLf(nested);
    AppendCrLf(root);
  };
  EXPECT_EQ(ThroughTextWriter(write), ThroughDom(write));
  EXPECT_EQ(ThroughTextWriter(write),
            "<root><empty/><withAttribute a=\"1\"/><emptyText></emptyText><outer><inner>\n</inner></outer>\r\n</root>\r\n");
}

TEST(XmlTextWriterTest, TopLevelNodesEachEndWithCrLf) {
  Writing write = [](Out doc) {
    doc.sink().AppendProcessingInstruction(doc.handle(), "xml", "version='1.0'");
    doc.sink().AppendProcessingInstruction(doc.handle(), "empty", "");
    doc.sink().AppendProcessingInstruction(doc.handle(), "odd", "a?>b");
    SetAttr(AppendElement(doc, "first"), "n", 1);
    SetBoolAttr(AppendElement(doc, "second"), "b", true);
  };
  EXPECT_EQ(ThroughTextWriter(write), ThroughDom(write));
  EXPECT_EQ(ThroughTextWriter(write),
            "<?xml version='1.0'?>\r\n<?empty?>\r\n<?odd a? >b?>\r\n<first n=\"1\"/>\r\n<second b=\"1\"/>\r\n");
}

TEST(XmlTextWriterTest, AppendingToAnOuterElementClosesTheInnerOnes) {
  Writing write = [](Out doc) {
    Out a = AppendElement(doc, "a");
    Out b = AppendElement(a, "b");
    AppendElement(AppendElement(b, "c"), "d");
    AppendText(a, "after");
    AppendElement(a, "e");
  };
  EXPECT_EQ(ThroughTextWriter(write), "<a><b><c><d/></c></b>after<e/></a>\r\n");
  EXPECT_EQ(ThroughTextWriter(write), ThroughDom(write));
}

TEST(XmlTextWriterTest, AttributeAfterContentIsRefused) {
  TextWriter writer;
  Out e = AppendElement(writer.Document(), "e");
  AppendLf(e);
  EXPECT_THROW(SetAttr(e, "late", "1"), std::logic_error);
}

TEST(XmlTextWriterTest, AttributeOfAnOuterElementIsRefused) {
  TextWriter writer;
  Out outer = AppendElement(writer.Document(), "outer");
  AppendElement(outer, "inner");
  EXPECT_THROW(SetAttr(outer, "late", "1"), std::logic_error);
}

TEST(XmlTextWriterTest, WritingIntoAClosedElementIsRefused) {
  TextWriter writer;
  Out root = AppendElement(writer.Document(), "root");
  Out first = AppendElement(root, "first");
  AppendElement(root, "second");
  EXPECT_THROW(AppendLf(first), std::logic_error);
}

TEST(XmlTextWriterTest, DrainReceivesTheWholeTextInBoundedPieces) {
  Writing write = [](Out doc) {
    Out root = AppendElement(doc, "root");
    for (int i = 0; i < 100000; ++i) {
      AppendLf(root);
      SetAttr(AppendElement(root, "Item"), "Value", i);
    }
    AppendLf(root);
  };
  std::string drained;
  std::vector<std::size_t> pieces;
  TextWriter writer([&](std::string_view piece) {
    drained += piece;
    pieces.push_back(piece.size());
  });
  write(writer.Document());
  EXPECT_TRUE(writer.Finish().empty());
  EXPECT_EQ(drained, ThroughDom(write));
  ASSERT_GT(pieces.size(), 1u);
  for (std::size_t size : pieces) EXPECT_LE(size, (std::size_t{1} << 20) + 64);
}

}  // namespace
}  // namespace tessaly::xml
