// What the rules of a window ask of the view that draws it, what they work on, and the desktop that
// shows windows and message boxes.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "component/publics.h"
#include "platform/host.h"
#include "platform/message_box.h"
#include "ui/model/form.h"

namespace vok {

/// A dialog in which the user picks a file.
struct FileDialog {
  std::string title;
  std::string filter;       ///< pairs of a name and a pattern: "Cub files(*.cub)|*.cub"
  int32_t flags = 0;        ///< those below
  bool save = false;        ///< a file to write, which need not exist
  std::string folder = {};  ///< where to begin; "": in the current one
};
inline constexpr int32_t kHideReadOnly = 4;
inline constexpr int32_t kPathMustExist = 2048;
inline constexpr int32_t kFileMustExist = 4096;

class Toolkit {
 public:
  virtual ~Toolkit() = default;
  /// Shows the form in front of the others; returns when a rule or the user has closed it. The form
  /// is visible meanwhile and not afterwards.
  virtual void ShowModal(Form& form) = 0;
  /// The path that the user picked; "" when there is none.
  virtual std::string PickFile(const FileDialog& dialog) = 0;
  /// Opens a file or folder in the program that the desktop has for it. Failure 53 or 5 when there
  /// is none.
  virtual void OpenOnDesktop(const std::string& path) = 0;
  /// Its own name and version.
  virtual std::string Name() const = 0;
  /// Puts the text where "paste" takes it from.
  virtual void CopyText(const std::string& text) = 0;
  /// What `Remember` kept for the person under that name, by any host program; "" for nothing.
  virtual std::string Recall(const std::string& name) = 0;
  virtual void Remember(const std::string& name, const std::string& text) = 0;
  /// Runs `work`, which may be long, on a thread of its own and returns when it is done, with its
  /// failure if it has one. Meanwhile the windows draw and take what the user does. `work` touches
  /// no form; its message boxes are shown in front of the windows as any others.
  virtual void RunBeside(const std::function<void()>& work) = 0;
};

/// Everything outlives the windows that are made with it.
struct WindowServices {
  const Host& host;
  Publics& publics;
  Toolkit& toolkit;
};

/// Windows and boxes are shown by the thread that opened it; a box of another thread waits for that
/// one.
class Desktop : public Toolkit, public MessageBoxes {};

}  // namespace vok
