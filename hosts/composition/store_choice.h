// Who opens a settings database: the platform's data objects or the portable store.
//
// A file that the portable store made is opened by it, whatever else is installed; any other file,
// or none, goes to the provider that `FindSettingsProvider` finds, under the connection text with
// that provider's name. Without a provider new files are the portable store's; a genuine Jet
// database is then failure 3706, whose text says which providers were looked for.
#pragma once

#include <string>

#include "platform/database.h"
#include "platform/files.h"

namespace vok::windows {

/// Who serves a connection text, and the text to tell it.
struct ChosenStore {
  Database& database;
  std::string connection_text;
};

class StoreChoice {
 public:
  /// All outlive the choice.
  StoreChoice(const Files& files, Database& portable, Database& platform)
      : files_(files), portable_(portable), platform_(platform) {}

  /// Failures: 3706 as above, and those of a connection text that names no file.
  ChosenStore For(const std::string& connection_text) const;

 private:
  const Files& files_;
  Database& portable_;
  Database& platform_;
};

}  // namespace vok::windows
