#include "hosts/composition/system_host.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "env/directories.h"
#include "env/environment.h"
#include "hosts/composition/kept_open.h"
#include "hosts/composition/overriding_registry.h"
#include "hosts/composition/system_platform.h"
#include "platform/connection_text.h"
#include "platform/shown_text.h"
#include "providers/cube/olap/olap_provider.h"
#include "providers/cube/xmla/xmla_provider.h"
#include "providers/database/sqlite/sqlite_database.h"
#include "providers/facts/clickhouse/clickhouse_server.h"
#include "providers/recordset/persisted_recordset.h"
#include "providers/server/server_settings.h"
#include "providers/workbook/xlsx/xlsx_spreadsheet.h"
#include "version.h"

namespace vok {
namespace {

/// The system's own line ends are "\r\n". Lines after the first are indented, and what else a
/// terminal might obey is written out: no text from outside can pass for a message of its own.
std::string Paragraphs(std::string_view text) {
  constexpr std::string_view kLineEnd = "\r\n";
  std::string shown;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(kLineEnd), text.size());
    if (!shown.empty() && end > 0) shown += "  ";
    shown += OneLine(text.substr(0, end)) + '\n';
    text.remove_prefix(std::min(end + kLineEnd.size(), text.size()));
  }
  return shown;
}

constexpr std::chrono::seconds kUntoldWait{1};

/// The settings database, and record sets that stand in files of their own.
class FileDatabase : public SqliteDatabase {
 public:
  /// The user's own settings folder is made with its first database: nobody else makes it.
  FileDatabase(const SystemPlatform& platform, std::function<void()> make_own_folder,
               GoesOnWaiting goes_on)
      : SqliteDatabase(*platform.files, *platform.locale, platform.open_jet_file,
                       std::move(goes_on)),
        files_(*platform.files),
        locale_(*platform.locale),
        own_database_(SettingsDatabase(platform.own_settings_folder)),
        make_own_folder_(std::move(make_own_folder)) {}
  std::unique_ptr<NewDatabase> Create(const std::string& path) override {
    if (path == own_database_) make_own_folder_();
    return SqliteDatabase::Create(path);
  }
  std::unique_ptr<Recordset> OpenRecordset(const std::string& path) override {
    return recordset::OpenPersisted(files_, locale_, path);
  }

 private:
  const Files& files_;
  const Locale& locale_;
  std::string own_database_;  ///< in the user's own settings folder
  std::function<void()> make_own_folder_;
};

/// Cubes by their connection text: a server's address, or a file.
class FileOrServer : public CubeProvider {
 public:
  FileOrServer(const SystemPlatform& platform, CubeProvider& files,
               std::function<ServerSettings()> settings)
      : files_(files), servers_(*platform.locale, {std::move(settings), platform.transport}) {}
  std::unique_ptr<CubeConnection> Connect(const std::string& text, const QueryStop* stop) override {
    const bool is_server = cube_text::NamesServer(cube_text::ParseConnectionText(text));
    return is_server ? servers_.Connect(text, stop) : files_.Connect(text, stop);
  }

 private:
  CubeProvider& files_;
  xmla::XmlaCubeProvider servers_;
};

[[noreturn]] void ThrowNoTableServer(const std::string& address, const std::string& why) {
  throw Failure(failure_number::kNotSupported, WithoutUsers(address) + ": " + why);
}

std::unique_ptr<TableServer> OpenTableServerOf(const SystemPlatform& platform,
                                               const std::string& address,
                                               const ServerSettings& settings,
                                               const QueryStop& stop) {
  const std::string scheme = address.substr(0, address.find("://"));
  if (scheme == "postgresql" || scheme == "postgres") {
    if (platform.postgresql) return platform.postgresql(address, settings, stop);
    ThrowNoTableServer(address,
                       "this program has no library for PostgreSQL here. Build a file with the "
                       "facts on Linux, or save the tables as CSV files");
  }
  if (scheme == "clickhouse+https" || scheme == "clickhouse+http") {
    return clickhouse::OpenServer(address, settings, platform.transport, stop);
  }
  ThrowNoTableServer(address,
                     "a cube is not built from such an address; postgresql:// and "
                     "clickhouse+https:// are known");
}

ComponentInfo Component(const SystemPlatform& platform) {
  ComponentInfo info;
  info.folder = platform.component_folder;
  info.language_table = platform.language_table;
  info.major = kVersionMajor;
  info.minor = kVersionMinor;
  info.revision = kVersionRevision;
  return info;
}

}  // namespace

int64_t MakingTime() {
  const char* const wanted = std::getenv("SOURCE_DATE_EPOCH");
  const std::string_view text = wanted != nullptr ? wanted : "";
  int64_t moment = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), moment);
  constexpr int64_t kLast = 253'402'300'799;  // of the year 9999
  const bool is_moment = !text.empty() && read.ec == std::errc() &&
                         read.ptr == text.data() + text.size() && moment >= 0 && moment <= kLast;
  return is_moment ? moment : static_cast<int64_t>(std::time(nullptr));
}

MessageAnswer ConsoleMessageBoxes::Show(const MessageBox& box) {
  const std::string text =
      Paragraphs(box.title.empty() ? box.text : OneLine(box.title) + ": " + box.text);
  std::fwrite(text.data(), 1, text.size(), stream_);
  std::fflush(stream_);
  return box.buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kNo;
}

struct SystemHost::Providers {
  explicit Providers(const SystemHostOptions& options)
      : overriding(*platform.registry, *platform.locale, options.settings_folder),
        database(SystemDatabase(
            *platform.files,
            std::make_unique<FileDatabase>(
                platform, [this] { MakeDirectories(host, platform.own_settings_folder); },
                [this, stop = options.stop](const std::string& file,
                                            std::chrono::milliseconds waited) {
                  if (waited >= kUntoldWait) TellWait(file);
                  return stop == nullptr || !stop->asked();
                }))),
        cube_files(*platform.files, *platform.locale,
                   [this](const std::string& address, const QueryStop& stop) {
                     return OpenTables(address, stop);
                   }),
        kept_cube_files(cube_files),
        cube(SystemCube(
            *platform.files, *platform.locale,
            std::make_unique<FileOrServer>(
                platform, options.cube_files != nullptr ? *options.cube_files : cube_files,
                [this] { return SettingsOf(kCubeServers); }))),
        kept_database(*database),
        kept_cubes(*cube),
        prints(options.is_command || options.message_boxes == nullptr),
        spreadsheet(*platform.files, MakingTime),
        host{Component(platform),
             *platform.files,
             overriding,
             *platform.locale,
             *platform.clock,
             options.message_boxes != nullptr ? *options.message_boxes : console,
             options.keep_open ? kept_database : *database,
             options.keep_open ? kept_cubes : *cube,
             spreadsheet} {}

  /// Those of Qel.ini in the settings folder of the moment, and of the environment.
  ServerSettings SettingsOf(const ServerKind& kind) {
    constexpr uint32_t kLongest = 4096;  // as long as a login or a path may be
    const auto ini_value = [&](const std::string& key) {
      return ReadIniValue(host, environment, kind.section, key, kLongest);
    };
    const bool secret =
        !ini_value("Password").empty() || ini_value("Proxy").find('@') != std::string::npos;
    const std::string file = environment.SettingsFolder + "\\Qel.ini";
    TellUnreadable(file);
    if (secret) TellOfReaders(file);
    return server::ReadServerSettings(kind, ini_value,
                                      [this](const std::string& path, std::size_t most) {
                                        std::string text = ReadBeginning(host.files, path, most);
                                        TellOfReaders(path);
                                        return text;
                                      });
  }

  std::unique_ptr<TableServer> OpenTables(const std::string& address, const QueryStop& stop) {
    return OpenTableServerOf(platform, address, SettingsOf(kDatabaseServers), stop);
  }

  /// Once; many threads may wait.
  void TellWait(const std::string& file) {
    static std::atomic<bool> told = false;
    if (!prints || told.exchange(true)) return;
    MessageBox box;
    box.text = "Waiting for the settings database \"" + file + "\" (locked by another program)";
    console.Show(box);
  }

  /// Only where messages are printed: elsewhere a window would wait for a person.
  void Warn(const std::string& text) {
    MessageBox box;
    box.text = text;
    box.title = host.component.product_name;
    console.Show(box);
  }

  /// Once, and only where messages are printed.
  void TellUnreadable(const std::string& file) {
    static std::atomic<bool> told = false;
    if (!prints) return;
    try {
      if (host.files.Exists(file)) ReadBeginning(host.files, file, 1);
    } catch (const Failure& failure) {
      if (!told.exchange(true)) Warn("Logins in Qel.ini are not used. " + failure.description());
    }
  }

  /// Once, and only where messages are printed.
  void TellOfReaders(const std::string& file) {
    static std::atomic<bool> told = false;
    if (!prints || told.exchange(true)) return;
    const std::string native = host.files.NativePath(file);
    const std::string advice = platform.advice_on_readers(native);
    if (advice.empty()) return;
    Warn("Others on this computer can read the password in " + native +
         ". Keep them out: " + advice);
  }

  SystemPlatform platform = NewSystemPlatform();
  OverridingRegistry overriding;
  ConsoleMessageBoxes console{stderr};
  std::unique_ptr<Database> database;
  olap::OlapCubeProvider cube_files;
  KeptCubes kept_cube_files;
  std::unique_ptr<CubeProvider> cube;
  KeptDatabases kept_database;
  KeptCubes kept_cubes;
  bool prints;
  xlsx::XlsxSpreadsheet spreadsheet;
  Environment environment;  ///< of the servers' settings
  Host host;
};

SystemHost::SystemHost(const SystemHostOptions& options)
    : providers_(std::make_unique<Providers>(options)) {}

SystemHost::~SystemHost() = default;

const Host& SystemHost::host() const { return providers_->host; }

CubeProvider& SystemHost::cube_files() { return providers_->kept_cube_files; }

std::unique_ptr<TableServer> SystemHost::OpenTables(const std::string& address,
                                                    const QueryStop& stop) {
  return providers_->OpenTables(address, stop);
}

void SystemHost::UseSettingsFolder(const std::string& folder) {
  providers_->overriding.Use(folder);
}

}  // namespace vok
