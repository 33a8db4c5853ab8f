#include "providers/cube/xmla/server.h"

#include "platform/failure.h"
#include "providers/cube/xmla/answer.h"
#include "providers/cube/xmla/cellset_reader.h"

namespace vok::xmla {
namespace {

constexpr const char* kActions = "urn:schemas-microsoft-com:xml-analysis:";

}  // namespace

void Server::Discover(const DiscoverRequest& request, std::vector<std::string> columns,
                      RowTaker take) {
  RowsetReader reader(std::move(columns), request.most_rows, std::move(take));
  Ask("Discover", DiscoverEnvelope(request), failure_number::kUnspecified, reader);
}

void Server::Execute(const std::string& catalog, const std::string& statement, CellsetData& data) {
  CellsetReader reader(data);
  Ask("Execute", ExecuteEnvelope(catalog, statement), failure_number::kSyntax, reader);
}

void Server::Ask(const std::string& action, const std::string& envelope, int32_t number,
                 ResultReader& result) {
  Answer answer(http_.shown_address(), number, result);
  answer.Finish(http_.Post(kActions + action, envelope, answer));
}

}  // namespace vok::xmla
