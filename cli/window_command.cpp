// vokcube window: the settings window.
#include <memory>

#include "cli/command.h"
#include "platform/failure.h"

namespace vok::cli {
namespace {

struct WindowOptions {
  std::string host_database;
  bool right_to_left = false;
};

void Show(const CommonOptions& common, WindowOptions& options) {
  const auto session = common.NewSession();
  PrepareDatabase(*session);
  clMe me(session->host(), session->publics(),
          options.right_to_left ? OpenQueryWindowFromRight : OpenQueryWindow);
  int32_t error = 0;
  me.ShowQCform(error, options.host_database);
  if (error != 0) throw Failure(error, session->publics().status.LastError);
}

}  // namespace

void AddWindowCommand(CLI::App& app, const CommonOptions& common) {
  const auto options = std::make_shared<WindowOptions>();
  auto* command = app.add_subcommand("window", "Show the window in which settings are edited");
  command->add_option("DATABASE", options->host_database, "The host database of a new data source");
  command->add_flag("--right-to-left", options->right_to_left,
                    "Lay the windows out from right to left in any language, where there is a "
                    "language table");
  command->callback([&common, options] { Show(common, *options); });
}

}  // namespace vok::cli
