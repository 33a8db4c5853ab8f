// What the subcommands share: the component, options, output. Each subcommand stands in a file of
// its own, which adds it to the program and carries it out.
#pragma once

#include <CLI/CLI.hpp>
#include <istream>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "component/cl_me.h"
#include "component/publics.h"
#include "cube/requirements.h"
#include "hosts/composition/query_window.h"
#include "hosts/composition/system_host.h"

namespace vok::cli {

/// The options `--max-cells`, `--memory` and `--timeout` of a command.
class LimitOptions {
 public:
  /// The object outlives the command.
  void AddTo(CLI::App& command);
  /// For the end of a connection text, such as "Max Memory=100;"; "" when none is given.
  std::string ConnectionText() const;

 private:
  std::string max_cells_;
  std::string memory_;
  std::string timeout_;
};

// The program's exit statuses; 0 is success.
inline constexpr int kFailed = 1;
inline constexpr int kWrongArguments = 2;
inline constexpr int kNothingWritten = 3;
inline constexpr int kInterrupted = 130;

/// The component, set up for one command.
class Session {
 public:
  explicit Session(const SystemHostOptions& options) : host_(options) {}

  const Host& host() const { return host_.host(); }
  CubeProvider& cube_files() { return host_.cube_files(); }
  std::unique_ptr<TableServer> OpenTables(const std::string& address, const QueryStop& stop) {
    return host_.OpenTables(address, stop);
  }
  Publics& publics() { return publics_; }
  clMe& me() { return me_; }

 private:
  SystemHost host_;
  Publics publics_;
  clMe me_{host_.host(), publics_, OpenQueryWindow};
};

/// Options that stand before or after any subcommand.
struct CommonOptions {
  std::string settings_folder;  ///< absolute; empty: the registry decides

  /// The settings folder of `options` is not looked at.
  std::unique_ptr<Session> NewSession(SystemHostOptions options = {}) const {
    options.settings_folder = settings_folder;
    return std::make_unique<Session>(options);
  }
};

/// Ends the program with a status and says why. It is not a failure of the command itself.
class EndWith : public std::runtime_error {
 public:
  EndWith(int status, const std::string& why) : std::runtime_error(why), status_(status) {}
  int status() const { return status_; }

 private:
  int status_;
};

/// The work went well but there was nothing to write; says why.
class NothingWritten : public EndWith {
 public:
  explicit NothingWritten(const std::string& why) : EndWith(kNothingWritten, why) {}
};

/// Finds the settings folder. Failure 57 when the registry, which should name it, cannot be read:
/// settings of another folder would be the wrong ones.
void FindFolder(Session& session);

/// As above, and failure 1111 when there is no settings database in the folder.
void FindDatabase(Session& session);

/// As `FindFolder`; makes the folder and its database where they are missing, else brings the
/// database up to date.
void PrepareDatabase(Session& session);

/// The text of a connection to a cube file or a server; with a catalog, to that. Both may hold any
/// character.
std::string CubeText(const std::string& source, const std::string& catalog = {});

struct CheckedCube {
  std::string name;
  std::vector<CubeLack> lacks;
};

/// What each cube of a file or a server lacks for saved queries; with a catalog, that one.
std::vector<CheckedCube> CheckCubes(const Host& host, const std::string& source,
                                    const std::string& catalog = {});
void PrintLacks(const CheckedCube& cube, std::ostream& out);

/// 57: `input`, which has the name, cannot be read; the reason is that of the last call.
[[noreturn]] void ThrowUnread(const std::string& name);
/// The failure above when reading ended otherwise than at the end of the input.
void CheckReadToEnd(const std::istream& input, const std::string& name);

/// To its end, or the failure above.
std::string ReadStandardInput();

/// Each takes the program and the common options, which outlive the parse. The command's work is
/// done by the callback of its subcommand, which throws `Failure`.
void AddRunCommand(CLI::App& app, const CommonOptions& common);
void AddSetsCommand(CLI::App& app, const CommonOptions& common);
void AddInfoCommand(CLI::App& app, const CommonOptions& common);
void AddSettingsCommand(CLI::App& app, const CommonOptions& common);
void AddPeriodsCommand(CLI::App& app, const CommonOptions& common);
void AddLanguageCommand(CLI::App& app, const CommonOptions& common);
void AddMdxCommand(CLI::App& app, const CommonOptions& common);
void AddWindowCommand(CLI::App& app, const CommonOptions& common);

/// Likewise below the subcommand `cube`.
void AddCubeBuild(CLI::App& cube, const CommonOptions& common);
void AddCubeRefresh(CLI::App& cube, const CommonOptions& common);
void AddCubeCheck(CLI::App& cube, const CommonOptions& common);
void AddCubeNew(CLI::App& cube, const CommonOptions& common);
void AddCubeInfo(CLI::App& cube, const CommonOptions& common);
void AddCubeLists(CLI::App& cube, const CommonOptions& common);

}  // namespace vok::cli
