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

void AddControls(Form& form, const std::vector<CubeLack>& lacks) {
  constexpr int kWidth = 80;
  Panel window(form);
  window.Label({0, 0}, "lblLacks", text_number::kLacks);
  Control& list = window.Field({1, 0}, ControlType::kListView, "lvwLacks", "lblLacks", kWidth);
  list.Items = {{.Tag = std::to_string(text_number::kLackWhat)},
                {.Tag = std::to_string(text_number::kLackMend)}};
  for (const CubeLack& lack : lacks) list.Rows.push_back({lack.what, lack.mend});
  list.Height = 8;
  list.Grows = list.GrowsDown = true;
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
  Form form("frmLacks", std::to_string(text_number::kLacksWindow));
  form.Remembered = true;
  AddControls(form, lacks);
  form.On(FormEvent::kClicked, "cmdClose", [&](int) { form.Visible = false; });
  form.On(FormEvent::kClicked, "cmdCopy", [&](int) {
    std::string text;
    for (const CubeLack& lack : lacks) text += lack.what + "\n" + lack.mend + "\n";
    services.toolkit.CopyText(text);
  });
  LoadTexts(services.host, services.publics, form);
  form.Focus = ControlId("cmdClose");
  services.toolkit.ShowModal(form);
}

}  // namespace vok
