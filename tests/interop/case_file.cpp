#include "tests/interop/case_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>

namespace vok::interop {
namespace {

/// Takes the word off the beginning of the line.
bool Follows(std::string& line, const std::string& word) {
  if (!line.starts_with(word)) return false;
  line.erase(0, word.size());
  return true;
}

void ReadFile(const std::filesystem::path& path, std::vector<Case>& cases) {
  std::ifstream in(path);
  std::string catalog;
  const std::size_t first = cases.size();
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with('#')) continue;
    if (Follows(line, "catalog ")) {
      catalog = line;
    } else if (Follows(line, "case ")) {
      cases.push_back({path.stem().string() + '/' + line, catalog, "", "", ""});
    } else if (cases.size() == first) {
      throw std::runtime_error(path.string() + " does not begin with a case");
    } else if (Follows(line, "differs: ")) {
      cases.back().reason = line;
    } else {
      cases.back().query += line + '\n';
    }
  }
}

}  // namespace

std::vector<Case> ReadCases(const std::string& folder) {
  std::map<std::string, std::string> answers;
  std::ifstream in(folder + "/cases.answers");
  std::string* answer = nullptr;
  for (std::string line; std::getline(in, line);) {
    if (Follows(line, "case ")) {
      answer = &answers[line];
    } else {
      *answer += line + '\n';
    }
  }
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".mdx") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<Case> cases;
  for (const auto& path : paths) ReadFile(path, cases);
  for (Case& each : cases) {
    if (each.query.empty()) throw std::runtime_error(each.name + " has no query");
    each.answer = std::move(answers[each.name]);
  }
  return cases;
}

}  // namespace vok::interop
