#include "reliability/model_text.hpp"

#include <cstdio>
#include <sstream>

#include "tessaly/tessaly.hpp"

namespace tessaly::testing {
namespace {

// Writes "indent name=value" lines. Numbers of floating point are written in hexadecimal, so
// that any difference in their bits shows.
class ModelWriter {
 public:
  std::string Text() const { return out_.str(); }

  void Open(const std::string& what) {
    Line(what + " {");
    depth_ += 1;
  }
  void Close() {
    depth_ -= 1;
    Line("}");
  }
  void Value(const char* name, const std::string& value) { Line(std::string(name) + "=\"" + value + "\""); }
  void Value(const char* name, std::int32_t value) { Line(std::string(name) + "=" + std::to_string(value)); }
  void Value(const char* name, bool value) { Line(std::string(name) + "=" + (value ? "true" : "false")); }
  void Value(const char* name, double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%a", value);
    Line(std::string(name) + "=" + text);
  }
  void Value(const char* name, float value) { Value(name, static_cast<double>(value)); }
  void Null(const char* name) { Line(std::string(name) + "=null"); }

 private:
  void Line(const std::string& text) { out_ << std::string(static_cast<std::size_t>(depth_) * 2, ' ') << text << '\n'; }

  std::ostringstream out_;
  int depth_ = 0;
};

void WriteParameters(ModelWriter& w, TargetParamItem& p) {
  w.Open("Parametres");
  w.Value("initMode", p.initMode());
  w.Value("multiPoint", p.multiPoint());
  w.Value("key1", p.key1());
  w.Value("key2", p.key2());
  w.Value("BaudRate", p.BaudRate());
  w.Value("InterByteDelay", p.InterByteDelay());
  w.Value("KW2Delay", p.KW2Delay());
  w.Value("FirstRequestDelay", p.FirstRequestDelay());
  w.Value("ReplyToRequestDelay", p.ReplyToRequestDelay());
  w.Value("TesterPresentDelay", p.TesterPresentDelay());
  w.Value("KW2Timeout", p.KW2Timeout());
  w.Value("RequestToReplyTimeout", p.RequestToReplyTimeout());
  w.Value("ErrorDelay", p.ErrorDelay());
  w.Value("LittleEndian", p.LittleEndian());
  w.Value("Reprogrammable", p.Reprogrammable());
  w.Value("DateOfficialisation", p.DateOfficialisation());
  w.Value("TypePanneId", p.TypePanneId());
  w.Value("TypePanne", p.TypePanne());
  w.Value("CanXId", p.CanXId());
  w.Value("CanRId", p.CanRId());
  w.Value("Comment", p.Comment());
  // The tool address is only observable through whether it holds its default (reading it has
  // a side effect on CanXId).
  DefaultValue slot;
  w.Value("ToolAddressIsDefault", p.isDefaultValue(TargetParamItem::kToolAddressIndex, slot));
  w.Close();
}

void WriteDatas(ModelWriter& w, const DataItems& datas) {
  for (const auto& d : datas) {
    w.Open("Data");
    w.Value("dataName", d->dataName());
    w.Value("NumberBits", d->NumberBits());
    w.Value("numerique", d->numerique());
    w.Value("liste", d->liste());
    w.Value("Unite", d->Unite());
    w.Value("Signe", d->Signe());
    w.Value("CoeffA", d->CoeffA());
    w.Value("CoeffB", d->CoeffB());
    w.Value("CoeffC", d->CoeffC());
    w.Value("DataFormat", d->DataFormat());
    w.Value("Ascii", d->Ascii());
    w.Value("Mnemo", d->Mnemo());
    w.Value("Description", d->Description());
    w.Value("Fiche", d->Fiche());
    if (!d->DataListes()) {
      w.Null("DataListes");
    } else {
      for (const auto& entry : *d->DataListes()) {
        w.Open("Item");
        w.Value("Valeur", entry->Valeur());
        w.Value("libelle", entry->libelle());
        w.Value("Info", entry->Info());
        w.Close();
      }
    }
    w.Close();
  }
}

void WritePositions(ModelWriter& w, const DataPositionItems& positions) {
  for (const auto& p : positions) {
    w.Open("DataPosition");
    w.Value("dataName", p->dataName());
    w.Value("StartOctet", p->StartOctet());
    w.Value("StartBit", p->StartBit());
    w.Value("LittleEndian", p->LittleEndian());
    w.Value("param", p->param());
    w.Value("reference", p->reference());
    w.Close();
  }
}

void WriteRequests(ModelWriter& w, const RequestItems& requests) {
  for (const auto& r : requests) {
    w.Open("Request");
    w.Value("requestName", r->requestName());
    w.Value("RequestBytes", r->RequestBytes() ? r->RequestBytes()->ToText() : std::string("<null>"));
    w.Value("ReplyBytes", r->ReplyBytes() ? r->ReplyBytes()->ToText() : std::string("<null>"));
    w.Value("LengthDatas", r->LengthDatas());
    w.Value("ShiftBytesCount", r->ShiftBytesCount());
    w.Value("ManuelSend", r->ManuelSend());
    w.Value("LgVariable", r->LgVariable());
    w.Value("AccesTous", r->AccesTous());
    w.Value("AccesUsine", r->AccesUsine());
    w.Value("AccesApresVente", r->AccesApresVente());
    w.Value("AccesEtudes", r->AccesEtudes());
    w.Value("AccesConstructeur", r->AccesConstructeur());
    w.Value("DossierMaintenabilite", r->DossierMaintenabilite());
    w.Value("Commentaire", r->Commentaire());
    if (r->DataPositions()) WritePositions(w, *r->DataPositions());
    else w.Null("DataPositions");
    w.Close();
  }
}

void WriteFlags(ModelWriter& w, const char* what, const FlagList& flags) {
  for (std::int32_t i = 1; i <= flags.Count(); ++i) {
    w.Open(what);
    w.Value("key", std::string(flags.KeyAt(i)));
    w.Value("dataName", flags.Item(i)->dataName());
    w.Close();
  }
}

void WriteDevices(ModelWriter& w, const OrganeItems& devices) {
  for (const auto& o : devices) {
    w.Open("Device");
    w.Value("organeName", o->organeName());
    w.Value("Mnemonique", o->Mnemonique());
    w.Value("OrganeTypeId", o->OrganeTypeId());
    w.Value("OrganeTypeName", o->OrganeTypeName());
    w.Value("OrganeDTC", o->OrganeDTC());
    w.Value("OrganeOBD", o->OrganeOBD());
    w.Value("requestName", o->requestName());
    w.Value("request", o->request() ? o->request()->requestName() : std::string("<none>"));
    if (o->DeviceDatas()) {
      for (const auto& link : *o->DeviceDatas()) {
        w.Open("DeviceData");
        w.Value("dataName", link->dataName());
        w.Value("FlagPanne", link->FlagPanne());
        w.Close();
      }
    } else {
      w.Null("DeviceDatas");
    }
    if (o->Tests()) {
      for (const auto& t : *o->Tests()) {
        w.Open("Test");
        w.Value("testType", t->testType());
        w.Value("Description", t->Description());
        w.Value("Severity", t->Severity());
        w.Value("Autocheck", t->Autocheck());
        w.Value("OBD", t->OBD());
        WriteFlags(w, "StoredFlag", t->StoredFlag());
        WriteFlags(w, "PresentFlag", t->PresentFlag());
        w.Close();
      }
    } else {
      w.Null("Tests");
    }
    w.Close();
  }
}

void WriteScenario(ModelWriter& w, ButtonItem& button) {
  if (!button.HasScenario()) {
    w.Null("ScenarioItems");
    return;
  }
  for (const auto& step : *button.ScenarioItems()) {
    w.Open("Send");
    w.Value("requestName", step->requestName());
    w.Value("delay", step->delay());
    w.Value("Index", step->Index());
    w.Close();
  }
}

void WriteButton(ModelWriter& w, ButtonItem& b) {
  w.Open("Button");
  w.Value("caption", b.caption());
  w.Value("ButtonLeft", b.ButtonLeft());
  w.Value("ButtonTop", b.ButtonTop());
  w.Value("ButtonHeight", b.ButtonHeight());
  w.Value("ButtonWidth", b.ButtonWidth());
  w.Value("FontName", b.FontName());
  w.Value("FontSize", b.FontSize());
  w.Value("FontBold", b.FontBold());
  w.Value("FontItalic", b.FontItalic());
  w.Value("Message", b.Message());
  w.Value("InitButton", b.InitButton());
  WriteScenario(w, b);
  w.Close();
}

void WriteScreen(ModelWriter& w, ScreenItem& s) {
  w.Open("Screen");
  w.Value("screenName", s.screenName());
  w.Value("InitId", s.InitId());
  w.Value("WindowState", s.WindowState());
  w.Value("ScreenWidth", s.ScreenWidth());
  w.Value("ScreenHeight", s.ScreenHeight());
  w.Value("ScreenColor", s.ScreenColor());
  if (s.ButtonInit()) {
    w.Open("ButtonInit");
    WriteButton(w, *s.ButtonInit());
    w.Close();
  } else {
    w.Null("ButtonInit");
  }
  if (s.LabelItems()) {
    for (const auto& l : *s.LabelItems()) {
      w.Open("Label");
      w.Value("LabelText", l->LabelText());
      w.Value("LabelLeft", l->LabelLeft());
      w.Value("LabelTop", l->LabelTop());
      w.Value("LabelHeight", l->LabelHeight());
      w.Value("LabelWidth", l->LabelWidth());
      w.Value("FontName", l->FontName());
      w.Value("FontSize", l->FontSize());
      w.Value("FontBold", l->FontBold());
      w.Value("FontItalic", l->FontItalic());
      w.Value("FontColor", l->FontColor());
      w.Value("LabelColor", l->LabelColor());
      w.Value("Alignment", l->Alignment());
      w.Close();
    }
  } else {
    w.Null("LabelItems");
  }
  if (s.ButtonItems()) {
    for (const auto& b : *s.ButtonItems()) WriteButton(w, *b);
  } else {
    w.Null("ButtonItems");
  }
  if (s.DisplayItems()) {
    for (const auto& d : *s.DisplayItems()) {
      w.Open("Display");
      w.Value("TypeDisplay", d->TypeDisplay());
      w.Value("DisplayLeft", d->DisplayLeft());
      w.Value("DisplayTop", d->DisplayTop());
      w.Value("DisplayHeight", d->DisplayHeight());
      w.Value("DisplayWidth", d->DisplayWidth());
      w.Value("CaptionWidth", d->CaptionWidth());
      w.Value("DisplayColor", d->DisplayColor());
      w.Value("FontName", d->FontName());
      w.Value("FontSize", d->FontSize());
      w.Value("FontBold", d->FontBold());
      w.Value("FontItalic", d->FontItalic());
      w.Value("FontColor", d->FontColor());
      if (const auto& data = d->DisplayDataItem()) {
        w.Value("DisplayDataItem.dataName", data->dataName());
        w.Value("DisplayDataItem.requestName", data->requestName());
      } else {
        w.Null("DisplayDataItem");
      }
      if (const auto& extra = d->DisplayExtraItem()) {
        w.Value("DisplayExtraItem.requestName", extra->requestName());
        w.Value("DisplayExtraItem.param", extra->param());
      } else {
        w.Null("DisplayExtraItem");
      }
      if (d->RangeItems()) {
        for (const auto& r : *d->RangeItems()) {
          w.Open("Threshold");
          w.Value("Seuil", r->Seuil());
          w.Value("Couleur", r->Couleur());
          w.Value("SonFlag", r->SonFlag());
          w.Value("Son", r->Son());
          w.Value("SoundName", r->SoundName());
          w.Close();
        }
      } else {
        w.Null("RangeItems");
      }
      w.Close();
    }
  } else {
    w.Null("DisplayItems");
  }
  w.Close();
}

}  // namespace

std::string ModelText(TargetItem& target) {
  ModelWriter w;
  w.Open("Target");
  w.Value("name", target.name());
  w.Value("Address", target.Address());
  w.Value("Langue", target.Langue());
  w.Value("reference", target.reference());
  w.Value("Email", target.Email());
  w.Value("Href", target.Href());
  w.Value("Upload", target.Upload());
  w.Value("Group", target.Group());
  if (target.Projects()) {
    for (const auto& project : *target.Projects()) w.Value("Project", *project);
  }
  if (target.Parametres()) WriteParameters(w, *target.Parametres());
  else w.Null("Parametres");
  if (target.AutoIdents()) {
    for (const auto& a : *target.AutoIdents()) {
      w.Open("AutoIdent");
      w.Value("DiagNumber", a->DiagNumber());
      w.Value("SupplierCode", a->SupplierCode());
      w.Value("Soft", a->Soft());
      w.Value("Version", a->Version());
      w.Close();
    }
  }
  if (target.datas()) WriteDatas(w, *target.datas());
  if (target.Requests()) WriteRequests(w, *target.Requests());
  if (target.Organes()) WriteDevices(w, *target.Organes());
  if (target.Categories()) {
    for (const auto& c : *target.Categories()) {
      w.Open("Category");
      w.Value("categoryName", c->categoryName());
      if (c->Screens()) {
        for (const auto& s : *c->Screens()) WriteScreen(w, *s);
      } else {
        w.Null("Screens");
      }
      w.Close();
    }
  }
  w.Close();
  return w.Text();
}

}  // namespace tessaly::testing
