// Whole documents through the facade: import, export, and compare the bytes.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "params/ecu_document.hpp"
#include "support/test_support.hpp"
#include "tessaly/facade/function_item.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/params/auto_ident_items.hpp"
#include "tessaly/params/target_param_item.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

using testing::EcuDocument;
using testing::KTimings;
using testing::ParamHead;

const std::string kIso8K = "<K BaudRate=\"9600\">\n<ISO8>\n<L/>\n<KW1 Value=\"1\"/>\n<KW2 Value=\"2\" Timeout=\"400\"/>\n"
                           "<FirstRequest Delay=\"30\"/>\n</ISO8>\n" +
                           KTimings(1, 2, 3, 4, 5) + "</K>";
const std::string kKwpIso8K = "<K BaudRate=\"10400\">\n<KWP Multipoint=\"1\">\n<ISO8>\n<L/>\n<KW1 Value=\"233\"/>\n"
                              "<KW2 Value=\"143\" Timeout=\"250\"/>\n<FirstRequest Delay=\"40\"/>\n</ISO8>"
                              "<KW2_ Delay=\"35\"/>\n</KWP>\n" +
                              KTimings() + "</K>";
const std::string kFastInitK = "<K BaudRate=\"10400\">\n<KWP Multipoint=\"0\">\n<FastInit><KW1 Value=\"192\"/>\n"
                               "<KW2 Value=\"129\"/></FastInit>\n</KWP>\n" +
                               KTimings(0, 5, 300, 2000, 300) + "</K>";

std::shared_ptr<TargetParamItem> ParamsOf(const TessalyLibXml& lib) { return lib.ActiveTarget()->Parametres(); }

// Imports `document` into a fresh facade and returns what the facade writes back.
std::string RoundTrip(const std::string& document) {
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  return lib.ExportUceToText();
}

TEST(ParamsRoundTripTest, Iso8KLineIsWrittenBackByteForByte) {
  const std::string document = EcuDocument(ParamHead{}.Text() + kIso8K);
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  EXPECT_EQ(ParamsOf(lib)->initMode(), 0);
  EXPECT_EQ(ParamsOf(lib)->ErrorDelay(), 5);
  EXPECT_EQ(lib.ExportUceToText(), document);
}

TEST(ParamsRoundTripTest, KwpSlowInitIsWrittenBackByteForByte) {
  const std::string document = EcuDocument(ParamHead{}.Text() + kKwpIso8K);
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  EXPECT_EQ(ParamsOf(lib)->initMode(), 1);
  EXPECT_TRUE(ParamsOf(lib)->multiPoint());
  EXPECT_EQ(ParamsOf(lib)->KW2Delay(), 35);
  EXPECT_EQ(lib.ExportUceToText(), document);
}

TEST(ParamsRoundTripTest, KwpFastInitIsWrittenBackByteForByte) {
  const std::string document = EcuDocument(ParamHead{}.Text() + kFastInitK);
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  EXPECT_EQ(ParamsOf(lib)->initMode(), 2);
  EXPECT_EQ(ParamsOf(lib)->key1(), 192);
  EXPECT_EQ(lib.ExportUceToText(), document);
}

TEST(ParamsRoundTripTest, DiagOnCanWithStandardIdentifiersIsWrittenBackByteForByte) {
  const std::string document =
      EcuDocument(ParamHead{}.Text() +
                  "<CAN BaudRate=\"500000\" Multipoint=\"1\">\n<SendId>\n<CANId Value=\"1792\"/>\n</SendId>"
                  "<ReceiveId>\n<CANId Value=\"1800\"/>\n</ReceiveId></CAN>");
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  EXPECT_EQ(ParamsOf(lib)->initMode(), 3);
  EXPECT_EQ(ParamsOf(lib)->CanXId(), 1792);
  EXPECT_EQ(ParamsOf(lib)->CanRId(), 1800);
  // The target put the identifiers into the functions entry it added for its address.
  auto function = lib.functions()->ItemAddress(122);
  ASSERT_NE(function, nullptr);
  EXPECT_EQ(function->CanXId(), 1792);
  EXPECT_EQ(function->CanRId(), 1800);
  EXPECT_EQ(lib.ExportUceToText(), document);
}

TEST(ParamsRoundTripTest, DiagOnCanWithExtendedIdentifiersIsWrittenBackByteForByte) {
  const std::string document = EcuDocument(
      ParamHead{}.Text() +
      "<CAN BaudRate=\"500000\" Multipoint=\"0\">\n<SendId>\n<CANId Value=\"417001488\" Extended=\"1\"/>\n</SendId>"
      "<ReceiveId>\n<CANId Value=\"2016\" Extended=\"1\"/>\n</ReceiveId></CAN>");
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  EXPECT_EQ(ParamsOf(lib)->CanXId(), static_cast<std::int32_t>(0x80000000u | 417001488u));
  EXPECT_EQ(ParamsOf(lib)->CanRId(), static_cast<std::int32_t>(0x800007E0u));
  EXPECT_EQ(lib.ExportUceToText(), document);
}

TEST(ParamsRoundTripTest, DiagOnCanWithOnlyASendIdentifierIsWrittenBackByteForByte) {
  const std::string document =
      EcuDocument(ParamHead{}.Text() +
                  "<CAN BaudRate=\"250000\" Multipoint=\"0\">\n<SendId>\n<CANId Value=\"0\"/>\n</SendId></CAN>");
  EXPECT_EQ(RoundTrip(document), document);
}

TEST(ParamsRoundTripTest, DiagOnCanTakesItsIdentifiersIntoTheHostsFunctionEntry) {
  const std::string document =
      EcuDocument(ParamHead{}.Text() +
                  "<CAN BaudRate=\"500000\" Multipoint=\"1\">\n<SendId>\n<CANId Value=\"1792\"/>\n</SendId>"
                  "<ReceiveId>\n<CANId Value=\"1800\"/>\n</ReceiveId></CAN>");
  TessalyLibXml lib;
  lib.set_functions(std::make_shared<FunctionItems>());
  auto function = lib.functions()->Add(122, "Injection");
  lib.ImportUceFromText(document);
  EXPECT_EQ(lib.functions()->Count(), 1);
  EXPECT_EQ(function->CanXId(), 1792);
  EXPECT_EQ(function->CanRId(), 1800);
  EXPECT_EQ(lib.ExportUceToText(), document);
}

TEST(ParamsRoundTripTest, CanMessagingIsWrittenBackByteForByte) {
  const std::string document = EcuDocument(ParamHead{}.Text() + "<CAN BaudRate=\"500000\" Multipoint=\"1\">\n</CAN>");
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  EXPECT_EQ(ParamsOf(lib)->initMode(), 255);
  EXPECT_EQ(lib.ExportUceToText(), document);
}

TEST(ParamsRoundTripTest, GenericProtocolOfAnUnknownModeIsWrittenBackByteForByte) {
  const std::string document = EcuDocument(
      ParamHead{}.Text() +
      "<Protocol InitMode=\"9\" Multipoint=\"1\" BaudRate=\"19200\">\n<InterByte Delay=\"1\"/>\n"
      "<ReplyToRequest Delay=\"2\"/>\n<RequestToReply Timeout=\"3\"/>\n<TesterPresent Delay=\"4\"/>\n"
      "<OnError Delay=\"5\"/>\n<KW1 Value=\"6\"/>\n<KW2 Value=\"7\" Timeout=\"8\"/>\n<KW2_ Delay=\"9\"/>\n"
      "<FirstRequest Delay=\"10\"/>\n</Protocol>");
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  EXPECT_EQ(ParamsOf(lib)->initMode(), 9);
  EXPECT_EQ(lib.ExportUceToText(), document);
}

TEST(ParamsRoundTripTest, GenericProtocolWithAKnownIdentifierKeepsItsName) {
  const std::string document = EcuDocument(
      ParamHead{}.Text() +
      "<Protocol Name=\"KWP 2000 init rapide multipoint\" InitMode=\"6\" Multipoint=\"0\" BaudRate=\"10400\">\n"
      "<InterByte Delay=\"0\"/>\n<ReplyToRequest Delay=\"5\"/>\n<RequestToReply Timeout=\"300\"/>\n"
      "<TesterPresent Delay=\"3000\"/>\n<OnError Delay=\"300\"/>\n<KW1 Value=\"208\"/>\n"
      "<KW2 Value=\"143\" Timeout=\"300\"/>\n<KW2_ Delay=\"25\"/>\n<FirstRequest Delay=\"20\"/>\n</Protocol>");
  EXPECT_EQ(RoundTrip(document), document);
}

TEST(ParamsRoundTripTest, FullHeadIsWrittenBackByteForByte) {
  ParamHead head;
  head.description = "Injection ECU\r\nsecond line";
  head.date = "12/03/2004";
  head.failureName = "Pannes DTC";
  head.failureId = 3;
  head.boot = "BOOT_V2";
  const std::string document = EcuDocument(head.Text() + kFastInitK);
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  EXPECT_EQ(ParamsOf(lib)->Comment(), "Injection ECU\r\nsecond line");
  EXPECT_EQ(ParamsOf(lib)->DateOfficialisation(), "12/03/2004");
  EXPECT_EQ(ParamsOf(lib)->TypePanneId(), 3);
  EXPECT_EQ(ParamsOf(lib)->TypePanne(), "Pannes DTC");
  EXPECT_EQ(ParamsOf(lib)->Reprogrammable(), "BOOT_V2");
  EXPECT_EQ(lib.ExportUceToText(), document);
}

TEST(ParamsRoundTripTest, LittleEndianRequestsAreWrittenBackByteForByte) {
  const std::string document = EcuDocument(ParamHead{}.Text() + kFastInitK, {}, "Little");
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  EXPECT_TRUE(ParamsOf(lib)->LittleEndian());
  EXPECT_EQ(lib.ExportUceToText(), document);
}

TEST(ParamsRoundTripTest, AutoIdentsAreWrittenBackByteForByte) {
  const std::string records = "<AutoIdent DiagVersion=\"12\" Supplier=\"\" Soft=\"\" Version=\"\"/>"
                              "<AutoIdent DiagVersion=\"7\" Supplier=\"SUP\" Soft=\"96 123 45 80\" Version=\"V2\"/>"
                              "<AutoIdent DiagVersion=\"3\" Supplier=\"A\" Soft=\"B\" Version=\"C\"/>";
  const std::string document = EcuDocument(ParamHead{}.Text() + kFastInitK, records);
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  auto autoIdents = lib.ActiveTarget()->AutoIdents();
  ASSERT_EQ(autoIdents->Count(), 3);
  EXPECT_EQ(autoIdents->Item(2)->Soft(), "96 123 45 80");
  EXPECT_EQ(lib.ExportUceToText(), document);
}

TEST(ParamsRoundTripTest, ToolAddressZeroIsWrittenBackByteForByte) {
  const std::string document = EcuDocument(ParamHead{}.Text() + kFastInitK, {}, "Big",
                                           R"(<Function Name="Injection" Address="122" ToolAddress="0"/>)");
  EXPECT_EQ(RoundTrip(document), document);
}

TEST(ParamsRoundTripTest, AnyToolAddressOtherThanTheDefaultIsWrittenAsZero) {
  const std::string document = EcuDocument(ParamHead{}.Text() + kFastInitK, {}, "Big",
                                           R"(<Function Name="Injection" Address="122" ToolAddress="16"/>)");
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  EXPECT_EQ(lib.ExportUceToText(),
            EcuDocument(ParamHead{}.Text() + kFastInitK, {}, "Big",
                        R"(<Function Name="Injection" Address="122" ToolAddress="0"/>)"));
  // Writing read the tool address, which stored it into CanXId.
  EXPECT_EQ(ParamsOf(lib)->CanXId(), 16);
}

TEST(ParamsRoundTripTest, DefaultToolAddressWritesNoAttribute) {
  const std::string document = EcuDocument(ParamHead{}.Text() + kFastInitK, {}, "Big",
                                           R"(<Function Name="Injection" Address="122" ToolAddress="241"/>)");
  EXPECT_EQ(RoundTrip(document), EcuDocument(ParamHead{}.Text() + kFastInitK));
}

TEST(ParamsRoundTripTest, FastInitEcuLosesItsSlowInitTimingsOnSaveAndReload) {
  TessalyLibXml lib;
  lib.ImportUceFromText(EcuDocument(ParamHead{}.Text() + kFastInitK));
  auto params = ParamsOf(lib);
  params->set_KW2Timeout(500);
  params->set_KW2Delay(40);
  params->set_FirstRequestDelay(30);
  const std::string saved = lib.ExportUceToText();

  TessalyLibXml reloaded;
  reloaded.ImportUceFromText(saved);
  auto back = ParamsOf(reloaded);
  EXPECT_EQ(back->initMode(), 2);
  EXPECT_EQ(back->KW2Timeout(), 300);
  EXPECT_EQ(back->KW2Delay(), 25);
  EXPECT_EQ(back->FirstRequestDelay(), 20);
  EXPECT_EQ(back->key1(), 192);
}

TEST(ParamsRoundTripTest, Iso8EcuLosesItsMultiPointAndKeyByteDelayOnSaveAndReload) {
  TessalyLibXml lib;
  lib.ImportUceFromText(EcuDocument(ParamHead{}.Text() + kIso8K));
  ParamsOf(lib)->set_multiPoint(true);
  ParamsOf(lib)->set_KW2Delay(40);
  TessalyLibXml reloaded;
  reloaded.ImportUceFromText(lib.ExportUceToText());
  EXPECT_FALSE(ParamsOf(reloaded)->multiPoint());
  EXPECT_EQ(ParamsOf(reloaded)->KW2Delay(), 25);
  EXPECT_EQ(ParamsOf(reloaded)->KW2Timeout(), 400);
}

TEST(ParamsRoundTripTest, CanEcuKeepsOnlyItsSpeedMultiPointAndIdentifiers) {
  const std::string document =
      EcuDocument(ParamHead{}.Text() +
                  "<CAN BaudRate=\"500000\" Multipoint=\"1\">\n<SendId>\n<CANId Value=\"1792\"/>\n</SendId>"
                  "<ReceiveId>\n<CANId Value=\"1800\"/>\n</ReceiveId></CAN>");
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  auto params = ParamsOf(lib);
  params->set_key1(1);
  params->set_key2(2);
  params->set_InterByteDelay(3);
  params->set_TesterPresentDelay(4);
  params->set_ErrorDelay(5);
  TessalyLibXml reloaded;
  reloaded.ImportUceFromText(lib.ExportUceToText());
  auto back = ParamsOf(reloaded);
  EXPECT_EQ(back->initMode(), 3);
  EXPECT_EQ(back->BaudRate(), 500000);
  EXPECT_TRUE(back->multiPoint());
  EXPECT_EQ(back->CanXId(), 1792);
  EXPECT_EQ(back->CanRId(), 1800);
  EXPECT_EQ(back->key1(), 208);
  EXPECT_EQ(back->key2(), 143);
  EXPECT_EQ(back->InterByteDelay(), 0);
  EXPECT_EQ(back->TesterPresentDelay(), 3000);
  EXPECT_EQ(back->ErrorDelay(), 300);
}

TEST(ParamsRoundTripTest, DescriptionWithBareLineFeedsIsWrittenBackWithCarriageReturns) {
  ParamHead in;
  in.description = "  first\nsecond  ";
  ParamHead out;
  out.description = "first\r\nsecond";
  EXPECT_EQ(RoundTrip(EcuDocument(in.Text() + kFastInitK)), EcuDocument(out.Text() + kFastInitK));
}

TEST(ParamsRoundTripTest, XmlCommentOfTheTargetIsWrittenBackAsADescription) {
  // The comment goes where the Description would be; what is written is the standard form.
  std::string document = EcuDocument(ParamHead{}.Text() + kFastInitK);
  const std::string language = "<Language Name=\"Fran\xC3\xA7" "ais\" Reference=\"1\"/>\n";
  document.replace(document.find(language), language.size(), language + "<!-- old note\nsecond -->");
  ParamHead out;
  out.description = "old note\r\nsecond";
  EXPECT_EQ(RoundTrip(document), EcuDocument(out.Text() + kFastInitK));
}

TEST(ParamsRoundTripTest, FailureTypeOfAnotherLanguageIsWrittenWithTheLabelOfTheCurrentTables) {
  ParamHead english;
  english.failureName = "DTC Failures";
  english.failureId = 3;
  ParamHead french;
  french.failureName = "Pannes DTC";
  french.failureId = 3;
  EXPECT_EQ(RoundTrip(EcuDocument(english.Text() + kFastInitK)), EcuDocument(french.Text() + kFastInitK));
}

TEST(ParamsRoundTripTest, UnknownFailureIdIsWrittenBackAsNoFailures) {
  ParamHead in;
  in.failureName = "Pannes DTC";
  in.failureId = 9;
  EXPECT_EQ(RoundTrip(EcuDocument(in.Text() + kFastInitK)), EcuDocument(ParamHead{}.Text() + kFastInitK));
}

TEST(ParamsRoundTripTest, AutoIdentMissingAnAttributeFailsTheImportWithEverythingElseLoaded) {
  const std::string records = "<AutoIdent DiagVersion=\"1\" Supplier=\"S\" Soft=\"F\" Version=\"V\"/>"
                              "<AutoIdent DiagVersion=\"2\" Supplier=\"S\" Soft=\"F\"/>"
                              "<AutoIdent DiagVersion=\"3\" Supplier=\"S\" Soft=\"F\" Version=\"V\"/>";
  TessalyLibXml lib;
  EXPECT_TESSALY_ERROR(lib.ImportUceFromText(EcuDocument(ParamHead{}.Text() + kIso8K, records)), 91, "Tessaly",
                       "Object variable or With block variable not set");
  ASSERT_NE(lib.ActiveTarget(), nullptr);
  auto autoIdents = lib.ActiveTarget()->AutoIdents();
  ASSERT_EQ(autoIdents->Count(), 2);
  EXPECT_EQ(autoIdents->Item(1)->DiagNumber(), 1);
  EXPECT_EQ(autoIdents->Item(2)->DiagNumber(), 3);
  EXPECT_EQ(ParamsOf(lib)->initMode(), 0);
  EXPECT_EQ(ParamsOf(lib)->BaudRate(), 9600);
  EXPECT_FALSE(Err().Pending());
}

TEST(ParamsRoundTripTest, AutoIdentWithANonNumericDiagVersionFailsTheImportWithTypeMismatch) {
  const std::string records = "<AutoIdent DiagVersion=\"v1\" Supplier=\"S\" Soft=\"F\" Version=\"V\"/>"
                              "<AutoIdent DiagVersion=\"2\" Supplier=\"S\" Soft=\"F\" Version=\"V\"/>";
  TessalyLibXml lib;
  EXPECT_TESSALY_ERROR(lib.ImportUceFromText(EcuDocument(ParamHead{}.Text() + kIso8K, records)), 13, "Tessaly",
                       "Type mismatch");
  ASSERT_EQ(lib.ActiveTarget()->AutoIdents()->Count(), 1);
  EXPECT_EQ(lib.ActiveTarget()->AutoIdents()->Item(1)->DiagNumber(), 2);
}

TEST(ParamsRoundTripTest, DamagedParameterValuesNeverFailTheImport) {
  std::string document = EcuDocument(ParamHead{}.Text() + kIso8K);
  document.replace(document.find("<K BaudRate=\"9600\">"), 19, "<K BaudRate=\"9600 baud\">");
  TessalyLibXml lib;
  lib.ImportUceFromText(document);
  EXPECT_EQ(ParamsOf(lib)->BaudRate(), 10400);
  EXPECT_EQ(ParamsOf(lib)->initMode(), 0);
}

}  // namespace
}  // namespace tessaly
