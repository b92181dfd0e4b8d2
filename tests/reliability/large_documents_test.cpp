// Long lists load whole, and the duplicate refusals that the readers decide with hash sets stay
// exactly those of the collections' AddData. (How the load time grows with the length of such
// lists is measured by the benchmark, not here: a reading that compared every element with every
// earlier one would make these tests run for minutes.)
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "reliability/reliability_support.hpp"
#include "tessaly/tessaly.hpp"

namespace tessaly::testing {
namespace {

constexpr int kLong = 200000;

class LargeDocumentTest : public ::testing::Test {
 protected:
  // Imports `document`. Some documents below end with a refusal on purpose; the tests look at
  // what loaded and at the diagnostics.
  void Import(const std::string& document) {
    try {
      f.lib.ImportUceFromText(document);
    } catch (const Error&) {
    }
  }
  std::vector<std::string> DiagnosticReasons() const {
    std::vector<std::string> out;
    for (const auto& d : f.diagnostics) out.push_back(d.why);
    return out;
  }

  RecordingFacade f;
};

std::string Numbered(const std::string& before, const std::string& after) {
  std::string out;
  for (int i = 0; i < kLong; ++i) out += before + std::to_string(i) + after;
  return out;
}

TEST_F(LargeDocumentTest, RequestPlacingManyDistinctDataKeepsEveryPlacementAndRefusesTheRepeat) {
  const std::string document =
      EcuFrame("<Datas>\n" + Numbered("<Data Name=\"D", "\"/>\n") + "</Datas>\n<Requests Endian=\"Big\">\n" +
               "<Request Name=\"R\"><Received>" + Numbered("<DataItem Name=\"D", "\" FirstByte=\"2\"/>") +
               "<DataItem Name=\"D0\" FirstByte=\"3\"/></Received></Request>\n</Requests>\n");
  Import(document);
  EXPECT_EQ(f.lib.ActiveTarget()->Requests()->ItemName("R")->DataPositions()->Count(), kLong);
  // The repeated name at the end is refused as AddData refuses it.
  EXPECT_EQ(DiagnosticReasons(),
            std::vector<std::string>{"Duplicate Data, a data can be used only one time in the same request"});
}

TEST_F(LargeDocumentTest, ManyDistinctCategoriesAreAllKeptAndTheRepeatRefused) {
  const std::string document = EcuFrame("<ds:Categories>\n" + Numbered("<Category Name=\"C", "\">\n</Category>") +
                                        "<Category Name=\"C0\">\n</Category></ds:Categories>");
  Import(document);
  EXPECT_EQ(f.lib.ActiveTarget()->Categories()->Count(), kLong);
  EXPECT_EQ(DiagnosticReasons(), std::vector<std::string>{"Duplicate category"});
}

TEST_F(LargeDocumentTest, ValueListOfManyEntriesKeepsTheDistinctOnesAndRefusesRepeatedLabels) {
  const std::string document = EcuFrame("<Datas>\n<Data Name=\"D\">\n<Bits count=\"32\">\n<List>\n" +
                                        Numbered("<Item Value=\"", "\" Text=\"T\"/>") +
                                        "</List>\n</Bits>\n</Data>\n</Datas>\n");
  // Every entry has the label T: all but the first are refused as duplicate labels.
  Import(document);
  EXPECT_EQ(f.lib.ActiveTarget()->datas()->ItemName("D")->DataListes()->Count(), 1);

  std::string distinct;
  for (int i = 0; i < kLong; ++i) distinct += "<Item Value=\"" + std::to_string(i) + "\" Text=\"T" + std::to_string(i) + "\"/>";
  Import(EcuFrame("<Datas>\n<Data Name=\"D\">\n<Bits count=\"32\">\n<List>\n" + distinct +
                  "</List>\n</Bits>\n</Data>\n</Datas>\n"));
  EXPECT_EQ(f.lib.ActiveTarget()->datas()->ItemName("D")->DataListes()->Count(), kLong);
}

TEST_F(LargeDocumentTest, ValueListDuplicateNamesTheFirstEntryThatSharesTheValueOrTheLabel) {
  // Entry 1 is (1, A), entry 2 is (2, B). (2, A) meets entry 1 first, by its label; (1, B) meets
  // entry 1 first, by its value; (1, A) meets entry 1 by both, and the value is named.
  f.lib.ImportUceFromText(EcuFrame(
      "<Datas>\n<Data Name=\"D\">\n<Bits count=\"8\">\n<List>\n<Item Value=\"1\" Text=\"A\"/><Item Value=\"2\" Text=\"B\"/>"
      "<Item Value=\"2\" Text=\"A\"/><Item Value=\"1\" Text=\"B\"/><Item Value=\"1\" Text=\"A\"/></List>\n</Bits>\n"
      "</Data>\n</Datas>\n"));
  EXPECT_EQ(DiagnosticReasons(), (std::vector<std::string>{"Duplicate label 'A' with value '2'",
                                                           "Duplicate value '1' with label 'B'",
                                                           "Duplicate value '1' with label 'A'"}));
  EXPECT_EQ(f.lib.ActiveTarget()->datas()->ItemName("D")->DataListes()->Count(), 2);
}

// Lists of every length from 1 to 40 (the readers scan a short list and index a long one), with
// values and labels drawn from small sets so that duplicates are frequent: reading keeps and
// refuses exactly what adding the entries one by one with AddDataUnSorted keeps and refuses,
// with the same reasons.
TEST_F(LargeDocumentTest, ValueListsOfEveryLengthRefuseAsAddDataUnSortedDoes) {
  std::mt19937 random(7);
  for (int length = 1; length <= 40; ++length) {
    std::string items;
    DataListeItems expected;
    std::vector<std::string> reasons;
    for (int i = 0; i < length; ++i) {
      const auto value = static_cast<std::int32_t>(random() % 50);
      const std::string label(1, static_cast<char>('a' + random() % 26));
      items += "<Item Value=\"" + std::to_string(value) + "\" Text=\"" + label + "\"/>";
      auto entry = std::make_shared<DataListeItem>();
      entry->set_Valeur(value);
      entry->set_libelle(label);
      try {
        expected.AddDataUnSorted(entry);
      } catch (const Error& error) {
        reasons.push_back(error.Description());
      }
    }
    f.diagnostics.clear();
    f.lib.ImportUceFromText(EcuFrame("<Datas>\n<Data Name=\"D\">\n<Bits count=\"8\">\n<List>\n" + items +
                                     "</List>\n</Bits>\n</Data>\n</Datas>\n"));
    const auto& list = f.lib.ActiveTarget()->datas()->ItemName("D")->DataListes();
    ASSERT_EQ(list->Count(), expected.Count()) << "length " << length;
    for (std::int32_t i = 1; i <= list->Count(); ++i) {
      EXPECT_EQ(list->Item(i)->Valeur(), expected.Item(i)->Valeur()) << "length " << length;
      EXPECT_EQ(list->Item(i)->libelle(), expected.Item(i)->libelle()) << "length " << length;
    }
    EXPECT_EQ(DiagnosticReasons(), reasons) << "length " << length;
  }
}

// The same for the placements of a request, against AddData.
TEST_F(LargeDocumentTest, PlacementListsOfEveryLengthRefuseAsAddDataDoes) {
  std::string datas;
  for (int i = 0; i < 30; ++i) datas += "<Data Name=\"D" + std::to_string(i) + "\"/>\n";
  std::mt19937 random(11);
  for (int length = 1; length <= 40; ++length) {
    std::string placements;
    DataPositionItems expected;
    std::vector<std::string> reasons;
    for (int i = 0; i < length; ++i) {
      const std::string name = "D" + std::to_string(random() % 30);
      placements += "<DataItem Name=\"" + name + "\" FirstByte=\"2\"/>";
      try {
        expected.Add(name);
      } catch (const Error& error) {
        reasons.push_back(error.Description());
      }
    }
    f.diagnostics.clear();
    f.lib.ImportUceFromText(EcuFrame("<Datas>\n" + datas + "</Datas>\n<Requests Endian=\"Big\">\n<Request Name=\"R\">" +
                                     "<Received>" + placements + "</Received></Request>\n</Requests>\n"));
    const auto& read = f.lib.ActiveTarget()->Requests()->ItemName("R")->DataPositions();
    ASSERT_EQ(read->Count(), expected.Count()) << "length " << length;
    for (std::int32_t i = 1; i <= read->Count(); ++i)
      EXPECT_EQ(read->Item(i)->dataName(), expected.Item(i)->dataName()) << "length " << length;
    EXPECT_EQ(DiagnosticReasons(), reasons) << "length " << length;
  }
}

// A reader sizes a short list before reading it and lets a long one grow; lengths around the
// point where one way gives over to the other load whole, in document order, under their keys.
TEST_F(LargeDocumentTest, ListsOfEveryLengthAroundTheCountedAheadPartLoadInOrderUnderTheirKeys) {
  for (int length : {1, 255, 256, 257, 513, 1000}) {
    std::string datas;
    std::string placements;
    for (int i = 0; i < length; ++i) {
      const std::string name = "D" + std::to_string(length - i);
      datas += "<Data Name=\"" + name + "\"/>\n";
      placements += "<DataItem Name=\"" + name + "\" FirstByte=\"" + std::to_string(i) + "\"/>";
    }
    Import(EcuFrame("<Datas>\n" + datas + "</Datas>\n<Requests Endian=\"Big\">\n<Request Name=\"R\"><Received>" +
                    placements + "</Received></Request>\n</Requests>\n"));
    const auto& data = f.lib.ActiveTarget()->datas();
    const auto& read = f.lib.ActiveTarget()->Requests()->ItemName("R")->DataPositions();
    ASSERT_EQ(data->Count(), length);
    ASSERT_EQ(read->Count(), length);
    for (int i = 0; i < length; ++i) {
      const std::string name = "D" + std::to_string(length - i);
      EXPECT_EQ(data->Item(i + 1)->dataName(), name) << "length " << length;
      EXPECT_EQ(data->ItemName(name), data->Item(i + 1)) << "length " << length;
      EXPECT_EQ(read->Item(i + 1)->dataName(), name) << "length " << length;
      EXPECT_EQ(read->Item(i + 1)->StartOctet(), i) << "length " << length;
    }
    EXPECT_TRUE(f.diagnostics.empty()) << "length " << length;
  }
}

TEST_F(LargeDocumentTest, ScenarioStepsAreNumberedInOrderCountingOnlyTheStepsKept) {
  f.lib.ImportUceFromText(EcuFrame(
      "<Requests Endian=\"Big\">\n<Request Name=\"Ping\"/>\n</Requests>\n<ds:Categories>\n<Category Name=\"C\">\n\n"
      "<Screen Name=\"S\">\n\n<Button Text=\"Go\">\n<Send Delay=\"1\" RequestName=\"Ping\"/><Send Delay=\"2\" RequestName=\"Gone\"/>"
      "<Send Delay=\"3\" RequestName=\"Ping\"/><Send Delay=\"4\"/><Send Delay=\"5\" RequestName=\"Ping\"/>\n</Button>\n"
      "</Screen>\n</Category></ds:Categories>"));
  auto steps = f.lib.ActiveTarget()->Categories()->Item(1)->Screens()->Item(1)->ButtonItems()->Item(2)->ScenarioItems();
  ASSERT_EQ(steps->Count(), 3);
  for (std::int32_t i = 1; i <= 3; ++i) {
    EXPECT_EQ(steps->Item(i)->Index(), i);
    EXPECT_EQ(steps->Item(i)->delay(), 2 * i - 1);
  }
}

}  // namespace
}  // namespace tessaly::testing
