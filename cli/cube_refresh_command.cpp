// vokcube cube refresh: reading the facts of some months of a cube file anew.
#include <memory>
#include <string_view>

#include "cli/cube_making.h"
#include "cli/print.h"
#include "cube/date_list.h"
#include "platform/failure.h"
#include "providers/cube/olap/build/refresh_cube.h"

namespace vok::cli {
namespace {

struct RefreshOptions {
  MakingOptions making;
  std::string since;
  std::vector<std::string> months;
};

int MonthOf(Date date) { return date.Year() * 12 + date.Month() - 1; }

/// Of "2024-11" or "2024-11-30".
int MonthNamed(const std::string& option, const std::string& text) {
  const bool has_day = text.size() == std::string_view("2024-11-30").size();
  if (const auto date = ParseIsoDate(has_day ? text : text + "-01")) return MonthOf(*date);
  throw Failure(failure_number::kInvalidCall,
                option + ": \"" + text + "\" is neither a month such as 2024-11 nor a date");
}

olap::MonthChoice Choice(const RefreshOptions& options) {
  olap::MonthChoice choice;
  if (!options.since.empty() && options.since != "auto") {
    choice.since = MonthNamed("--since", options.since);
  }
  for (const std::string& month : options.months) {
    choice.months.push_back(MonthNamed("--months", month));
  }
  return choice;
}

void Refresh(const CommonOptions& common, const RefreshOptions& options) {
  const olap::MonthChoice choice = Choice(options);
  const auto session = common.NewSession();
  const Host& host = session->host();
  const auto month_of = [&host](const std::string& year, const std::string& month,
                                const std::string& member) {
    return MonthOf(DateFromNames(host.locale, {"", month, year}, true, member, "months"));
  };
  const bool is_chosen = !options.since.empty() || !options.months.empty();
  MakeCubeFile(*session, options.making, [&](const auto& request, const auto& tell) {
    return olap::RefreshCubeFile(host.files, host.locale,
                                 {request, choice, is_chosen, month_of, MakingTime()}, tell);
  });
}

}  // namespace

void AddCubeRefresh(CLI::App& cube, const CommonOptions& common) {
  const auto options = std::make_shared<RefreshOptions>();
  olap::BuildRequest& request = options->making.request;
  auto* refresh = cube.add_subcommand(
      "refresh",
      "Read some months of a cube file, or the members of a live cube, anew from their server");
  refresh->add_option("FILE", request.output_path, "The cube file")->required();
  auto* since = refresh->add_option(
      "--since", options->since,
      "Read from this month on, such as 2024-11; auto reads the months whose number of facts or "
      "sums have changed. Edits that offset each other within a month are missed by that");
  auto* months = refresh->add_option("--months", options->months,
                                     "Read these months, such as 2024-03,2024-11");
  months->delimiter(',')->excludes(since);
  refresh->add_option("--data", request.data_path,
                      "Address of the database server (otherwise the one that the file names)");
  refresh->add_flag("--group", request.gathered,
                    "Let the database server put facts with equal keys together");
  AddMakingOptions(*refresh, options->making);
  refresh->callback([&common, options] { Refresh(common, *options); });
}

}  // namespace vok::cli
