#include "tests/interop/case_file.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>

namespace vok::interop {
namespace {

/// Takes the word off the beginning of the line.
bool Follows(std::string& line, const std::string& word) {
  if (!line.starts_with(word)) return false;
  line.erase(0, word.size());
  return true;
}

/// The names of the cases begin with `prefix`.
std::vector<Case> ReadFile(const std::string& path, const std::string& prefix) {
  std::ifstream in(path);
  std::string catalog;
  std::vector<Case> cases;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with('#')) continue;
    if (Follows(line, "catalog ")) {
      catalog = line;
    } else if (Follows(line, "case ")) {
      cases.push_back({prefix + line, catalog, "", "", ""});
    } else if (cases.empty()) {
      throw std::runtime_error(path + " does not begin with a case");
    } else if (Follows(line, "differs: ")) {
      cases.back().reason = line;
    } else {
      cases.back().query += line + '\n';
    }
  }
  return cases;
}

}  // namespace

std::vector<Case> ReadCases(const std::string& folder) {
  std::map<std::string, std::string> answers;
  for (const Case& each : ReadFile(folder + "/cases.answers", "")) answers[each.name] = each.query;
  std::set<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".mdx") paths.insert(entry.path());
  }
  std::vector<Case> cases;
  for (const auto& path : paths) {
    for (Case& each : ReadFile(path.string(), path.stem().string() + '/')) {
      if (each.query.empty()) throw std::runtime_error(each.name + " has no query");
      each.answer = answers[each.name];
      cases.push_back(std::move(each));
    }
  }
  return cases;
}

}  // namespace vok::interop
