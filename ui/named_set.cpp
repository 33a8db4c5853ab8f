#include "ui/named_set.h"

#include <algorithm>

#include "env/string_table.h"
#include "env/text_numbers.h"
#include "platform/text.h"
#include "ui/messages.h"

namespace vok {

MessageAnswer AskWhetherToSave(const WindowServices& services) {
  return ShowMessage(services, StringTableText(text_number::kAskSave),
                     services.host.component.product_name, MessageIcon::kQuestion,
                     MessageButtons::kYesNoCancel);
}

NamedSet::NamedSet(const WindowServices& services, Form& form, std::string combo, Actions actions)
    : services_(services), form_(form), combo_(std::move(combo)), actions_(std::move(actions)) {
  form_.On(FormEvent::kClicked, combo_, [this](int) { Chosen(); });
  form_.On(FormEvent::kLeft, combo_, [this](int) { NameLeft(); });
}

void NamedSet::MarkSaved() {
  name_ = form_.Text(combo_);
  saved_ = actions_.entered();
}

void NamedSet::Load() {
  if (actions_.load()) MarkSaved();
}

void NamedSet::Chosen() {
  if (!AreFieldsChanged()) {
    Load();
    return;
  }
  const std::string chosen = form_.Text(combo_);
  const MessageAnswer answer = AskWhetherToSave(services_);
  if (answer != MessageAnswer::kNo) form_.SetText(combo_, name_);
  const bool saved = answer == MessageAnswer::kYes && actions_.save();
  if (!saved && answer != MessageAnswer::kNo) return;
  form_.SetText(combo_, chosen);
  Load();
}

void NamedSet::NameLeft() {
  const auto& names = form_.At(combo_).List;
  // A stored name is left as it is: without its blanks it would mean another set.
  if (std::find(names.begin(), names.end(), form_.Text(combo_)) == names.end()) {
    form_.SetText(combo_, std::string(TrimBlanks(form_.Text(combo_))));
  }
  const std::string& typed = form_.Text(combo_);
  const bool known = std::any_of(names.begin(), names.end(), [&](const std::string& name) {
    return EqualNoCase(services_.host.locale, name, typed);
  });
  if (known && typed != name_ && !AreFieldsChanged()) Load();
}

}  // namespace vok
