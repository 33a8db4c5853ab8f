// What an operating system itself offers: the build takes posix_platform.cpp or
// windows_platform.cpp.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/calendar.h"
#include "platform/cube.h"
#include "platform/database.h"
#include "platform/files.h"
#include "platform/http.h"
#include "platform/locale.h"
#include "platform/registry.h"
#include "platform/table_server.h"
#include "providers/database/sqlite/sqlite_database.h"

namespace vok {

using NewTableServer = std::function<std::unique_ptr<TableServer>(
    const std::string& address, const ServerSettings& settings, const QueryStop& stop)>;

struct SystemPlatform {
  std::unique_ptr<Files> files;
  std::unique_ptr<Locale> locale;
  std::unique_ptr<Registry> registry;
  std::unique_ptr<Clock> clock;
  NewHttpTransport transport;
  NewTableServer postgresql;  ///< empty where the system has no library for it
  /// What keeps others from reading a file; "" when they cannot. Takes a native path.
  std::function<std::string(const std::string& path)> advice_on_readers;
  /// Genuine Jet databases where the system has no data objects for them; else empty.
  OpenJetFile open_jet_file;
  std::string component_folder;  ///< of the file that this code was loaded from
  std::string language_table;    ///< where it is installed; "": nowhere but beside the component
  /// The user's own, where the registry names none; "" where that is the component's.
  std::string own_settings_folder;
};

SystemPlatform NewSystemPlatform();

/// The settings database as every program of this system opens it: with the system's own data
/// objects where it has them, else the portable way. `files` outlives the result.
std::unique_ptr<Database> SystemDatabase(const Files& files, std::unique_ptr<Database> portable);

/// Cubes, in the same way. `files` and `locale` outlive the result.
std::unique_ptr<CubeProvider> SystemCube(const Files& files, const Locale& locale,
                                         std::unique_ptr<CubeProvider> portable);

}  // namespace vok
