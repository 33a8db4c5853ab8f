// vokcube sets TABLE: the names saved in one settings table.
#include <iostream>
#include <memory>

#include "cli/command.h"
#include "cli/print.h"

namespace vok::cli {
namespace {

struct SetsOptions {
  std::string table;
  bool json = false;
};

void Sets(const CommonOptions& common, SetsOptions& options) {
  const auto session = common.NewSession();
  FindFolder(*session);
  Value names;
  session->me().GetSetNames(names, options.table);
  Json json = Json::array();
  for (const auto& name : *names.As<Value::Array>()) {
    if (!name.IsEmpty()) json.push_back(name.ToText());
  }
  if (options.json) {
    std::cout << JsonText(json);
  } else {
    for (const auto& name : json) std::cout << ShownText(name) << '\n';
  }
}

}  // namespace

void AddSetsCommand(CLI::App& app, const CommonOptions& common) {
  const auto options = std::make_shared<SetsOptions>();
  auto* command = app.add_subcommand("sets", "List the names saved in one settings table");
  command->add_option("TABLE", options->table, "DataSourceInfo or Periods")->required();
  command->add_flag("--json", options->json, "Print one JSON document");
  command->callback([&common, options] { Sets(common, *options); });
}

}  // namespace vok::cli
