// vokcube window: the settings window.
#include <memory>

#include "cli/command.h"
#include "platform/failure.h"

namespace vok::cli {
namespace {

void Show(const CommonOptions& common, std::string& host_database) {
  const auto session = common.NewSession();
  PrepareDatabase(*session);
  int32_t error = 0;
  session->me().ShowQCform(error, host_database);
  if (error != 0) throw Failure(error, session->publics().status.LastError);
}

}  // namespace

void AddWindowCommand(CLI::App& app, const CommonOptions& common) {
  const auto host_database = std::make_shared<std::string>();
  auto* command = app.add_subcommand("window", "Show the window in which settings are edited");
  command->add_option("DATABASE", *host_database, "The host database of a new data source");
  command->callback([&common, host_database] { Show(common, *host_database); });
}

}  // namespace vok::cli
