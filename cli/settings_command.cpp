// vokcube settings import | export | rename | delete: saved settings from and to a JSON document,
// from another database, and by their names.
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/output_file.h"
#include "cli/print.h"
#include "cli/settings_document.h"
#include "cube/discovery.h"
#include "env/environment.h"
#include "platform/database.h"
#include "platform/failure.h"
#include "platform/shown_text.h"
#include "platform/whole_path.h"
#include "settings/exact_sets.h"
#include "settings/left_out.h"
#include "settings/set_lists.h"
#include "settings/settings_database.h"

namespace vok::cli {
namespace {

/// Two names that differ in case alone are one saved set: importing both would lose the first.
template <typename Sets>
void RefuseDoubleNames(const Locale& locale, const Sets& sets, const std::string& origin) {
  std::map<std::string, std::string> names;
  for (const auto& set : sets) {
    const auto [other, is_new] = names.emplace(locale.FoldCase(set.SetName), set.SetName);
    if (is_new) continue;
    throw Failure(failure_number::kTypeMismatch,
                  origin + ": \"" + other->second + "\" and \"" + set.SetName +
                      "\" are one name to the settings database; rename one of them");
  }
}

/// Tells which sets can be listed, renamed and deleted, but not be saved again under their names.
template <typename Sets>
void NoteNames(const Sets& sets, const char* words) {
  for (const auto& set : sets) {
    const std::string problem = SetNameProblem(set.SetName);
    if (!problem.empty()) {
      std::cerr << "Note: one " << words << ' ' << OneLine(problem)
                << " (with vokcube settings rename)\n";
    }
  }
}

struct Imported {
  SettingsDocument document;
  std::vector<std::string> left_out;  ///< sentences
};

bool IsDatabase(const Host& host, const std::string& path) {
  const DatabaseKind kind = KindOfDatabase(host.files, path);
  return kind == DatabaseKind::kJet || kind == DatabaseKind::kSqlite;
}

SettingsDocument DocumentOf(const Host& host, Connection& connection) {
  return {ReadAllDataSources(host, connection), ReadAllPeriodSets(connection)};
}

SettingsDocument ParseDocument(const Host& host, const std::string& path) {
  if (path == "-") return ParseSettingsDocument(ReadStandardInput(), "standard input");
  return ParseSettingsDocument(ReadWholeFile(host.files, path), path);
}

/// A cube file that is named from the current folder is found in no other one.
void NameCubesWhole(const Locale& locale, SettingsDocument& document) {
  for (DataSourceSetting& source : document.data_sources) {
    std::string& file = source.CubeFile;
    const bool whole = IsServerAddress(locale, file) || file.starts_with('\\') ||
                       file.starts_with('/') || file.substr(0, 2).ends_with(':');
    if (!file.empty() && !whole) file = WholePath(file);
  }
}

/// The sets of a JSON document, or of another settings database, which is not written to.
Imported ReadImported(const Host& host, const std::string& path) {
  if (path == "-" || !IsDatabase(host, path)) {
    Imported imported{ParseDocument(host, path), {}};
    NameCubesWhole(host.locale, imported.document);
    return imported;
  }
  const auto connection = OpenDatabase(host, path);
  Imported imported{DocumentOf(host, *connection), {}};
  imported.left_out = LeftOut(host, *connection, imported.document.data_sources);
  return imported;
}

/// Dates that a person may have mixed up; saved as they are.
void NotePeriods(const std::vector<PeriodSet>& sets) {
  for (const PeriodSet& set : sets) {
    for (int number = 1; number <= kPeriodCount; ++number) {
      const PeriodEntry& period = set.Period(number);
      if (period.UntilDate.IsZero() || period.UntilDate >= period.FromDate) continue;
      std::cerr << "Note: period " << number << " of period set " << OneLine(Quoted(set.SetName))
                << " ends on " << IsoDate(period.UntilDate) << ", before it begins on "
                << IsoDate(period.FromDate) << '\n';
    }
  }
}

void Import(const CommonOptions& common, const std::string& path) {
  const auto session = common.NewSession();
  const Host& host = session->host();
  const auto [document, left_out] = ReadImported(host, path);
  RefuseDoubleNames(host.locale, document.data_sources, path);
  RefuseDoubleNames(host.locale, document.periods, path);

  PrepareDatabase(*session);
  const Environment& environment = session->publics().environment;
  ImportSets(host, environment, document.data_sources, document.periods);
  NoteNames(document.data_sources, kDataSourceWords);
  NoteNames(document.periods, kPeriodSetWords);
  NotePeriods(document.periods);
  for (const std::string& sentence : left_out) {
    std::cerr << "Not taken: " << OneLine(sentence) << '\n';
  }
  std::cout << "Imported " << document.data_sources.size() << " data sources and "
            << document.periods.size() << " period sets into "
            << OneLine(host.files.NativePath(SettingsDatabase(environment.SettingsFolder))) << '\n';
}

/// Of the settings folder, or of the database `from`.
SettingsDocument ReadExported(Session& session, const std::string& from) {
  const Host& host = session.host();
  if (from.empty()) FindDatabase(session);
  const auto connection =
      from.empty() ? OpenSettings(host, session.publics().environment) : OpenDatabase(host, from);
  return DocumentOf(host, *connection);
}

void Export(const CommonOptions& common, const std::string& path, const std::string& from) {
  const auto session = common.NewSession();
  TextOutput output(session->host(), path, kSettingsDocument, {from});
  output.Write(PrintSettingsDocument(ReadExported(*session, from)));
}

struct SetOptions {
  std::string kind;
  std::string name;
  std::string new_name;
};

/// Runs `change` on the database; it is false when there is no such set, which is a failure:
/// a person who mistypes a name should know.
template <typename Change>
void ChangeSet(const CommonOptions& common, const SetOptions& options, Change change) {
  const auto session = common.NewSession();
  const Host& host = session->host();
  FindDatabase(*session);
  if (change(host, session->publics().environment)) return;
  throw Failure(failure_number::kNotFound,
                "There is no " + std::string(WordsForKind(host.locale, options.kind)) +
                    " named \"" + options.name + "\"; vokcube info lists the saved sets");
}

void Delete(const CommonOptions& common, const SetOptions& options) {
  ChangeSet(common, options, [&](const Host& host, const Environment& environment) {
    return DeleteExactSet(host, environment, options.name, options.kind);
  });
}

void Rename(const CommonOptions& common, const SetOptions& options) {
  ChangeSet(common, options, [&](const Host& host, const Environment& environment) {
    return RenameSet(host, environment, options.name, options.new_name, options.kind);
  });
}

CLI::App* AddSetCommand(CLI::App& command, const char* name, const char* description,
                        SetOptions& options) {
  auto* added = command.add_subcommand(name, description);
  added->add_option("KIND", options.kind, "periods or data-source")
      ->required()
      ->check(CLI::IsMember({"periods", "data-source"}, CLI::ignore_case));
  added->add_option("NAME", options.name, "Its exact name; only the case of letters does not count")
      ->required();
  return added;
}

}  // namespace

void AddSettingsCommand(CLI::App& app, const CommonOptions& common) {
  auto* command = app.add_subcommand("settings", "Import, export, rename or delete saved settings");
  command->require_subcommand(1);
  command->fallthrough();

  const auto path = std::make_shared<std::string>();
  auto* import_command = command->add_subcommand(
      "import", "Save every set of a JSON document, or of another settings database");
  import_command
      ->add_option("FILE", *path,
                   "The document, or the database (.mdb); - reads a document from standard input")
      ->required();
  import_command->callback([&common, path] { Import(common, *path); });

  auto* export_command = command->add_subcommand("export", "Write all saved sets as JSON");
  export_command->add_option("FILE", *path, "Where to; - or nothing: standard output");
  const auto from = std::make_shared<std::string>();
  export_command->add_option("--from", *from, "Another settings database (.mdb)");
  export_command->callback([&common, path, from] { Export(common, *path, *from); });

  const auto options = std::make_shared<SetOptions>();
  AddSetCommand(*command, "delete", "Delete one saved set", *options)->callback([&common, options] {
    Delete(common, *options);
  });
  auto* rename = AddSetCommand(*command, "rename", "Give one saved set another name", *options);
  rename->add_option("NEW-NAME", options->new_name, "The other name")->required();
  rename->callback([&common, options] { Rename(common, *options); });
}

}  // namespace vok::cli
