#include "cube/connection.h"

#include "platform/failure.h"
#include "reports/error_report.h"

namespace vok {
namespace {

constexpr const char* kCacheProperties = ";Client Cache Size=25;Auto Synch Period=10000";

}  // namespace

std::string RunConnectionText(const std::string& cube_file, const std::string& cube_name) {
  return "DATA SOURCE=" + cube_file + ";PROVIDER=MSOLAP;Initial Catalog=[" + cube_name + "];";
}

std::string CatalogsConnectionText(const std::string& cube_file) {
  return "Provider=MSOLAP;Data Source=" + cube_file + kCacheProperties;
}

std::string CatalogConnectionText(const std::string& cube_file, const std::string& catalog) {
  return "Provider=MSOLAP;Data Source=" + cube_file + ";Initial Catalog=" + catalog +
         kCacheProperties;
}

int32_t OpenConnection(const Host& host, std::unique_ptr<CubeConnection>& slot,
                       const std::string& text, const QueryStop* stop) {
  try {
    slot.reset();
    slot = host.cube.Connect(text, stop);
    return 0;
  } catch (...) {
    const Failure failure = CurrentFailure();
    ShowErrorReport(host, failure,
                    {.FunctionName = "OpenConnection", .ModuleName = "ModeConnectFunctions"});
    return failure.number();
  }
}

}  // namespace vok
