// vokcube language texts | build | show: the texts of the windows, for translators.
#include <iostream>
#include <memory>
#include <span>
#include <string>

#include "cli/command.h"
#include "cli/language_texts.h"
#include "cli/output_file.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/shown_text.h"

namespace vok::cli {
namespace {

void PrintOwn(const CommonOptions& common, const std::string& path) {
  const auto session = common.NewSession();
  TextOutput(session->host(), path, kTextsOfWindows).Write(PrintLanguageTexts(OwnTexts()));
}

struct FileOptions {
  std::string texts;
  std::string table;
  int code_page = 0;  ///< 0: not given
};

CLI::Option* AddCodePage(CLI::App& command, FileOptions& options) {
  return command
      .add_option("--code-page", options.code_page,
                  "Windows code page of texts that are not Unicode, such as 1255")
      ->check(CLI::Range(1, 65535));
}

/// UTF-8, or the code page that is given.
std::string ReadTexts(const Host& host, const FileOptions& options) {
  std::string bytes = ReadWholeFile(host.files, options.texts);
  if (options.code_page == 0) return bytes;
  if (auto text = host.locale.FromCodePage(bytes, options.code_page)) return *std::move(text);
  throw Failure(failure_number::kUnspecified,
                "The file \"" + options.texts + "\" is not a text of the code page " +
                    std::to_string(options.code_page) + ". Check the number; UTF-8 needs none.");
}

void Build(const CommonOptions& common, const FileOptions& options) {
  const auto session = common.NewSession();
  const Host& host = session->host();
  const auto output = BeginOutput(host, options.table, kLanguageTable, {options.texts});
  const LanguageTexts texts = ParseLanguageTexts(ReadTexts(host, options), options.texts);
  for (const std::string& note : LanguageNotes(texts)) {
    std::cerr << OneLine(options.texts + ": " + note) << '\n';
  }
  const recordset::Rowset table = ToLanguageTable(texts);
  const std::string text = recordset::WriteXmlRowset(table);
  output->Write(std::as_bytes(std::span(text)));
  output->Commit();
  std::cout << "Wrote " << table.rows.size() << " texts of " << texts.size() << " numbers to "
            << OneLine(host.files.NativePath(options.table)) << '\n';
}

void Show(const CommonOptions& common, const FileOptions& options) {
  const auto session = common.NewSession();
  const std::string bytes = ReadWholeFile(session->host().files, options.table);
  const auto rowset = recordset::ReadRowset(std::as_bytes(std::span(bytes)), options.table,
                                            {&session->host().locale, options.code_page});
  std::cout << PrintLanguageTexts(FromLanguageTable(rowset, options.table));
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

  const auto options = std::make_shared<FileOptions>();
  auto* build = command->add_subcommand("build", "Make a language table of a CSV file of texts");
  build->add_option("TEXTS.csv", options->texts, "number,1,2,3: a line per text")->required();
  build->add_option("Lang.rs", options->table, "The table, to lie beside the component")
      ->required();
  AddCodePage(*build, *options);
  build->callback([&common, options] { Build(common, *options); });

  auto* show = command->add_subcommand("show", "Print a language table as CSV");
  show->add_option("Lang.rs", options->table, "The table, of any maker")->required();
  AddCodePage(*show, *options);
  show->callback([&common, options] { Show(common, *options); });
}

}  // namespace vok::cli
