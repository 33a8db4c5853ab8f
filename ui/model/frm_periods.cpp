#include "ui/model/frm_periods.h"

#include <algorithm>
#include <utility>

#include "component/workbook_writer.h"
#include "cube/requirements.h"
#include "env/environment.h"
#include "platform/failure.h"
#include "settings/set_lists.h"
#include "settings/set_reader.h"
#include "settings/set_writer.h"
#include "settings/settings_database.h"
#include "settings/settings_tables.h"
#include "texts/language.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"
#include "ui/model/apply_language.h"
#include "ui/model/cube_lacks.h"
#include "ui/model/messages.h"

namespace vok {
namespace {

constexpr char kDataSource[] = "comboDataSource";
constexpr char kPeriods[] = "ComboPeriods";
constexpr char kUnnamedPeriods[] = "Periods";
constexpr int kSetNameWidth = 30;
constexpr int kPathWidth = 60;

void AddDelete(Panel& panel, const char* name, int text, const char* of) {
  Control& button = panel.Button({0, 2}, name, text, text_number::kTipDelete);
  button.Label = of;
  button.Destructive = true;
}

std::vector<std::string> Names(const Value::Array& values) {
  std::vector<std::string> names;
  for (const Value& value : values) {
    if (!value.IsEmpty()) names.push_back(value.ToText());
  }
  return names;
}

ErrorReport ReportOf(const char* procedure) {
  return {.FunctionName = procedure, .ModuleName = "FrmPeriods"};
}

}  // namespace

FrmPeriods::FrmPeriods(const Host& host, Publics& publics, Toolkit& toolkit)
    : services_{host, publics, toolkit},
      form_("FrmPeriods", std::to_string(text_number::kMainWindow)),
      source_(services_, form_),
      dates_(services_, form_),
      progress_(services_, form_),
      result_(services_, form_),
      source_set_(services_, form_, kDataSource,
                  {.entered = [this] { return source_.Entered(); },
                   .load = [this] { return source_.INIDataSource(""); },
                   .save = [this] { return SaveSource(); },
                   .unnamed =
                       [this] {
                         return GetLangString(services_.publics.language,
                                              text_number::kSourceFrame);
                       }}),
      period_set_(services_, form_, kPeriods,
                  {.entered = [this] { return dates_.Entered(); },
                   .load = [this] { return LoadPeriodSet(""); },
                   .save = [this] { return SavePeriods(); },
                   .unnamed = [] { return std::string(kUnnamedPeriods); }}) {
  form_.Remembered = true;
  AddControls();
  AddMenus();
  AddRules();
}

void FrmPeriods::AddControls() {
  Panel window(form_);
  Panel source = window.Frame({0, 0}, "fraSource", text_number::kSourceFrame);
  source_.AddTo(source);
  Panel periods = window.Frame({1, 0}, "fraPeriods", text_number::kPeriodsFrame);
  form_.At("fraPeriods").Grows = form_.At("fraPeriods").Dense = true;
  Panel period_set = AddPeriods(periods);
  Panel workbook = window.Frame({2, 0}, "fraWorkbook");
  workbook.Label({0, 0}, "lblOutput", text_number::kWorkbook);
  Control& output = workbook.Field({0, 1}, ControlType::kTextBox, "txtOutput", "lblOutput",
                                   kPathWidth, text_number::kTipWorkbook);
  output.Grows = output.Path = true;
  workbook.Browse({0, 2}, "cmdOutput", "lblOutput");
  progress_.AddTo(window.Foot(0, "fraProgress"));
  Panel buttons = window.Foot(1, "fraButtons");
  buttons.Button({0, 0}, "ComSaveSet", text_number::kSave);
  buttons.Button({0, 1}, "cmdHelp", text_number::kHelp);
  Control& run = buttons.Button({0, 2}, "cmdQuery", text_number::kRunQuery);
  run.Default = run.Grows = run.AtEnd = true;
  buttons.Button({0, 3}, "cmdClose", text_number::kClose).Cancel = true;
  result_.AddTo(window);
  // Last: from a name that was just typed Tab must not lead to its deletion.
  AddDelete(source, "cmdDeleteSource", text_number::kDeleteDataSource, "lblDataSource");
  AddDelete(period_set, "cmdDeletePeriods", text_number::kDeletePeriods, "lblPeriods");
}

/// Money set n is measured in period n, so their fields share a row. Money set 0 is in no period.
Panel FrmPeriods::AddPeriods(Panel panel) {
  constexpr int kMoneyColumn = 6;
  constexpr int kColumns = kMoneyColumn + 4;
  Panel chooser = panel.Frame({0, 0, kColumns}, "fraPeriodSet");
  chooser.Label({0, 0}, "lblPeriods", text_number::kPeriodSet);
  chooser
      .Field({0, 1}, ControlType::kComboBox, kPeriods, "lblPeriods", kSetNameWidth,
             text_number::kTipPeriods)
      .Grows = true;
  chooser.Button({0, 3}, "cmdOptions", text_number::kOptions);
  constexpr int kHeadings = 1;
  dates_.AddHeadingsTo(panel, kHeadings);
  DataSourceFields::AddHeadingsTo(panel, {kHeadings, kMoneyColumn});
  for (int number = 0; number < kMoneySetCount; ++number) {
    const int row = kHeadings + 1 + number;
    panel.Label({row, 0}, {"lblNumber", number}, 0).Caption = std::to_string(number);
    if (number > 0) dates_.AddPeriodTo(panel, row, number - 1);
    DataSourceFields::AddMoneyTo(panel, {row, kMoneyColumn}, number);
  }
  Panel commands = panel.Frame({kHeadings + 1 + kMoneySetCount, 0, kColumns}, "fraCommands");
  dates_.AddCommandsTo(commands);
  return chooser;
}

void FrmPeriods::AddMenus() {
  AddMenu(form_, "mnuFile", text_number::kMenuFile);
  AddMenu(form_, "mnuSave", text_number::kMenuSave, "mnuFile").Shortcut = "Ctrl+S";
  AddMenu(form_, "mnuRun", text_number::kMenuRun, "mnuFile").Shortcut = "F5";
  AddMenu(form_, "mnuDeleteSource", text_number::kMenuDeleteSource, "mnuFile");
  AddMenu(form_, "mnuDeletePeriods", text_number::kMenuDeletePeriods, "mnuFile");
  AddMenu(form_, "mnuClose", text_number::kMenuClose, "mnuFile");
  AddMenu(form_, "mnuPeriods", text_number::kMenuPeriods);
  AddMenu(form_, "mnuAutoFill", text_number::kMenuAutoFill, "mnuPeriods");
  AddMenu(form_, "mnuNamePeriods", text_number::kMenuNamePeriods, "mnuPeriods");
  AddMenu(form_, "mnuClean", text_number::kMenuClean, "mnuPeriods");
  AddMenu(form_, "mnuView", text_number::kMenuView);
  AddMenu(form_, "mnuOpenWorkbook", text_number::kMenuOpenWorkbook, "mnuView").Shortcut = "Ctrl+O";
  AddMenu(form_, "mnuOpenFolder", text_number::kMenuOpenFolder, "mnuView");
  AddMenu(form_, "mnuCopy", text_number::kMenuCopy, "mnuView");
  AddMenu(form_, "mnuChart", text_number::kMenuChart, "mnuView");
  AddMenu(form_, "mnuHelp", text_number::kMenuHelp);
  AddMenu(form_, "mnuContents", text_number::kMenuContents, "mnuHelp").Shortcut = "F1";
  AddMenu(form_, "mnuAbout", text_number::kMenuAbout, "mnuHelp");
}

void FrmPeriods::AddRules() {
  const auto on_click = [this](const char* name, auto rule) {
    form_.On(FormEvent::kClicked, name, [rule](int) { rule(); });
  };
  on_click("cmdDeleteSource", [this] { Delete(kDataSource, "DataSource"); });
  on_click("cmdDeletePeriods", [this] { Delete(kPeriods, kUnnamedPeriods); });
  on_click("cmdOutput", [this] { PickOutput(); });
  on_click("cmdQuery", [this] { RunQuery(); });
  on_click("ComSaveSet", [this] { SaveSettings(); });
  on_click("cmdClose", [this] { Close(); });
  on_click("mnuAbout", [this] { TellAbout(); });
  on_click("cmdHelp", [this] {
    OpenOrTell(services_, services_.host.files.NativePath(services_.publics.help_file));
  });
  constexpr std::pair<const char*, const char*> kSameAs[] = {
      {"mnuSave", "ComSaveSet"},
      {"mnuRun", "cmdQuery"},
      {"mnuClose", "cmdClose"},
      {"mnuAutoFill", "cmdAutoFill"},
      {"mnuNamePeriods", "cmdNamePeriods"},
      {"mnuClean", "cmdCleanDates"},
      {"mnuDeleteSource", "cmdDeleteSource"},
      {"mnuDeletePeriods", "cmdDeletePeriods"},
      {"mnuOpenWorkbook", "cmdOpenWorkbook"},
      {"mnuOpenFolder", "cmdOpenFolder"},
      {"mnuCopy", "cmdCopyResult"},
      {"mnuChart", "chkChart"},
      {"mnuContents", "cmdHelp"}};
  for (const auto& [menu, button] : kSameAs) {
    on_click(menu, [this, button = button] { form_.Click(button); });
  }
}

Value FrmPeriods::Initialize(std::string& DataBaseFileName) {
  const Host& host = services_.host;
  Environment& environment = services_.publics.environment;
  FindSettingsFolder(host, environment);
  CreateDB(host, environment, environment.SettingsFolder);
  LoadTexts(host, services_.publics, form_);
  source_.MarkNeededLabels();
  title_ = form_.Caption + " [v" + clMe(host, services_.publics).Version() + "]";
  for (const char* help : {"cmdHelp", "mnuContents"}) {
    form_.At(help).Visible = !services_.publics.help_file.empty();
  }
  dates_.Load();
  ListSets();
  form_.SetText("txtVarnelMDB", DataBaseFileName);
  source_set_.MarkSaved();
  period_set_.MarkSaved();
  ShowTitle();
  form_.Acted = [this] { ShowTitle(); };
  return host.files.Exists(SettingsDatabase(environment.SettingsFolder));
}

void FrmPeriods::Show() {
  if (form_.Text("txtVarnelMDB").empty()) ChooseLastSets();
  services_.toolkit.ShowModal(form_);
  for (const char* combo : {kDataSource, kPeriods}) {
    services_.toolkit.Remember(KeyOfLast(combo), form_.Text(combo));
  }
}

/// Each settings folder has its own.
std::string FrmPeriods::KeyOfLast(const char* combo) const {
  return std::string(combo) + "@" + services_.publics.environment.SettingsFolder;
}

/// Those that the person worked with in the window before this one, if they are still there.
void FrmPeriods::ChooseLastSets() {
  for (const char* combo : {kDataSource, kPeriods}) {
    const auto& names = form_.At(combo).List;
    const auto found =
        std::find(names.begin(), names.end(), services_.toolkit.Recall(KeyOfLast(combo)));
    if (found != names.end()) form_.Choose(combo, static_cast<int>(found - names.begin()));
  }
}

void FrmPeriods::ListSets() {
  RunReported(services_, ReportOf("Form_Load"), [this] {
    const Environment& environment = services_.publics.environment;
    form_.SetList(kDataSource, Names(ListDataSources(services_.host, environment).names));
    form_.SetList(kPeriods, Names(ListPeriodSets(services_.host, environment)));
  });
}

bool FrmPeriods::SavePeriods() {
  if (!period_set_.MayBeSaved()) return false;
  return RunReported(services_,
                     {.Extra = "Error saving settings",
                      .FunctionName = "SavePeriods",
                      .ModuleName = "FrmPeriods\""},
                     [this] {
                       PeriodSet set = dates_.Read();
                       set.SetName = form_.Text(kPeriods);
                       vok::SavePeriods(services_.host, services_.publics.environment, set);
                       period_set_.MarkSaved();
                     });
}

bool FrmPeriods::SaveSource() {
  if (!source_set_.MayBeSaved() || !source_.SaveDataSourceInfo()) return false;
  return RunReported(services_, ReportOf("SaveSettings"), [this] {
    source_.SaveMoneyMeasures();
    source_set_.MarkSaved();
  });
}

bool FrmPeriods::SaveSettings() {
  const bool periods = SavePeriods();
  const bool source = SaveSource();
  ListSets();
  return periods && source;
}

bool FrmPeriods::LoadPeriodSet(const std::string& name) {
  bool loaded = false;
  const std::string& wanted = name.empty() ? form_.Text(kPeriods) : name;
  if (wanted.empty()) return false;
  RunReported(services_, ReportOf("LoadPeriodSet"), [&] {
    CheckSetName(kPeriodSetWords, wanted);
    const auto set = ReadEditedPeriods(services_.host, services_.publics.environment, wanted);
    if (!set) return;
    dates_.Show(*set);
    loaded = true;
  });
  return loaded;
}

void FrmPeriods::Delete(const char* combo, const char* kind) {
  const std::string name = form_.Text(combo);
  if (name.empty()) return;
  const auto answer = ShowMessage(services_, StringTableText(text_number::kAskDelete) + name,
                                  services_.host.component.product_name, MessageIcon::kQuestion,
                                  MessageButtons::kYesNo);
  if (answer != MessageAnswer::kYes) return;
  const bool deleted = RunReported(services_, ReportOf("cmdDelete_Click"), [&] {
    DeleteSet(services_.host, services_.publics.environment, name, kind);
  });
  if (deleted) {
    form_.SetText(combo, "");
    (combo == kDataSource ? source_set_ : period_set_).MarkSaved();
  }
  ListSets();
}

std::vector<std::string> FrmPeriods::ChangedSets() const {
  std::vector<std::string> names;
  for (const NamedSet* set : {&source_set_, &period_set_}) {
    if (set->IsChanged()) names.push_back(set->Name());
  }
  return names;
}

void FrmPeriods::ShowTitle() {
  form_.Caption = title_;
  const char* before = " - *";
  for (const std::string& name : ChangedSets()) {
    form_.Caption += std::exchange(before, ", *") + name;
  }
}

bool FrmPeriods::SaveIfWanted(int save, int leave) {
  const auto changed = ChangedSets();
  if (changed.empty()) return true;
  const auto answer = AskWhetherToSave(services_, changed, save, leave);
  return answer && (!*answer || SaveSettings());
}

void FrmPeriods::RunQuery() {
  for (const char* needed : {kDataSource, "txtOutput"}) {
    if (!form_.Text(needed).empty()) continue;
    ShowMessage(services_, GetLangString(services_.publics.language, text_number::kNothingToRun),
                services_.host.component.product_name, MessageIcon::kExclamation);
    form_.Focus = ControlId(needed);
    return;
  }
  if (!SaveIfWanted(text_number::kSaveAndRun, text_number::kRunAsSaved)) return;
  ShowTitle();
  std::string periods = form_.Text(kPeriods);
  if (periods.empty()) periods = kUnnamedPeriods;
  Value result;
  const bool ran = RunReported(services_, ReportOf("cmdQuery_Click"), [&] {
    CheckSetName(kDataSourceWords, form_.Text(kDataSource));
    CheckSetName(kPeriodSetWords, periods);
    const std::string output = OutputPath(services_.host.files, form_.Text("txtOutput"));
    result = progress_.Run(form_.Text(kDataSource), periods, output);
  });
  if (ran) ShowRunResult(*result.As<Value::Array>());
}

void FrmPeriods::ShowRunResult(const Value::Array& parts) {
  const bool failed = parts.size() == 2;
  const std::string problem = failed ? FailureText(parts) : EmptyText();
  result_.Show(problem);
  if (problem.empty()) return;
  ShowMessage(services_, problem, services_.host.component.product_name,
              failed ? MessageIcon::kExclamation : MessageIcon::kInformation);
  if (CubeMayLackSomething(services_.publics.last_run.code)) {
    ShowLacks(services_, form_.Text("TxtFileName"), form_.Text("txtCubeName"));
  }
}

std::string FrmPeriods::EmptyText() const {
  if (!services_.publics.last_run.workbook.empty()) return {};
  return GetLangString(services_.publics.language, text_number::kNoWorkbook);
}

/// What failed, why, and what to do. A run that was asked to stop has not failed.
std::string FrmPeriods::FailureText(const Value::Array& parts) {
  constexpr char kLineEnd[] = "\r\n";
  const RunReport& report = services_.publics.last_run;
  if (report.stopped) return {};
  std::string text = parts[1].ToText();
  if (!report.cause.empty() && report.cause != text) {
    text += (text.empty() ? "" : kLineEnd) + report.cause;
  }
  if (text.empty()) {
    text = GetLangString(services_.publics.language, text_number::kError) + " " + parts[0].ToText();
  }
  int advice = text_number::kAdviceRun;
  if (report.code == failure_number::kConnectionError) advice = text_number::kAdviceCube;
  if (report.code == failure_number::kInvalidMeasure && source_.MarkMissingMeasures()) {
    advice = text_number::kAdviceMeasures;
  }
  return text + kLineEnd + kLineEnd + GetLangString(services_.publics.language, advice);
}

void FrmPeriods::TellAbout() {
  const ComponentInfo& component = services_.host.component;
  ShowMessage(services_,
              component.product_name + " " + clMe(services_.host, services_.publics).Version() +
                  "\r\n\r\n" + services_.toolkit.Name() + ", SQLite, Expat, pugixml, libdeflate",
              component.product_name, MessageIcon::kInformation);
}

void FrmPeriods::Close() {
  if (SaveIfWanted(text_number::kSave, text_number::kDiscard)) form_.Visible = false;
}

void FrmPeriods::PickOutput() {
  GoToSettingsFolder(services_.host, services_.publics.environment);
  const std::string picked = services_.toolkit.PickFile(
      {.title = services_.host.component.executable_name +
                GetLangString(services_.publics.language, text_number::kSaveAFile),
       .filter = "Excel files(*.xlsX)|*.xlsX",
       .flags = kPathMustExist | kHideReadOnly,
       .save = true});
  if (!picked.empty()) form_.SetText("txtOutput", OutputPath(services_.host.files, picked));
}

}  // namespace vok
