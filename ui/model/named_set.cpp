#include "ui/model/named_set.h"

#include <algorithm>

#include "platform/text.h"
#include "texts/language.h"
#include "texts/text_numbers.h"
#include "ui/model/messages.h"

namespace vok {

std::optional<bool> AskWhetherToSave(const WindowServices& services,
                                     const std::vector<std::string>& names, int save, int leave) {
  Question question{text_number::kAskSave, text_number::kUnsaved, {}, {save, leave}};
  for (const std::string& name : names) question.rows.push_back({name});
  const auto answer = Ask(services, question);
  return answer ? std::optional(*answer == 0) : std::nullopt;
}

NamedSet::NamedSet(const WindowServices& services, Form& form, std::string combo, Actions actions)
    : services_(services), form_(form), combo_(std::move(combo)), actions_(std::move(actions)) {
  form_.On(FormEvent::kClicked, combo_, [this](int) { Chosen(); });
  form_.On(FormEvent::kLeft, combo_, [this](int) { NameLeft(); });
}

void NamedSet::MarkSaved() {
  name_ = form_.Text(combo_);
  saved_ = actions_.entered();
  unseen_.clear();
}

bool NamedSet::MayBeSaved() const {
  if (unseen_.empty() || !EqualNoCase(services_.host.locale, Name(), unseen_) || !IsStored()) {
    return true;
  }
  ShowMessage(services_, GetLangString(services_.publics.language, text_number::kUnseen) + unseen_,
              services_.host.component.product_name, MessageIcon::kExclamation);
  return false;
}

bool NamedSet::IsStored() const {
  const auto& names = form_.At(combo_).List;
  return std::any_of(names.begin(), names.end(), [this](const std::string& name) {
    return EqualNoCase(services_.host.locale, name, Name());
  });
}

void NamedSet::Load() {
  if (actions_.load()) {
    MarkSaved();
  } else {
    unseen_ = Name();
  }
}

void NamedSet::Chosen() {
  if (!AreFieldsChanged()) {
    Load();
    return;
  }
  const std::string chosen = form_.Text(combo_);
  form_.SetText(combo_, name_);
  const auto save =
      AskWhetherToSave(services_, {Name()}, text_number::kSave, text_number::kDiscard);
  if (!save || (*save && !actions_.save())) return;
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
  if (!typed.empty() && IsStored() && typed != name_ && !AreFieldsChanged()) Load();
}

}  // namespace vok
