#include "providers/cube/adomd/adomd_provider.h"

#include <utility>

#include "providers/cube/adomd/adomd_cellset.h"
#include "providers/cube/adomd/adomd_structure.h"

namespace vok::windows {
namespace {

constexpr int32_t kClientCursor = 3;         // adUseClient
constexpr int32_t kUnspecifiedOptions = -1;  // adOptionUnspecified

class AdomdConnection : public CubeConnection {
 public:
  AdomdConnection(const Locale& locale, const std::string& text) : locale_(locale) {
    connection_.Put(L"ConnectionString", text);
    connection_.Put(L"CursorLocation", kClientCursor);
    // "" is the argument's own default: what was set above holds.
    connection_.Call(L"Open", "", "", "", kUnspecifiedOptions);
  }

  std::string DefaultDatabase() const override {
    return connection_.Read(L"DefaultDatabase").ToText();
  }
  std::vector<std::string> CatalogNames() const override {
    std::vector<std::string> names;
    for (auto& row : SchemaRows(connection_, kCatalogsSchema, {}, {"CATALOG_NAME"})) {
      names.push_back(std::move(row[0]));
    }
    return names;
  }
  std::unique_ptr<CubeCatalog> Structure() override {
    return std::make_unique<AdomdCatalog>(locale_, connection_);
  }
  std::unique_ptr<Cellset> Execute(const std::string& mdx) override {
    auto answer = std::make_shared<OpenCellset>(connection_, mdx);
    last_answer_ = answer;
    return std::make_unique<AdomdCellset>(std::move(answer));
  }
  /// The objects want their cellset closed before its connection.
  void Close() override {
    if (const auto answer = last_answer_.lock()) answer->Close();
    connection_.Call(L"Close");
  }

 private:
  const Locale& locale_;
  Object connection_ = Object::Create("ADODB.Connection");
  std::weak_ptr<OpenCellset> last_answer_;
};

}  // namespace

std::unique_ptr<CubeConnection> AdomdCubeProvider::Connect(const std::string& text,
                                                           const QueryStop*) {
  return std::make_unique<AdomdConnection>(locale_, text);
}

}  // namespace vok::windows
