#include "ui/frm_option.h"

#include <charconv>

#include "env/text_numbers.h"
#include "ui/apply_language.h"
#include "ui/controls.h"

namespace vok {
namespace {

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
  AddLabel(form_, "lblMoney", text_number::kMoneySet);
  AddLabel(form_, "lblMeas", text_number::kMeasure);
  AddLabel(form_, "lblQty", text_number::kQtyMeasure);
  AddLabel(form_, "lblCalc", text_number::kCalculated);
  for (int row = 0; row < kMoneySetCount; ++row) AddRow(row, choices);
  AddLabel(form_, "lblCountMoney", text_number::kCountMoney);
  AddField(form_, ControlType::kTextBox, "txtCountMoney");
  AddOkAndCancel(form_);
  form_.On(FormEvent::kChanged, "txtCountMoney", [this](int) { CountChanged(); });
  form_.On(FormEvent::kClicked, "cmdOk", [this](int) {
    confirmed_ = true;
    form_.Visible = false;
  });
  form_.On(FormEvent::kClicked, "cmdCancel", [this](int) { form_.Visible = false; });
}

void FrmOption::AddRow(int row, const MeasureChoices& choices) {
  AddField(form_, ControlType::kComboBox, {"CmbMoney", row}).List = choices.money_sets;
  AddField(form_, ControlType::kComboBox, {"CmbMeas", row}).List = choices.measures;
  AddField(form_, ControlType::kComboBox, {"CmbQty", row}).List = choices.measures;
  AddCheckBox(form_, {"chkCalc", row}, 0, text_number::kTipCalculated);
}

void FrmOption::CountChanged() {
  if (!CountIn(form_.Text("txtCountMoney"))) form_.SetText("txtCountMoney", "");
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
