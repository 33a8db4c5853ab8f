// Texts of the user's language in a window.
#pragma once

#include <string>

#include "component/publics.h"
#include "platform/host.h"
#include "ui/model/form.h"

namespace vok {

/// What each window does when it loads: chooses the language anew, reads its table where there is
/// one, sets the side that the window begins from, and puts the texts in place.
void LoadTexts(const Host& host, Publics& publics, Form& form);

enum class Alignment { kKeep, kByLanguage };

/// Puts the texts into the window and its controls, by the numbers that they carry. What fails
/// is passed over: a control that lacks a property, or whose number has no text, keeps its text.
void ApplyLanguage(Language& language, Form& form, Alignment alignment);

}  // namespace vok
