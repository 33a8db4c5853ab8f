#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <filesystem>
#include <utility>
#include <vector>

#include "env/environment.h"
#include "hosts/composition/posix_module.h"
#include "hosts/composition/system_platform.h"
#include "jet_reader.h"
#include "modules.h"
#include "platform/failure.h"
#include "providers/database/jet/jet_files.h"
#include "settings/settings_tables.h"
#include "system/posix/file_registry.h"
#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"
#include "system/posix/system_clock.h"

namespace vok {
namespace {

/// The shared library's, or the program's.
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

/// The installed one, unless another lies beside the component.
std::string InstalledLanguageTable(const std::string& component_folder) {
  for (const std::string folder : {".", kDataOfProgram, kDataOfLibrary}) {
    const std::filesystem::path path = component_folder + "/" + folder + "/Lang.rs";
    std::error_code ignored;
    if (std::filesystem::exists(path, ignored)) {
      return folder == "." ? "" : path.lexically_normal().string();
    }
  }
  return {};
}

/// Beside the component, or where it is installed.
std::vector<std::string> PlacesOfJetReader(const std::string& component_folder) {
  std::vector<std::string> places;
  for (const std::string folder : {".", kReaderFromPrograms, kReaderFromLibraries}) {
    const std::filesystem::path path = component_folder + "/" + folder + "/" + kJetReader;
    const std::string place = path.lexically_normal().string();
    if (std::find(places.begin(), places.end(), place) == places.end()) places.push_back(place);
  }
  return places;
}

[[noreturn]] void ThrowNoHttp(const std::string& why) {
  throw Failure(failure_number::kNotSupported,
                std::string("No cube server can be asked: the module ") + kHttpModule +
                    " cannot be loaded (" + why +
                    "). It needs libcurl, and lies beside the component or in the system's "
                    "library folders");
}

NewHttpTransport HttpOfModule(const std::string& component_folder) {
  using Open = HttpTransport*(const std::string&, const ServerSettings&);
  return [component_folder](const std::string& address, const ServerSettings& settings) {
    const auto open = reinterpret_cast<Open*>(
        FunctionOfModule(component_folder, kHttpModule, kHttpMaker, ThrowNoHttp));
    return std::unique_ptr<HttpTransport>(open(address, settings));
  };
}

NewTableServer PostgresqlOfModule(const std::string& component_folder) {
  using Open = TableServer*(const std::string&, const ServerSettings&, const QueryStop&);
  return [component_folder](const std::string& address, const ServerSettings& settings,
                            const QueryStop& stop) {
    const auto open = reinterpret_cast<Open*>(FunctionOfModule(
        component_folder, kPostgresqlModule, kPostgresqlMaker, [](const std::string& why) {
          throw Failure(failure_number::kNotSupported,
                        std::string("No PostgreSQL server can be asked: the module ") +
                            kPostgresqlModule + " cannot be loaded (" + why +
                            "). It needs libpq, and lies beside the program or in the system's "
                            "library folders");
        }));
    return std::unique_ptr<TableServer>(open(address, settings, stop));
  };
}

OpenJetFile JetFilesOf(const SystemPlatform& platform) {
  const Locale& locale = *platform.locale;
  jet::Shape shape;
  shape.tables = SettingsTables();
  shape.nothing = NothingIn;
  shape.complete = [&locale](DatabaseStructure& structure) { CompleteShape(locale, structure); };
  const auto jet_files = std::make_shared<jet::JetFiles>(
      *platform.files, locale, PlacesOfJetReader(platform.component_folder), std::move(shape));
  return [jet_files](const std::string& path) { return jet_files->Open(path); };
}

/// The registry's values where no registry text has them.
RegistryKeys OwnFolderNamed(const Locale& locale, const std::string& folder) {
  if (folder.empty()) return {};
  const std::string key = locale.FoldCase(std::string("HKEY_CURRENT_USER\\") + kSettingsKey);
  return {{key, {{locale.FoldCase("MDBPath"), {kRegistryString, folder + '\0'}}}}};
}

}  // namespace

SystemPlatform NewSystemPlatform() {
  SystemPlatform platform;
  platform.files = std::make_unique<PosixFiles>();
  platform.locale = std::make_unique<IcuLocale>(IcuLocale::NameFromEnvironment());
  platform.own_settings_folder = FileRegistry::DataFolderFromEnvironment();
  platform.registry = std::make_unique<FileRegistry>(
      *platform.files, *platform.locale, FileRegistry::FilesFromEnvironment(),
      OwnFolderNamed(*platform.locale, platform.own_settings_folder));
  platform.clock = std::make_unique<SystemClock>();
  platform.advice_on_readers = AdviceOnReaders;
  platform.component_folder = ComponentFolder();
  platform.language_table = InstalledLanguageTable(platform.component_folder);
  platform.transport = HttpOfModule(platform.component_folder);
  platform.postgresql = PostgresqlOfModule(platform.component_folder);
  platform.open_jet_file = JetFilesOf(platform);
  return platform;
}

std::unique_ptr<Database> SystemDatabase(const Files&, std::unique_ptr<Database> portable) {
  return portable;
}

std::unique_ptr<CubeProvider> SystemCube(const Files&, const Locale&,
                                         std::unique_ptr<CubeProvider> portable) {
  return portable;
}

}  // namespace vok
