// vokcube cube new: from a journal to a cube and saved settings.
#include <algorithm>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>

#include "cli/command.h"
#include "cli/journal_guess.h"
#include "cli/journal_schema.h"
#include "cli/new_folder.h"
#include "cli/print.h"
#include "cli/progress_line.h"
#include "cli/settings_document.h"
#include "cli/stop_on_interrupt.h"
#include "platform/failure.h"
#include "platform/shown_text.h"
#include "platform/text.h"
#include "platform/whole_path.h"
#include "providers/cube/olap/build/build_cube.h"
#include "providers/cube/olap/build/csv_scanner.h"
#include "providers/cube/olap/build/decoded_bytes.h"
#include "settings/exact_sets.h"
#include "settings/set_reader.h"
#include "settings/settings_database.h"

namespace vok::cli {
namespace {

struct NewOptions {
  std::string folder;
  std::string journal;
  JournalColumns columns;
  KnownForm form;
};

/// What the journal holds in the columns that were chosen.
struct JournalContent {
  int first_year = 9999;
  int last_year = 0;
  std::map<std::string, std::string> accounts;  ///< with what all entries of one say; or ""
  std::map<std::string, std::size_t> ledgers;   ///< with their entries
};

class NewCube {
 public:
  NewCube(Session& session, const NewOptions& options)
      : session_(session), host_(session.host()), folder_(WholePath(options.folder)) {
    if (folder_.size() > 1 && folder_.ends_with('/')) folder_.pop_back();
    name_ = folder_.substr(folder_.find_last_of("/\\") + 1);
  }

  void Make(const NewOptions& options) {
    olap::SetForm(guess_.form, "", "", options.form.dates);
    CheckName();
    CheckIsNew(host_, folder_);
    ReadJournal(options);
    NameSets();
    RefuseSavedSets();
    QueryStop stop;
    try {
      Tell(MakeFolder(options, stop));
    } catch (const Failure& failure) {
      if (failure.number() != kQueryCancelled) throw;
      throw Failure(kQueryCancelled, "Stopped; no folder was made and no settings were saved");
    }
  }

 private:
  // What is over after the journal was read to guess, read to list what it holds, and copied.
  static constexpr double kGuessed = 0.6;
  static constexpr double kListed = 0.8;
  static constexpr double kCopied = 0.85;

  /// Gives the facts of the cube in it. A stop ends it as a failure does.
  uint64_t MakeFolder(const NewOptions& options, QueryStop& stop) {
    const StopOnInterrupt interrupts(stop);
    NewFolder folder(host_, folder_);
    line_.Show("copying " + options.journal, kListed, kCopied, 0);
    const std::string journal = ReadWholeFile(host_.files, options.journal);
    folder.Write(journal.starts_with("\x1F\x8B") ? "journal.csv.gz" : "journal.csv", journal);
    WriteTables(folder);
    folder.Write("schema.xml", SchemaOf(guess_));
    folder.Write("settings.json", PrintSettingsDocument(document_));
    const auto report = BuildCube(folder.Path(CubeFileName()), stop);
    stop.Check();
    ImportSets(host_, session_.publics().environment, document_.data_sources, document_.periods);
    folder.Keep();
    return report.cubes.at(0).facts;
  }

  olap::BuildReport BuildCube(const std::string& cube, const QueryStop& stop) {
    const auto tell = [this](const olap::BuildStep& step) {
      const auto of_all = [](double share) { return kCopied + (1 - kCopied) * share; };
      line_.Show(step.what, of_all(step.begin), of_all(step.end), step.done);
    };
    olap::BuildRequest request{folder_ + "/schema.xml", folder_, cube};
    request.stop = &stop;
    return olap::BuildCubeFile(host_.files, host_.locale, request, tell);
  }
  std::string CubeFileName() const { return name_ + ".cub"; }
  const std::string& Column(Role role) const {
    return guess_.columns[static_cast<std::size_t>(role)];
  }

  /// What the settings and the connection could not name later.
  void CheckName() const {
    const std::string words = "The new folder, whose name the settings take, ";
    const std::string problem = SetNameProblem(name_);
    if (!problem.empty()) throw Failure(failure_number::kInvalidCall, words + problem);
    if (folder_.find(';') == std::string::npos) return;
    throw Failure(failure_number::kInvalidCall,
                  words + "is " + Quoted(folder_) +
                      "; the path of a cube file may not hold \";\"; choose another one");
  }

  void ReadJournal(const NewOptions& options) {
    const auto read = [&](double begin, double end) {
      return [this, begin, end, what = "reading " + options.journal](double done) {
        line_.Show(what, begin, end, done);
      };
    };
    const auto guessed = read(0, kGuessed);
    guessed(0);
    const std::shared_ptr<const FileReader> file = host_.files.Open(options.journal);
    olap::RowBlocks blocks(
        olap::Decoded(olap::BytesOfFile(file, options.journal), options.journal));
    const auto block = blocks.Next().value_or(olap::RowBlock());
    const char separator = GuessSeparator(block.text);
    olap::CsvScanner scanner(block, options.journal, separator);
    std::vector<olap::Field> row;
    if (!scanner.NextRow(row)) {
      throw Failure(failure_number::kNotFound,
                    options.journal + " is empty; it needs a header row");
    }
    std::vector<std::string> header;
    header.reserve(row.size());
    for (const olap::Field& field : row) header.emplace_back(field.text);
    olap::CsvOptions csv{{separator, '.', ""}, "journal", options.journal, file, {}};
    const auto source = olap::OpenCsvFolder(host_.files, folder_, csv);
    guess_ = GuessJournal(host_.locale, *source->OpenParts({"journal"}, header), header,
                          options.columns, options.form, guessed);
    guess_.form.separator = separator;
    csv.form = guess_.form;
    csv.date_columns = {{"journal", Column(Role::kDate)}};
    ReadContent(*olap::OpenCsvFolder(host_.files, folder_, csv), read(kGuessed, kListed));
  }

  void ReadContent(const olap::TableSource& source, const std::function<void(double)>& progress) {
    const auto given = [this](Role role) {
      return Column(role).empty() ? Column(Role::kDate) : Column(role);
    };
    const auto parts = source.OpenParts({"journal"}, {Column(Role::kDate), Column(Role::kAccount),
                                                      given(Role::kText), given(Role::kLedger)});
    while (const auto rows = parts->Next()) {
      while (rows->Next()) ReadEntry(*rows);
      progress(parts->Done());
    }
  }

  void ReadEntry(const olap::TableReader& row) {
    const auto fields = row.Fields();
    const auto date = ParseIsoDate(fields[0].text);
    if (!date || fields[1].text.empty()) {
      throw Failure(
          failure_number::kTypeMismatch,
          row.Place() + ": an entry needs a date and an account; add them, or delete the line");
    }
    content_.first_year = std::min(content_.first_year, date->Year());
    content_.last_year = std::max(content_.last_year, date->Year());
    const std::string text(Column(Role::kText).empty() ? "" : fields[2].text);
    const auto [account, is_new] = content_.accounts.emplace(fields[1].text, text);
    if (!is_new && account->second != text) account->second.clear();
    if (!Column(Role::kLedger).empty() && fields[3].text.empty()) {
      throw Failure(failure_number::kTypeMismatch,
                    row.Place() + ": the column " + Quoted(Column(Role::kLedger)) +
                        " names no ledger here; add it, delete the line, or name another column "
                        "with --ledger");
    }
    ++content_.ledgers[Column(Role::kLedger).empty() ? "Books" : std::string(fields[3].text)];
  }

  /// A data source for each ledger, as far as ten; a period set for each year, the last five.
  void NameSets() {
    constexpr std::size_t kMostLedgers = 10;
    constexpr int kMostYears = 5;
    for (const auto& [ledger, entries] : content_.ledgers) {
      if (document_.data_sources.size() == kMostLedgers) break;
      const std::string name =
          FreeName(content_.ledgers.size() == 1 ? name_ : name_ + " " + ledger);
      DataSourceSetting& source = document_.data_sources.emplace_back();
      source.SetName = name;
      source.CubeFile = folder_ + "/" + CubeFileName();
      source.CubeName = kJournalCube;
      source.OBS = ledger;
      for (MoneySetEntry& entry : source.MoneySets) {
        entry = {Null{}, "Amount", Column(Role::kQuantity).empty() ? "" : "Quantity", false};
      }
    }
    for (int year = std::max(content_.first_year, content_.last_year - kMostYears + 1);
         year <= content_.last_year; ++year) {
      PeriodSet& set = document_.periods.emplace_back();
      set.SetName = name_ + " " + std::to_string(year);
      for (int month = 1; month <= kPeriodCount; ++month) {
        const Date from = Date::FromCivil(year, month, 1);
        const Date next = Date::FromCivil(month == 12 ? year + 1 : year, month % 12 + 1, 1);
        set.Period(month) = {IsoDate(from).substr(0, 7), from, Date{next.serial - 1}, false};
      }
    }
  }

  /// `name`, or another one where a set cannot have it or one has it, in any case.
  std::string FreeName(std::string name) const {
    const auto& sets = document_.data_sources;
    const auto has_it = [&](const DataSourceSetting& set) {
      return EqualNoCase(host_.locale, set.SetName, name);
    };
    for (std::size_t number = sets.size() + 1;
         !SetNameProblem(name).empty() || std::ranges::any_of(sets, has_it); ++number) {
      name = name_ + " ledger " + std::to_string(number);
    }
    return name;
  }

  /// Nobody expects that a new cube changes settings that were there.
  void RefuseSavedSets() {
    PrepareDatabase(session_);
    const Environment& environment = session_.publics().environment;
    const auto refuse = [](const std::string& name) {
      throw Failure(failure_number::kFileExists,
                    "There is a saved set named " + Quoted(name) + " already; name another folder");
    };
    for (const auto& set : document_.data_sources) {
      if (ReadEditedDataSource(host_, environment, set.SetName)) refuse(set.SetName);
    }
    for (const auto& set : document_.periods) {
      if (ReadEditedPeriods(host_, environment, set.SetName)) refuse(set.SetName);
    }
  }

  std::string Field(const std::string& text) const {
    if (text.find_first_of("\"\r\n") == std::string::npos &&
        text.find(guess_.form.separator) == std::string::npos) {
      return text;
    }
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + '"';
  }

  void WriteTables(NewFolder& folder) const {
    const char separator = guess_.form.separator;
    std::ostringstream dates;
    for (const char* name : {"date", "year", "quarter", "month", "day"}) dates << name << separator;
    dates << "ledger\n";
    const Date last = Date::FromCivil(content_.last_year, 12, 31);
    for (Date day = Date::FromCivil(content_.first_year, 1, 1); day <= last; ++day.serial) {
      dates << IsoDate(day) << separator << day.Year() << separator << (day.Month() + 2) / 3
            << separator << day.Month() << separator << day.Day() << separator << "Books\n";
    }
    folder.Write("dates.csv", dates.str());
    std::ostringstream accounts;
    accounts << "account" << separator << "caption\n";
    for (const auto& [account, text] : content_.accounts) {
      accounts << Field(account) << separator
               << Field(text.empty() ? account : account + '\t' + text) << '\n';
    }
    folder.Write("accounts.csv", accounts.str());
  }

  void Tell(uint64_t facts) const {
    const char separator = guess_.form.separator;
    std::cout << "Guessed of " << facts << " entries: fields parted by "
              << (separator == '\t' ? "tab" : std::string(1, separator)) << ", a decimal "
              << (guess_.form.decimal == ',' ? "comma" : "point") << ", dates as "
              << (guess_.form.dates.empty() ? "yyyy-mm-dd" : guess_.form.dates) << '\n';
    for (std::size_t i = 0; i < kRoleNames.size(); ++i) {
      const std::string& column = guess_.columns[i];
      std::cout << "  " << kRoleNames[i] << ": "
                << (column.empty() ? "none" : "column " + OneLine(Quoted(column))) << '\n';
    }
    if (!guess_.other_amounts.empty()) {
      std::cout << "  no part of the cube, though they hold amounts: "
                << OneLine(olap::Listed(guess_.other_amounts)) << "; see --amount\n";
    }
    std::cout << "Wrote journal, dates, accounts, schema, settings and the cube into "
              << OneLine(folder_) << "\nSaved the data source "
              << OneLine(Quoted(document_.data_sources.at(0).SetName)) << " and the period set "
              << OneLine(Quoted(document_.periods.back().SetName)) << "\nNext:\n"
              << "  vokcube run --data-source "
              << OneLine(Quoted(document_.data_sources.at(0).SetName)) << " --periods "
              << OneLine(Quoted(document_.periods.back().SetName)) << " --output report\n";
  }

  Session& session_;
  const Host& host_;
  std::string folder_;
  std::string name_;
  ProgressLine line_{false};
  JournalGuess guess_;
  JournalContent content_;
  SettingsDocument document_;
};

}  // namespace

void AddCubeNew(CLI::App& cube, const CommonOptions& common) {
  const auto options = std::make_shared<NewOptions>();
  auto* command = cube.add_subcommand("new", "Make a cube and settings of a journal (CSV)");
  command->add_option("DIR", options->folder, "The new folder, whose name the settings take")
      ->required();
  command->add_option("JOURNAL", options->journal, "The CSV file, with a header row")->required();
  for (std::size_t i = 0; i < kRoleNames.size(); ++i) {
    command->add_option(std::string("--") + kRoleNames[i], options->columns[i],
                        "Its column, instead of the one that is guessed");
  }
  command
      ->add_option("--decimal", options->form.decimal, "The decimal mark, where two are possible")
      ->check(CLI::IsMember({".", ","}));
  command->add_option("--dates", options->form.dates,
                      "The form of dates, such as d/m/yyyy, where two are possible");
  command->callback([&common, options] {
    const auto session = common.NewSession();
    NewCube(*session, *options).Make(*options);
  });
}

}  // namespace vok::cli
