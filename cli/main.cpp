// vokcube: the command line of VokCubeQ17.
#include <filesystem>
#include <iostream>

#include "cli/command.h"
#include "platform/failure.h"

namespace vok::cli {
namespace {

constexpr int kFailed = 1;
constexpr int kWrongArguments = 2;

/// A relative folder means one below the current directory, whatever is entered later.
void AddCommonOptions(CLI::App& app, CommonOptions& common) {
  app.add_option_function<std::string>(
         "--settings-folder",
         [&common](const std::string& folder) {
           if (folder.empty()) throw CLI::ValidationError("--settings-folder", "names no folder");
           const auto path = std::filesystem::absolute(folder).lexically_normal();
           common.settings_folder = path.has_filename() ? path : path.parent_path();
         },
         "Folder of the settings database and the logs (instead of the registry's value)")
      ->type_name("DIR");
}

int Report(const Failure& failure) {
  std::cerr << failure.number() << ": " << failure.description() << '\n';
  return kFailed;
}

void Flush() {
  if (!std::cout.flush()) {
    throw Failure(failure_number::kDeviceError,
                  "Standard output could not be written; is the disk full or the pipe closed?");
  }
}

/// Carries out one command, or prints what the arguments ask for or lack.
int ParseAndRun(CLI::App& app, int argc, char** argv) {
  int status = 0;
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    status = app.exit(error) == 0 ? 0 : kWrongArguments;
  }
  Flush();
  return status;
}

int Main(int argc, char** argv) {
  CLI::App app("Runs saved cube queries and leaves Excel workbooks.", "vokcube");
  CommonOptions common;
  AddCommonOptions(app, common);
  app.set_version_flag("--version",
                       [&common] { return "vokcube " + common.NewSession()->me().Version(); });
  app.require_subcommand(1);
  app.fallthrough();
  AddRunCommand(app, common);
  AddSetsCommand(app, common);
  AddInfoCommand(app, common);
  AddSettingsCommand(app, common);
  AddCubeCommand(app, common);
  AddMdxCommand(app, common);
  try {
    return ParseAndRun(app, argc, argv);
  } catch (...) {
    return Report(CurrentFailure());
  }
}

}  // namespace
}  // namespace vok::cli

int main(int argc, char** argv) { return vok::cli::Main(argc, argv); }
