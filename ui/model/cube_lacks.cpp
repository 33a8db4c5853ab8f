#include "ui/model/cube_lacks.h"

#include "cube/connection.h"
#include "cube/requirements.h"
#include "platform/failure.h"
#include "texts/language.h"
#include "texts/text_numbers.h"
#include "ui/model/apply_language.h"
#include "ui/model/panel.h"

namespace vok {
namespace {

std::vector<CubeLack> LacksOf(const Host& host, const std::string& file,
                              const std::string& catalog) {
  try {
    const auto connection = host.cube.Connect(RunConnectionText(file, catalog), nullptr);
    return FindLacks(host.locale, *connection, catalog);
  } catch (const Failure&) {
    return {};
  }
}

/// Whole, on as many lines as it takes.
void AddText(Panel& panel, GridCell cell, const ControlId& id, const std::string& text) {
  constexpr int kWidth = 44;
  Control& label = panel.Label(cell, id, 0);
  label.Caption = AsCaption(text);
  label.Width = kWidth;
  label.Grows = true;
}

void AddControls(Form& form, const std::vector<CubeLack>& lacks) {
  Panel window(form);
  window.Label({0, 0}, "lblLacks", text_number::kLacks);
  Panel rows = window.Frame({1, 0}, "fraLacks");
  form.At("fraLacks").Grows = true;
  rows.Label({0, 0}, "lblWhats", text_number::kLackWhat);
  rows.Label({0, 1}, "lblMends", text_number::kLackMend);
  for (std::size_t i = 0; i < lacks.size(); ++i) {
    const int number = static_cast<int>(i);
    AddText(rows, {1 + number, 0}, {"lblWhat", number}, lacks[i].what);
    AddText(rows, {1 + number, 1}, {"lblMend", number}, lacks[i].mend);
  }
  Panel buttons = window.Foot(0, "fraButtons");
  Control& copy = buttons.Button({0, 0}, "cmdCopy", text_number::kCopy, text_number::kTipCopy);
  copy.Grows = copy.AtEnd = true;
  Control& close = buttons.Button({0, 1}, "cmdClose", text_number::kClose);
  close.Default = close.Cancel = true;
}

}  // namespace

void ShowLacks(const WindowServices& services, const std::string& cube_file,
               const std::string& catalog) {
  const auto lacks = LacksOf(services.host, cube_file, catalog);
  if (lacks.empty()) return;
  Form form("frmLacks", "");
  form.Remembered = true;
  AddControls(form, lacks);
  form.On(FormEvent::kClicked, "cmdClose", [&](int) { form.Visible = false; });
  form.On(FormEvent::kClicked, "cmdCopy", [&](int) {
    std::string text;
    for (const CubeLack& lack : lacks) text += lack.what + "\n" + lack.mend + "\n";
    services.toolkit.CopyText(text);
  });
  LoadTexts(services.host, services.publics, form);
  form.Caption = GetLangString(services.publics.language, text_number::kLacksWindow);
  form.Focus = ControlId("cmdClose");
  services.toolkit.ShowModal(form);
}

}  // namespace vok
