#include "ui/model/data_source_fields.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "env/environment.h"
#include "platform/text.h"
#include "settings/set_reader.h"
#include "settings/set_writer.h"
#include "settings/settings_database.h"
#include "texts/language.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"
#include "ui/model/frm_cube.h"
#include "ui/model/frm_option.h"
#include "ui/model/messages.h"

namespace vok {
namespace {

constexpr char kName[] = "comboDataSource";
constexpr char kObs[] = "CmbObs";
constexpr char kCubeFile[] = "TxtFileName";
constexpr char kLineEnd[] = "\r\n";
constexpr char kNeededMark[] = " *";
constexpr const char* kNeeded[] = {"txtVarnelMDB", kCubeFile, "txtCubeName", kObs};
constexpr int kNameWidth = 15;

/// What stands between the numbers of a date or time in this country.
std::string SeparatorIn(const std::string& text) {
  const auto first = text.find_first_not_of("0123456789");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_first_of("0123456789", first) - first);
}

std::string TwoNumbers(int first, const std::string& separator, int second) {
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "%02d%s%02d", first, separator.c_str(), second);
  return text.data();
}

/// The name of a data source that was given none: day, month and time of the saving.
std::string NameOfNow(const Host& host) {
  constexpr int kMinutesOfDay = 24 * 60;
  const Date now = host.clock.Now();
  const Date time{now.serial - now.DayOnly().serial};
  const int minutes = static_cast<int>(time.serial * kMinutesOfDay + 1e-6) % kMinutesOfDay;
  return "Save  " + TwoNumbers(now.Day(), SeparatorIn(host.locale.ShortDate(now)), now.Month()) +
         " " + TwoNumbers(minutes / 60, SeparatorIn(host.locale.DateText(Date{0.5})), minutes % 60);
}

DataSourceSetting NewSetting() {
  DataSourceSetting setting;
  for (MoneySetEntry& entry : setting.MoneySets) entry.MoneySet = Null{};
  return setting;
}

}  // namespace

DataSourceFields::DataSourceFields(const WindowServices& services, Form& form)
    : services_(services), form_(form), setting_(NewSetting()) {
  AddRules();
}

void DataSourceFields::AddTo(Panel panel) {
  using enum ControlType;
  panel.Label({0, 0}, "lblDataSource", text_number::kDataSource);
  panel.Field({0, 1}, kComboBox, kName, "lblDataSource", kNameWidth, text_number::kTipDataSource)
      .Grows = true;
  AddPath(panel, {1, 0}, "lblVarnelMDB", text_number::kHostDatabase, "txtVarnelMDB").ToolTipText =
      std::to_string(text_number::kTipHostDatabase);
  panel.Browse({1, 2}, "cmdVarnelMDB", "lblVarnelMDB");
  AddPath(panel, {2, 0}, "lblActFile", text_number::kActFile, "txtActFile").ToolTipText =
      std::to_string(text_number::kTipActFile);
  panel.Browse({2, 2}, "cmdActFile", "lblActFile");
  AddPath(panel, {0, 3}, "lblCubeFile", text_number::kCubeFile, kCubeFile).ToolTipText =
      std::to_string(text_number::kTipCubeFile);
  panel.Button({0, 5}, "cmdCube", text_number::kChooseCube);
  AddPath(panel, {1, 3}, "lblCubeName", text_number::kCubeName, "txtCubeName").Locked = true;
  panel.Label({2, 3}, "lblObs", text_number::kObs);
  panel.Field({2, 4}, kComboBox, kObs, "lblObs", kNameWidth, text_number::kTipObs).Grows = true;
}

Control& DataSourceFields::AddPath(Panel& panel, GridCell cell, const char* label, int text,
                                   const char* field) {
  panel.Label(cell, label, text);
  ++cell.column;
  Control& path = panel.Field(cell, ControlType::kTextBox, field, label, kNameWidth);
  path.Grows = path.Path = true;
  return path;
}

void DataSourceFields::AddHeadingsTo(Panel panel, GridCell cell) {
  for (const auto& [label, text] : {std::pair("lblMoneySet", text_number::kMoneySet),
                                    std::pair("lblMeasure", text_number::kMeasure),
                                    std::pair("lblQty", text_number::kQuantity)}) {
    panel.Label(cell, label, text);
    ++cell.column;
  }
}

void DataSourceFields::AddMoneyTo(Panel panel, GridCell cell, int row) {
  constexpr int kWidth = 10;
  const std::string number = std::to_string(row);
  if (row == 0) {
    Control& copy = panel.Button({cell.row, cell.column - 1}, "cmdCopyMeasure",
                                 text_number::kCopyMeasure, text_number::kTipCopyMeasure);
    copy.Symbol = "↓";
    copy.Row = number;
  }
  for (const auto& [field, label] :
       {std::pair("TextMoney", "lblMoneySet"), std::pair("TextMeasure", "lblMeasure"),
        std::pair("TextQty", "lblQty")}) {
    Control& shown = panel.Field(cell, ControlType::kTextBox, {field, row}, label, kWidth);
    shown.Locked = shown.Grows = shown.Path = true;
    shown.Row = number;
    ++cell.column;
  }
  Control& options =
      panel.Button(cell, {"ComMeasure", row}, text_number::kMeasure, text_number::kTipMeasure);
  options.Symbol = "…";
  options.Row = number;
}

/// Each keeps the money set that it is.
void DataSourceFields::CopyFirstMeasure() {
  const MoneySetEntry& first = setting_.MoneySets.front();
  for (MoneySetEntry& entry : setting_.MoneySets) {
    entry.Measure = first.Measure;
    entry.Qty = first.Qty;
    entry.IsCalculated = first.IsCalculated;
  }
  ShowMeasures();
}

void DataSourceFields::AddRules() {
  using enum FormEvent;
  form_.On(kLeft, kCubeFile, [this](int) { CubeFileLeft(); });
  form_.On(kClicked, "cmdCube", [this](int) { ChooseCube(); });
  form_.On(kClicked, "cmdOptions", [this](int) { EditMoneySets(0); });
  form_.On(kClicked, "cmdCopyMeasure", [this](int) { CopyFirstMeasure(); });
  form_.On(kClicked, "ComMeasure", [this](int row) { EditMoneySets(row); });
  form_.On(kClicked, "cmdVarnelMDB", [this](int) { PickInto("txtVarnelMDB"); });
  form_.On(kClicked, "cmdActFile", [this](int) { PickInto("txtActFile"); });
  for (const char* field : kNeeded) {
    form_.On(kChanged, field, [this, field](int) { form_.At(field).Error = false; });
  }
}

DataSourceSetting DataSourceFields::Read() const {
  DataSourceSetting setting = setting_;
  setting.SetName = form_.Text(kName);
  setting.VarnelMDB = form_.Text("txtVarnelMDB");
  setting.CubeFile = form_.Text(kCubeFile);
  setting.CubeName = form_.Text("txtCubeName");
  setting.OBS = form_.Text(kObs);
  setting.ActFile = form_.Text("txtActFile");
  return setting;
}

void DataSourceFields::Show(const DataSourceSetting& setting) {
  setting_ = setting;
  form_.SetText("txtVarnelMDB", setting.VarnelMDB);
  form_.SetText(kCubeFile, setting.CubeFile);
  cube_file_ = setting.CubeFile;
  form_.SetText("txtCubeName", setting.CubeName);
  form_.SetText(kObs, setting.OBS);
  form_.SetText("txtActFile", setting.ActFile);
  ShowMeasures();
}

bool DataSourceFields::INIDataSource(const std::string& name) {
  bool loaded = false;
  const std::string& wanted = name.empty() ? form_.Text(kName) : name;
  if (wanted.empty()) return false;
  RunReported(services_, {.FunctionName = "INIDataSource", .ModuleName = "FrmPeriods"}, [&] {
    CheckSetName(kDataSourceWords, wanted);
    const auto setting =
        ReadEditedDataSource(services_.host, services_.publics.environment, wanted);
    if (!setting) return;
    Show(*setting);
    loaded = true;
    UpdObsList();
    TellMissingMeasures();
  });
  return loaded;
}

void DataSourceFields::MarkMeasure(int row, bool missing) {
  form_.At({"TextMeasure", row}).Error = missing;
  form_.At({"ComMeasure", row}).Caption =
      missing ? StringTableText(text_number::kError)
              : GetLangString(services_.publics.language, text_number::kMeasure);
}

void DataSourceFields::ShowMeasures() {
  for (int row = 0; row < kMoneySetCount; ++row) {
    const MoneySetEntry& entry = setting_.MoneySets[static_cast<std::size_t>(row)];
    form_.SetText({"TextMoney", row}, entry.MoneySet.IsNull() ? "" : entry.MoneySet.ToText());
    form_.SetText({"TextMeasure", row}, entry.Measure);
    form_.SetText({"TextQty", row}, entry.Qty);
    MarkMeasure(row, false);
  }
}

std::vector<std::string> DataSourceFields::MissingMeasures() {
  const Value::Array known =
      GetMeasFromCube(services_.host, form_.Text(kCubeFile), form_.Text("txtCubeName"));
  std::vector<std::string> missing;
  for (int row = 0; row < kMoneySetCount; ++row) {
    const std::string& measure = form_.Text({"TextMeasure", row});
    const auto is_measure = [&](const Value& name) {
      return EqualNoCase(services_.host.locale, name.ToText(), measure);
    };
    if (measure.empty() || std::any_of(known.begin(), known.end(), is_measure)) continue;
    MarkMeasure(row, true);
    if (std::find(missing.begin(), missing.end(), measure) == missing.end()) {
      missing.push_back(measure);
    }
  }
  return missing;
}

void DataSourceFields::TellMissingMeasures() {
  const auto missing = MissingMeasures();
  if (missing.empty()) return;
  std::string text = StringTableText(text_number::kMeasures) + kLineEnd;
  for (const std::string& measure : missing) text += kLineEnd + measure;
  ShowMessage(services_, text, services_.host.component.executable_name, MessageIcon::kCritical);
}

void DataSourceFields::UpdObsList() {
  // The window's name is misspelt in this report; people search for it so.
  RunReported(services_, {.FunctionName = "UpdObsList", .ModuleName = "FrmPeriosd"}, [this] {
    form_.SetList(kObs, {});
    const auto members =
        ReadObsMembers(services_.host, form_.Text(kCubeFile), form_.Text("txtCubeName"));
    form_.SetList(kObs, members);
    const std::string& chosen = form_.Text(kObs);
    const auto found = std::find(members.begin(), members.end(), chosen);
    if (found != members.end()) {
      form_.Choose(kObs, static_cast<int>(found - members.begin()));
    } else if (chosen.empty() && !members.empty()) {
      form_.Choose(kObs, 0);
    }
  });
}

/// What was typed or pasted offers its cubes; the one that is named stays where it has it.
void DataSourceFields::CubeFileLeft() {
  form_.SetText(kCubeFile, std::string(TrimBlanks(form_.Text(kCubeFile))));
  const std::string file = form_.Text(kCubeFile);
  if (file == cube_file_) return;
  cube_file_ = file;
  if (file.empty()) return;
  RunReported(services_, {.FunctionName = "TxtFileName_LostFocus", .ModuleName = "FrmPeriods"},
              [&] {
                const auto connection = OpenForCatalogs(services_.host, file);
                const QelCatalogs cubes = ListQelCatalogs(*connection);
                connection->Close();
                ChooseCatalog(cubes);
                UpdObsList();
              });
}

void DataSourceFields::ChooseCatalog(const QelCatalogs& cubes) {
  if (!cubes.chosen) {
    ShowMessage(services_, StringTableText(text_number::kNoQelCube),
                services_.host.component.product_name, MessageIcon::kExclamation);
    return;
  }
  const auto& names = cubes.names;
  const bool is_there =
      std::find(names.begin(), names.end(), form_.Text("txtCubeName")) != names.end();
  if (!is_there) form_.SetText("txtCubeName", names[*cubes.chosen]);
}

MeasureChoices DataSourceFields::SetCmbMeas2() {
  MeasureChoices choices;
  RunReported(services_, {.FunctionName = "SetCmbMeas2", .ModuleName = "FrmPeriods"}, [&] {
    choices = ReadMeasureChoices(services_.host, form_.Text(kCubeFile), form_.Text("txtCubeName"));
  });
  return choices;
}

void DataSourceFields::ChooseCube() {
  frmCube window(services_);
  window.CubeFile = form_.Text(kCubeFile);
  window.CubeName = form_.Text("txtCubeName");
  window.DbPath = SettingsDatabase(services_.publics.environment.SettingsFolder);
  if (!window.ShowForm()) return;
  form_.SetText(kCubeFile, window.CubeFile);
  cube_file_ = window.CubeFile;
  form_.SetText("txtCubeName", window.CubeName);
  form_.SetText(kObs, "");
  UpdObsList();
  ShowMeasures();
}

void DataSourceFields::EditMoneySets(int row) {
  FrmOption window(services_, SetCmbMeas2());
  if (window.ShowForm(setting_, row)) ShowMeasures();
}

void DataSourceFields::PickInto(const char* field) {
  GoToSettingsFolder(services_.host, services_.publics.environment);
  const std::string picked = services_.toolkit.PickFile(
      {.title = services_.host.component.executable_name +
                GetLangString(services_.publics.language, text_number::kOpenAFile),
       .filter = "*.*|*.*",
       .flags = kFileMustExist | kHideReadOnly});
  if (!picked.empty()) form_.SetText(field, picked);
}

void DataSourceFields::MarkNeededLabels() {
  for (const char* field : kNeeded) form_.At(form_.At(field).Label).Caption += kNeededMark;
}

std::string DataSourceFields::MarkMissingFields() {
  std::string names;
  for (const char* field : kNeeded) {
    Control& control = form_.At(field);
    control.Error = control.Text.empty();
    if (!control.Error) continue;
    if (names.empty()) form_.Focus = ControlId(field);
    const std::string label = SpokenName(form_, control);
    names += kLineEnd + label.substr(0, label.rfind(kNeededMark));
  }
  return names;
}

bool DataSourceFields::SaveDataSourceInfo() {
  if (const std::string missing = MarkMissingFields(); !missing.empty()) {
    ShowMessage(services_, StringTableText(text_number::kNoDataSource) + kLineEnd + missing,
                services_.host.component.product_name, MessageIcon::kExclamation);
    return false;
  }
  if (form_.Text(kName).empty()) form_.SetText(kName, NameOfNow(services_.host));
  return RunReported(
      services_,
      {.Extra = "Error saving settings",
       .FunctionName = "SaveDataSourceInfo",
       .ModuleName = "FrmPeriods\""},
      [this] { vok::SaveDataSourceInfo(services_.host, services_.publics.environment, Read()); });
}

void DataSourceFields::SaveMoneyMeasures() const {
  vok::SaveMoneyMeasures(services_.host, services_.publics.environment, Read());
}

std::string DataSourceFields::Entered() const {
  const DataSourceSetting setting = Read();
  std::string entered = std::to_string(setting.CountMoney);
  for (const std::string& text :
       {setting.VarnelMDB, setting.CubeFile, setting.CubeName, setting.OBS, setting.ActFile}) {
    entered += '\n' + text;
  }
  for (const MoneySetEntry& entry : setting.MoneySets) {
    entered += '\n' + (entry.MoneySet.IsNull() ? "" : entry.MoneySet.ToText()) + '\n' +
               entry.Measure + '\n' + entry.Qty + (entry.IsCalculated ? '1' : '0');
  }
  return entered;
}

}  // namespace vok
