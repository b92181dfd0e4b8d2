#include "tessaly/data/data_items.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "data/data_test_util.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

using testing::LoadDatas;
using testing::ParseElement;
using testing::WriteDatas;

std::vector<std::string> Names(const DataItems& items) {
  std::vector<std::string> names;
  for (const auto& item : items) names.push_back(item->dataName());
  return names;
}

std::shared_ptr<DataItem> Named(const std::string& name) {
  auto item = std::make_shared<DataItem>();
  item->set_dataName(name);
  return item;
}

// Reads one Data element into a fresh item.
std::shared_ptr<DataItem> ReadData(const std::string& text) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, text);
  auto item = std::make_shared<DataItem>();
  item->loadXml(doc, node);
  return item;
}

// Writes one item into a Data element and returns its text.
std::string WriteData(const DataItem& item) {
  pugi::xml_document doc;
  pugi::xml_node node = doc.append_child("Data");
  item.createXMLnode(doc, node);
  return testing::NodeText(node);
}

// ----- defaults and properties ----------------------------------------------------------------

TEST(DataItemTest, NewItemHoldsTheDefaults) {
  DataItem item;
  EXPECT_EQ(item.dataName(), "");
  EXPECT_EQ(item.NumberBits(), 8);
  EXPECT_TRUE(item.numerique());
  EXPECT_FALSE(item.liste());
  EXPECT_EQ(item.Unite(), "");
  EXPECT_FALSE(item.Signe());
  EXPECT_EQ(item.CoeffA(), 1.0);
  EXPECT_EQ(item.CoeffB(), 0.0);
  EXPECT_EQ(item.CoeffC(), 1.0);
  EXPECT_EQ(item.DataFormat(), "");
  EXPECT_FALSE(item.Ascii());
  EXPECT_EQ(item.Mnemo(), "");
  EXPECT_EQ(item.Description(), "");
  EXPECT_EQ(item.Fiche(), "");
  EXPECT_EQ(item.DataListes(), nullptr);
  EXPECT_EQ(item.parent(), nullptr);
}

TEST(DataItemTest, ScalingAndTextsReadBackWhatWasSetIncludingDefaultsAndNegativeZero) {
  DataItem item;
  item.set_Unite("");
  item.set_Description("");
  item.set_CoeffB(-0.0);
  EXPECT_EQ(item.Unite(), "");
  EXPECT_EQ(item.Description(), "");
  EXPECT_TRUE(std::signbit(item.CoeffB()));
  EXPECT_EQ(item.CoeffA(), 1.0);
  item.set_CoeffC(std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(std::isnan(item.CoeffC()));
  item.set_Fiche("long text");
  item.set_DataFormat("%.2f");
  item.set_CoeffA(1.0);
  EXPECT_EQ(item.Fiche(), "long text");
  EXPECT_EQ(item.Description(), "");
  EXPECT_EQ(item.DataFormat(), "%.2f");
  EXPECT_EQ(item.Unite(), "");
  EXPECT_EQ(item.CoeffA(), 1.0);
  item.set_Fiche("");
  EXPECT_EQ(item.Fiche(), "");
}

TEST(DataItemTest, ReadingReplacesTheCommentAndDescriptionHeldBefore) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, "<Data Name=\"A\"><Description>new</Description><Bits/></Data>");
  DataItem item;
  item.set_Description("old comment");
  item.set_Fiche("old description");
  item.loadXml(doc, node);
  EXPECT_EQ(item.Description(), "");
  EXPECT_EQ(item.Fiche(), "new");
}

TEST(DataItemTest, SettingTheCurrentNameInsideAnEcuFails) {
  auto target = TargetItem::Create();
  auto speed = target->datas()->Add("Speed");
  speed->set_parent(target);
  EXPECT_TESSALY_ERROR(speed->set_dataName("Speed"), 1, "DataItem.dataName", "Duplicate name (Speed)");
  EXPECT_EQ(speed->dataName(), "Speed");
}

TEST(DataItemTest, SettingANameHeldInAnotherLetterCaseFails) {
  auto target = TargetItem::Create();
  target->datas()->Add("Speed");
  auto other = target->datas()->Add("Rpm");
  other->set_parent(target);
  EXPECT_TESSALY_ERROR(other->set_dataName("SPEED"), 1, "DataItem.dataName", "Duplicate name (SPEED)");
  EXPECT_EQ(other->dataName(), "Rpm");
}

TEST(DataItemTest, SettingAFreeNameInsideAnEcuStoresIt) {
  auto target = TargetItem::Create();
  auto item = target->datas()->Add("Speed");
  item->set_parent(target);
  item->set_dataName("Velocity");
  EXPECT_EQ(item->dataName(), "Velocity");
}

TEST(DataItemTest, WithoutParentAnyNameIsStored) {
  DataItem item;
  item.set_dataName("X");
  item.set_dataName("X");
  EXPECT_EQ(item.dataName(), "X");
}

TEST(DataItemTest, ClearDropsParentAndClearsTheList) {
  auto target = TargetItem::Create();
  auto item = std::make_shared<DataItem>();
  item->set_parent(target);
  auto list = std::make_shared<DataListeItems>();
  auto entry = list->Add(3, "three");
  item->set_DataListes(list);
  item->clear();
  EXPECT_EQ(item->parent(), nullptr);
  EXPECT_EQ(item->DataListes(), nullptr);
  EXPECT_EQ(list->Count(), 0);
  EXPECT_EQ(entry->Valeur(), 0);
  EXPECT_EQ(entry->libelle(), "");
}

TEST(DataItemTest, CloneCopiesEveryPropertyAndTheList) {
  auto source = std::make_shared<DataItem>();
  source->set_dataName("Mode");
  source->set_NumberBits(12);
  source->set_numerique(true);
  source->set_liste(true);
  source->set_Unite("km/h");
  source->set_Signe(true);
  source->set_CoeffA(0.5);
  source->set_CoeffB(-40);
  source->set_CoeffC(3);
  source->set_DataFormat("%5.1f");
  source->set_Ascii(true);
  source->set_Mnemo("MD");
  source->set_Description("comment");
  source->set_Fiche("long text");
  source->set_DataListes(std::make_shared<DataListeItems>());
  source->DataListes()->Add(2, "two");
  source->DataListes()->Add(1, "one");

  auto target = TargetItem::Create();
  auto copy = source->clone(target);
  EXPECT_EQ(copy->parent(), target);
  EXPECT_EQ(copy->dataName(), "Mode");
  EXPECT_EQ(copy->NumberBits(), 12);
  EXPECT_TRUE(copy->liste());
  EXPECT_EQ(copy->Unite(), "km/h");
  EXPECT_TRUE(copy->Signe());
  EXPECT_EQ(copy->CoeffA(), 0.5);
  EXPECT_EQ(copy->CoeffB(), -40);
  EXPECT_EQ(copy->CoeffC(), 3);
  EXPECT_EQ(copy->DataFormat(), "%5.1f");
  EXPECT_TRUE(copy->Ascii());
  EXPECT_EQ(copy->Mnemo(), "MD");
  EXPECT_EQ(copy->Description(), "comment");
  EXPECT_EQ(copy->Fiche(), "long text");
  ASSERT_NE(copy->DataListes(), nullptr);
  EXPECT_NE(copy->DataListes(), source->DataListes());
  ASSERT_EQ(copy->DataListes()->Count(), 2);
  EXPECT_EQ(copy->DataListes()->Item(1)->Valeur(), 1);
  EXPECT_EQ(copy->DataListes()->Item(1)->parent(), copy);
}

TEST(DataItemTest, CloneHasScalingAndTextsOfItsOwn) {
  auto source = Named("Speed");
  source->set_Unite("km/h");
  source->set_Description("comment");
  auto copy = source->clone(nullptr);
  copy->set_Unite("mph");
  copy->set_Description("");
  EXPECT_EQ(source->Unite(), "km/h");
  EXPECT_EQ(source->Description(), "comment");
  EXPECT_EQ(copy->Unite(), "mph");
  EXPECT_EQ(copy->Description(), "");
}

TEST(DataItemTest, CloneIntoAnEcuThatHoldsTheNameFails) {
  auto target = TargetItem::Create();
  target->datas()->Add("Speed");
  auto source = Named("Speed");
  EXPECT_TESSALY_ERROR(source->clone(target), 1, "DataItem.dataName", "Duplicate name (Speed)");
}

TEST(DataItemTest, CloneWithoutListHasNoList) {
  auto copy = Named("A")->clone(nullptr);
  EXPECT_EQ(copy->DataListes(), nullptr);
  EXPECT_EQ(copy->parent(), nullptr);
}

// ----- reading ------------------------------------------------------------------------------

TEST(DataItemTest, BitsWithoutAttributesOrChildrenIsAnUnsignedUnscaledByte) {
  auto item = ReadData("<Data Name=\"A\"><Bits/></Data>");
  EXPECT_FALSE(Err().Pending());
  EXPECT_TRUE(item->numerique());
  EXPECT_EQ(item->NumberBits(), 8);
  EXPECT_FALSE(item->Signe());
  EXPECT_FALSE(item->liste());
  EXPECT_EQ(item->CoeffA(), 1.0);
  EXPECT_EQ(item->CoeffB(), 0.0);
  EXPECT_EQ(item->CoeffC(), 1.0);
  EXPECT_EQ(item->Unite(), "");
}

TEST(DataItemTest, BytesCountThreeIs24Bits) {
  auto item = ReadData("<Data Name=\"A\"><Bytes count=\"3\"/></Data>");
  EXPECT_FALSE(item->numerique());
  EXPECT_EQ(item->NumberBits(), 24);
  EXPECT_FALSE(item->Ascii());
}

TEST(DataItemTest, BytesCountWithFractionGivesPartBytes) {
  EXPECT_EQ(ReadData("<Data Name=\"A\"><Bytes count=\"1.5\"/></Data>")->NumberBits(), 12);
  EXPECT_EQ(ReadData("<Data Name=\"A\"><Bytes count=\"2.5\"/></Data>")->NumberBits(), 20);
  EXPECT_EQ(ReadData("<Data Name=\"A\"><Bytes count=\"0.125\"/></Data>")->NumberBits(), 1);
}

TEST(DataItemTest, BytesCountProductEndingInHalfRoundsToEven) {
  // 0.0625 * 8 = 0.5 -> 0; 0.1875 * 8 = 1.5 -> 2; 0.3125 * 8 = 2.5 -> 2.
  EXPECT_EQ(ReadData("<Data Name=\"A\"><Bytes count=\"0.0625\"/></Data>")->NumberBits(), 0);
  EXPECT_EQ(ReadData("<Data Name=\"A\"><Bytes count=\"0.1875\"/></Data>")->NumberBits(), 2);
  EXPECT_EQ(ReadData("<Data Name=\"A\"><Bytes count=\"0.3125\"/></Data>")->NumberBits(), 2);
}

TEST(DataItemTest, BytesWithoutCountKeepsEightBits) {
  auto item = ReadData("<Data Name=\"A\"><Bytes ascii=\"1\"/></Data>");
  EXPECT_FALSE(item->numerique());
  EXPECT_EQ(item->NumberBits(), 8);
  EXPECT_TRUE(item->Ascii());
}

TEST(DataItemTest, StepWithCommaSeparatorReadsAsZero) {
  auto item = ReadData("<Data Name=\"A\"><Bits><Scaled Step=\"0,5\"/></Bits></Data>");
  EXPECT_EQ(item->CoeffA(), 0.0);
  EXPECT_FALSE(Err().Pending());
}

TEST(DataItemTest, ScalingAttributesAreLeadingNumbers) {
  auto item = ReadData(
      "<Data Name=\"A\"><Bits count=\"16\" signed=\"1\"><Scaled Unit=\"km/h\" Step=\"0.01\" Offset=\"-40\" "
      "DivideBy=\"4x\" Format=\"%.2f\"/></Bits></Data>");
  EXPECT_EQ(item->NumberBits(), 16);
  EXPECT_TRUE(item->Signe());
  EXPECT_EQ(item->CoeffA(), 0.01);
  EXPECT_EQ(item->CoeffB(), -40.0);
  EXPECT_EQ(item->CoeffC(), 4.0);
  EXPECT_EQ(item->Unite(), "km/h");
  EXPECT_EQ(item->DataFormat(), "%.2f");
}

TEST(DataItemTest, ScalingTextWithoutNumberReadsAsZero) {
  auto item = ReadData("<Data Name=\"A\"><Bits><Scaled DivideBy=\"abc\"/></Bits></Data>");
  EXPECT_EQ(item->CoeffC(), 0.0);
}

TEST(DataItemTest, SignedAttributeAcceptsNumbersAndWordsElseFalse) {
  EXPECT_TRUE(ReadData("<Data Name=\"A\"><Bits signed=\"TRUE\"/></Data>")->Signe());
  EXPECT_TRUE(ReadData("<Data Name=\"A\"><Bits signed=\"2\"/></Data>")->Signe());
  EXPECT_FALSE(ReadData("<Data Name=\"A\"><Bits signed=\"false\"/></Data>")->Signe());
  EXPECT_FALSE(ReadData("<Data Name=\"A\"><Bits signed=\"0\"/></Data>")->Signe());
  EXPECT_FALSE(ReadData("<Data Name=\"A\"><Bits signed=\"yes\"/></Data>")->Signe());
  EXPECT_FALSE(Err().Pending());
}

TEST(DataItemTest, BitsCountThatDoesNotConvertLeavesTypeMismatchAndReadingGoesOn) {
  auto item = ReadData("<Data Name=\"A\"><Bits count=\"wide\"><Scaled Unit=\"V\"/></Bits></Data>");
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  EXPECT_EQ(item->NumberBits(), 8);
  EXPECT_EQ(item->Unite(), "V");
}

TEST(DataItemTest, ErrorBeforeTheListStaysPendingAfterReadingTheList) {
  auto item = ReadData(
      "<Data Name=\"A\"><Bits count=\"wide\"><List><Item Value=\"1\" Text=\"a\"/><Item Value=\"1\" Text=\"b\"/></List>"
      "</Bits></Data>");
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  ASSERT_NE(item->DataListes(), nullptr);
  EXPECT_EQ(item->DataListes()->Count(), 1);
}

TEST(DataItemTest, MissingNameLeavesError100AndReadsNothingMore) {
  auto item = ReadData("<Data><Mnemonic>M</Mnemonic><Bytes count=\"2\"/></Data>");
  EXPECT_PENDING_ERROR(100, "DataItem.loadXml", "DataItem.loadXml error : Name not defined");
  EXPECT_EQ(item->Mnemo(), "");
  EXPECT_TRUE(item->numerique());
  EXPECT_EQ(item->NumberBits(), 8);
}

TEST(DataItemTest, ReadingStartsFromAClearErrorState) {
  Err().Raise(5, "x", "y");
  ReadData("<Data Name=\"A\"/>");
  EXPECT_FALSE(Err().Pending());
}

TEST(DataItemTest, NeitherBitsNorBytesStaysAnEightBitNumber) {
  auto item = ReadData("<Data Name=\"A\"/>");
  EXPECT_TRUE(item->numerique());
  EXPECT_EQ(item->NumberBits(), 8);
}

TEST(DataItemTest, BitsWinsOverBytes) {
  auto item = ReadData("<Data Name=\"A\"><Bits count=\"4\"/><Bytes count=\"2\"/></Data>");
  EXPECT_TRUE(item->numerique());
  EXPECT_EQ(item->NumberBits(), 4);
}

TEST(DataItemTest, ScaledAndListAreBothRead) {
  auto item = ReadData(
      "<Data Name=\"A\"><Bits><Scaled Step=\"2\"/><List><Item Value=\"1\" Text=\"on\"/></List></Bits></Data>");
  EXPECT_TRUE(item->liste());
  EXPECT_EQ(item->CoeffA(), 2.0);
  ASSERT_NE(item->DataListes(), nullptr);
  ASSERT_EQ(item->DataListes()->Count(), 1);
  EXPECT_EQ(item->DataListes()->Item(1)->libelle(), "on");
  EXPECT_EQ(item->DataListes()->Item(1)->parent(), item);
}

TEST(DataItemTest, CommentElementIsTrimmedWithCrLfLines) {
  auto item = ReadData("<Data Name=\"A\"><Comment><![CDATA[  first\nsecond  ]]></Comment></Data>");
  EXPECT_EQ(item->Description(), "first\r\nsecond");
}

// (The parser reads a CR LF in the document as a line feed.)
TEST(DataItemTest, OneLineCommentIsTrimmedOrKeptAsItIs) {
  EXPECT_EQ(ReadData("<Data Name=\"A\"><Comment>  one line  </Comment></Data>")->Description(), "one line");
  EXPECT_EQ(ReadData("<Data Name=\"A\"><Comment>one line</Comment></Data>")->Description(), "one line");
  EXPECT_EQ(ReadData("<Data Name=\"A\"><Comment> \r\n </Comment></Data>")->Description(), "\r\n");
}

TEST(DataItemTest, XmlCommentServesWhenThereIsNoCommentElement) {
  auto item = ReadData("<Data Name=\"A\"><!-- old\nstyle --><Bits/></Data>");
  EXPECT_EQ(item->Description(), "old\r\nstyle");
}

TEST(DataItemTest, CommentElementWinsOverXmlComment) {
  auto item = ReadData("<Data Name=\"A\"><!--old--><Comment>new</Comment></Data>");
  EXPECT_EQ(item->Description(), "new");
}

TEST(DataItemTest, MnemonicAndDescriptionAreRead) {
  auto item = ReadData("<Data Name=\"A\"><Mnemonic>VSS</Mnemonic><Description><![CDATA[long]]></Description></Data>");
  EXPECT_EQ(item->Mnemo(), "VSS");
  EXPECT_EQ(item->Fiche(), "long");
}

TEST(DataItemTest, ReadingResetsNumericPropertiesFirst) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, "<Data Name=\"A\"><Bits/></Data>");
  DataItem item;
  item.set_NumberBits(3);
  item.set_Signe(true);
  item.set_CoeffA(7);
  item.set_Ascii(true);
  item.set_Unite("V");
  item.loadXml(doc, node);
  EXPECT_EQ(item.NumberBits(), 8);
  EXPECT_FALSE(item.Signe());
  EXPECT_EQ(item.CoeffA(), 1.0);
  EXPECT_FALSE(item.Ascii());
  EXPECT_EQ(item.Unite(), "");
}

// ----- writing ------------------------------------------------------------------------------

TEST(DataItemTest, DefaultNumericIsWrittenAsBitsHoldingAnEmptyScaled) {
  EXPECT_EQ(WriteData(*Named("A")), "<Data Name=\"A\">\n<Bits>\n<Scaled/>\n</Bits>\n</Data>");
}

TEST(DataItemTest, TwentyBitsOfBytesAreWrittenAsTwoAndAHalfAndReadBack) {
  auto item = Named("A");
  item->set_numerique(false);
  item->set_NumberBits(20);
  std::string text = WriteData(*item);
  EXPECT_EQ(text, "<Data Name=\"A\">\n<Bytes count=\"2.5\"/>\n</Data>");
  EXPECT_EQ(ReadData(text)->NumberBits(), 20);
}

TEST(DataItemTest, WholeBytesCountIsWrittenWithoutFraction) {
  auto item = Named("A");
  item->set_numerique(false);
  item->set_NumberBits(24);
  item->set_Ascii(true);
  EXPECT_EQ(WriteData(*item), "<Data Name=\"A\">\n<Bytes count=\"3\" ascii=\"1\"/>\n</Data>");
  item->set_NumberBits(1);
  item->set_Ascii(false);
  EXPECT_EQ(WriteData(*item), "<Data Name=\"A\">\n<Bytes count=\"0.125\"/>\n</Data>");
}

TEST(DataItemTest, ScalingIsWrittenAsShortestDecimalText) {
  auto item = Named("T");
  item->set_CoeffA(0.5);
  item->set_CoeffB(-40);
  item->set_CoeffC(0.001);
  item->set_Unite("degC");
  item->set_DataFormat("0.0");
  EXPECT_EQ(WriteData(*item),
            "<Data Name=\"T\">\n<Bits>\n<Scaled Unit=\"degC\" Step=\"0.5\" Offset=\"-40\" DivideBy=\"0.001\" "
            "Format=\"0.0\"/>\n</Bits>\n</Data>");
}

TEST(DataItemTest, SignedIsWrittenOnlyWhenTrueAndCountOnlyWhenNotEight) {
  auto item = Named("S");
  item->set_Signe(true);
  item->set_NumberBits(16);
  EXPECT_EQ(WriteData(*item), "<Data Name=\"S\">\n<Bits count=\"16\" signed=\"1\">\n<Scaled/>\n</Bits>\n</Data>");
}

TEST(DataItemTest, ListDataLosesItsScalingOnWriting) {
  auto item = Named("L");
  item->set_liste(true);
  item->set_CoeffA(2);
  item->set_Unite("V");
  EXPECT_EQ(WriteData(*item), "<Data Name=\"L\">\n<Bits>\n<List/>\n</Bits>\n</Data>");
  item->set_DataListes(std::make_shared<DataListeItems>());
  item->DataListes()->Add(0, "off");
  EXPECT_EQ(WriteData(*item),
            "<Data Name=\"L\">\n<Bits>\n<List>\n<Item Value=\"0\" Text=\"off\"/></List>\n</Bits>\n</Data>");
}

TEST(DataItemTest, CommentIsWrittenTrimmedAndBlankCommentIsLeftOut) {
  auto item = Named("C");
  item->set_Description("  note  ");
  item->set_Mnemo("MN");
  item->set_Fiche(" long ");
  EXPECT_EQ(WriteData(*item),
            "<Data Name=\"C\">\n<Comment><![CDATA[note]]></Comment>\n<Mnemonic>MN</Mnemonic>\n"
            "<Description><![CDATA[ long ]]></Description>\n<Bits>\n<Scaled/>\n</Bits>\n</Data>");
  item->set_Description("   ");
  item->set_Mnemo("");
  item->set_Fiche("");
  EXPECT_EQ(WriteData(*item), "<Data Name=\"C\">\n<Bits>\n<Scaled/>\n</Bits>\n</Data>");
}

// ----- the collection -----------------------------------------------------------------------

TEST(DataItemsTest, AddKeysByKAndNameWithoutParent) {
  DataItems items;
  auto item = items.Add("Speed");
  EXPECT_EQ(item->parent(), nullptr);
  EXPECT_EQ(items.Item("kSpeed"), item);
  EXPECT_EQ(items.Item("KSPEED"), item);
  EXPECT_EQ(items.Item(1), item);
  EXPECT_TESSALY_ERROR(items.Item("Speed"), 5, "Tessaly", "Invalid procedure call or argument");
}

TEST(DataItemsTest, AddDataOfAHeldNameFailsWithTheKeyError) {
  DataItems items;
  items.Add("Speed");
  EXPECT_TESSALY_ERROR(items.AddData(Named("speed")), 457, "Tessaly",
                       "This key is already associated with an element of this collection");
  EXPECT_EQ(items.Count(), 1);
}

TEST(DataItemsTest, ItemNameIgnoresLetterCaseAndGivesNullForMissing) {
  DataItems items;
  auto item = items.Add("Speed");
  EXPECT_EQ(items.ItemName("speed"), item);
  EXPECT_EQ(items.ItemName("Rpm"), nullptr);
}

TEST(DataItemsTest, AddDataSortedGoesBeforeTheLastGreaterName) {
  DataItems items;
  for (const char* name : {"B", "A", "C", "AA"}) items.AddDataSorted(Named(name));
  EXPECT_EQ(Names(items), (std::vector<std::string>{"A", "B", "AA", "C"}));
  EXPECT_EQ(items.ItemName("AA"), items.Item(3));
}

TEST(DataItemsTest, AddDataSortedRefusesAnExactDuplicate) {
  DataItems items;
  items.AddDataSorted(Named("B"));
  EXPECT_TESSALY_ERROR(items.AddDataSorted(Named("B")), 1, "DataItems.AddDataSorted", "Duplicate data name 'B'");
  EXPECT_EQ(items.Count(), 1);
}

TEST(DataItemsTest, AddDataSortedCaseCollisionBeforeAGreaterNameIsSwallowedAndNotAdded) {
  DataItems items;
  items.AddDataSorted(Named("b"));
  items.AddDataSorted(Named("c"));
  auto collision = Named("B");  // "B" sorts before "b" and "c": insertion, then append, both fail
  EXPECT_EQ(items.AddDataSorted(collision), collision);
  EXPECT_EQ(Names(items), (std::vector<std::string>{"b", "c"}));
}

TEST(DataItemsTest, AddDataSortedCaseCollisionAtTheEndReachesTheCaller) {
  DataItems items;
  items.AddDataSorted(Named("A"));
  EXPECT_TESSALY_ERROR(items.AddDataSorted(Named("a")), 457, "Tessaly",
                       "This key is already associated with an element of this collection");
  EXPECT_EQ(items.Count(), 1);
}

TEST(DataItemsTest, RenameReinsertsSorted) {
  DataItems items;
  auto a = items.Add("A");
  items.Add("M");
  items.Add("Z");
  items.rename(a, "N");
  EXPECT_EQ(a->dataName(), "N");
  EXPECT_EQ(Names(items), (std::vector<std::string>{"M", "N", "Z"}));
  EXPECT_EQ(items.ItemName("N"), a);
  EXPECT_EQ(items.ItemName("A"), nullptr);
}

TEST(DataItemsTest, RenameToAnotherItemsNameFails) {
  DataItems items;
  auto a = items.Add("A");
  items.Add("B");
  EXPECT_TESSALY_ERROR(items.rename(a, "b"), 1, "DataItems.rename", "Duplicate data (b)");
  EXPECT_EQ(Names(items), (std::vector<std::string>{"A", "B"}));
}

TEST(DataItemsTest, RenameToItsOwnNameDoesNothing) {
  DataItems items;
  auto a = items.Add("A");
  items.Add("0");
  items.rename(a, "A");
  EXPECT_EQ(Names(items), (std::vector<std::string>{"A", "0"}));
}

TEST(DataItemsTest, RenameToItsOwnNameInOtherCaseRenames) {
  DataItems items;
  auto a = items.Add("speed");
  items.rename(a, "Speed");
  EXPECT_EQ(a->dataName(), "Speed");
  EXPECT_EQ(items.Count(), 1);
  EXPECT_EQ(items.ItemName("SPEED"), a);
}

TEST(DataItemsTest, RenameFindsAnItemWhoseNameWasChangedDirectly) {
  DataItems items;
  auto a = items.Add("A");
  items.Add("C");
  a->set_dataName("X");  // the key is still "kA"
  items.rename(a, "B");
  EXPECT_EQ(Names(items), (std::vector<std::string>{"B", "C"}));
  EXPECT_EQ(items.ItemName("A"), nullptr);
  EXPECT_EQ(items.ItemName("B"), a);
}

TEST(DataItemsTest, RenameOfAnItemInsideItsEcuGoesThroughTheNameCheck) {
  auto target = TargetItem::Create();
  auto a = target->datas()->Add("A");
  a->set_parent(target);
  target->datas()->rename(a, "B");
  EXPECT_EQ(a->dataName(), "B");
  EXPECT_EQ(target->datas()->ItemName("B"), a);
}

TEST(DataItemsTest, DeleteClearsAndRemovesOnlyTheSameObject) {
  auto target = TargetItem::Create();
  DataItems items;
  auto a = items.Add("A");
  a->set_parent(target);
  items.Delete(Named("A"));  // equal name, other object
  EXPECT_EQ(items.Count(), 1);
  items.Delete(a);
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(a->parent(), nullptr);
}

TEST(DataItemsTest, ClearClearsEveryItem) {
  auto target = TargetItem::Create();
  DataItems items;
  auto a = items.Add("A");
  auto b = items.Add("B");
  a->set_parent(target);
  b->set_parent(target);
  items.clear();
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(a->parent(), nullptr);
  EXPECT_EQ(b->parent(), nullptr);
  items.clear();
  EXPECT_EQ(items.Count(), 0);
}

TEST(DataItemsTest, RemoveByKeyLeavesTheItemUncleared) {
  auto target = TargetItem::Create();
  DataItems items;
  auto a = items.Add("A");
  a->set_parent(target);
  items.Remove("kA");
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(a->parent(), target);
}

TEST(DataItemsTest, EmptyCollectionWritesNothing) {
  auto target = TargetItem::Create();
  EXPECT_EQ(WriteDatas(target), "<Datas>\n</Datas>");
}

TEST(DataItemsTest, ReadingSetsParentAndKeepsDocumentOrder) {
  auto target = TargetItem::Create();
  LoadDatas(target, "<Datas>\n<Data Name=\"Z\"/>\n<Data Name=\"A\"/>\n</Datas>");
  EXPECT_EQ(Names(*target->datas()), (std::vector<std::string>{"Z", "A"}));
  EXPECT_EQ(target->datas()->Item(1)->parent(), target);
  EXPECT_FALSE(Err().Pending());
}

TEST(DataItemsTest, ReadingDropsARepeatedNameSilently) {
  auto target = TargetItem::Create();
  LoadDatas(target, "<Datas><Data Name=\"A\"><Bits count=\"4\"/></Data><Data Name=\"a\"/><Data Name=\"B\"/></Datas>");
  EXPECT_EQ(Names(*target->datas()), (std::vector<std::string>{"A", "B"}));
  EXPECT_EQ(target->datas()->Item(1)->NumberBits(), 4);
  EXPECT_FALSE(Err().Pending());
}

TEST(DataItemsTest, ReadingKeepsAnItemWithoutNameOnceAndClearsTheError) {
  auto target = TargetItem::Create();
  LoadDatas(target, "<Datas><Data Name=\"A\"/><Data/><Data><Bits/></Data><Data Name=\"C\"/></Datas>");
  EXPECT_EQ(Names(*target->datas()), (std::vector<std::string>{"A", "", "C"}));
  EXPECT_FALSE(Err().Pending());
}

TEST(DataItemsTest, ReadingIgnoresOtherChildren) {
  auto target = TargetItem::Create();
  LoadDatas(target, "<Datas><Other Name=\"X\"/><Data Name=\"A\"/><!--c--></Datas>");
  EXPECT_EQ(Names(*target->datas()), (std::vector<std::string>{"A"}));
}

TEST(DataItemsTest, DroppedDuplicateIsReportedToTheDiagnosticsCallback) {
  auto facade = std::make_shared<TessalyLibXml>();
  std::vector<Diagnostic> seen;
  facade->set_Diagnostics([&](const Diagnostic& d) { seen.push_back(d); });
  auto target = facade->NewTarget();
  LoadDatas(target, "<Datas><Data Name=\"A\"/><Data Name=\"A\"/></Datas>");
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].action, Diagnostic::Action::kDropped);
  EXPECT_EQ(seen[0].what, "Data A");
}

}  // namespace
}  // namespace tessaly
