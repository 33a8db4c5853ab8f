// vokcube info: everything that is saved, as a host program sees it.
#include <algorithm>
#include <iostream>
#include <memory>
#include <string>

#include "cli/command.h"
#include "cli/print.h"
#include "cube/discovery.h"
#include "platform/failure.h"
#include "platform/shown_text.h"
#include "platform/text.h"
#include "settings/set_lists.h"

namespace vok::cli {
namespace {

Json InfoDocument(const Value::Array& lists) {
  const auto& periods = *lists.at(0).As<Value::Array>();
  const auto& names = *lists.at(1).As<Value::Array>();
  const auto& files = *lists.at(2).As<Value::Array>();
  const auto& dates = *lists.at(3).As<Value::Array>();
  Json document{{"periods", Json::array()}, {"dataSources", Json::array()}};
  for (const auto& name : periods) {
    if (!name.IsEmpty()) document["periods"].push_back(name.ToText());
  }
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i].IsEmpty()) continue;
    document["dataSources"].push_back(
        {{"SetName", names[i].ToText()},
         {"CubeFile", files[i].ToText()},
         {"CubeFileDate", dates[i].IsEmpty() ? "" : IsoDateTime(dates[i].ToDate())}});
  }
  return document;
}

/// Why a saved setting shows no file.
std::string Problem(const Files& files, const std::string& cube_file) {
  if (cube_file.empty()) return "it names no cube file";
  try {
    files.LastModified(cube_file);
    files.Open(cube_file);
    return "its cube file could not be looked at; try again";
  } catch (const Failure& failure) {
    return failure.description();
  }
}

/// Adds what a host program is not told: addresses of servers, and what is wrong with a file.
void AddSources(const Host& host, const Environment& environment, Json& document) {
  std::vector<DataSourceSetting> settings;
  try {
    settings = ReadAllDataSources(host, environment);
  } catch (const Failure&) {  // the list reads less of the database, and stands
    return;
  }
  for (Json& source : document["dataSources"]) {
    if (!source["CubeFile"].get<std::string>().empty()) continue;
    const auto setting = std::ranges::find(settings, source["SetName"].get<std::string>(),
                                           &DataSourceSetting::SetName);
    if (setting == settings.end()) continue;
    const std::string file(TrimBlanks(setting->CubeFile));
    if (IsServerAddress(host.locale, file)) {
      source["CubeFile"] = WithoutUsers(file);
    } else {
      source["problem"] = Problem(host.files, file);
    }
  }
}

void PrintInfo(const Json& document) {
  std::cout << "Period sets\n";
  for (const auto& name : document["periods"]) std::cout << "  " << ShownText(name) << '\n';
  std::cout << "Data sources\n";
  for (const auto& source : document["dataSources"]) {
    const std::string file = ShownText(source["CubeFile"]);
    std::cout << "  " << ShownText(source["SetName"]) << ": "
              << (file.empty() ? OneLine(source.value("problem", "its cube file is not there"))
                               : file + "  " + ShownText(source["CubeFileDate"]))
              << '\n';
  }
}

/// `Qinfo` keeps its failure to itself; reading again tells it.
[[noreturn]] void ThrowReason(Session& session) {
  FindDatabase(session);
  ListPeriodSets(session.host(), session.publics().environment);
  ListDataSources(session.host(), session.publics().environment);
  throw Failure(failure_number::kNotFound, "The settings could not be read at first; try again");
}

void Info(const CommonOptions& common, bool as_json) {
  const auto session = common.NewSession();
  FindFolder(*session);
  const Value info = session->me().Qinfo();
  if (info.IsEmpty()) ThrowReason(*session);
  auto document = InfoDocument(*info.As<Value::Array>());
  AddSources(session->host(), session->publics().environment, document);
  if (as_json) {
    std::cout << JsonText(document);
  } else {
    PrintInfo(document);
  }
}

}  // namespace

void AddInfoCommand(CLI::App& app, const CommonOptions& common) {
  const auto json = std::make_shared<bool>(false);
  auto* command = app.add_subcommand("info", "List the saved settings and their cube files");
  command->add_flag("--json", *json, "Print one JSON document");
  command->callback([&common, json] { Info(common, *json); });
}

}  // namespace vok::cli
