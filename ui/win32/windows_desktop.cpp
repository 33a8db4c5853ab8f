#include "ui/win32/windows_desktop.h"

#include <algorithm>
#include <cstring>
#include <thread>
#include <utility>

#include "platform/failure.h"
#include "system/automation/apartment.h"
#include "system/windows/pumped_wait.h"
#include "system/windows/utf16.h"
#include "system/windows/windows_message_boxes.h"
#include "ui/win32/dpi_and_theme.h"
#include "ui/win32/window_place.h"
// after the system's own header
#include <commdlg.h>

namespace vok::windows {
namespace {

/// While it lives the window takes nothing that the user does.
class Disabled {
 public:
  explicit Disabled(HWND window)
      : window_(window != nullptr && ::IsWindowEnabled(window) != FALSE ? window : nullptr) {
    if (window_ != nullptr) ::EnableWindow(window_, FALSE);
  }
  Disabled(const Disabled&) = delete;
  Disabled& operator=(const Disabled&) = delete;
  ~Disabled() {
    if (window_ != nullptr) ::EnableWindow(window_, TRUE);
  }

 private:
  HWND window_;
};

/// The form is visible while it lives.
class Shown {
 public:
  explicit Shown(Form& form) : form_(form) { form_.Visible = true; }
  Shown(const Shown&) = delete;
  Shown& operator=(const Shown&) = delete;
  ~Shown() {
    form_.Visible = false;
    form_.Focus.reset();
  }

 private:
  Form& form_;
};

/// One of the windows that are open, while it lives.
class Open {
 public:
  Open(std::vector<FormWindow*>& open, FormWindow& window) : open_(open), front_(window.window()) {
    open_.push_back(&window);
  }
  Open(const Open&) = delete;
  Open& operator=(const Open&) = delete;
  ~Open() { open_.pop_back(); }

 private:
  std::vector<FormWindow*>& open_;
  FrontWindow front_;
};

}  // namespace

void WindowsDesktop::ShowModal(Form& form) {
  RefreshAll();
  const Shown shown(form);
  const HWND owner = OwnerWindow();
  FormWindow window(form, owner);
  const Open open(open_, window);
  const Disabled disabled(owner);
  window.Show();
  MSG message;
  while (window.IsOpen()) {
    if (::GetMessageW(&message, nullptr, 0, 0) <= 0) {
      ::PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    Dispatch(message);
  }
  window.ThrowFailure();
}

void WindowsDesktop::RefreshAll() const {
  for (FormWindow* window : open_) window->Refresh();
}

void WindowsDesktop::Dispatch(MSG& message) const {
  if (!open_.empty()) return open_.back()->Dispatch(message);
  PumpedWait::DispatchPlainly(message);
}

void WindowsDesktop::RunBeside(const std::function<void()>& work) {
  RefreshAll();
  TaskQueue tasks;
  TaskQueue* const outer = std::exchange(tasks_, &tasks);
  const Handle done(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
  std::exception_ptr failure;
  std::thread worker([&] {
    try {
      const Apartment apartment;
      work();
    } catch (...) {
      failure = std::current_exception();
    }
    ::SetEvent(done.get());
  });
  WaitFor(done.get(), tasks);
  worker.join();
  tasks_ = outer;
  if (failure) std::rethrow_exception(failure);
}

MessageAnswer WindowsDesktop::Show(const vok::MessageBox& box) {
  if (::GetCurrentThreadId() == thread_) {
    RefreshAll();
    return boxes_.Show(box);
  }
  MessageAnswer answer{};
  tasks_->Ask([&] { answer = Show(box); });
  return answer;
}

void WindowsDesktop::WaitFor(HANDLE done, TaskQueue& tasks) const {
  PumpedWait wait([this](MSG& message) { Dispatch(message); });
  const HANDLE events[] = {done, tasks.Waiting()};
  while (wait.For(events) != 0) tasks.Run();
}

std::string WindowsDesktop::PickFile(const FileDialog& dialog) {
  RefreshAll();
  static_assert(kHideReadOnly == OFN_HIDEREADONLY && kPathMustExist == OFN_PATHMUSTEXIST &&
                kFileMustExist == OFN_FILEMUSTEXIST);
  constexpr std::size_t kLongestPath = 32768;
  std::wstring path(kLongestPath, L'\0');
  std::wstring folder(::GetCurrentDirectoryW(0, nullptr), L'\0');
  ::GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data());
  std::wstring filter = Utf16(dialog.filter) + L"||";  // the ends of the last text and of all
  std::replace(filter.begin(), filter.end(), L'|', L'\0');
  const std::wstring title = Utf16(dialog.title);
  OPENFILENAMEW asked{};
  asked.lStructSize = sizeof asked;
  asked.hwndOwner = OwnerWindow();
  asked.lpstrFilter = filter.c_str();
  asked.lpstrFile = path.data();
  asked.nMaxFile = static_cast<DWORD>(path.size());
  if (!dialog.folder.empty()) folder = Utf16(dialog.folder);
  asked.lpstrInitialDir = folder.c_str();
  asked.lpstrTitle = title.c_str();
  asked.Flags = static_cast<DWORD>(dialog.flags) | OFN_EXPLORER | OFN_NOCHANGEDIR;
  const OwnLook look;
  const BOOL picked = dialog.save ? ::GetSaveFileNameW(&asked) : ::GetOpenFileNameW(&asked);
  return picked == FALSE ? std::string() : Utf8(path.c_str());
}

void WindowsDesktop::CopyText(const std::string& text) {
  const std::wstring wide = Utf16(text);
  const std::size_t size = (wide.size() + 1) * sizeof(wchar_t);
  if (::OpenClipboard(OwnerWindow()) == FALSE) return;
  ::EmptyClipboard();
  if (const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, size); memory != nullptr) {
    std::memcpy(::GlobalLock(memory), wide.c_str(), size);
    ::GlobalUnlock(memory);
    if (::SetClipboardData(CF_UNICODETEXT, memory) == nullptr) ::GlobalFree(memory);
  }
  ::CloseClipboard();
}

std::string WindowsDesktop::Recall(const std::string& name) { return KeptText(name); }

void WindowsDesktop::Remember(const std::string& name, const std::string& text) {
  KeepText(name, text);
}

void WindowsDesktop::OpenOnDesktop(const std::string& path) {
  const std::wstring file = Utf16(path);
  SHELLEXECUTEINFOW asked{};
  asked.cbSize = sizeof asked;
  asked.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
  asked.hwnd = OwnerWindow();
  asked.lpFile = file.c_str();
  asked.nShow = SW_SHOWNORMAL;
  if (::ShellExecuteExW(&asked) != FALSE) return;
  const DWORD error = ::GetLastError();
  if (error == ERROR_NO_ASSOCIATION) {
    throw Failure(failure_number::kInvalidCall,
                  "Cannot open \"" + path + "\": this system has no program for such files.");
  }
  ThrowSystemFailure(error, "open", path);
}

}  // namespace vok::windows
