// vokcube language texts | build | show: the texts of the windows, for translators.
#include <iostream>
#include <memory>
#include <string>

#include "cli/command.h"
#include "cli/language_texts.h"
#include "platform/files.h"
#include "platform/shown_text.h"

namespace vok::cli {
namespace {

void PrintOwn(const CommonOptions& common, const std::string& path) {
  WriteOutput(common.NewSession()->host().files, path, PrintLanguageTexts(OwnTexts()));
}

struct BuildOptions {
  std::string texts;
  std::string table;
};

void Build(const CommonOptions& common, const BuildOptions& options) {
  const auto session = common.NewSession();
  const Host& host = session->host();
  const LanguageTexts texts =
      ParseLanguageTexts(ReadWholeFile(host.files, options.texts), options.texts);
  for (const std::string& note : LanguageNotes(texts)) {
    std::cerr << OneLine(options.texts + ": " + note) << '\n';
  }
  const recordset::Rowset table = ToLanguageTable(texts);
  WriteWholeFile(host.files, options.table, recordset::WriteXmlRowset(table));
  std::cout << "Wrote " << table.rows.size() << " texts of " << texts.size() << " numbers to "
            << OneLine(host.files.NativePath(options.table)) << '\n';
}

void Show(const CommonOptions& common, const std::string& path) {
  const auto session = common.NewSession();
  const auto file = session->host().files.Map(path);
  std::cout << PrintLanguageTexts(
      FromLanguageTable(recordset::ReadRowset(file->Bytes(), path), path));
}

}  // namespace

void AddLanguageCommand(CLI::App& app, const CommonOptions& common) {
  auto* command = app.add_subcommand("language", "Translate the texts of the windows");
  command->require_subcommand(1);
  command->fallthrough();

  const auto path = std::make_shared<std::string>();
  auto* texts = command->add_subcommand("texts", "Print the component's own texts as CSV");
  texts->add_option("FILE", *path, "Where to; - or nothing: standard output");
  texts->callback([&common, path] { PrintOwn(common, *path); });

  const auto options = std::make_shared<BuildOptions>();
  auto* build = command->add_subcommand("build", "Make a language table of a CSV file of texts");
  build->add_option("TEXTS.csv", options->texts, "number,1,2,3: a line per text")->required();
  build->add_option("Lang.rs", options->table, "The table, to lie beside the component")
      ->required();
  build->callback([&common, options] { Build(common, *options); });

  auto* show = command->add_subcommand("show", "Print a language table as CSV");
  show->add_option("Lang.rs", *path, "The table, of whichever maker")->required();
  show->callback([&common, path] { Show(common, *path); });
}

}  // namespace vok::cli
