#include "ui/model/frm_option.h"

#include <charconv>

#include "texts/text_numbers.h"
#include "ui/model/apply_language.h"

namespace vok {
namespace {

constexpr int kOptionWidth = 18;

/// The count that the text means: 0 to 13; nothing for any other text.
std::optional<int16_t> CountIn(const std::string& text) {
  int16_t count = 0;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, count);
  if (read.ec != std::errc() || read.ptr != end || count < 0 || count > kMoneySetCount) return {};
  return count;
}

}  // namespace

FrmOption::FrmOption(const WindowServices& services, const MeasureChoices& choices)
    : services_(services), form_("FrmOption", std::to_string(text_number::kOptionWindow)) {
  form_.Remembered = true;
  Panel window(form_);
  Panel rows = window.Frame({0, 0}, "fraRows");
  form_.At("fraRows").Grows = true;
  rows.Label({0, 1}, "lblMoney", text_number::kMoneySet);
  rows.Label({0, 2}, "lblMeas", text_number::kMeasure);
  rows.Label({0, 3}, "lblQty", text_number::kQtyMeasure);
  rows.Label({0, 4}, "lblCalc", text_number::kCalculated);
  for (int row = 0; row < kMoneySetCount; ++row) AddRow(rows, row, choices);
  Panel count = window.Frame({1, 0}, "fraCount");
  count.Label({0, 0}, "lblCountMoney", text_number::kCountMoney);
  count.Field({0, 1}, ControlType::kTextBox, "txtCountMoney", "lblCountMoney", 4);
  window.OkAndCancel();
  form_.On(FormEvent::kChanged, "txtCountMoney", [this](int) { CountChanged(); });
  form_.On(FormEvent::kClicked, "cmdOk", [this](int) {
    confirmed_ = true;
    form_.Visible = false;
  });
  form_.On(FormEvent::kClicked, "cmdCancel", [this](int) { form_.Visible = false; });
}

void FrmOption::AddRow(Panel& rows, int row, const MeasureChoices& choices) {
  const int grid_row = row + 1;
  const std::string number = std::to_string(row);
  rows.Label({grid_row, 0}, {"lblNumber", row}, 0).Caption = number;
  const auto combo = [&](int column, const char* name, const char* label,
                         const std::vector<std::string>& list) {
    Control& field =
        rows.Field({grid_row, column}, ControlType::kComboBox, {name, row}, label, kOptionWidth);
    field.Grows = true;
    field.List = list;
    field.Row = number;
  };
  combo(1, "CmbMoney", "lblMoney", choices.money_sets);
  combo(2, "CmbMeas", "lblMeas", choices.measures);
  combo(3, "CmbQty", "lblQty", choices.measures);
  Control& calculated =
      rows.CheckBox({grid_row, 4}, {"chkCalc", row}, 0, text_number::kTipCalculated);
  calculated.Label = "lblCalc";
  calculated.Row = number;
}

void FrmOption::CountChanged() {
  const std::string typed = form_.Text("txtCountMoney");
  const bool refused = !typed.empty() && !CountIn(typed);
  if (refused) form_.SetText("txtCountMoney", "");
  form_.At("txtCountMoney").Error = refused;
}

void FrmOption::ShowRows(const DataSourceSetting& setting) {
  for (int row = 0; row < kMoneySetCount; ++row) {
    const MoneySetEntry& entry = setting.MoneySets[static_cast<std::size_t>(row)];
    form_.SetText({"CmbMoney", row}, entry.MoneySet.IsNull() ? "" : entry.MoneySet.ToText());
    form_.SetText({"CmbMeas", row}, entry.Measure);
    form_.SetText({"CmbQty", row}, entry.Qty);
    form_.SetValue({"chkCalc", row}, entry.IsCalculated ? kChecked : kUnchecked);
  }
  // Not typed, so never refused: another program may have stored a count of its own.
  form_.At("txtCountMoney").Text = std::to_string(setting.CountMoney);
}

void FrmOption::ReadRows(DataSourceSetting& setting) const {
  for (int row = 0; row < kMoneySetCount; ++row) {
    MoneySetEntry& entry = setting.MoneySets[static_cast<std::size_t>(row)];
    const std::string& money_set = form_.Text({"CmbMoney", row});
    const bool undefined = entry.MoneySet.IsNull() || entry.MoneySet.IsEmpty();
    if (!undefined || !money_set.empty()) entry.MoneySet = money_set;
    entry.Measure = form_.Text({"CmbMeas", row});
    entry.Qty = form_.Text({"CmbQty", row});
    entry.IsCalculated = form_.IsChecked({"chkCalc", row});
  }
  const std::string& count = form_.Text("txtCountMoney");
  if (count != std::to_string(setting.CountMoney)) setting.CountMoney = CountIn(count).value_or(0);
}

bool FrmOption::ShowForm(DataSourceSetting& setting, int row) {
  LoadTexts(services_.host, services_.publics, form_);
  ShowRows(setting);
  form_.Focus = ControlId("CmbMeas", row);
  services_.toolkit.ShowModal(form_);
  if (confirmed_) ReadRows(setting);
  return confirmed_;
}

}  // namespace vok
