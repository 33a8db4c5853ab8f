#include "ui/model/form.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <initializer_list>
#include <utility>
#include <variant>

#include "platform/failure.h"

namespace vok {
namespace {

using enum ControlType;

struct TypeRow {
  ControlType type;
  const char* name;
  const char* collection;  ///< name of its items; nullptr: it has none
};

constexpr std::array<TypeRow, 13> kTypes = {{{kLabel, "Label", nullptr},
                                             {kTextBox, "TextBox", nullptr},
                                             {kComboBox, "ComboBox", nullptr},
                                             {kListBox, "ListBox", nullptr},
                                             {kCheckBox, "CheckBox", nullptr},
                                             {kCommandButton, "CommandButton", nullptr},
                                             {kFrame, "Frame", nullptr},
                                             {kMenu, "Menu", nullptr},
                                             {kTabStrip, "TabStrip", "Tabs"},
                                             {kToolbar, "Toolbar", "Buttons"},
                                             {kListView, "ListView", "ColumnHeaders"},
                                             {kProgressBar, "ProgressBar", nullptr},
                                             {kChart, "Chart", nullptr}}};

const TypeRow& RowOf(ControlType type) { return kTypes[static_cast<std::size_t>(type)]; }

using Types = unsigned;

constexpr Types Of(std::initializer_list<ControlType> types) {
  Types bits = 0;
  for (const ControlType type : types) bits |= 1U << static_cast<unsigned>(type);
  return bits;
}

constexpr Types kAll = ~0U;
constexpr Types kCaptioned = Of({kLabel, kCheckBox, kCommandButton, kFrame, kMenu});
constexpr Types kWritten = Of({kTextBox, kComboBox, kListBox});

using Member = std::variant<std::string Control::*, bool Control::*, int Control::*>;

struct PropertyRow {
  const char* name;
  Types types;
  Member member;
};

const std::array<PropertyRow, 11> kProperties = {
    {{"Name", kAll, &Control::Name},
     {"Tag", kAll, &Control::Tag},
     {"Enabled", kAll, &Control::Enabled},
     {"Visible", kAll, &Control::Visible},
     {"Caption", kCaptioned, &Control::Caption},
     {"ToolTipText", ~Of({kMenu}), &Control::ToolTipText},
     {"Text", kWritten, &Control::Text},
     {"ListIndex", Of({kComboBox, kListBox}), &Control::ListIndex},
     {"Default", Of({kCommandButton}), &Control::Default},
     {"Cancel", Of({kCommandButton}), &Control::Cancel},
     {"Value", Of({kCheckBox}), &Control::Value}}};

bool SameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return std::tolower(x) == std::tolower(y);
  });
}

std::string Text(const ControlId& id) {
  return id.index == kNoIndex ? id.name : id.name + "(" + std::to_string(id.index) + ")";
}

[[noreturn]] void ThrowNoProperty(const Control& control, std::string_view name) {
  throw Failure(kNoSuchProperty,
                "Object doesn't support this property or method: " + std::string(name) +
                    " of the " + TypeName(control.Type) + " " + Text(control.Id()));
}

const PropertyRow& RowOf(const Control& control, std::string_view name) {
  for (const PropertyRow& row : kProperties) {
    if ((row.types & Of({control.Type})) != 0 && SameName(row.name, name)) return row;
  }
  ThrowNoProperty(control, name);
}

}  // namespace

std::string WithoutAccessMark(const std::string& caption) {
  std::string plain;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && ++i == caption.size()) break;
    plain += caption[i];
  }
  return plain;
}

std::string AsCaption(const std::string& text) {
  std::string caption;
  for (const char c : text) caption += c == '&' ? "&&" : std::string(1, c);
  return caption;
}

std::string SpokenName(const Form& form, const Control& control) {
  const bool labelled = !control.Label.empty() && form.Has(control.Label);
  std::string name = WithoutAccessMark(labelled ? form.At(control.Label).Caption : control.Caption);
  if (labelled && control.Type == kCommandButton) name += " " + WithoutAccessMark(control.Caption);
  return control.Row.empty() ? name : name + " " + control.Row;
}

const std::string& ShownToolTip(const Control& control) {
  return control.Path && !control.Text.empty() ? control.Text : control.ToolTipText;
}

const char* TypeName(ControlType type) { return RowOf(type).name; }

void Control::SetProperty(std::string_view name, const vok::Value& value) {
  const Member& member = RowOf(*this, name).member;
  if (const auto* text = std::get_if<std::string Control::*>(&member)) {
    this->** text = value.ToText();
  } else if (const auto* flag = std::get_if<bool Control::*>(&member)) {
    this->** flag = value.ToBoolean();
  } else {
    this->*std::get<int Control::*>(member) = value.ToInt32();
  }
}

std::vector<ControlItem>& Control::Collection(std::string_view name) {
  const char* collection = RowOf(Type).collection;
  if (collection == nullptr || !SameName(collection, name)) ThrowNoProperty(*this, name);
  return Items;
}

Control& Form::Add(Control control) {
  control.Font = Font;
  return controls_.emplace_back(std::move(control));
}

const Control* Form::Find(const ControlId& id) const {
  const auto found = std::find_if(controls_.begin(), controls_.end(), [&](const Control& control) {
    return control.Index == id.index && control.Name == id.name;
  });
  return found == controls_.end() ? nullptr : &*found;
}

const Control& Form::At(const ControlId& id) const {
  const Control* control = Find(id);
  if (control == nullptr) {
    throw Failure(kNoSuchControl, "The window " + Name + " has no control " + vok::Text(id));
  }
  return *control;
}

Control& Form::At(const ControlId& id) {
  return const_cast<Control&>(static_cast<const Form&>(*this).At(id));
}

void Form::SetText(const ControlId& id, const std::string& text) {
  Control& control = At(id);
  if (control.Text == text) return;
  control.Text = text;
  Raise(FormEvent::kChanged, id);
}

void Form::SetValue(const ControlId& id, int value) {
  Control& control = At(id);
  if (control.Value == value) return;
  control.Value = value;
  Raise(FormEvent::kClicked, id);
}

void Form::SetList(const ControlId& id, std::vector<std::string> entries) {
  Control& control = At(id);
  control.List = std::move(entries);
  control.ListIndex = -1;
}

/// Text by text, so that no rule sees or rewrites what is half typed.
void Form::Type(const ControlId& id, const std::string& text) {
  if (typed_ && !(typed_->id == id)) TellTyped();
  Control& control = At(id);
  if (!typed_) typed_ = {id, control.Text, control.Error};
  control.Text = text;
  control.Dimmed = false;
  control.Error = typed_->was_wrong && text == typed_->before;
  TellActed();
}

void Form::TellTyped() {
  const auto typed = std::exchange(typed_, std::nullopt);
  if (typed && Text(typed->id) != typed->before) Raise(FormEvent::kChanged, typed->id);
}

void Form::Leave(const ControlId& id) {
  TellTyped();
  Raise(FormEvent::kLeft, id);
  TellActed();
}

void Form::Choose(const ControlId& id, int position) {
  TellTyped();
  Control& control = At(id);
  if (position < 0 || position >= static_cast<int>(control.List.size())) {
    throw Failure(failure_number::kInvalidCall,
                  "The list " + vok::Text(id) + " has no entry " + std::to_string(position));
  }
  control.ListIndex = position;
  SetText(id, control.List[static_cast<std::size_t>(position)]);
  Raise(FormEvent::kClicked, id);
  TellActed();
}

void Form::Click(const ControlId& id) {
  const Control& control = At(id);
  if (!control.Enabled || !control.Visible) return;
  TellTyped();
  if (control.Type == kCheckBox) {
    SetValue(id, control.Value == kUnchecked ? kChecked : kUnchecked);
  } else {
    Raise(FormEvent::kClicked, id);
  }
  TellActed();
}

void Form::On(FormEvent event, const std::string& name, Handler handler) {
  handlers_[{event, name}] = std::move(handler);
}

void Form::Raise(FormEvent event, const ControlId& id) const {
  const auto found = handlers_.find({event, id.name});
  if (found != handlers_.end()) found->second(id.index);
}

}  // namespace vok
