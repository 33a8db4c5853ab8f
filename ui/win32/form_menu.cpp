#include "ui/win32/form_menu.h"

#include <charconv>
#include <string_view>

#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

constexpr char kSeparator[] = "-";

bool IsMenu(const Control& control, const std::string& container) {
  return control.Type == ControlType::kMenu && control.Visible && control.Container == container;
}

bool HasEntries(const Form& form, const std::string& name) {
  for (const Control& control : form.Controls()) {
    if (IsMenu(control, name)) return true;
  }
  return false;
}

bool TakeAway(std::string_view& text, std::string_view beginning) {
  if (!text.starts_with(beginning)) return false;
  text.remove_prefix(beginning.size());
  return true;
}

}  // namespace

ACCEL ReadShortcut(const std::string& text) {
  ACCEL key{FVIRTKEY, 0, 0};
  std::string_view rest = text;
  for (bool more = true; more;) {
    more = true;
    if (TakeAway(rest, "Ctrl+")) {
      key.fVirt |= FCONTROL;
    } else if (TakeAway(rest, "Shift+")) {
      key.fVirt |= FSHIFT;
    } else if (TakeAway(rest, "Alt+")) {
      key.fVirt |= FALT;
    } else {
      more = false;
    }
  }
  int number = 0;
  if (rest.size() == 1) {
    key.key = static_cast<WORD>(::VkKeyScanW(static_cast<wchar_t>(rest[0])) & 0xFF);
  } else if (rest == "Del") {
    key.key = VK_DELETE;
  } else if (TakeAway(rest, "F") &&
             std::from_chars(rest.data(), rest.data() + rest.size(), number).ec == std::errc() &&
             number >= 1 && number <= 24) {
    key.key = static_cast<WORD>(VK_F1 + number - 1);
  }
  return key;
}

FormMenu::FormMenu(const Form& form, HWND window, std::function<int(const Control&)> id_of)
    : form_(form), window_(window), id_of_(std::move(id_of)) {
  std::vector<ACCEL> keys;
  for (const Control& control : form_.Controls()) {
    ACCEL key = ReadShortcut(control.Shortcut);
    key.cmd = static_cast<WORD>(id_of_(control));
    if (control.Type == ControlType::kMenu && key.key != 0) keys.push_back(key);
  }
  if (!keys.empty()) {
    keys_ = ::CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size()));
  }
  Refresh();
}

FormMenu::~FormMenu() {
  if (keys_ != nullptr) ::DestroyAcceleratorTable(keys_);
}

bool FormMenu::Translate(MSG& message) const {
  return keys_ != nullptr && ::TranslateAcceleratorW(window_, keys_, &message) != 0;
}

std::vector<std::string> FormMenu::Entries() const {
  std::vector<std::string> entries;
  for (const Control& control : form_.Controls()) {
    if (control.Type != ControlType::kMenu || !control.Visible) continue;
    entries.push_back(control.Caption + (control.Enabled ? "+" : "-"));
  }
  return entries;
}

void FormMenu::Refresh() {
  std::vector<std::string> entries = Entries();
  if (entries == shown_) return;
  shown_ = std::move(entries);
  const HMENU before = ::GetMenu(window_);
  ::SetMenu(window_, shown_.empty() ? nullptr : Read(""));
  if (before != nullptr) ::DestroyMenu(before);
}

HMENU FormMenu::Read(const std::string& container) {
  const HMENU menu = container.empty() ? ::CreateMenu() : ::CreatePopupMenu();
  for (const Control& control : form_.Controls()) {
    if (IsMenu(control, container)) Append(menu, control);
  }
  return menu;
}

void FormMenu::Append(HMENU menu, const Control& entry) {
  if (entry.Caption == kSeparator) {
    ::AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    return;
  }
  std::string text = entry.Caption;
  if (!entry.Shortcut.empty()) text += "\t" + entry.Shortcut;
  UINT flags = MF_STRING | (entry.Enabled ? MF_ENABLED : MF_GRAYED);
  auto command = static_cast<UINT_PTR>(id_of_(entry));
  if (HasEntries(form_, entry.Name)) {
    flags |= MF_POPUP;
    command = reinterpret_cast<UINT_PTR>(Read(entry.Name));
  }
  ::AppendMenuW(menu, flags, command, Utf16(text).c_str());
}

}  // namespace vok::windows
