// vokcube cube catalogs | measures | members: what a cube offers to a data-source setting.
#include <iostream>
#include <memory>

#include "cli/command.h"
#include "cli/print.h"
#include "cli/progress_line.h"
#include "cube/discovery.h"
#include "platform/failure.h"
#include "platform/shown_text.h"

namespace vok::cli {
namespace {

using Names = std::vector<std::string>;

struct ListOptions {
  std::string source;
  std::string catalog;
  std::string kind = "obs";
  bool all = false;
  bool json = false;
};

void RequireCube(const Host& host, const std::string& source) {
  if (IsCubeThere(host, source)) return;
  throw Failure(failure_number::kFileNotFound,
                "There is no cube file " + host.files.NativePath(source) +
                    "; name one that vokcube cube build made, or the address of a cube server");
}

/// The catalog that was asked for, else the one that the settings window would choose.
std::string CatalogOf(const Host& host, const ListOptions& options) {
  if (!options.catalog.empty()) return options.catalog;
  const QelCatalogs catalogs = ListQelCatalogs(*OpenForCatalogs(host, options.source));
  if (catalogs.chosen) return catalogs.names[*catalogs.chosen];
  throw Failure(failure_number::kNotFound,
                options.source + " has no catalog whose name ends in QEL; name one with --catalog");
}

struct Listed {
  const char* what;
  Names names;
  std::string catalog;
};

void Print(const ListOptions& options, const Listed& listed) {
  if (options.json) {
    Json document = {{"source", options.source}};
    if (!listed.catalog.empty()) document["catalog"] = listed.catalog;
    document[listed.what] = listed.names;
    std::cout << JsonText(document);
  } else {
    for (const std::string& name : listed.names) std::cout << OneLine(name) << '\n';
  }
}

Listed ListCatalogs(const Host& host, const ListOptions& options) {
  const auto connection = OpenForCatalogs(host, options.source);
  return {"catalogs",
          options.all ? connection->CatalogNames() : ListQelCatalogs(*connection).names,
          {}};
}

Listed ListMeasures(const Host& host, const ListOptions& options) {
  const std::string catalog = CatalogOf(host, options);
  Names names;
  if (options.all) {
    names = ReadMeasureChoices(host, options.source, catalog).measures;
  } else {
    for (const Value& name : GetMeasFromCube(host, options.source, catalog)) {
      names.push_back(name.ToText());
    }
  }
  return {"measures", names, catalog};
}

Listed ListMembers(const Host& host, const ListOptions& options) {
  const std::string catalog = CatalogOf(host, options);
  return {"members",
          options.kind == "obs" ? ReadObsMembers(host, options.source, catalog)
                                : ReadMeasureChoices(host, options.source, catalog).money_sets,
          catalog};
}

using Listing = Listed (*)(const Host&, const ListOptions&);

Listed Ask(const Host& host, const ListOptions& options, Listing list) {
  const ProgressLine line(false, "looking into " + options.source);
  return list(host, options);
}

CLI::App* AddList(CLI::App& cube, const CommonOptions& common, const char* name, const char* help,
                  const std::shared_ptr<ListOptions>& options, Listing list) {
  auto* command = cube.add_subcommand(name, help);
  command->add_option("SOURCE", options->source, "The cube file, or a server's address")
      ->required();
  command->add_flag("--json", options->json, "Print one JSON document");
  command->callback([&common, options, list] {
    const auto session = common.NewSession();
    RequireCube(session->host(), options->source);
    Print(*options, Ask(session->host(), *options, list));
  });
  return command;
}

}  // namespace

void AddCubeLists(CLI::App& cube, const CommonOptions& common) {
  const auto options = std::make_shared<ListOptions>();
  auto* catalogs = AddList(cube, common, "catalogs", "List the catalogs whose names end in QEL",
                           options, ListCatalogs);
  catalogs->add_flag("--all", options->all, "The others too");
  auto* measures = AddList(cube, common, "measures", "List the measures without \"Quantity\"",
                           options, ListMeasures);
  measures->add_flag("--all", options->all, "The others too");
  auto* members = AddList(cube, common, "members", "List the members that a setting can name",
                          options, ListMembers);
  members->add_option("--kind", options->kind, "obs (the default) or money-sets")
      ->check(CLI::IsMember({"obs", "money-sets"}));
  for (auto* command : {measures, members}) {
    command->add_option("--catalog", options->catalog,
                        "The catalog (otherwise the default one, or the first ending in QEL)");
  }
}

}  // namespace vok::cli
