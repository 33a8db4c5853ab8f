#include "settings/settings_database.h"

#include "platform/failure.h"
#include "platform/text.h"

namespace vok {
namespace {

constexpr char kPeriods[] = "Periods";

}  // namespace

std::unique_ptr<Connection> OpenSettings(const Host& host, const Environment& environment) {
  return OpenDatabase(host, SettingsDatabase(environment.SettingsFolder));
}

std::unique_ptr<Connection> OpenDatabase(const Host& host, const std::string& path) {
  constexpr int32_t kTimeoutSeconds = 20;
  return host.database.Open(path, kTimeoutSeconds);
}

std::string NamedSetStatement(const std::string& statement, const std::string& name) {
  return statement + "'" + std::string(TrimBlanks(name)) + "'";
}

std::string ExactSetStatement(const std::string& statement, const std::string& name) {
  std::string quoted = "'";
  for (const char c : name) quoted += c == '\'' ? "''" : std::string(1, c);
  return statement + quoted + "'";
}

const char* WordsForKind(const Locale& locale, const std::string& kind) {
  return EqualNoCase(locale, kind, kPeriods) ? kPeriodSetWords : kDataSourceWords;
}

std::vector<const char*> TablesOfKind(const Locale& locale, const std::string& kind) {
  if (EqualNoCase(locale, kind, kPeriods)) return {kPeriods};
  return {"Main", "MoneySetsMeasures", "DataSourceInfo"};
}

Failure WhileSaving(const Failure& failure, const std::string& words, const std::string& name) {
  return Failure(failure.number(),
                 failure.description() + " (while saving the " + words + " \"" + name + "\")",
                 failure.source(), failure.section());
}

std::string SetNameProblem(const std::string& name) {
  const auto named = [&] { return "is named \"" + name + "\""; };
  if (TrimBlanks(name).empty()) return "needs a name that is not empty";
  if (TrimBlanks(name) != name) return named() + "; remove the blanks around the name";
  if (const auto at = name.find_first_of("*?#['"); at != std::string::npos) {
    return named() + "; a name may not contain " + name[at] +
           " because saved names are found by pattern; choose another name";
  }
  return {};
}

void CheckSetName(const std::string& words, const std::string& name) {
  const std::string problem = SetNameProblem(name);
  if (problem.empty()) return;
  throw Failure(failure_number::kInvalidCall,
                "The " + words + " " + problem +
                    ". A set that is saved under such a name is renamed or deleted with vokcube "
                    "settings rename or vokcube settings delete.");
}

}  // namespace vok
