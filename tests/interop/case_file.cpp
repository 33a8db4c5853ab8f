#include "tests/interop/case_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string_view>

namespace vok::interop {
namespace {

/// What follows `word` and a blank at the beginning of a line.
bool Follows(const std::string& line, std::string_view word, std::string& rest) {
  if (!line.starts_with(word) || line.size() <= word.size() || line[word.size()] != ' ') {
    return false;
  }
  rest = line.substr(word.size() + 1);
  return true;
}

void ReadFile(const std::filesystem::path& path, std::vector<Case>& cases) {
  std::ifstream in(path);
  std::string catalog;
  std::string rest;
  const std::size_t first = cases.size();
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with('#')) continue;
    if (Follows(line, "catalog", rest)) {
      catalog = rest;
    } else if (Follows(line, "case", rest)) {
      cases.push_back({path.stem().string() + '/' + rest, catalog, "", "", ""});
    } else if (cases.size() == first) {
      throw std::runtime_error(path.string() + " does not begin with a case");
    } else if (Follows(line, "differs:", rest)) {
      cases.back().reason = rest;
    } else {
      Case& last = cases.back();
      (last.reason.empty() ? last.query : last.expected) += line + '\n';
    }
  }
  if (in.bad() || cases.size() == first) throw std::runtime_error("No cases in " + path.string());
}

}  // namespace

std::vector<Case> ReadCases(const std::string& folder) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".mdx") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<Case> cases;
  for (const auto& path : paths) ReadFile(path, cases);
  std::set<std::string> names;
  for (const Case& each : cases) {
    if (each.query.empty()) throw std::runtime_error(each.name + " has no query");
    if (!names.insert(each.name).second) throw std::runtime_error(each.name + " is there twice");
  }
  return cases;
}

}  // namespace vok::interop
