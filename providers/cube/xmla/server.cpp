#include "providers/cube/xmla/server.h"

#include <string_view>

#include "platform/failure.h"
#include "providers/cube/xmla/answer.h"
#include "providers/cube/xmla/cellset_reader.h"

namespace vok::xmla {
namespace {

constexpr const char* kHead =
    R"(<?xml version="1.0" encoding="UTF-8"?>)"
    R"(<SOAP-ENV:Envelope xmlns:SOAP-ENV="http://schemas.xmlsoap.org/soap/envelope/">)"
    "<SOAP-ENV:Body>";
constexpr const char* kTail = "</SOAP-ENV:Body></SOAP-ENV:Envelope>";
constexpr const char* kNamespace = R"( xmlns="urn:schemas-microsoft-com:xml-analysis">)";
constexpr const char* kRows = "<Format>Tabular</Format>";
constexpr const char* kTuples =
    "<Format>Multidimensional</Format><AxisFormat>TupleFormat</AxisFormat>";

std::string Escaped(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size());
  for (const char letter : text) {
    switch (letter) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '\r':  // as it is, a reader of XML would make it a line feed
        escaped += "&#13;";
        break;
      default:
        escaped += letter;
    }
  }
  return escaped;
}

std::string Element(const std::string& name, std::string_view text) {
  return "<" + name + ">" + Escaped(text) + "</" + name + ">";
}

std::string Properties(const std::string& catalog, const std::string& format) {
  return "<Properties><PropertyList>" + (catalog.empty() ? "" : Element("Catalog", catalog)) +
         format + Element("Content", "Data") + "</PropertyList></Properties>";
}

constexpr const char* kActions = "urn:schemas-microsoft-com:xml-analysis:";

}  // namespace

std::string DiscoverEnvelope(const DiscoverRequest& request) {
  std::string restrictions;
  for (const auto& [name, value] : request.restrictions) restrictions += Element(name, value);
  return std::string(kHead) + "<Discover" + kNamespace + Element("RequestType", request.kind) +
         "<Restrictions><RestrictionList>" + restrictions + "</RestrictionList></Restrictions>" +
         Properties(request.catalog, kRows) + "</Discover>" + kTail;
}

std::string ExecuteEnvelope(const std::string& catalog, const std::string& statement) {
  return std::string(kHead) + "<Execute" + kNamespace + "<Command>" +
         Element("Statement", statement) + "</Command>" + Properties(catalog, kTuples) +
         "</Execute>" + kTail;
}

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
  const std::vector<std::string> headers = {
      "Content-Type: text/xml; charset=utf-8",
      std::string("SOAPAction: \"") + kActions + action + "\"",
      "Accept: text/xml, application/xml, application/soap+xml"};
  answer.Finish(http_.Post(headers, envelope, answer));
}

}  // namespace vok::xmla
