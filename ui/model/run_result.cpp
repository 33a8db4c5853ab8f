#include "ui/model/run_result.h"

#include <algorithm>
#include <cmath>

#include "component/result_grid.h"
#include "component/workbook_writer.h"
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
constexpr int kMoneyDecimals = 2;

std::string WithValues(std::string text, const std::string& first, const std::string& second) {
  for (const auto& [mark, value] : {std::pair("%1", first), std::pair("%2", second)}) {
    const std::size_t place = text.find(mark);
    if (place != std::string::npos) text.replace(place, 2, value);
  }
  return text;
}

/// "A" for column 0.
std::string ColumnName(std::size_t column) {
  constexpr std::size_t kLetters = 26;
  const std::string last(1, static_cast<char>('A' + column % kLetters));
  return column < kLetters ? last : ColumnName(column / kLetters - 1) + last;
}

/// Whole numbers are shown without decimals where all of them are.
int DecimalsOf(const std::vector<double>& numbers) {
  const bool whole = std::all_of(numbers.begin(), numbers.end(),
                                 [](double number) { return number == std::floor(number); });
  return whole ? 0 : kMoneyDecimals;
}

/// A column of the sheet as it is shown.
struct SheetColumn {
  std::vector<std::string> cells = {};
  bool is_empty = true;
  bool is_number = false;
};

SheetColumn ReadColumn(const Locale& locale, const RunPreview& preview, std::size_t column) {
  std::vector<double> numbers;
  for (const auto& row : preview.rows) {
    const double* number = column < row.size() ? row[column].As<double>() : nullptr;
    if (number != nullptr) numbers.push_back(*number);
  }
  const int decimals = DecimalsOf(numbers);
  SheetColumn shown{.is_number = column + 1 >= kFirstLabelColumn};
  for (const auto& row : preview.rows) {
    const Value cell = column < row.size() ? row[column] : Value();
    const double* number = cell.As<double>();
    shown.cells.push_back(number != nullptr ? locale.NumberText(*number, decimals)
                          : cell.IsEmpty()  ? std::string()
                                            : cell.ToText());
    shown.is_empty = shown.is_empty && shown.cells.back().empty();
  }
  return shown;
}

/// Whether a period of this column was asked for: it stays, empty or not.
bool IsAsked(const RunPreview& preview, std::size_t column) {
  return std::any_of(preview.money.begin(), preview.money.end(), [&](const MoneyTotal& money) {
    const std::size_t quantity = QuantityColumn(money.PeriodNumber);
    return column + 1 == quantity || column == quantity;
  });
}

}  // namespace

RunResult::RunResult(const WindowServices& services, Form& form)
    : services_(services), form_(form) {
  form_.On(FormEvent::kClicked, "cmdOpenWorkbook", [this](int) { OpenWorkbook(); });
  form_.On(FormEvent::kClicked, "cmdOpenFolder",
           [this](int) { Open(workbook_.substr(0, workbook_.find_last_of("/\\"))); });
}

void RunResult::AddTo(Panel window) {
  constexpr int kWidth = 44;
  constexpr int kColumns = 3;
  Panel frame = window.Frame({}, kResultFrame, text_number::kResultFrame);
  Control& pane = form_.At(kResultFrame);
  pane.Visible = false;
  pane.Region = Region::kBeside;
  pane.Grows = pane.GrowsDown = true;
  frame.Label({0, 0, kColumns}, "lblResult", text_number::kWorkbookAt);
  frame.Field({1, 0, kColumns}, ControlType::kTextBox, kPath, "lblResult", kWidth).Locked = true;
  frame.Label({2, 0}, "lblResultRows", text_number::kResultNone).Grows = true;
  frame.Button({2, 1}, "cmdOpenWorkbook", text_number::kOpenWorkbook);
  frame.Button({2, 2}, "cmdOpenFolder", text_number::kOpenFolder);
  frame.Label({3, 0, kColumns}, "lblRows", text_number::kFirstRows);
  Control& rows = frame.Field({4, 0, kColumns}, ControlType::kListView, kRows, "lblRows", kWidth);
  rows.Height = 8;
  rows.Grows = rows.GrowsDown = true;
  frame.Label({5, 0, kColumns}, "lblMoney", text_number::kMoneyTotals);
  Control& money = frame.Field({6, 0, kColumns}, ControlType::kChart, kMoney, "lblMoney", kWidth);
  money.Height = kPeriodCount;
  money.Grows = true;
}

void RunResult::Show() {
  const RunReport& report = services_.publics.last_run;
  const bool written = !report.workbook.empty();
  workbook_ = written ? WholePath(services_.host.files.NativePath(report.workbook)) : "";
  form_.At(kResultFrame).Visible = true;
  form_.At(kPath).Text =
      written ? workbook_ : GetLangString(services_.publics.language, text_number::kResultNone);
  form_.At("lblResultRows").Caption = RowsText(report);
  for (const char* button : {"cmdOpenWorkbook", "cmdOpenFolder"})
    form_.At(button).Enabled = written;
  ShowRows(report.preview);
  ShowMoney(report.preview.money);
  form_.Focus = ControlId(written ? "cmdOpenWorkbook" : "cmdQuery");
}

std::string RunResult::RowsText(const RunReport& report) const {
  constexpr double kMillisecondsPerSecond = 1000;
  const Locale& locale = services_.host.locale;
  Language& language = services_.publics.language;
  if (report.workbook.empty()) {
    return report.stopped ? GetLangString(language, text_number::kResultStopped) : std::string();
  }
  if (!report.whole) return GetLangString(language, text_number::kResultIncomplete);
  return WithValues(GetLangString(language, text_number::kResultRows),
                    locale.NumberText(static_cast<double>(report.rows), 0),
                    locale.NumberText(report.total / kMillisecondsPerSecond, 1));
}

void RunResult::ShowRows(const RunPreview& preview) {
  Control& list = form_.At(kRows);
  list.Items.clear();
  list.Rows.assign(preview.rows.size(), {});
  for (std::size_t column = 0; column < preview.labels.size(); ++column) {
    SheetColumn shown = ReadColumn(services_.host.locale, preview, column);
    if (shown.is_empty && !IsAsked(preview, column)) continue;
    const std::string& label = preview.labels[column];
    list.Items.push_back(
        {.Text = label.empty() ? ColumnName(column) : label, .IsNumber = shown.is_number});
    for (std::size_t row = 0; row < shown.cells.size(); ++row) {
      list.Rows[row].push_back(std::move(shown.cells[row]));
    }
  }
}

void RunResult::ShowMoney(const std::vector<MoneyTotal>& money) {
  std::vector<double> totals;
  totals.reserve(money.size());
  for (const MoneyTotal& period : money) totals.push_back(period.total);
  const int decimals = DecimalsOf(totals);
  std::vector<Bar>& bars = form_.At(kMoney).Bars;
  bars.clear();
  for (const MoneyTotal& period : money) {
    bars.push_back({period.name.empty() ? std::to_string(period.PeriodNumber) : period.name,
                    period.total, services_.host.locale.NumberText(period.total, decimals)});
  }
}

void RunResult::OpenWorkbook() {
  if (services_.host.files.Exists(workbook_)) return Open(workbook_);
  ShowMessage(services_,
              GetLangString(services_.publics.language, text_number::kWorkbookGone) + workbook_,
              services_.host.component.product_name, MessageIcon::kExclamation);
}

void RunResult::Open(const std::string& path) {
  try {
    services_.toolkit.OpenOnDesktop(path);
  } catch (const Failure& failure) {
    ShowMessage(services_, failure.description(), services_.host.component.product_name,
                MessageIcon::kExclamation);
  }
}

}  // namespace vok
