// What a form says of its controls besides what is drawn: tool tips, and names for screen readers.
#pragma once

#include <map>
#include <string>

#include "system/automation/com_ptr.h"
#include "ui/win32/widget.h"

struct IAccPropServices;

namespace vok::windows {

class ToolTips {
 public:
  /// Of the controls of that dialog.
  explicit ToolTips(HWND dialog);
  ToolTips(const ToolTips&) = delete;
  ToolTips& operator=(const ToolTips&) = delete;
  ~ToolTips();

  void Refresh(const Widget& widget);

 private:
  HWND window_;
  std::map<const Widget*, std::string> shown_;
};

/// Where the system's service is missing, the system's own guess from the labels remains.
class SpokenNames {
 public:
  SpokenNames();
  SpokenNames(const SpokenNames&) = delete;
  SpokenNames& operator=(const SpokenNames&) = delete;
  ~SpokenNames();

  void Refresh(const Form& form, const Widget& widget);

 private:
  struct Said {
    std::string name;
    std::string value;
    friend bool operator==(const Said&, const Said&) = default;
  };
  ComPtr<IAccPropServices> service_;
  std::map<HWND, Said> said_;
};

}  // namespace vok::windows
