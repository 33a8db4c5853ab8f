// One of the named settings that a window edits: which saved one is shown in it, whether what was
// entered since is saved, and the change to another one.
//
// A saved set is loaded when its name is chosen from the list, or typed while nothing is unsaved.
// Before a choice replaces unsaved entries the user is asked; an entry that stays keeps its name.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ui/model/toolkit.h"

namespace vok {

/// Asks about the changed sets of these names, with buttons of the texts `save` and `leave`. True:
/// they are to be saved; false: left as they are stored; nothing: the question was cancelled.
std::optional<bool> AskWhetherToSave(const WindowServices& services,
                                     const std::vector<std::string>& names, int save, int leave);

class NamedSet {
 public:
  struct Actions {
    std::function<std::string()> entered;  ///< what the fields hold, without the name
    std::function<bool()> load;            ///< of the name in the combo box; false: nothing was
    std::function<bool()> save;            ///< under that name
    std::function<std::string()> unnamed;  ///< what to call a set without a name
  };

  /// Adds the rules of the combo box `combo`, which the form has by the time of its events.
  NamedSet(const WindowServices& services, Form& form, std::string combo, Actions actions);

  /// What is entered counts as saved under the name in the combo box.
  void MarkSaved();
  /// False, after a message, when saving would replace a stored set that could not be loaded.
  bool MayBeSaved() const;
  bool IsChanged() const { return AreFieldsChanged() || form_.Text(combo_) != name_; }
  /// As the person knows it.
  std::string Name() const {
    const std::string& name = form_.Text(combo_);
    return name.empty() ? actions_.unnamed() : name;
  }

 private:
  bool AreFieldsChanged() const { return actions_.entered() != saved_; }
  bool IsStored() const;
  void Load();
  void Chosen();
  void NameLeft();

  const WindowServices& services_;
  Form& form_;
  std::string combo_;
  Actions actions_;
  std::string name_;    ///< of the set as it was loaded or saved
  std::string saved_;   ///< what was entered then
  std::string unseen_;  ///< name of the set that could not be loaded since; "" for none
};

}  // namespace vok
