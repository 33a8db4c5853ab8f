// The component's own file, and how long the host process must keep it loaded.
#pragma once

#include <string>

#include "system/automation/ole.h"

namespace vok::windows {

/// Set once, when the file is loaded.
void SetModule(HMODULE module);
HMODULE ThisModule();
/// Full path of the component's own file.
std::wstring ModuleFile();

/// Whether nothing holds the module any more.
bool IsModuleFree();
void HoldModule();
void ReleaseModule();

/// A part of every object that is handed out: holds the module while the object lives.
class ModuleHold {
 public:
  ModuleHold() { HoldModule(); }
  ModuleHold(const ModuleHold&) = delete;
  ModuleHold& operator=(const ModuleHold&) = delete;
  ~ModuleHold() { ReleaseModule(); }
};

}  // namespace vok::windows
