// The queries and edits on a large ECU (20 000 data items, 2 000 requests, 2 000 displays, 200
// devices) where one data item and a few requests have thousands of users: a functional check
// that every user is found and updated and that the document still saves. Speed is measured by
// the benchmark, not here.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

#include "target/xref_fixture.hpp"

namespace tessaly::testing::xref {
namespace {

constexpr int kData = 20000;
constexpr int kRequests = 2000;
constexpr int kDataPerRequest = 10;
constexpr int kScreens = 20;
constexpr int kDisplaysPerScreen = kRequests / kScreens;
constexpr int kDevices = 200;

std::string Numbered(const char* prefix, int n) {
  char text[16];
  std::snprintf(text, sizeof text, "%s%05d", prefix, n);
  return text;
}

// D00000 ... D19999 and Shared. Request R<r> places D<10r> ... D<10r+9> and Shared (a reference
// in every request). Screen S<s> shows Shared through 100 requests. Device V<v> (freeze frame
// R<v>) links Shared and flags D<10v>. Every screen's init button sends R00000.
std::string LargeDocument() {
  std::string datas;
  for (int i = 0; i < kData; ++i) datas += DataXml(Numbered("D", i));
  datas += DataXml("Shared");
  std::string requests;
  for (int r = 0; r < kRequests; ++r) {
    std::string received;
    for (int k = 0; k < kDataPerRequest; ++k) received += Placed(Numbered("D", r * kDataPerRequest + k), k + 2);
    received += Placed("Shared", 1, true);
    requests += RequestXml(Numbered("R", r), "", received);
  }
  std::string devices;
  for (int v = 0; v < kDevices; ++v) {
    const std::string flagged = Numbered("D", v * kDataPerRequest);
    devices += DeviceXml(Numbered("V", v), Numbered("R", v), LinkXml("Shared"), TestXml(1, {flagged.c_str()}));
  }
  std::string screens;
  for (int s = 0; s < kScreens; ++s) {
    std::string displays;
    for (int d = 0; d < kDisplaysPerScreen; ++d) displays += DisplayXml("Shared", Numbered("R", s * kDisplaysPerScreen + d), d);
    screens += ScreenXml(Numbered("S", s), SendXml(Numbered("R", 0)), "", displays);
  }
  return Document(datas, requests, devices, CategoryXml("Big", screens));
}

class CrossRefScaleTest : public CrossRefFixture {
 protected:
  void SetUp() override {
    target_ = Load(lib_, LargeDocument());
    ASSERT_EQ(target_->datas()->Count(), kData + 1);
    ASSERT_EQ(target_->Requests()->Count(), kRequests);
  }

  TessalyLibXml lib_;
  std::shared_ptr<TargetItem> target_;
};

TEST_F(CrossRefScaleTest, QueriesFindEveryUserOfAWidelyUsedName) {
  EXPECT_EQ(target_->GetRequestsUsingData("Shared")->Count(), kRequests);
  EXPECT_EQ(target_->GetScreensUsingData("Shared")->Count(), kRequests);
  EXPECT_EQ(target_->GetScreensScenarioUsingRequest("R00000")->Count(), kScreens);
  EXPECT_EQ(target_->GetScreensDataUsingRequest("R01999")->Count(), 1);
  EXPECT_EQ(target_->GetDeviceUsingData("D01990"), target_->Organes()->ItemName("V00199"));
  EXPECT_EQ(target_->datasRef()->Count(), 1);
  EXPECT_EQ(target_->GetDataPositionFromRefData("Shared"), target_->GetRequestsUsingData("Shared")->Item(1));
}

TEST_F(CrossRefScaleTest, RenamingAWidelyUsedDataItemUpdatesEveryUser) {
  target_->RenameData(target_->datas()->ItemName("Shared"), "Common");
  EXPECT_EQ(target_->GetRequestsUsingData("Shared")->Count(), 0);
  EXPECT_EQ(target_->GetScreensUsingData("Shared")->Count(), 0);
  EXPECT_EQ(target_->GetRequestsUsingData("Common")->Count(), kRequests);
  EXPECT_EQ(target_->GetScreensUsingData("Common")->Count(), kRequests);
  // Only the first device that uses the data follows.
  EXPECT_NE(target_->Organes()->ItemName("V00000")->GetDeviceDataUsingData("Common"), nullptr);
  EXPECT_NE(target_->Organes()->ItemName("V00001")->GetDeviceDataUsingData("Shared"), nullptr);
  const std::string saved = lib_.ExportUceToText();
  EXPECT_EQ(saved.find("\"Shared\" RequestName"), std::string::npos);
  EXPECT_NE(saved.find("DataName=\"Common\" RequestName=\"R01999\""), std::string::npos);
}

TEST_F(CrossRefScaleTest, DeletingAWidelyUsedDataItemRemovesEveryPlacementDisplayAndLink) {
  target_->DeleteDataByName("Shared");
  EXPECT_EQ(target_->datas()->Count(), kData);
  EXPECT_EQ(target_->GetRequestsUsingData("Shared")->Count(), 0);
  EXPECT_EQ(target_->GetScreensUsingData("Shared")->Count(), 0);
  EXPECT_EQ(target_->GetDeviceDataUsingData("Shared"), nullptr);
  for (const auto& request : *target_->Requests()) EXPECT_EQ(request->DataPositions()->Count(), kDataPerRequest);
  // 2 000 reference placements: after the link, each further one takes a device's test flag of
  // that name, of which there is none, so the flags of the other data stay.
  EXPECT_EQ(target_->Organes()->ItemName("V00007")->Tests()->ItemType(1)->StoredFlag().Count(), 1);
  const std::string saved = lib_.ExportUceToText();
  EXPECT_EQ(saved.find("Shared"), std::string::npos);
}

TEST_F(CrossRefScaleTest, DeletingAndRenamingRequestsUpdatesTheirUsers) {
  target_->DeleteRequest(target_->Requests()->ItemName("R00000"));
  EXPECT_EQ(target_->GetScreensScenarioUsingRequest("R00000")->Count(), 0);
  EXPECT_EQ(target_->GetScreensDataUsingRequest("R00000")->Count(), 0);
  EXPECT_EQ(target_->Organes()->ItemName("V00000")->requestName(), "");
  // The reference placement of Shared made every device forget its link to Shared.
  EXPECT_EQ(target_->GetDeviceDataUsingData("Shared"), nullptr);
  EXPECT_EQ(target_->GetScreensUsingData("Shared")->Count(), kRequests - 1);

  target_->RenameRequest(target_->Requests()->ItemName("R01234"), "Renamed");
  EXPECT_EQ(target_->GetScreensDataUsingRequest("Renamed")->Count(), 1);
  EXPECT_EQ(target_->Requests()->Item(target_->Requests()->Count())->requestName(), "Renamed");
  const std::string saved = lib_.ExportUceToText();
  EXPECT_NE(saved.find("DataName=\"Shared\" RequestName=\"Renamed\""), std::string::npos);
  EXPECT_EQ(saved.find("RequestName=\"R00000\""), std::string::npos);
}

}  // namespace
}  // namespace tessaly::testing::xref
