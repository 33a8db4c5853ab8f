#include "hosts/system/system_host.h"

#include <cstdio>
#include <filesystem>

#include "hosts/windows/platform/system_header.h"
#include "hosts/windows/platform/utf16.h"
#include "hosts/windows/platform/windows_clock.h"
#include "hosts/windows/platform/windows_files.h"
#include "hosts/windows/platform/windows_locale.h"
#include "hosts/windows/platform/windows_registry.h"
#include "providers/command_line/console_message_boxes.h"
#include "providers/command_line/overriding_registry.h"
#include "providers/olap/cube_services.h"
#include "providers/recordset/persisted_recordset.h"
#include "providers/sqlite/sqlite_database.h"
#include "providers/xlsx/xlsx_spreadsheet.h"
#include "version.h"

namespace vok {
namespace {

/// Folder of the file that this code was loaded from: the DLL's, or the program's.
std::string ComponentFolder() {
  HMODULE module = nullptr;
  ::GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<const wchar_t*>(&ComponentFolder), &module);
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return windows::Utf8(std::filesystem::path(path).parent_path().wstring());
    }
    path.resize(path.size() * 2);
  }
}

/// The settings database, and record sets that stand in files of their own.
class FileDatabase : public SqliteDatabase {
 public:
  FileDatabase(Files& files, const Locale& locale)
      : SqliteDatabase(files, locale), files_(files), locale_(locale) {}
  std::unique_ptr<Recordset> OpenRecordset(const std::string& source,
                                           const std::string& connection_text) override {
    return recordset::OpenPersisted(files_, locale_, source, connection_text);
  }

 private:
  const Files& files_;
  const Locale& locale_;
};

ComponentInfo Component() {
  ComponentInfo info;
  info.folder = ComponentFolder();
  info.major = kVersionMajor;
  info.minor = kVersionMinor;
  info.revision = kVersionRevision;
  return info;
}

}  // namespace

struct SystemHost::Providers {
  Providers(const std::string& settings_folder, MessageBoxes* message_boxes)
      : overriding(registry, locale, settings_folder),
        database(files, locale),
        cube(files, locale),
        spreadsheet(files),
        host{Component(),
             files,
             settings_folder.empty() ? static_cast<Registry&>(registry) : overriding,
             locale,
             clock,
             message_boxes != nullptr ? *message_boxes : console,
             database,
             cube,
             spreadsheet} {}

  windows::WindowsFiles files;
  windows::WindowsLocale locale;
  windows::WindowsRegistry registry;
  OverridingRegistry overriding;
  windows::WindowsClock clock;
  ConsoleMessageBoxes console{stderr};
  FileDatabase database;
  olap::OlapCubeServices cube;
  xlsx::XlsxSpreadsheet spreadsheet;
  Host host;
};

SystemHost::SystemHost(const std::string& settings_folder, MessageBoxes* message_boxes)
    : providers_(std::make_unique<Providers>(settings_folder, message_boxes)) {}

SystemHost::~SystemHost() = default;

const Host& SystemHost::host() const { return providers_->host; }

}  // namespace vok
