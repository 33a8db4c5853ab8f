#include "ui/win32/widget_set.h"

#include <set>

namespace vok::windows {

using enum ControlType;

namespace {

bool IsTabStop(const Widget& widget) {
  return (::GetWindowLongPtrW(widget.window(), GWL_STYLE) & WS_TABSTOP) != 0;
}

}  // namespace

WidgetSet::WidgetSet(Form& form, HWND dialog, HWND panel, const Metrics& metrics)
    : form_(form), dialog_(dialog), panel_(panel), widgets_(form.Controls().size()), tips_(dialog) {
  MakeAll(metrics);
}

/// In the order of the form, but each label just before the first control that it names: there the
/// system looks for a control's name, and its key leads to what follows it.
void WidgetSet::MakeAll(const Metrics& metrics) {
  const auto& controls = form_.Controls();
  std::map<std::string, std::size_t> labels;
  std::set<std::string> naming;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    if (controls[i].Type == kLabel) labels.emplace(controls[i].Name, i);
    naming.insert(controls[i].Label);
  }
  for (std::size_t i = 0; i < controls.size(); ++i) {
    if (controls[i].Type == kLabel && naming.contains(controls[i].Name)) continue;
    const auto label = labels.find(controls[i].Label);
    if (label != labels.end() && widgets_[label->second] == nullptr) Make(label->second, metrics);
    Make(i, metrics);
  }
}

void WidgetSet::Make(std::size_t position, const Metrics& metrics) {
  Control& control = form_.Controls()[position];
  if (control.Type == kMenu) return;
  const int id = kFirstControlId + static_cast<int>(position);
  auto widget = MakeWidget(control);
  const bool in_foot = RegionOf(form_, control) == Region::kFoot;
  widget->Create(in_foot ? dialog_ : panel_, id, metrics);
  ::SetWindowPos(widget->window(), HWND_BOTTOM, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  if (control.Default) ::SendMessageW(dialog_, DM_SETDEFID, static_cast<WPARAM>(id), 0);
  widgets_[position] = std::move(widget);
}

void WidgetSet::SetMetrics(const Metrics& metrics) {
  for (const auto& widget : widgets_) {
    if (widget != nullptr) widget->SetMetrics(metrics);
  }
}

/// The keyboard would be lost with a control that nothing can be done with any more. The system's
/// own search for the next one never ends where there is none.
void WidgetSet::KeepFocus() const {
  const Widget* focused = Of(::GetFocus());
  if (focused == nullptr || Acts(focused->control())) return;
  for (const auto& widget : widgets_) {
    if (widget == nullptr || !Acts(widget->control()) || !IsTabStop(*widget)) continue;
    ::SetFocus(widget->window());
    return;
  }
  ::SetFocus(dialog_);
}

/// What can be used from now on comes first, for the focus to go there.
bool WidgetSet::RefreshStates() {
  bool other_room = false, panel_acts = false;
  for (const bool acts : {true, false}) {
    for (const auto& widget : widgets_) {
      if (widget == nullptr || Acts(widget->control()) != acts) continue;
      const bool shown = IsShown(form_, widget->control());
      other_room |= shown != widget->IsShown();
      widget->SetState(shown, widget->control().Enabled);
      panel_acts |= acts && IsTabStop(*widget) && ::GetParent(widget->window()) == panel_;
    }
    if (!acts) continue;
    if (panel_acts) ::EnableWindow(panel_, TRUE);
    KeepFocus();
  }
  if (!panel_acts) ::EnableWindow(panel_, FALSE);
  return other_room;
}

bool WidgetSet::Refresh() {
  bool other_room = RefreshStates();
  for (const auto& widget : widgets_) {
    if (widget == nullptr) continue;
    other_room |= widget->Refresh();
    tips_.Refresh(*widget);
    names_.Refresh(form_, *widget);
  }
  return other_room;
}

void WidgetSet::Arrange(const std::map<const Control*, Area>& places) {
  for (const auto& widget : widgets_) {
    if (widget == nullptr) continue;
    const auto wanted = places.find(&widget->control());
    const auto now = places_.find(&widget->control());
    if (wanted == places.end() || (now != places_.end() && now->second == wanted->second)) continue;
    const Area& place = wanted->second;
    ::SetWindowPos(widget->window(), nullptr, place.left, place.top, place.width,
                   widget->WindowHeight(place.height), SWP_NOZORDER | SWP_NOACTIVATE);
  }
  places_ = places;
}

int WidgetSet::IdOf(const Control& control) const {
  int id = kFirstControlId;
  for (const Control& other : form_.Controls()) {
    if (&other == &control) break;
    ++id;
  }
  return id;
}

const Control* WidgetSet::ControlWith(int id) const {
  const auto position = static_cast<std::size_t>(id - kFirstControlId);
  return id >= kFirstControlId && position < widgets_.size() ? &form_.Controls()[position]
                                                             : nullptr;
}

Widget* WidgetSet::With(int id) const {
  if (ControlWith(id) == nullptr) return nullptr;
  return widgets_[static_cast<std::size_t>(id - kFirstControlId)].get();
}

Widget* WidgetSet::Of(HWND part) const {
  if (::IsChild(dialog_, part) == FALSE || part == panel_) return nullptr;
  while (::GetParent(part) != dialog_ && ::GetParent(part) != panel_) part = ::GetParent(part);
  return With(::GetDlgCtrlID(part));
}

Widget* WidgetSet::Of(const ControlId& id) const {
  for (const auto& widget : widgets_) {
    if (widget != nullptr && widget->control().Id() == id) return widget.get();
  }
  return nullptr;
}

}  // namespace vok::windows
