#include "hosts/windows/cube/chosen_cube.h"

#include <optional>
#include <utility>

#include "hosts/windows/cube/adomd_cellset.h"
#include "hosts/windows/cube/adomd_connection.h"
#include "hosts/windows/cube/adomd_structure.h"
#include "platform/failure.h"
#include "platform/published.h"

namespace vok::windows {
namespace {

Failure NotOpen() {
  return {failure_number::kObjectClosed, "The connection to the cube is not open."};
}

template <typename Port>
Port& Made(const std::unique_ptr<Port>& object) {
  if (!object) throw NotOpen();
  return *object;
}

/// Keeps what it is told until it is opened, and then tells it in the platform's order.
class ChosenConnection : public CubeConnection {
 public:
  explicit ChosenConnection(const CubeChoice& choice) : choice_(choice) {}

  std::string ConnectionString() const override {
    return services_ != nullptr ? inner_->ConnectionString() : text_;
  }
  void SetConnectionString(const std::string& text) override { text_ = text; }
  void SetCursorLocation(CursorLocation location) override { location_ = location; }
  void Open(const std::string& connection_string, const std::string& user,
            const std::string& password, int32_t options) override {
    const bool given = !connection_string.empty();
    CubeServices& services = choice_.For(given ? connection_string : text_);
    reached_.Withdraw();
    services_ = nullptr;
    inner_ = services.NewConnection();
    if (!given) inner_->SetConnectionString(text_);
    if (location_) inner_->SetCursorLocation(*location_);
    reached_.Publish(*inner_);
    inner_->Open(connection_string, user, password, options);
    services_ = &services;
  }
  void Close() override { Inner().Close(); }
  void Cancel() override {
    reached_.Use([](CubeConnection& inner) { inner.Cancel(); });
  }
  std::string DefaultDatabase() const override { return Inner().DefaultDatabase(); }
  std::vector<std::string> CatalogNames() const override { return Inner().CatalogNames(); }

  CubeConnection& Inner() const {
    services();
    return *inner_;
  }
  CubeServices& services() const {
    if (services_ != nullptr) return *services_;
    throw NotOpen();
  }
  static const ChosenConnection& Of(const CubeConnection& connection) {
    return dynamic_cast<const ChosenConnection&>(connection);
  }

 private:
  const CubeChoice& choice_;
  std::string text_;
  std::optional<CursorLocation> location_;
  std::unique_ptr<CubeConnection> inner_;  ///< also while it is being opened
  CubeServices* services_ = nullptr;       ///< those of an open connection
  Published<CubeConnection> reached_;      ///< the inner one
};

class ChosenCatalog : public CubeCatalog {
 public:
  void SetActiveConnection(CubeConnection& connection) override {
    const auto& chosen = ChosenConnection::Of(connection);
    inner_ = chosen.services().NewCatalog();
    inner_->SetActiveConnection(chosen.Inner());
  }
  std::size_t CubeCount() const override { return Made(inner_).CubeCount(); }
  std::unique_ptr<CubeDef> CubeAt(std::size_t index) const override {
    return Made(inner_).CubeAt(index);
  }

 private:
  std::unique_ptr<CubeCatalog> inner_;
};

class ChosenCellset : public Cellset {
 public:
  void SetActiveConnection(CubeConnection& connection) override {
    const auto& chosen = ChosenConnection::Of(connection);
    inner_ = chosen.services().NewCellset();
    inner_->SetActiveConnection(chosen.Inner());
  }
  void SetSource(const std::string& mdx) override { Made(inner_).SetSource(mdx); }
  void Open() override { Made(inner_).Open(); }
  void Close() override { Made(inner_).Close(); }
  std::size_t AxisCount() const override { return Made(inner_).AxisCount(); }
  const CellsetAxis& AxisAt(std::size_t index) const override { return Made(inner_).AxisAt(index); }
  Value Cell(std::size_t ordinal) const override { return Made(inner_).Cell(ordinal); }
  std::string FormattedCell(std::size_t ordinal) const override {
    return Made(inner_).FormattedCell(ordinal);
  }

 private:
  std::unique_ptr<Cellset> inner_;
};

}  // namespace

std::unique_ptr<CubeConnection> AdomdCubeServices::NewConnection() {
  return std::make_unique<AdomdConnection>();
}

std::unique_ptr<CubeCatalog> AdomdCubeServices::NewCatalog() {
  return std::make_unique<AdomdCatalog>(locale_);
}

std::unique_ptr<Cellset> AdomdCubeServices::NewCellset() {
  return std::make_unique<AdomdCellset>();
}

std::unique_ptr<CubeConnection> ChosenCubeServices::NewConnection() {
  return std::make_unique<ChosenConnection>(choice_);
}

std::unique_ptr<CubeCatalog> ChosenCubeServices::NewCatalog() {
  return std::make_unique<ChosenCatalog>();
}

std::unique_ptr<Cellset> ChosenCubeServices::NewCellset() {
  return std::make_unique<ChosenCellset>();
}

}  // namespace vok::windows
