// vokcube: the command line of VokCubeQ17.
#include <algorithm>
#include <iostream>

#include "cli/command.h"
#include "cli/explain.h"
#include "cli/stop_on_interrupt.h"
#include "cli/terminal.h"
#include "platform/cube.h"
#include "platform/failure.h"
#include "platform/shown_text.h"
#include "platform/whole_path.h"

namespace vok::cli {
namespace {

/// A relative folder means one below the current directory of now.
void AddCommonOptions(CLI::App& app, CommonOptions& common) {
  app.add_option_function<std::string>(
         "--settings-folder",
         [&common](const std::string& folder) {
           if (folder.empty()) throw CLI::ValidationError("--settings-folder", "names no folder");
           const auto path = PathOfUtf8(WholePath(folder));
           const auto named = (path.has_filename() ? path : path.parent_path()).u8string();
           common.settings_folder.assign(named.begin(), named.end());
         },
         "Folder of the settings database and the logs (instead of the registry's value)")
      ->type_name("DIR");
}

/// On one line: a name or a server's words cannot look like a failure of their own.
int Report(const Failure& failure) {
  std::string text = failure.description();
  text.resize(text.find_last_not_of(" \r\n") + 1);
  std::cerr << failure.number() << ": " << OneLine(WithoutUsers(text)) << '\n';
  return failure.number() == kQueryCancelled ? kInterrupted : kFailed;
}

void Flush() {
  if (!std::cout.flush()) {
    throw Failure(failure_number::kDeviceError,
                  "Standard output could not be written; is the disk full or the pipe closed?");
  }
}

/// Carries out one command, or prints what the arguments ask for or lack.
int ParseAndRun(CLI::App& app, std::vector<std::string> arguments) {
  std::reverse(arguments.begin(), arguments.end());  // as the parser takes them
  int status = 0;
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    status = Explain(app, error);
  } catch (const EndWith& reason) {
    std::cerr << OneLine(reason.what()) << '\n';
    status = reason.status();
  }
  Flush();
  return status;
}

void AddCubeCommand(CLI::App& app, const CommonOptions& common) {
  auto* command = app.add_subcommand("cube", "Build a cube file, or look into one");
  command->require_subcommand(1);
  command->fallthrough();
  AddCubeNew(*command, common);
  AddCubeBuild(*command, common);
  AddCubeRefresh(*command, common);
  AddCubeCheck(*command, common);
  AddCubeInfo(*command, common);
  AddCubeLists(*command, common);
}

int Main(std::vector<std::string> arguments) {
  CLI::App app("Runs saved cube queries and leaves Excel workbooks.", "vokcube");
  CommonOptions common;
  AddCommonOptions(app, common);
  app.set_version_flag("--version",
                       [&common] { return "vokcube " + common.NewSession()->me().Version(); });
  app.require_subcommand(1);
  app.fallthrough();
  app.allow_windows_style_options(false);  // "/…" is a path there too
  AddRunCommand(app, common);
  AddSetsCommand(app, common);
  AddInfoCommand(app, common);
  AddSettingsCommand(app, common);
  AddPeriodsCommand(app, common);
  AddCubeCommand(app, common);
  AddLanguageCommand(app, common);
  AddMdxCommand(app, common);
  AddWindowCommand(app, common);
  AddExamples(app);
  try {
    return ParseAndRun(app, std::move(arguments));
  } catch (...) {
    return Report(CurrentFailure());
  }
}

}  // namespace
}  // namespace vok::cli

int main(int argc, char** argv) {
  vok::cli::CatchInterrupts(vok::cli::AskToStop);
  return vok::cli::RunProgram(argc, argv, vok::cli::Main);
}
