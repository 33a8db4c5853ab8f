#include "ui/model/run_result.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "component/result_grid.h"
#include "component/workbook_look.h"
#include "component/workbook_writer.h"
#include "platform/utf8.h"
#include "platform/whole_path.h"
#include "texts/language.h"
#include "texts/text_numbers.h"
#include "ui/model/messages.h"

namespace vok {
namespace {

constexpr char kResultFrame[] = "fraResult";
constexpr char kPath[] = "txtResult";
constexpr char kRows[] = "lvwRows";
constexpr char kMoney[] = "chtMoney";
constexpr char kCause[] = "lblCause";

std::string WithValues(std::string text, const std::string& first, const std::string& second) {
  for (const auto& [mark, value] : {std::pair("%1", first), std::pair("%2", second)}) {
    const std::size_t place = text.find(mark);
    if (place != std::string::npos) text.replace(place, 2, value);
  }
  return text;
}

bool AreWhole(const std::vector<double>& numbers, double scale) {
  return std::all_of(numbers.begin(), numbers.end(), [scale](double number) {
    const double scaled = number * scale;
    return std::abs(scaled - std::round(scaled)) <= std::abs(scaled) * 1e-12;
  });
}

/// How a column of figures is written: as its format in the workbook has it, with all decimals that
/// this asks for and of the others as many as one of the figures needs.
class FigureTexts {
 public:
  FigureTexts(const Locale& locale, const std::string& format, const std::vector<double>& numbers)
      : locale_(locale), percent_(format.find('%') != std::string::npos) {
    const std::string usual = format.substr(0, format.find(';'));
    const std::size_t point = std::min(usual.find('.'), usual.size());
    const auto places = [&](char sign) {
      return static_cast<int>(
          std::count(usual.begin() + static_cast<std::ptrdiff_t>(point), usual.end(), sign));
    };
    decimals_ = places('0');
    const int most = decimals_ + places('#');
    const double scale = percent_ ? kPercent : 1;
    while (decimals_ < most && !AreWhole(numbers, scale * std::pow(10, decimals_))) ++decimals_;
  }
  std::string Of(double number) const {
    return percent_ ? locale_.NumberText(number * kPercent, decimals_) + "%"
                    : locale_.NumberText(number, decimals_);
  }

 private:
  static constexpr double kPercent = 100;
  const Locale& locale_;
  bool percent_;
  int decimals_ = 0;
};

std::string TextAt(const std::vector<Value>& row, std::size_t column) {
  return column <= row.size() && !row[column - 1].IsEmpty() ? row[column - 1].ToText() : "";
}

/// Which letters a text is written in: what all codes of Hebrew, or of Cyrillic, have in common.
char32_t ScriptOf(std::string_view text) { return text.empty() ? 0 : TakeLetter(text).code >> 8; }

bool HasLetterOf(char32_t script, std::string_view text) {
  while (!text.empty()) {
    if (TakeLetter(text).code >> 8 == script) return true;
  }
  return false;
}

/// What the row is called in the letters of the windows' language, in any of its fields; else in
/// the cube's first language, else its number.
std::string CaptionOf(const std::vector<Value>& row, char32_t script) {
  constexpr std::size_t kNumber = 2, kFirst = 3;  // columns of the sheet
  for (std::size_t column = kFirst; script != 0 && column < kFirstLabelColumn; ++column) {
    if (std::string caption = TextAt(row, column); HasLetterOf(script, caption)) return caption;
  }
  const std::string caption = TextAt(row, kFirst);
  return caption.empty() ? TextAt(row, kNumber) : caption;
}

/// Where the format of a period's column stands among those of a workbook's look.
std::size_t FormatOf(int16_t period, bool is_money) {
  return 2 * static_cast<std::size_t>(period - 1) + (is_money ? 1 : 0);
}

std::string NameOf(const MoneyTotal& period) {
  return period.name.empty() ? std::to_string(period.PeriodNumber) : period.name;
}

/// The figures of column `column`, counted from 1, as they are shown in that format.
std::vector<std::string> FiguresIn(const Locale& locale, const RunPreview& preview,
                                   std::size_t column, const std::string& format) {
  const auto number_in = [column](const std::vector<Value>& row) {
    return column <= row.size() ? row[column - 1].As<double>() : nullptr;
  };
  std::vector<double> numbers;
  for (const auto& row : preview.rows) {
    if (const double* number = number_in(row)) numbers.push_back(*number);
  }
  const FigureTexts texts(locale, format, numbers);
  std::vector<std::string> figures;
  for (const auto& row : preview.rows) {
    const double* number = number_in(row);
    figures.push_back(number != nullptr ? texts.Of(*number) : std::string());
  }
  return figures;
}

}  // namespace

RunResult::RunResult(const WindowServices& services, Form& form)
    : services_(services), form_(form) {
  const auto on_click = [this](const char* name, auto rule) {
    form_.On(FormEvent::kClicked, name, [rule](int) { rule(); });
  };
  on_click("cmdOpenWorkbook", [this] { OpenWorkbook(); });
  on_click("cmdOpenFolder",
           [this] { OpenOrTell(services_, workbook_.substr(0, workbook_.find_last_of("/\\"))); });
  on_click("cmdCopyResult", [this] { Copy(); });
  on_click("chkChart", [this] { form_.At(kMoney).Visible = form_.IsChecked("chkChart"); });
}

void RunResult::AddTo(Panel window) {
  constexpr int kWidth = 44;
  Panel frame = window.Frame({}, kResultFrame, text_number::kResultFrame);
  Control& pane = form_.At(kResultFrame);
  pane.Visible = false;
  pane.Region = Region::kBeside;
  pane.Grows = pane.GrowsDown = true;
  frame.Label({0, 0}, "lblResult", text_number::kWorkbookAt);
  Control& path = frame.Field({1, 0}, ControlType::kTextBox, kPath, "lblResult", kWidth);
  path.Locked = path.Path = true;
  for (Control* text : {&frame.Label({2, 0}, "lblResultRows", text_number::kResultNone),
                        &frame.Label({3, 0}, kCause, 0)}) {
    text->Width = kWidth;
    text->Grows = true;
  }
  Panel buttons = frame.Frame({4, 0}, "fraResultButtons");
  buttons.Button({0, 0}, "cmdOpenWorkbook", text_number::kOpenWorkbook);
  buttons.Button({0, 1}, "cmdOpenFolder", text_number::kOpenFolder);
  buttons.Button({0, 2}, "cmdCopyResult", text_number::kCopy, text_number::kTipCopy);
  frame.Label({5, 0}, "lblRows", text_number::kFirstRows);
  Control& rows = frame.Field({6, 0}, ControlType::kListView, kRows, "lblRows", kWidth);
  rows.Height = 8;
  rows.Grows = rows.GrowsDown = true;
  frame.CheckBox({7, 0}, "chkChart", text_number::kMoneyTotals).Value = kChecked;
  Control& money = frame.Field({8, 0}, ControlType::kChart, kMoney, "chkChart", kWidth);
  money.Height = kPeriodCount;
  money.Grows = true;
}

void RunResult::Show(const std::string& cause) {
  const RunReport& report = services_.publics.last_run;
  const bool written = !report.workbook.empty();
  workbook_ = written ? WholePath(services_.host.files.NativePath(report.workbook)) : "";
  form_.At(kPath).Text = workbook_;
  form_.At("lblResultRows").Caption = RowsText(report);
  ShowParts(written, cause);
  const auto formats = RunLook(services_.host, services_.publics, "").formats;
  ShowRows(report.preview, formats);
  ShowMoney(report.preview.money, formats);
  // Where the pane stands below, the focus brings it to be seen.
  const bool failed = !written && !cause.empty();
  form_.Focus = ControlId(written ? "cmdOpenWorkbook" : failed ? "cmdCopyResult" : "cmdQuery");
}

/// Where nothing was written there is nothing to be shown of it.
void RunResult::ShowParts(bool written, const std::string& cause) {
  form_.At(kResultFrame).Visible = true;
  for (const char* part : {"lblResult", kPath, "cmdOpenWorkbook", "cmdOpenFolder", "lblRows", kRows,
                           "chkChart", kMoney}) {
    form_.At(part).Visible = written;
  }
  form_.At(kMoney).Visible = written && form_.IsChecked("chkChart");
  form_.At("cmdCopyResult").Enabled = written || !cause.empty();
  form_.At(kCause).Caption = AsCaption(cause);
  form_.At(kCause).Visible = !cause.empty();
}

std::string RunResult::RowsText(const RunReport& report) const {
  constexpr double kMillisecondsPerSecond = 1000;
  const Locale& locale = services_.host.locale;
  Language& language = services_.publics.language;
  if (report.workbook.empty()) {
    return GetLangString(language,
                         report.stopped ? text_number::kResultStopped : text_number::kResultNone);
  }
  if (!report.whole) return GetLangString(language, text_number::kResultIncomplete);
  return WithValues(GetLangString(language, text_number::kResultRows),
                    locale.NumberText(static_cast<double>(report.rows), 0),
                    locale.NumberText(report.total / kMillisecondsPerSecond, 1));
}

/// The captions, then quantity and money of the periods that were asked for.
void RunResult::ShowRows(const RunPreview& preview, const std::vector<std::string>& formats) {
  Control& list = form_.At(kRows);
  const std::string line = GetLangString(services_.publics.language, text_number::kReportLine);
  list.Items = {{.Text = line}};
  list.Rows.clear();
  for (const auto& row : preview.rows) {
    list.Rows.push_back({CaptionOf(row, ScriptOf(line))});
  }
  for (const MoneyTotal& period : preview.money) {
    for (const bool is_money : {false, true}) {
      const std::size_t column = QuantityColumn(period.PeriodNumber) + (is_money ? 1 : 0);
      list.Items.push_back({.Text = HeadingOf(period, is_money), .IsNumber = true});
      const auto figures = FiguresIn(services_.host.locale, preview, column,
                                     formats.at(FormatOf(period.PeriodNumber, is_money)));
      for (std::size_t row = 0; row < figures.size(); ++row) list.Rows[row].push_back(figures[row]);
    }
  }
}

/// What is counted, and when.
std::string RunResult::HeadingOf(const MoneyTotal& period, bool is_money) const {
  const MoneySetEntry& entry = SetOf(period.PeriodNumber);
  std::string measure = is_money ? entry.Measure : entry.Qty;
  if (measure.empty()) {
    measure = GetLangString(services_.publics.language,
                            is_money ? text_number::kMeasure : text_number::kQuantity);
  }
  return NameOf(period) + ": " + measure;
}

const MoneySetEntry& RunResult::SetOf(int16_t period) const {
  return services_.publics.settings.data_source.MoneySets[static_cast<std::size_t>(period)];
}

/// The measure that a period's money is, and its unit where the money set names one that the
/// measure's name does not.
std::string RunResult::MoneyOf(const MoneyTotal& period) const {
  const MoneySetEntry& set = SetOf(period.PeriodNumber);
  const std::string unit = set.MoneySet.IsNull() ? "" : set.MoneySet.ToText();
  const bool is_new = !unit.empty() && set.Measure.find(unit) == std::string::npos;
  return is_new ? set.Measure + ", " + unit : set.Measure;
}

/// Bars of different measures have no scale in common: each measure has its own, and its bars
/// stand together below its name. One measure alone is named in the title.
void RunResult::ShowMoney(const std::vector<MoneyTotal>& money,
                          const std::vector<std::string>& formats) {
  std::vector<std::vector<MoneyTotal>> measures;
  for (const MoneyTotal& period : money) {
    const std::string& measure = SetOf(period.PeriodNumber).Measure;
    const auto same = std::find_if(measures.begin(), measures.end(), [&](const auto& periods) {
      return SetOf(periods.front().PeriodNumber).Measure == measure;
    });
    (same != measures.end() ? *same : measures.emplace_back()).push_back(period);
  }
  Control& title = form_.At("chkChart");
  title.Caption = GetLangString(services_.publics.language, text_number::kMoneyTotals);
  if (measures.size() == 1) title.Caption += AsCaption(": " + MoneyOf(money.front()));
  std::vector<Bar>& bars = form_.At(kMoney).Bars;
  bars.clear();
  for (const auto& periods : measures) {
    if (measures.size() > 1) bars.push_back({.caption = MoneyOf(periods.front()), .title = true});
    AddBars(periods, formats, bars);
  }
}

/// On one scale.
void RunResult::AddBars(const std::vector<MoneyTotal>& money,
                        const std::vector<std::string>& formats, std::vector<Bar>& bars) const {
  double largest = 0;
  for (const MoneyTotal& period : money) largest = std::max(largest, std::abs(period.total));
  const double scale = largest > 0 ? largest : 1;
  for (const MoneyTotal& period : money) {
    const std::string& format = formats.at(FormatOf(period.PeriodNumber, true));
    const FigureTexts texts(services_.host.locale, format, {period.total});
    bars.push_back({NameOf(period), period.total / scale, texts.Of(period.total)});
  }
}

/// The rows that are shown, with tabs between their fields, or the cause.
void RunResult::Copy() {
  const Control& list = form_.At(kRows);
  if (!list.Visible) {
    return services_.toolkit.CopyText(WithoutAccessMark(form_.At(kCause).Caption));
  }
  std::string text;
  const char* before = "";
  for (const ControlItem& item : list.Items) text += std::exchange(before, "\t") + item.Text;
  for (const auto& row : list.Rows) {
    before = "\n";
    for (const std::string& cell : row) text += std::exchange(before, "\t") + cell;
  }
  services_.toolkit.CopyText(text);
}

void RunResult::OpenWorkbook() {
  if (services_.host.files.Exists(workbook_)) return OpenOrTell(services_, workbook_);
  ShowMessage(services_,
              GetLangString(services_.publics.language, text_number::kWorkbookGone) + workbook_,
              services_.host.component.product_name, MessageIcon::kExclamation);
}

}  // namespace vok
