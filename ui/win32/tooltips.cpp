#include "ui/win32/tooltips.h"

#include "system/windows/utf16.h"
// after the system's own header, and with the names of the properties in this file
#include <initguid.h>
#include <oleacc.h>

namespace vok::windows {
namespace {

/// The part of the control that the mouse is over: a combo box has a field of its own.
HWND MousePart(HWND window) {
  COMBOBOXINFO parts{};
  parts.cbSize = sizeof parts;
  const bool has_field = ::GetComboBoxInfo(window, &parts) != FALSE && parts.hwndItem != nullptr &&
                         parts.hwndItem != window && ::IsChild(window, parts.hwndItem) != FALSE;
  return has_field ? parts.hwndItem : window;
}

void Tell(HWND tips, UINT message, HWND part, std::wstring text) {
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;  // which every version of the controls takes
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = ::GetParent(tips);
  tool.uId = reinterpret_cast<UINT_PTR>(part);
  tool.lpszText = text.data();
  ::SendMessageW(tips, message, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace

ToolTips::ToolTips(HWND dialog)
    : window_(::CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX,
                                CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, dialog,
                                nullptr, nullptr, nullptr)) {}

ToolTips::~ToolTips() {
  if (::IsWindow(window_) != FALSE) ::DestroyWindow(window_);
}

void ToolTips::Refresh(const Widget& widget) {
  std::string& shown = shown_[&widget];
  const std::string& wanted = ShownToolTip(widget.control());
  if (shown == wanted) return;
  const UINT message = shown.empty() ? TTM_ADDTOOLW : TTM_UPDATETIPTEXTW;
  shown = wanted;
  Tell(window_, message, MousePart(widget.window()), Utf16(wanted));
}

SpokenNames::SpokenNames() {
  ::CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                     service_.ReceiveVoid());
}

SpokenNames::~SpokenNames() {
  MSAAPROPID names[] = {PROPID_ACC_NAME, PROPID_ACC_VALUE};
  for (const auto& [window, said] : said_) {
    service_->ClearHwndProps(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, names,
                             static_cast<int>(std::size(names)));
  }
}

void SpokenNames::Refresh(const Form& form, const Widget& widget) {
  const Control& control = widget.control();
  if (!service_ || control.Type == ControlType::kLabel || control.Type == ControlType::kFrame) {
    return;
  }
  Said said{SpokenName(form, control), widget.SpokenValue()};
  Said& before = said_[widget.window()];
  if (before == said) return;
  const auto say = [&](const MSAAPROPID& property, const std::string& text) {
    service_->SetHwndPropStr(widget.window(), static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF,
                             property, Utf16(text).c_str());
  };
  if (said.name != before.name) say(PROPID_ACC_NAME, said.name);
  if (said.value != before.value) say(PROPID_ACC_VALUE, said.value);
  before = std::move(said);
}

}  // namespace vok::windows
