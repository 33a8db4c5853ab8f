#include "hosts/system/system_host.h"

#include <dlfcn.h>
#include <link.h>

#include <cstdio>
#include <filesystem>

#include "env/environment.h"
#include "hosts/portable/portable_cube.h"
#include "providers/command_line/console_message_boxes.h"
#include "providers/command_line/overriding_registry.h"
#include "providers/curl/curl_transport.h"
#include "providers/olap/cube_services.h"
#include "providers/posix/file_registry.h"
#include "providers/posix/icu_locale.h"
#include "providers/posix/posix_files.h"
#include "providers/posix/system_clock.h"
#include "providers/recordset/persisted_recordset.h"
#include "providers/sqlite/sqlite_database.h"
#include "providers/xlsx/xlsx_spreadsheet.h"
#include "providers/xmla/cube_services.h"
#include "version.h"

namespace vok {
namespace {

/// Folder of the file that this code was loaded from: the shared library's, or the program's.
std::string ComponentFolder() {
  Dl_info info{};
  link_map* loaded = nullptr;
  if (dladdr1(reinterpret_cast<const void*>(&ComponentFolder), &info,
              reinterpret_cast<void**>(&loaded), RTLD_DL_LINKMAP) == 0) {
    return ".";
  }
  // The program has no name here, and the word that it was called by need not lead to it.
  const bool is_program = *loaded->l_name == '\0';
  std::error_code ignored;
  const auto file =
      std::filesystem::canonical(is_program ? "/proc/self/exe" : loaded->l_name, ignored);
  return ignored ? "." : file.parent_path().string();
}

/// The settings database, and record sets that stand in files of their own.
class PortableDatabase : public SqliteDatabase {
 public:
  PortableDatabase(Files& files, const Locale& locale)
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
      : locale(IcuLocale::NameFromEnvironment()),
        registry(files, locale, FileRegistry::FileFromEnvironment()),
        overriding(registry, locale, settings_folder),
        database(files, locale),
        cube_files(files, locale),
        cube_servers(locale,
                     {[this] { return ServerSettings(); }, xmla::New<xmla::CurlTransport>()}),
        cube(cube_files, cube_servers),
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

  /// Those of Qel.ini in the settings folder of the moment, and of the environment.
  xmla::XmlaSettings ServerSettings() const {
    Environment environment;
    return xmla::ReadXmlaSettings(
        [&](const std::string& key) { return ReadIniValue(host, environment, "Xmla", key); });
  }

  PosixFiles files;
  IcuLocale locale;
  FileRegistry registry;
  OverridingRegistry overriding;
  SystemClock clock;
  ConsoleMessageBoxes console{stderr};
  PortableDatabase database;
  olap::OlapCubeServices cube_files;
  xmla::XmlaCubeServices cube_servers;
  portable::PortableCubeServices cube;
  xlsx::XlsxSpreadsheet spreadsheet;
  Host host;
};

SystemHost::SystemHost(const std::string& settings_folder, MessageBoxes* message_boxes)
    : providers_(std::make_unique<Providers>(settings_folder, message_boxes)) {}

SystemHost::~SystemHost() = default;

const Host& SystemHost::host() const { return providers_->host; }

}  // namespace vok
