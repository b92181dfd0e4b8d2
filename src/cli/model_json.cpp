#include "cli/model_json.hpp"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <memory>

namespace tessaly::cli {
namespace {

using Json = nlohmann::ordered_json;

// A float property as the number its document text stands for: 8.25F gives 8.25, not the
// 8.25000011920929 that widening the float to a double would show.
Json FloatJson(float value) {
  if (!std::isfinite(value)) return nullptr;
  const std::string text = NumberText(value);
  double widened = 0.0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), widened);
  if (ec != std::errc() || end != text.data() + text.size()) return static_cast<double>(value);
  return widened;
}

// JSON has no infinities and no NaN; they are given as null.
Json DoubleJson(double value) {
  if (!std::isfinite(value)) return nullptr;
  return value;
}

std::string BytesText(const std::shared_ptr<ByteString>& bytes) { return bytes ? bytes->ToText() : std::string(); }

// Every collection is an array, also when the model holds no collection object at all.
template <class Items, class Write>
Json ArrayOf(const Items* items, Write write) {
  Json array = Json::array();
  if (items == nullptr) return array;
  for (const auto& item : *items) array.push_back(write(*item));
  return array;
}

// The data names of a test's flag list, in list order.
Json FlagNames(const FlagList& flags) {
  Json names = Json::array();
  for (const auto& position : flags) names.push_back(position->dataName());
  return names;
}

// The read accessor of the tool address hands the address over through CanXId and returns 0;
// the send identifier is put back at once, so the parameters are left as they were.
std::int32_t ReadToolAddress(TargetParamItem& params) {
  const std::int32_t sendId = params.CanXId();
  static_cast<void>(params.ToolAddress());
  const std::int32_t toolAddress = params.CanXId();
  params.set_CanXId(sendId);
  return toolAddress;
}

Json ParametersJson(TargetParamItem& p) {
  Json j;
  j["Comment"] = p.Comment();
  j["initMode"] = p.initMode();
  j["multiPoint"] = p.multiPoint();
  j["key1"] = p.key1();
  j["key2"] = p.key2();
  j["BaudRate"] = p.BaudRate();
  j["InterByteDelay"] = p.InterByteDelay();
  j["KW2Delay"] = p.KW2Delay();
  j["FirstRequestDelay"] = p.FirstRequestDelay();
  j["ReplyToRequestDelay"] = p.ReplyToRequestDelay();
  j["TesterPresentDelay"] = p.TesterPresentDelay();
  j["KW2Timeout"] = p.KW2Timeout();
  j["RequestToReplyTimeout"] = p.RequestToReplyTimeout();
  j["ErrorDelay"] = p.ErrorDelay();
  j["LittleEndian"] = p.LittleEndian();
  j["Reprogrammable"] = p.Reprogrammable();
  j["DateOfficialisation"] = p.DateOfficialisation();
  j["TypePanneId"] = p.TypePanneId();
  j["TypePanne"] = p.TypePanne();
  j["ToolAddress"] = ReadToolAddress(p);
  j["CanXId"] = p.CanXId();
  j["CanRId"] = p.CanRId();
  return j;
}

Json AutoIdentJson(const AutoIdentItem& a) {
  Json j;
  j["DiagNumber"] = a.DiagNumber();
  j["SupplierCode"] = a.SupplierCode();
  j["Soft"] = a.Soft();
  j["Version"] = a.Version();
  return j;
}

Json DataListeJson(const DataListeItem& entry) {
  Json j;
  j["Valeur"] = entry.Valeur();
  j["libelle"] = entry.libelle();
  j["Info"] = entry.Info();
  return j;
}

Json DataJson(const DataItem& d) {
  Json j;
  j["dataName"] = d.dataName();
  j["NumberBits"] = d.NumberBits();
  j["numerique"] = d.numerique();
  j["liste"] = d.liste();
  j["Unite"] = d.Unite();
  j["Signe"] = d.Signe();
  j["CoeffA"] = DoubleJson(d.CoeffA());
  j["CoeffB"] = DoubleJson(d.CoeffB());
  j["CoeffC"] = DoubleJson(d.CoeffC());
  j["DataFormat"] = d.DataFormat();
  j["Ascii"] = d.Ascii();
  j["Mnemo"] = d.Mnemo();
  j["Description"] = d.Description();
  j["Fiche"] = d.Fiche();
  j["DataListes"] = ArrayOf(d.DataListes().get(), DataListeJson);
  return j;
}

Json DataPositionJson(const DataPositionItem& position) {
  Json j;
  j["dataName"] = position.dataName();
  j["StartOctet"] = position.StartOctet();
  j["StartBit"] = position.StartBit();
  j["LittleEndian"] = position.LittleEndian();
  j["param"] = position.param();
  j["reference"] = position.reference();
  return j;
}

Json RequestJson(const RequestItem& r) {
  Json j;
  j["requestName"] = r.requestName();
  j["RequestBytes"] = BytesText(r.RequestBytes());
  j["ReplyBytes"] = BytesText(r.ReplyBytes());
  j["LengthDatas"] = r.LengthDatas();
  j["ShiftBytesCount"] = r.ShiftBytesCount();
  j["ManuelSend"] = r.ManuelSend();
  j["LgVariable"] = r.LgVariable();
  j["AccesTous"] = r.AccesTous();
  j["AccesUsine"] = r.AccesUsine();
  j["AccesApresVente"] = r.AccesApresVente();
  j["AccesEtudes"] = r.AccesEtudes();
  j["AccesConstructeur"] = r.AccesConstructeur();
  j["DossierMaintenabilite"] = r.DossierMaintenabilite();
  j["Commentaire"] = r.Commentaire();
  j["DataPositions"] = ArrayOf(r.DataPositions().get(), DataPositionJson);
  return j;
}

Json DeviceDataJson(const DeviceDataItem& link) {
  Json j;
  j["dataName"] = link.dataName();
  j["FlagPanne"] = link.FlagPanne();
  return j;
}

Json TestJson(const TestItem& t) {
  Json j;
  j["testType"] = t.testType();
  j["Description"] = t.Description();
  j["OBD"] = t.OBD();
  j["Severity"] = t.Severity();
  j["Autocheck"] = t.Autocheck();
  j["StoredFlag"] = FlagNames(t.StoredFlag());
  j["PresentFlag"] = FlagNames(t.PresentFlag());
  return j;
}

Json DeviceJson(const OrganeItem& o) {
  Json j;
  j["organeName"] = o.organeName();
  j["Mnemonique"] = o.Mnemonique();
  j["OrganeTypeId"] = o.OrganeTypeId();
  j["OrganeTypeName"] = o.OrganeTypeName();
  j["OrganeDTC"] = o.OrganeDTC();
  j["OrganeOBD"] = o.OrganeOBD();
  j["requestName"] = o.requestName();
  j["DeviceDatas"] = ArrayOf(o.DeviceDatas().get(), DeviceDataJson);
  // Tests() would create an empty collection on a device without one.
  j["Tests"] = ArrayOf(o.HasTests() ? o.Tests().get() : nullptr, TestJson);
  return j;
}

Json LabelJson(const LabelItem& l) {
  Json j;
  j["LabelId"] = l.LabelId();
  j["LabelText"] = l.LabelText();
  j["LabelLeft"] = l.LabelLeft();
  j["LabelTop"] = l.LabelTop();
  j["LabelHeight"] = l.LabelHeight();
  j["LabelWidth"] = l.LabelWidth();
  j["FontName"] = l.FontName();
  j["FontSize"] = FloatJson(l.FontSize());
  j["FontBold"] = l.FontBold();
  j["FontItalic"] = l.FontItalic();
  j["FontColor"] = l.FontColor();
  j["LabelColor"] = l.LabelColor();
  j["Alignment"] = l.Alignment();
  return j;
}

Json ScenarioJson(const ScenarioItem& step) {
  Json j;
  j["Index"] = step.Index();
  j["requestName"] = step.requestName();
  j["delay"] = step.delay();
  return j;
}

Json ButtonJson(ButtonItem& b) {
  Json j;
  j["caption"] = b.caption();
  j["InitButton"] = b.InitButton();
  j["ButtonLeft"] = b.ButtonLeft();
  j["ButtonTop"] = b.ButtonTop();
  j["ButtonHeight"] = b.ButtonHeight();
  j["ButtonWidth"] = b.ButtonWidth();
  j["FontName"] = b.FontName();
  j["FontSize"] = FloatJson(b.FontSize());
  j["FontBold"] = b.FontBold();
  j["FontItalic"] = b.FontItalic();
  j["Message"] = b.Message();
  // ScenarioItems() would create an empty scenario on a button without one.
  j["ScenarioItems"] = ArrayOf(b.HasScenario() ? b.ScenarioItems().get() : nullptr, ScenarioJson);
  return j;
}

Json RangeJson(const RangeItem& r) {
  Json j;
  j["Seuil"] = DoubleJson(r.Seuil());
  j["Couleur"] = r.Couleur();
  j["SonFlag"] = r.SonFlag();
  j["Son"] = r.Son();
  j["SoundName"] = r.SoundName();
  return j;
}

Json DisplayJson(const DisplayItem& d) {
  Json j;
  j["TypeDisplay"] = d.TypeDisplay();
  j["DisplayLeft"] = d.DisplayLeft();
  j["DisplayTop"] = d.DisplayTop();
  j["DisplayHeight"] = d.DisplayHeight();
  j["DisplayWidth"] = d.DisplayWidth();
  j["CaptionWidth"] = d.CaptionWidth();
  j["DisplayColor"] = d.DisplayColor();
  j["FontName"] = d.FontName();
  j["FontSize"] = d.FontSize();
  j["FontBold"] = d.FontBold();
  j["FontItalic"] = d.FontItalic();
  j["FontColor"] = d.FontColor();
  if (const auto& data = d.DisplayDataItem()) {
    j["DisplayDataItem"] = {{"dataName", data->dataName()}, {"requestName", data->requestName()}};
  } else {
    j["DisplayDataItem"] = nullptr;
  }
  if (const auto& extra = d.DisplayExtraItem()) {
    j["DisplayExtraItem"] = {{"requestName", extra->requestName()}, {"param", extra->param()}};
  } else {
    j["DisplayExtraItem"] = nullptr;
  }
  j["RangeItems"] = ArrayOf(d.RangeItems().get(), RangeJson);
  return j;
}

Json ScreenJson(const ScreenItem& s) {
  Json j;
  j["screenName"] = s.screenName();
  j["InitId"] = s.InitId();
  j["WindowState"] = s.WindowState();
  j["ScreenWidth"] = s.ScreenWidth();
  j["ScreenHeight"] = s.ScreenHeight();
  j["ScreenColor"] = s.ScreenColor();
  j["LabelItems"] = ArrayOf(s.LabelItems().get(), LabelJson);
  j["ButtonItems"] = ArrayOf(s.ButtonItems().get(), ButtonJson);
  j["DisplayItems"] = ArrayOf(s.DisplayItems().get(), DisplayJson);
  return j;
}

Json CategoryJson(const CategoryItem& c) {
  Json j;
  j["categoryName"] = c.categoryName();
  j["Screens"] = ArrayOf(c.Screens().get(), ScreenJson);
  return j;
}

}  // namespace

nlohmann::ordered_json ModelJson(const TargetItem& target) {
  Json j;
  j["name"] = target.name();
  j["Address"] = target.Address();
  j["Langue"] = target.Langue();
  j["reference"] = target.reference();
  j["Email"] = target.Email();
  j["Href"] = target.Href();
  j["Upload"] = target.Upload();
  j["Group"] = target.Group();
  Json projects = Json::array();
  if (target.Projects())
    for (const auto& project : *target.Projects()) projects.push_back(*project);
  j["Projects"] = projects;
  j["Parametres"] = target.Parametres() ? ParametersJson(*target.Parametres()) : Json(nullptr);
  j["AutoIdents"] = ArrayOf(target.AutoIdents().get(), AutoIdentJson);
  j["datas"] = ArrayOf(target.datas().get(), DataJson);
  j["Requests"] = ArrayOf(target.Requests().get(), RequestJson);
  j["Organes"] = ArrayOf(target.Organes().get(), DeviceJson);
  j["Categories"] = ArrayOf(target.Categories().get(), CategoryJson);
  return j;
}

std::string JsonText(const nlohmann::ordered_json& json, int indent) {
  return json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace tessaly::cli
