#include "cli/explain.h"

#include <algorithm>
#include <iostream>
#include <numeric>
#include <sstream>
#include <string_view>
#include <vector>

#include "cli/command.h"
#include "platform/shown_text.h"

namespace vok::cli {
namespace {

/// The innermost subcommand that the arguments name; the program itself when they name none.
CLI::App& Innermost(CLI::App& app) {
  const auto named = app.get_subcommands();
  return named.empty() ? app : Innermost(*named.front());
}

/// The word that stands where a subcommand must; "" when there is none.
std::string UnknownSubcommand(CLI::App& app) {
  const CLI::App& command = Innermost(app);
  if (command.get_require_subcommand_min() == 0) return {};
  for (const std::string& word : app.remaining(true)) {
    if (!word.starts_with('-')) return word;
  }
  return {};
}

/// How many letters must be changed, added or left out to make one word of the other.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
    }
  }
  return row.back();
}

/// The one of `known` that the word is nearest to; "" when none is near.
std::string Meant(const std::string& word, const std::vector<std::string>& known) {
  std::string meant;
  std::size_t nearest = word.size() / 3 + 1;
  for (const std::string& each : known) {
    const std::size_t distance = Distance(word, each);
    if (distance > nearest || (distance == nearest && !meant.empty())) continue;
    nearest = distance;
    meant = each;
  }
  return meant;
}

std::string Question(const std::string& meant) {
  return meant.empty() ? "" : " Did you mean " + meant + "?";
}

std::vector<std::string> OptionsOf(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::App* app = &command; app != nullptr; app = app->get_parent()) {
    for (const CLI::Option* option : app->get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
  }
  return names;
}

void PrintUnknownSubcommand(const CLI::App& command, const std::string& word) {
  std::vector<std::string> names;
  for (const auto* known : command.get_subcommands([](const auto*) { return true; })) {
    names.push_back(known->get_name());
  }
  std::cerr << "Unknown subcommand \"" << OneLine(word) << "\"." << Question(Meant(word, names))
            << " Known are:";
  for (const std::string& name : names) std::cerr << ' ' << name;
  std::cerr << '\n';
}

/// False when every option is known.
bool PrintUnknownOption(const CLI::App& command, const std::vector<std::string>& words) {
  const auto known = OptionsOf(command);
  const auto word =
      std::find_if(words.begin(), words.end(), [](const auto& w) { return w.starts_with("--"); });
  if (word == words.end()) return false;
  const std::string name = word->substr(0, word->find('='));
  std::cerr << "Unknown option " << OneLine(name) << '.' << Question(Meant(name, known)) << '\n';
  return true;
}

/// Each leads to the command that it calls, and to those above it that have none of their own.
constexpr const char* kExamples[] = {
    "vokcube run --data-source Domestic --periods Demo --output report",
    "vokcube sets Periods",
    "vokcube info --json",
    "vokcube settings import settings.json",
    "vokcube settings export settings.json",
    "vokcube settings delete periods Demo",
    "vokcube settings rename data-source Domestic Home",
    "vokcube periods fill 2024 --interval month --from 2024-01-01",
    "vokcube cube build --schema schema.xml --data tables --output ledger.cub",
    "vokcube cube refresh ledger.cub --since 2024-11",
    "vokcube cube new books journal.csv",
    "vokcube cube check ledger.cub",
    "vokcube cube info ledger.cub",
    "vokcube cube catalogs ledger.cub",
    "vokcube cube measures ledger.cub --all",
    "vokcube cube members ledger.cub --kind money-sets",
    "vokcube language texts own.csv",
    "vokcube language build own.csv Lang.rs",
    "vokcube language show Lang.rs",
    "vokcube mdx ledger.cub \"SELECT [Measures].Members ON COLUMNS FROM [LedgerQEL]\"",
    "vokcube window",
};

void AddExample(CLI::App& command, const std::string& example) {
  if (!command.get_footer().empty()) return;
  command.footer("Example:\n  " + example +
                 "\n\nExit status: 0 done, 1 failed, 2 wrong arguments, 3 a run had nothing to "
                 "write, 130 stopped");
}

}  // namespace

void AddExamples(CLI::App& app) {
  for (const std::string example : kExamples) {
    std::istringstream words(example);
    std::string word;
    words >> word;
    CLI::App* command = &app;
    while (command != nullptr) {
      AddExample(*command, example);
      words >> word;
      const auto named =
          command->get_subcommands([&](const CLI::App* each) { return each->get_name() == word; });
      command = named.empty() ? nullptr : named.front();
    }
  }
}

int Explain(CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) return app.exit(error);
  const std::string subcommand = UnknownSubcommand(app);
  if (!subcommand.empty()) {
    PrintUnknownSubcommand(Innermost(app), subcommand);
  } else if (!PrintUnknownOption(Innermost(app), app.remaining(true))) {
    std::cerr << OneLine(error.what()) << '\n';
  }
  std::cerr << "Run with --help for more information.\n";
  return kWrongArguments;
}

}  // namespace vok::cli
