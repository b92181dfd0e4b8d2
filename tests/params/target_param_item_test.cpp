#include "tessaly/params/target_param_item.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "support/test_support.hpp"
#include "tessaly/facade/function_item.hpp"
#include "tessaly/facade/multi_lang.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

using testing::NodeText;
using testing::ParseText;

// Loads `params` from the element <T> holding `content`.
void LoadFrom(TargetParamItem& params, const std::string& content) {
  pugi::xml_document doc;
  ParseText(doc, "<T>" + content + "</T>");
  params.loadXml(doc.child("T"));
}

// The parameter elements `params` writes, inside <T>...</T>.
std::string Written(TargetParamItem& params) {
  pugi::xml_document doc;
  pugi::xml_node element = doc.append_child("T");
  params.createXMLnode(doc, element);
  return NodeText(element);
}

// The protocol element that `params` writes (the last element it appends).
std::string WrittenProtocol(TargetParamItem& params) {
  pugi::xml_document doc;
  pugi::xml_node element = doc.append_child("T");
  params.createXMLnode(doc, element);
  return NodeText(element.last_child());
}

// A facade with a new target, so that the parameters reach the global tables.
class ParamsWithFacade : public ::testing::Test {
 protected:
  TargetParamItem& params() { return *target->Parametres(); }
  // Reads the built-in global parameters again with the names of `language`.
  void UseLanguage(const std::string& language) {
    testing::TempDir dir;
    testing::WriteFileBytes(dir.File("params.xml"), ParamNodeDefinition());
    lib.set_lang(language);
    lib.ReadGlobalParameters(dir.File("params.xml"));
  }

  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = lib.NewTarget();
};

// ---------------------------------------------------------------------------------------------
// Defaults and the parameter index

TEST(ParamsDefaultsTest, FreshObjectHoldsTheDocumentedDefaults) {
  TargetParamItem p;
  EXPECT_EQ(p.Comment(), "");
  EXPECT_EQ(p.initMode(), 2);
  EXPECT_FALSE(p.multiPoint());
  EXPECT_EQ(p.key1(), 208);
  EXPECT_EQ(p.key2(), 143);
  EXPECT_EQ(p.BaudRate(), 10400);
  EXPECT_EQ(p.InterByteDelay(), 0);
  EXPECT_EQ(p.KW2Delay(), 25);
  EXPECT_EQ(p.FirstRequestDelay(), 20);
  EXPECT_EQ(p.ReplyToRequestDelay(), 5);
  EXPECT_EQ(p.TesterPresentDelay(), 3000);
  EXPECT_EQ(p.KW2Timeout(), 300);
  EXPECT_EQ(p.RequestToReplyTimeout(), 300);
  EXPECT_EQ(p.ErrorDelay(), 300);
  EXPECT_FALSE(p.LittleEndian());
  EXPECT_EQ(p.Reprogrammable(), "");
  EXPECT_EQ(p.DateOfficialisation(), "");
  EXPECT_EQ(p.TypePanneId(), 0);
  EXPECT_EQ(p.TypePanne(), "Ne contient pas de pannes");
  EXPECT_EQ(p.CanXId(), -1);
  EXPECT_EQ(p.CanRId(), -1);
  EXPECT_EQ(p.parent(), nullptr);
}

TEST(ParamsDefaultsTest, FreshObjectReportsEveryIndexButFifteenAsDefault) {
  TargetParamItem p;
  for (std::int32_t i = 0; i <= 16; ++i) {
    DefaultValue slot;
    EXPECT_EQ(p.isDefaultValue(i, slot), i != 15) << "index " << i;
  }
  DefaultValue slot;
  ASSERT_TRUE(p.isDefaultValue(4, slot));
  ASSERT_TRUE(std::holds_alternative<std::int32_t>(slot));
  EXPECT_EQ(std::get<std::int32_t>(slot), 10400);
}

TEST(ParamsDefaultsTest, OutputSlotReceivesTheDefaultOfItsType) {
  TargetParamItem p;
  p.set_initMode(0);
  p.set_multiPoint(true);
  p.set_Reprogrammable("BOOT1");
  p.set_ToolAddress(16);
  DefaultValue slot;
  EXPECT_FALSE(p.isDefaultValue(0, slot));
  EXPECT_EQ(std::get<std::int32_t>(slot), 2);
  EXPECT_FALSE(p.isDefaultValue(1, slot));
  EXPECT_EQ(std::get<bool>(slot), false);
  EXPECT_FALSE(p.isDefaultValue(14, slot));
  EXPECT_EQ(std::get<std::string>(slot), "");
  EXPECT_FALSE(p.isDefaultValue(16, slot));
  EXPECT_EQ(std::get<std::int32_t>(slot), 241);
  EXPECT_TRUE(p.isDefaultValue(13, slot));
  EXPECT_EQ(std::get<bool>(slot), false);
}

TEST(ParamsDefaultsTest, IndexFifteenAndIndexesOutsideTheTableLeaveTheSlotUntouched) {
  TargetParamItem p;
  for (std::int32_t index : {15, -1, 17, 1000}) {
    DefaultValue slot = std::string("untouched");
    EXPECT_FALSE(p.isDefaultValue(index, slot)) << "index " << index;
    ASSERT_TRUE(std::holds_alternative<std::string>(slot));
    EXPECT_EQ(std::get<std::string>(slot), "untouched");
  }
}

TEST(ParamsDefaultsTest, SetDefaultValueSixteenRestoresTheToolAddress) {
  TargetParamItem p;
  p.set_ToolAddress(16);
  DefaultValue slot;
  EXPECT_FALSE(p.isDefaultValue(16, slot));
  p.SetDefaultValue(16);
  EXPECT_TRUE(p.isDefaultValue(16, slot));
}

TEST(ParamsDefaultsTest, SetDefaultValueRestoresEveryIndexedParameter) {
  TargetParamItem p;
  p.set_initMode(3);
  p.set_multiPoint(true);
  p.set_key1(1);
  p.set_key2(2);
  p.set_BaudRate(500000);
  p.set_InterByteDelay(7);
  p.set_KW2Delay(8);
  p.set_FirstRequestDelay(9);
  p.set_ReplyToRequestDelay(10);
  p.set_TesterPresentDelay(11);
  p.set_KW2Timeout(12);
  p.set_RequestToReplyTimeout(13);
  p.set_ErrorDelay(14);
  p.set_LittleEndian(true);
  p.set_Reprogrammable("BOOT");
  p.set_DateOfficialisation("2004-05-06");
  p.set_ToolAddress(16);
  DefaultValue slot;
  for (std::int32_t i = 0; i <= 16; ++i) {
    if (i != 15) {
      EXPECT_FALSE(p.isDefaultValue(i, slot)) << "index " << i;
    }
  }
  for (std::int32_t i = 0; i <= 16; ++i) p.SetDefaultValue(i);
  for (std::int32_t i = 0; i <= 16; ++i) EXPECT_EQ(p.isDefaultValue(i, slot), i != 15) << "index " << i;
  EXPECT_EQ(p.DateOfficialisation(), "");
}

TEST(ParamsDefaultsTest, SetDefaultValueOutsideTheTableChangesNothing) {
  TargetParamItem p;
  p.set_BaudRate(9600);
  p.set_ToolAddress(16);
  p.SetDefaultValue(-1);
  p.SetDefaultValue(17);
  EXPECT_EQ(p.BaudRate(), 9600);
  DefaultValue slot;
  EXPECT_FALSE(p.isDefaultValue(16, slot));
}

TEST(ParamsDefaultsTest, ReadingToolAddressReturnsZeroAndStoresItIntoCanXId) {
  TargetParamItem p;
  p.set_ToolAddress(16);
  EXPECT_EQ(p.ToolAddress(), 0);
  EXPECT_EQ(p.CanXId(), 16);
  // The read does not change the tool address itself.
  DefaultValue slot;
  EXPECT_FALSE(p.isDefaultValue(16, slot));
}

TEST(ParamsDefaultsTest, ReadingTheDefaultToolAddressStoresTwoHundredFortyOne) {
  TargetParamItem p;
  EXPECT_EQ(p.ToolAddress(), 0);
  EXPECT_EQ(p.CanXId(), 241);
}

TEST(ParamsDefaultsTest, ClearDropsOnlyTheParentLink) {
  TessalyLibXml lib;
  auto target = lib.NewTarget();
  TargetParamItem& p = *target->Parametres();
  EXPECT_EQ(p.parent(), target);
  p.set_BaudRate(9600);
  p.clear();
  EXPECT_EQ(p.parent(), nullptr);
  EXPECT_EQ(p.BaudRate(), 9600);
}

// ---------------------------------------------------------------------------------------------
// The failure type link

TEST_F(ParamsWithFacade, WritingTypePanneIdTakesTheLabelOfTheGlobalFailureType) {
  params().set_TypePanneId(3);
  EXPECT_EQ(params().TypePanne(), "Pannes DTC");
  params().set_TypePanneId(1);
  EXPECT_EQ(params().TypePanne(), "Flags de pannes");
}

TEST_F(ParamsWithFacade, WritingTypePanneTakesTheIdOfTheGlobalFailureType) {
  params().set_TypePanne("10 pannes DTC dans les trames APV");
  EXPECT_EQ(params().TypePanneId(), 2);
}

TEST_F(ParamsWithFacade, UnknownFailureIdOrLabelLeavesTheOtherValue) {
  params().set_TypePanneId(3);
  params().set_TypePanneId(7);
  EXPECT_EQ(params().TypePanneId(), 7);
  EXPECT_EQ(params().TypePanne(), "Pannes DTC");
  params().set_TypePanne("Nothing like it");
  EXPECT_EQ(params().TypePanne(), "Nothing like it");
  EXPECT_EQ(params().TypePanneId(), 7);
}

TEST_F(ParamsWithFacade, WritingTheSameFailureLabelAgainLooksNothingUp) {
  // Id 7 is unknown, so the label stays "Ne contient pas de pannes" (the label of id 0).
  params().set_TypePanneId(7);
  ASSERT_EQ(params().TypePanne(), "Ne contient pas de pannes");
  params().set_TypePanne("Ne contient pas de pannes");
  EXPECT_EQ(params().TypePanneId(), 7);
}

TEST_F(ParamsWithFacade, FailureLabelsFollowTheLanguageOfTheGlobalTables) {
  UseLanguage("en");
  params().set_TypePanneId(2);
  EXPECT_EQ(params().TypePanne(), "10 DTC failures read with After sales Frames");
  params().set_TypePanne("Failures Flags");
  EXPECT_EQ(params().TypePanneId(), 1);
  LoadFrom(params(), R"(<Failures Name="whatever" Id="0"/>)");
  EXPECT_EQ(params().TypePanne(), "No failures");
  LoadFrom(params(), R"(<Failures Name="whatever" Id="3"/>)");
  EXPECT_EQ(params().TypePanne(), "DTC Failures");
}

TEST_F(ParamsWithFacade, LoadingAFailureIdTakesItsFrenchLabel) {
  LoadFrom(params(), R"(<Failures Name="ignored" Id="3"/>)");
  EXPECT_EQ(params().TypePanneId(), 3);
  EXPECT_EQ(params().TypePanne(), "Pannes DTC");
}

TEST_F(ParamsWithFacade, FailuresIdNamingAnUnknownTypeLoadsAsIdZero) {
  LoadFrom(params(), R"(<Failures Name="Pannes DTC" Id="9"/>)");
  EXPECT_EQ(params().TypePanneId(), 0);
  EXPECT_EQ(params().TypePanne(), "Ne contient pas de pannes");
}

TEST_F(ParamsWithFacade, UnknownFailureIdLoadsWithTheFrenchDefaultLabelEvenInEnglish) {
  UseLanguage("en");
  LoadFrom(params(), R"(<Failures Name="DTC Failures" Id="9"/>)");
  EXPECT_EQ(params().TypePanneId(), 0);
  EXPECT_EQ(params().TypePanne(), "Ne contient pas de pannes");
}

TEST(ParamsFailureTypeTest, WithoutAParentChainTheFailureValuesAreStoredAlone) {
  TargetParamItem p;
  p.set_TypePanneId(3);
  EXPECT_EQ(p.TypePanne(), "Ne contient pas de pannes");
  p.set_TypePanne("Pannes DTC");
  EXPECT_EQ(p.TypePanneId(), 3);
  EXPECT_EQ(p.TypePanne(), "Pannes DTC");
}

TEST(ParamsFailureTypeTest, WithoutAParentChainAnyLoadedIdFallsBackToZero) {
  TargetParamItem p;
  LoadFrom(p, R"(<Failures Name="Pannes DTC" Id="3"/>)");
  EXPECT_EQ(p.TypePanneId(), 0);
  EXPECT_EQ(p.TypePanne(), "Ne contient pas de pannes");
}

// ---------------------------------------------------------------------------------------------
// Reading

TEST(ParamsReadTest, KWithIso8LoadsAsInitModeZeroWhateverWasSet) {
  TargetParamItem p;
  p.set_initMode(3);
  p.set_multiPoint(true);
  LoadFrom(p, R"(<K BaudRate="9600"><ISO8><L/><KW1 Value="1"/><KW2 Value="2" Timeout="400"/>)"
              R"(<FirstRequest Delay="30"/></ISO8><InterByte Delay="4"/><ReplyToRequest Delay="6"/>)"
              R"(<RequestToReply Timeout="350"/><TesterPresent Delay="2000"/><OnError Delay="310"/></K>)");
  EXPECT_EQ(p.initMode(), 0);
  EXPECT_FALSE(p.multiPoint());
  EXPECT_EQ(p.BaudRate(), 9600);
  EXPECT_EQ(p.key1(), 1);
  EXPECT_EQ(p.key2(), 2);
  EXPECT_EQ(p.KW2Timeout(), 400);
  EXPECT_EQ(p.FirstRequestDelay(), 30);
  EXPECT_EQ(p.InterByteDelay(), 4);
  EXPECT_EQ(p.ReplyToRequestDelay(), 6);
  EXPECT_EQ(p.RequestToReplyTimeout(), 350);
  EXPECT_EQ(p.TesterPresentDelay(), 2000);
  EXPECT_EQ(p.ErrorDelay(), 310);
}

TEST(ParamsReadTest, KwpWithFastInitLoadsAsInitModeTwo) {
  TargetParamItem p;
  p.set_initMode(0);
  p.set_KW2Timeout(999);
  LoadFrom(p, R"(<K BaudRate="10400"><KWP Multipoint="1"><FastInit><KW1 Value="192"/><KW2 Value="129"/>)"
              R"(</FastInit></KWP></K>)");
  EXPECT_EQ(p.initMode(), 2);
  EXPECT_TRUE(p.multiPoint());
  EXPECT_EQ(p.key1(), 192);
  EXPECT_EQ(p.key2(), 129);
  // The fast-init branch does not read the slow-init timings.
  EXPECT_EQ(p.KW2Timeout(), 999);
}

TEST(ParamsReadTest, KwpWithIso8LoadsAsInitModeOneWithItsKeyByteDelay) {
  TargetParamItem p;
  LoadFrom(p, R"(<K BaudRate="10400"><KWP Multipoint="0"><ISO8><KW1 Value="233"/><KW2 Value="143" Timeout="250"/>)"
              R"(<FirstRequest Delay="40"/></ISO8><KW2_ Delay="35"/></KWP></K>)");
  EXPECT_EQ(p.initMode(), 1);
  EXPECT_FALSE(p.multiPoint());
  EXPECT_EQ(p.key1(), 233);
  EXPECT_EQ(p.KW2Timeout(), 250);
  EXPECT_EQ(p.FirstRequestDelay(), 40);
  EXPECT_EQ(p.KW2Delay(), 35);
}

TEST(ParamsReadTest, KWithoutIso8OrKwpKeepsModeAndKeyBytes) {
  TargetParamItem p;
  p.set_initMode(1);
  p.set_multiPoint(true);
  p.set_key1(5);
  p.set_key2(6);
  LoadFrom(p, R"(<K BaudRate="4800"><InterByte Delay="9"/></K>)");
  EXPECT_EQ(p.initMode(), 1);
  EXPECT_TRUE(p.multiPoint());
  EXPECT_EQ(p.key1(), 5);
  EXPECT_EQ(p.key2(), 6);
  EXPECT_EQ(p.BaudRate(), 4800);
  EXPECT_EQ(p.InterByteDelay(), 9);
}

TEST(ParamsReadTest, MissingKLineValuesTakeTheirDefaults) {
  TargetParamItem p;
  p.set_BaudRate(1);
  p.set_key1(1);
  p.set_key2(1);
  p.set_KW2Timeout(1);
  p.set_FirstRequestDelay(1);
  p.set_InterByteDelay(1);
  p.set_ReplyToRequestDelay(1);
  p.set_RequestToReplyTimeout(1);
  p.set_TesterPresentDelay(1);
  p.set_ErrorDelay(1);
  Err().Clear();
  LoadFrom(p, "<K><ISO8/></K>");
  EXPECT_EQ(p.BaudRate(), 10400);
  EXPECT_EQ(p.key1(), 208);
  EXPECT_EQ(p.key2(), 143);
  EXPECT_EQ(p.KW2Timeout(), 300);
  EXPECT_EQ(p.FirstRequestDelay(), 20);
  EXPECT_EQ(p.InterByteDelay(), 0);
  EXPECT_EQ(p.ReplyToRequestDelay(), 5);
  EXPECT_EQ(p.RequestToReplyTimeout(), 300);
  EXPECT_EQ(p.TesterPresentDelay(), 3000);
  EXPECT_EQ(p.ErrorDelay(), 300);
  EXPECT_FALSE(Err().Pending());
}

TEST(ParamsReadTest, ValueThatDoesNotConvertKeepsTheDefaultAndLeavesNoError) {
  TargetParamItem p;
  LoadFrom(p, R"(<K BaudRate="fast"><ISO8><KW1 Value="99999999999"/></ISO8></K>)");
  EXPECT_EQ(p.BaudRate(), 10400);
  EXPECT_EQ(p.key1(), 208);
  EXPECT_EQ(p.initMode(), 0);
  EXPECT_FALSE(Err().Pending());
}

TEST(ParamsReadTest, LoadingStartsFromAClearErrorState) {
  TargetParamItem p;
  Err().Raise(1, "elsewhere", "an earlier error");
  LoadFrom(p, R"(<K BaudRate="9600"><ISO8/></K>)");
  EXPECT_FALSE(Err().Pending());
}

TEST(ParamsReadTest, AttributeFoundOnALaterElementOfThePath) {
  // The first KW1 has no Value; the value of the second one is read, as a path selection
  // over all KW1 elements would find it.
  TargetParamItem p;
  LoadFrom(p, R"(<K><ISO8><KW1/><KW1 Value="17"/></ISO8></K>)");
  EXPECT_EQ(p.key1(), 17);
}

TEST(ParamsReadTest, CanWithoutSendIdLoadsAsInitModeTwoHundredFiftyFive) {
  TargetParamItem p;
  LoadFrom(p, R"(<CAN BaudRate="500000" Multipoint="1"><ReceiveId><CANId Value="1792"/></ReceiveId></CAN>)");
  EXPECT_EQ(p.initMode(), 255);
  EXPECT_TRUE(p.multiPoint());
  EXPECT_EQ(p.BaudRate(), 500000);
  EXPECT_EQ(p.CanXId(), -1);
  EXPECT_EQ(p.CanRId(), 1792);
}

TEST(ParamsReadTest, ExtendedSendIdSetsBitThirtyOne) {
  TargetParamItem p;
  LoadFrom(p, R"(<CAN BaudRate="500000" Multipoint="0"><SendId><CANId Value="2047" Extended="1"/></SendId>)"
              R"(<ReceiveId><CANId Value="1800"/></ReceiveId></CAN>)");
  EXPECT_EQ(p.initMode(), 3);
  EXPECT_EQ(p.CanXId(), -2147481601);
  EXPECT_EQ(p.CanXId(), static_cast<std::int32_t>(0x800007FFu));
  EXPECT_EQ(p.CanRId(), 1800);
}

TEST(ParamsReadTest, CanMissingValuesTakeTheirDefaults) {
  TargetParamItem p;
  p.set_BaudRate(1);
  p.set_multiPoint(true);
  p.set_CanXId(5);
  p.set_CanRId(6);
  LoadFrom(p, "<CAN><SendId/></CAN>");
  EXPECT_EQ(p.initMode(), 3);
  EXPECT_EQ(p.BaudRate(), 10400);
  EXPECT_FALSE(p.multiPoint());
  EXPECT_EQ(p.CanXId(), -1);
  EXPECT_EQ(p.CanRId(), -1);
}

TEST(ParamsReadTest, IsCanWithoutCanChildReturnsFalseAndLeavesTheOutputs) {
  TargetParamItem p;
  pugi::xml_document doc;
  ParseText(doc, R"(<T><K BaudRate="9600"/></T>)");
  bool multi = true;
  std::int32_t init = 7, baud = 8, send = 9, receive = 10;
  EXPECT_FALSE(p.isCan(doc.child("T"), multi, init, baud, send, receive));
  EXPECT_TRUE(multi);
  EXPECT_EQ(init, 7);
  EXPECT_EQ(baud, 8);
  EXPECT_EQ(send, 9);
  EXPECT_EQ(receive, 10);
}

TEST(ParamsReadTest, IsCanFillsTheOutputsWithoutTouchingTheObject) {
  TargetParamItem p;
  pugi::xml_document doc;
  ParseText(doc, R"(<T><CAN BaudRate="250000" Multipoint="1"><SendId><CANId Value="1234" Extended="1"/></SendId>)"
                 R"(</CAN></T>)");
  bool multi = false;
  std::int32_t init = 0, baud = 0, send = 0, receive = 0;
  EXPECT_TRUE(p.isCan(doc.child("T"), multi, init, baud, send, receive));
  EXPECT_TRUE(multi);
  EXPECT_EQ(init, 3);
  EXPECT_EQ(baud, 250000);
  EXPECT_EQ(send, static_cast<std::int32_t>(0x80000000u | 1234u));
  EXPECT_EQ(receive, -1);
  EXPECT_EQ(p.initMode(), 2);
  EXPECT_EQ(p.CanXId(), -1);
}

TEST(ParamsReadTest, ExtendedNegativeIdentifierOverflowsAndStaysAsRead) {
  TargetParamItem p;
  LoadFrom(p, R"(<CAN><SendId><CANId Value="-5" Extended="1"/></SendId></CAN>)");
  EXPECT_EQ(p.CanXId(), -5);
}

TEST(ParamsReadTest, ExtendedFlagThatIsNotABooleanCountsAsFalse) {
  TargetParamItem p;
  LoadFrom(p, R"(<CAN><SendId><CANId Value="300" Extended="yes"/></SendId></CAN>)");
  EXPECT_EQ(p.CanXId(), 300);
  EXPECT_FALSE(Err().Pending());
}

TEST(ParamsReadTest, CanIdentifierThatIsNotANumberStaysNone) {
  TargetParamItem p;
  LoadFrom(p, R"(<CAN><SendId><CANId Value="7E0"/></SendId><ReceiveId><CANId Value="1800"/></ReceiveId></CAN>)");
  EXPECT_EQ(p.CanXId(), -1);
  EXPECT_EQ(p.CanRId(), 1800);
  EXPECT_EQ(p.initMode(), 3);
  EXPECT_FALSE(Err().Pending());
}

TEST(ParamsReadTest, KTakesPrecedenceOverCanAndProtocol) {
  TargetParamItem p;
  LoadFrom(p, R"(<CAN BaudRate="500000"/><Protocol InitMode="9"/><K BaudRate="9600"><ISO8/></K>)");
  EXPECT_EQ(p.initMode(), 0);
  EXPECT_EQ(p.BaudRate(), 9600);
}

TEST(ParamsReadTest, GenericProtocolReadsEveryValue) {
  TargetParamItem p;
  LoadFrom(p, R"(<Protocol Name="x" InitMode="9" Multipoint="1" BaudRate="19200"><InterByte Delay="1"/>)"
              R"(<ReplyToRequest Delay="2"/><RequestToReply Timeout="3"/><TesterPresent Delay="4"/>)"
              R"(<OnError Delay="5"/><KW1 Value="6"/><KW2 Value="7" Timeout="8"/><KW2_ Delay="9"/>)"
              R"(<FirstRequest Delay="10"/></Protocol>)");
  EXPECT_EQ(p.initMode(), 9);
  EXPECT_TRUE(p.multiPoint());
  EXPECT_EQ(p.BaudRate(), 19200);
  EXPECT_EQ(p.InterByteDelay(), 1);
  EXPECT_EQ(p.ReplyToRequestDelay(), 2);
  EXPECT_EQ(p.RequestToReplyTimeout(), 3);
  EXPECT_EQ(p.TesterPresentDelay(), 4);
  EXPECT_EQ(p.ErrorDelay(), 5);
  EXPECT_EQ(p.key1(), 6);
  EXPECT_EQ(p.key2(), 7);
  EXPECT_EQ(p.KW2Timeout(), 8);
  EXPECT_EQ(p.KW2Delay(), 9);
  EXPECT_EQ(p.FirstRequestDelay(), 10);
}

TEST(ParamsReadTest, GenericProtocolWithoutInitModeReadsModeTwo) {
  TargetParamItem p;
  p.set_initMode(5);
  p.set_KW2Delay(1);
  LoadFrom(p, "<Protocol/>");
  EXPECT_EQ(p.initMode(), 2);
  EXPECT_EQ(p.KW2Delay(), 25);
}

TEST(ParamsReadTest, WithoutAnyProtocolElementTheProtocolFieldsKeepTheirValues) {
  TargetParamItem p;
  p.set_initMode(9);
  p.set_BaudRate(1200);
  p.set_CanXId(33);
  LoadFrom(p, "<DateOfficialisation/>");
  EXPECT_EQ(p.initMode(), 9);
  EXPECT_EQ(p.BaudRate(), 1200);
  EXPECT_EQ(p.CanXId(), 33);
}

TEST(ParamsReadTest, DescriptionLineFeedsComeBackAsCarriageReturnLineFeedTrimmed) {
  TargetParamItem p;
  LoadFrom(p, "<Description><![CDATA[  first line\nsecond line  ]]></Description>");
  EXPECT_EQ(p.Comment(), "first line\r\nsecond line");
}

TEST(ParamsReadTest, DescriptionIsTrimmedOfSpacesOnly) {
  TargetParamItem p;
  LoadFrom(p, "<Description><![CDATA[\tnote\n]]></Description>");
  EXPECT_EQ(p.Comment(), "\tnote\r\n");
}

TEST(ParamsReadTest, XmlCommentIsTheFallbackAndIsNotTrimmed) {
  TargetParamItem p;
  LoadFrom(p, "<!-- old style\nnote --><K/>");
  EXPECT_EQ(p.Comment(), " old style\r\nnote ");
}

TEST(ParamsReadTest, DescriptionWinsOverAnXmlComment) {
  TargetParamItem p;
  LoadFrom(p, "<!--comment--><Description>described</Description>");
  EXPECT_EQ(p.Comment(), "described");
}

TEST(ParamsReadTest, NoDescriptionAndNoCommentEmptiesTheComment) {
  TargetParamItem p;
  p.set_Comment("old");
  LoadFrom(p, "<K/>");
  EXPECT_EQ(p.Comment(), "");
}

TEST(ParamsReadTest, OnlyTheExactTextLittleMakesTheDataLittleEndian) {
  TargetParamItem p;
  LoadFrom(p, R"(<Requests Endian="Little"/>)");
  EXPECT_TRUE(p.LittleEndian());
  LoadFrom(p, R"(<Requests Endian="little"/>)");
  EXPECT_FALSE(p.LittleEndian());
  p.set_LittleEndian(true);
  LoadFrom(p, "<Requests/>");
  EXPECT_FALSE(p.LittleEndian());
}

TEST(ParamsReadTest, DateAndBootAreReadAsWritten) {
  TargetParamItem p;
  LoadFrom(p, R"(<DateOfficialisation>12/03/2004</DateOfficialisation><Boot Name="BOOT_V2"/>)");
  EXPECT_EQ(p.DateOfficialisation(), "12/03/2004");
  EXPECT_EQ(p.Reprogrammable(), "BOOT_V2");
  LoadFrom(p, "<DateOfficialisation/>");
  EXPECT_EQ(p.DateOfficialisation(), "");
  EXPECT_EQ(p.Reprogrammable(), "");
}

TEST(ParamsReadTest, LoadingDoesNotTouchTheToolAddress) {
  TargetParamItem p;
  p.set_ToolAddress(16);
  LoadFrom(p, R"(<K BaudRate="9600"><ISO8/></K>)");
  DefaultValue slot;
  EXPECT_FALSE(p.isDefaultValue(16, slot));
}

TEST_F(ParamsWithFacade, RepairedValuesAreReportedToTheDiagnosticsCallback) {
  std::vector<Diagnostic> seen;
  lib.set_Diagnostics([&](const Diagnostic& d) { seen.push_back(d); });
  target->set_name("Engine");
  LoadFrom(params(), R"(<Failures Name="x" Id="0"/><K BaudRate="fast"><ISO8/></K>)");
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].action, Diagnostic::Action::kRepaired);
  EXPECT_EQ(seen[0].what, "@BaudRate of K in target Engine");
  EXPECT_EQ(seen[0].why, "Type mismatch: \"fast\" read as the default 10400");
  EXPECT_EQ(params().BaudRate(), 10400);
}

TEST_F(ParamsWithFacade, UnknownFailureIdIsReportedAsRepaired) {
  std::vector<Diagnostic> seen;
  lib.set_Diagnostics([&](const Diagnostic& d) { seen.push_back(d); });
  target->set_name("Engine");
  LoadFrom(params(), R"(<Failures Name="x" Id="9"/>)");
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].action, Diagnostic::Action::kRepaired);
  EXPECT_EQ(seen[0].what, "Failures in target Engine");
  EXPECT_EQ(seen[0].why, "No failure type of Id 9, read as Id 0 \"Ne contient pas de pannes\"");
}

// ---------------------------------------------------------------------------------------------
// Writing

TEST(ParamsWriteTest, FreshObjectWritesTheFixedHeadAndAFastInitKLine) {
  TargetParamItem p;
  EXPECT_EQ(Written(p),
            "<T>\n<DateOfficialisation/>\n<Failures Name=\"Ne contient pas de pannes\" Id=\"0\"/>\n"
            "<PowerSupply>\n<Ground/>\n<Vbat/>\n<AfterContact/>\n</PowerSupply>\n"
            "<K BaudRate=\"10400\">\n<KWP Multipoint=\"0\">\n<FastInit><KW1 Value=\"208\"/>\n<KW2 Value=\"143\"/>"
            "</FastInit>\n</KWP>\n<InterByte Delay=\"0\"/>\n<ReplyToRequest Delay=\"5\"/>\n"
            "<RequestToReply Timeout=\"300\"/>\n<TesterPresent Delay=\"3000\"/>\n<OnError Delay=\"300\"/>\n</K></T>");
}

TEST(ParamsWriteTest, CommentIsWrittenAsCDataWithoutSurroundingSpaces) {
  TargetParamItem p;
  p.set_Comment("   injection ECU\r\nsecond line  ");
  std::string text = Written(p);
  EXPECT_TRUE(text.starts_with("<T><Description><![CDATA[injection ECU\r\nsecond line]]></Description>\n"
                               "<DateOfficialisation/>"))
      << text;
}

TEST(ParamsWriteTest, BlankCommentWritesNoDescription) {
  TargetParamItem p;
  p.set_Comment("    ");
  EXPECT_EQ(Written(p).find("Description"), std::string::npos);
  EXPECT_EQ(p.Comment(), "    ");
}

TEST(ParamsWriteTest, EmptyReprogrammableWritesNoBootAndTheDateIsAlwaysWritten) {
  TargetParamItem p;
  std::string empty = Written(p);
  EXPECT_EQ(empty.find("<Boot"), std::string::npos);
  EXPECT_NE(empty.find("\n<DateOfficialisation/>\n"), std::string::npos);

  p.set_Reprogrammable("BOOT_A");
  p.set_DateOfficialisation("2004-05-06");
  std::string full = Written(p);
  EXPECT_NE(full.find("<DateOfficialisation>2004-05-06</DateOfficialisation>\n<Failures "
                      "Name=\"Ne contient pas de pannes\" Id=\"0\"/>\n<Boot Name=\"BOOT_A\"/>\n<PowerSupply>"),
            std::string::npos);
}

TEST(ParamsWriteTest, FailuresAreWrittenWithTheirLabelAndId) {
  TargetParamItem p;
  p.set_TypePanne("Flags de pannes");
  p.set_TypePanneId(1);
  EXPECT_NE(Written(p).find("<Failures Name=\"Flags de pannes\" Id=\"1\"/>"), std::string::npos);
}

TEST(ParamsWriteTest, InitModeZeroWritesKWithIso8) {
  TargetParamItem p;
  p.set_initMode(0);
  p.set_multiPoint(true);
  p.set_BaudRate(9600);
  p.set_key1(1);
  p.set_key2(2);
  p.set_KW2Timeout(3);
  p.set_FirstRequestDelay(4);
  p.set_InterByteDelay(5);
  p.set_ReplyToRequestDelay(6);
  p.set_RequestToReplyTimeout(7);
  p.set_TesterPresentDelay(8);
  p.set_ErrorDelay(9);
  EXPECT_EQ(WrittenProtocol(p),
            "<K BaudRate=\"9600\">\n<ISO8>\n<L/>\n<KW1 Value=\"1\"/>\n<KW2 Value=\"2\" Timeout=\"3\"/>\n"
            "<FirstRequest Delay=\"4\"/>\n</ISO8>\n<InterByte Delay=\"5\"/>\n<ReplyToRequest Delay=\"6\"/>\n"
            "<RequestToReply Timeout=\"7\"/>\n<TesterPresent Delay=\"8\"/>\n<OnError Delay=\"9\"/>\n</K>");
}

TEST(ParamsWriteTest, InitModeOneWritesKwpWithIso8AndKeyByteDelay) {
  TargetParamItem p;
  p.set_initMode(1);
  p.set_multiPoint(true);
  p.set_KW2Delay(40);
  EXPECT_EQ(WrittenProtocol(p),
            "<K BaudRate=\"10400\">\n<KWP Multipoint=\"1\">\n<ISO8>\n<L/>\n<KW1 Value=\"208\"/>\n"
            "<KW2 Value=\"143\" Timeout=\"300\"/>\n<FirstRequest Delay=\"20\"/>\n</ISO8><KW2_ Delay=\"40\"/>\n"
            "</KWP>\n<InterByte Delay=\"0\"/>\n<ReplyToRequest Delay=\"5\"/>\n<RequestToReply Timeout=\"300\"/>\n"
            "<TesterPresent Delay=\"3000\"/>\n<OnError Delay=\"300\"/>\n</K>");
}

TEST(ParamsWriteTest, CanMessagingWritesCanAlone) {
  TargetParamItem p;
  p.set_initMode(255);
  p.set_BaudRate(500000);
  p.set_multiPoint(true);
  p.set_CanXId(1792);
  EXPECT_EQ(WrittenProtocol(p), "<CAN BaudRate=\"500000\" Multipoint=\"1\">\n</CAN>");
}

TEST(ParamsWriteTest, GenericProtocolWithoutATargetHasNoName) {
  TargetParamItem p;
  p.set_initMode(6);
  EXPECT_EQ(WrittenProtocol(p),
            "<Protocol InitMode=\"6\" Multipoint=\"0\" BaudRate=\"10400\">\n<InterByte Delay=\"0\"/>\n"
            "<ReplyToRequest Delay=\"5\"/>\n<RequestToReply Timeout=\"300\"/>\n<TesterPresent Delay=\"3000\"/>\n"
            "<OnError Delay=\"300\"/>\n<KW1 Value=\"208\"/>\n<KW2 Value=\"143\" Timeout=\"300\"/>\n"
            "<KW2_ Delay=\"25\"/>\n<FirstRequest Delay=\"20\"/>\n</Protocol>");
}

TEST_F(ParamsWithFacade, GenericProtocolNameIsTheGlobalProtocolOfThatIdentifier) {
  params().set_initMode(6);
  std::string text = WrittenProtocol(params());
  EXPECT_TRUE(text.starts_with(
      "<Protocol Name=\"KWP 2000 init rapide multipoint\" InitMode=\"6\" Multipoint=\"0\" BaudRate=\"10400\">\n"))
      << text;
}

TEST_F(ParamsWithFacade, GenericProtocolOfAnUnknownIdentifierHasNoName) {
  for (std::int32_t mode : {5, 9}) {
    params().set_initMode(mode);
    std::string text = WrittenProtocol(params());
    EXPECT_TRUE(text.starts_with("<Protocol InitMode=\"" + std::to_string(mode) + "\" Multipoint=\"0\"")) << text;
  }
}

TEST_F(ParamsWithFacade, DiagOnCanWritesTheExtendedIdentifierOfTheFunction) {
  lib.set_functions(std::make_shared<FunctionItems>());
  auto function = lib.functions()->Add(122, "Injection");
  function->set_CanXId(static_cast<std::int32_t>(0x800007E0u));
  function->set_CanRId(2024);
  target->set_Address(122);
  params().set_initMode(3);
  params().set_BaudRate(500000);
  EXPECT_EQ(WrittenProtocol(params()),
            "<CAN BaudRate=\"500000\" Multipoint=\"0\">\n<SendId>\n<CANId Value=\"2016\" Extended=\"1\"/>\n</SendId>"
            "<ReceiveId>\n<CANId Value=\"2024\"/>\n</ReceiveId></CAN>");
}

TEST_F(ParamsWithFacade, DiagOnCanWritesOnlyTheIdentifiersTheFunctionHas) {
  lib.set_functions(std::make_shared<FunctionItems>());
  lib.functions()->Add(122, "Injection")->set_CanRId(1792);
  target->set_Address(122);
  params().set_initMode(3);
  // The parameters' own identifiers are not what is written.
  params().set_CanXId(1800);
  params().set_CanRId(1801);
  EXPECT_EQ(WrittenProtocol(params()),
            "<CAN BaudRate=\"10400\" Multipoint=\"0\">\n<ReceiveId>\n<CANId Value=\"1792\"/>\n</ReceiveId></CAN>");
}

TEST_F(ParamsWithFacade, DiagOnCanTakesTheFirstFunctionOfTheTargetAddress) {
  lib.set_functions(std::make_shared<FunctionItems>());
  lib.functions()->Add(121, "Other")->set_CanXId(1);
  lib.functions()->Add(122, "Injection")->set_CanXId(2);
  lib.functions()->Add(122, "Injection bis")->set_CanXId(3);
  target->set_Address(122);
  params().set_initMode(3);
  EXPECT_EQ(WrittenProtocol(params()),
            "<CAN BaudRate=\"10400\" Multipoint=\"0\">\n<SendId>\n<CANId Value=\"2\"/>\n</SendId></CAN>");
}

TEST_F(ParamsWithFacade, DiagOnCanWithoutAFunctionWritesNoIdentifiersAndWarns) {
  std::vector<std::pair<std::string, std::string>> warnings;
  lib.set_WarningInfo([&](const std::string& c, const std::string& m) { warnings.emplace_back(c, m); });
  lib.set_functions(std::make_shared<FunctionItems>());
  lib.functions()->Add(121, "Other")->set_CanXId(1);
  target->set_Address(122);
  params().set_initMode(3);
  EXPECT_EQ(WrittenProtocol(params()), "<CAN BaudRate=\"10400\" Multipoint=\"0\">\n</CAN>");
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_EQ(warnings[0].first, "TargetParamItem.createXMLnode");
  EXPECT_EQ(warnings[0].second, "No function of address 122 in the functions table, CAN identifiers not written");
}

TEST(ParamsWriteTest, DiagOnCanWithoutATargetWritesNoIdentifiers) {
  TargetParamItem p;
  p.set_initMode(3);
  p.set_CanXId(1792);
  EXPECT_EQ(WrittenProtocol(p), "<CAN BaudRate=\"10400\" Multipoint=\"0\">\n</CAN>");
}

TEST(ParamsWriteTest, ToolAddressByteOrderAndOwnCanIdentifiersAreNotWrittenHere) {
  TargetParamItem p;
  p.set_ToolAddress(16);
  p.set_LittleEndian(true);
  p.set_CanXId(1792);
  p.set_CanRId(1800);
  p.set_initMode(255);
  std::string text = Written(p);
  for (const char* absent : {"ToolAddress", "Endian", "Little", "16", "1792", "1800", "SendId", "ReceiveId"})
    EXPECT_EQ(text.find(absent), std::string::npos) << absent;
}

}  // namespace
}  // namespace tessaly
