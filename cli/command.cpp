#include "cli/command.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <system_error>
#include <type_traits>

#include "cli/print.h"
#include "env/directories.h"
#include "env/environment.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "settings/settings_tables.h"

namespace vok::cli {
namespace {

template <typename Number>
std::string AboveZero(const std::string& text) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec == std::errc{} && read.ptr == end && number > 0) return {};
  return Quoted(text) + " is not a " + (std::is_integral_v<Number> ? "whole " : "") +
         "number above 0, or is too large";
}

}  // namespace

void LimitOptions::AddTo(CLI::App& command) {
  command
      .add_option("--max-cells", max_cells_,
                  "Most cells of the answer before NON EMPTY, and most tuples of a set")
      ->check(AboveZero<std::size_t>, "", "");
  command.add_option("--memory", memory_, "Most megabytes that the query may take")
      ->check(AboveZero<std::size_t>, "", "");
  command.add_option("--timeout", timeout_, "Most seconds that the query may take")
      ->check(AboveZero<double>, "", "");
}

std::string LimitOptions::ConnectionText() const {
  std::string text;
  if (!max_cells_.empty()) text += "Max Cells=" + max_cells_ + ";";
  if (!memory_.empty()) text += "Max Memory=" + memory_ + ";";
  if (!timeout_.empty()) text += "Timeout=" + timeout_ + ";";
  return text;
}

void FindFolder(Session& session) {
  Environment& environment = session.publics().environment;
  FindSettingsFolder(session.host(), environment);
  if (environment.RegistryProblem.empty()) return;
  throw Failure(failure_number::kDeviceError,
                "The settings folder is not known, as reported above; mend or remove the registry "
                "file, or name the folder with --settings-folder");
}

void FindDatabase(Session& session) {
  const Host& host = session.host();
  FindFolder(session);
  const std::string database = SettingsDatabase(session.publics().environment.SettingsFolder);
  if (host.files.Exists(database)) return;
  throw Failure(failure_number::kDatabaseNotFound,
                "Database not Found: " + host.files.NativePath(database) +
                    "; make it with vokcube settings import, or name another folder with "
                    "--settings-folder");
}

void PrepareDatabase(Session& session) {
  const Host& host = session.host();
  const Environment& environment = session.publics().environment;
  FindFolder(session);
  if (!host.files.IsDirectory(environment.SettingsFolder)) {
    MakeDirectories(host, environment.SettingsFolder);
  }
  const std::string database = SettingsDatabase(environment.SettingsFolder);
  if (host.files.Exists(database)) {
    BringUpToDate(host, environment);
    return;
  }
  CreateDB(host, environment, environment.SettingsFolder);
  if (host.files.Exists(database)) return;
  throw Failure(failure_number::kDatabaseNotFound, "The settings database " +
                                                       host.files.NativePath(database) +
                                                       " was not made, as reported above");
}

std::string CubeText(const std::string& source, const std::string& catalog) {
  const auto quoted = [](const std::string& text) {
    std::string value = "\"";
    for (const char c : text) value += c == '"' ? "\"\"" : std::string(1, c);
    return value + '"';
  };
  const std::string text = "Provider=MSOLAP;Data Source=" + quoted(source);
  return catalog.empty() ? text : text + ";Initial Catalog=" + quoted("[" + catalog + "]");
}

void ThrowUnread(const std::string& name) {
  ThrowFileFailure(failure_number::kDeviceError, "read", name,
                   std::generic_category().message(errno), "Check where it comes from.");
}

void CheckReadToEnd(const std::istream& input, const std::string& name) {
  // Standard input, which C shares, notes errors there.
  if (input.bad() || (&input == &std::cin && std::ferror(stdin) != 0)) ThrowUnread(name);
}

std::string ReadStandardInput() {
  std::string text(std::istreambuf_iterator<char>(std::cin), {});
  CheckReadToEnd(std::cin, "standard input");
  return text;
}

}  // namespace vok::cli
