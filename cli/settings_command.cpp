// vokcube settings import | export | delete: saved settings from and to a JSON document.
#include <iostream>
#include <memory>
#include <string>

#include "cli/command.h"
#include "cli/settings_document.h"
#include "env/environment.h"
#include "platform/failure.h"
#include "settings/all_sets.h"
#include "settings/writer.h"

namespace vok::cli {
namespace {

/// Two names that differ in case alone are one saved set: importing both would lose the first.
template <typename Sets>
void RefuseDoubleNames(const Locale& locale, const Sets& sets, const std::string& origin) {
  for (std::size_t i = 0; i < sets.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (EqualNoCase(locale, sets[i].SetName, sets[j].SetName)) {
        throw Failure(failure_number::kTypeMismatch,
                      origin + ": \"" + sets[j].SetName + "\" and \"" + sets[i].SetName +
                          "\" are one name to the settings database; rename one of them");
      }
    }
  }
}

void Import(const CommonOptions& common, const std::string& path) {
  const auto session = common.NewSession();
  const Host& host = session->host();
  const SettingsDocument document = ParseSettingsDocument(ReadWholeFile(host.files, path), path);
  RefuseDoubleNames(host.locale, document.data_sources, path);
  RefuseDoubleNames(host.locale, document.periods, path);

  PrepareDatabase(*session);
  const Environment& environment = session->publics().environment;
  for (const auto& setting : document.data_sources) SaveDataSource(host, environment, setting);
  for (const auto& set : document.periods) SavePeriods(host, environment, set);
  std::cout << "Imported " << document.data_sources.size() << " data sources and "
            << document.periods.size() << " period sets into "
            << host.files.NativePath(SettingsDatabase(environment.SettingsFolder)) << '\n';
}

void Export(const CommonOptions& common, const std::string& path) {
  const auto session = common.NewSession();
  const Host& host = session->host();
  FindDatabase(*session);
  const Environment& environment = session->publics().environment;
  WriteOutput(host.files, path,
              PrintSettingsDocument(
                  {ReadAllDataSources(host, environment), ReadAllPeriodSets(host, environment)}));
}

struct DeleteOptions {
  std::string kind;
  std::string name;
};

/// A name that is not there is a failure: somebody who mistypes it should know.
void Delete(const CommonOptions& common, const DeleteOptions& options) {
  const auto session = common.NewSession();
  const Host& host = session->host();
  FindDatabase(*session);
  const Environment& environment = session->publics().environment;
  const bool periods = EqualNoCase(host.locale, options.kind, "Periods");
  bool found = false;
  const auto look = [&](const auto& sets) {
    for (const auto& set : sets) found |= EqualNoCase(host.locale, set.SetName, options.name);
  };
  if (periods) {
    look(ReadAllPeriodSets(host, environment));
  } else {
    look(ReadAllDataSources(host, environment));
  }
  if (!found) {
    throw Failure(failure_number::kNotFound,
                  "There is no " + std::string(periods ? "period set" : "data source") +
                      " named \"" + options.name + "\"");
  }
  DeleteSet(host, environment, options.name, options.kind);
}

}  // namespace

void AddSettingsCommand(CLI::App& app, const CommonOptions& common) {
  auto* command = app.add_subcommand("settings", "Import, export or delete saved settings");
  command->require_subcommand(1);
  command->fallthrough();

  const auto path = std::make_shared<std::string>();
  auto* import_command = command->add_subcommand("import", "Save every set of a JSON document");
  import_command->add_option("FILE", *path, "The document")->required();
  import_command->callback([&common, path] { Import(common, *path); });

  auto* export_command = command->add_subcommand("export", "Write all saved sets as JSON");
  export_command->add_option("FILE", *path, "Where to; - or nothing: standard output");
  export_command->callback([&common, path] { Export(common, *path); });

  const auto options = std::make_shared<DeleteOptions>();
  auto* remove = command->add_subcommand("delete", "Delete one saved set");
  remove->add_option("KIND", options->kind, "periods or data-source")
      ->required()
      ->check(CLI::IsMember({"periods", "data-source"}, CLI::ignore_case));
  remove->add_option("NAME", options->name, "Its name")->required();
  remove->callback([&common, options] { Delete(common, *options); });
}

}  // namespace vok::cli
