#include "cli/jobs_document.h"

#include <map>

#include "cli/json_entries.h"
#include "cli/output_file.h"
#include "platform/failure.h"

namespace vok::cli {
namespace {

std::string NeededText(const Node& node, std::string_view name) {
  const auto entry = Entry(node, name);
  if (!entry) node.Fail(failure_number::kTypeMismatch, "needs the entry " + Quoted(name));
  return Text(*entry);
}

RunRequest ReadJob(const Node& node) {
  ExpectObject(node, {"dataSource", "periods", "output"});
  RunRequest request{NeededText(node, "dataSource"), NeededText(node, "periods"),
                     NeededText(node, "output")};
  const std::string problem = NamesFile(request.output);
  if (!problem.empty()) node.Fail(failure_number::kTypeMismatch, "has an output that " + problem);
  return request;
}

}  // namespace

std::vector<RunRequest> ParseJobs(const Host& host, std::string_view json,
                                  const std::string& origin) {
  const Json parsed = ParseJson(json, origin, "a list of runs");
  std::vector<RunRequest> jobs;
  std::map<std::string, std::string> workbooks;
  Elements(Node{parsed, origin, ""}, [&](const Node& node, std::size_t) {
    jobs.push_back(ReadJob(node));
    const std::string workbook = FileIdentity(host, WorkbookOf(host.files, jobs.back()));
    const auto [other, is_new] = workbooks.emplace(workbook, node.path);
    if (!is_new) {
      node.Fail(failure_number::kTypeMismatch,
                "has the workbook of " + other->second + "; give each run its own");
    }
  });
  return jobs;
}

}  // namespace vok::cli
