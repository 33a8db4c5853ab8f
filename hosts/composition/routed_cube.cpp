#include "hosts/composition/routed_cube.h"

#include <optional>
#include <utility>

#include "platform/failure.h"
#include "platform/published.h"

namespace vok {
namespace {

Failure NotOpen() {
  return {failure_number::kObjectClosed, "The connection to the cube is not open."};
}

template <typename Port>
Port& Made(const std::unique_ptr<Port>& object) {
  if (object == nullptr) throw NotOpen();
  return *object;
}

/// Keeps what it is told until it is opened, and then tells it in the platform's order.
class RoutedConnection : public CubeConnection {
 public:
  explicit RoutedConnection(const ChooseCubeServices& choose) : choose_(choose) {}

  std::string ConnectionString() const override {
    return services_ != nullptr ? inner_->ConnectionString() : text_;
  }
  void SetConnectionString(const std::string& text) override { text_ = text; }
  void SetCursorLocation(CursorLocation location) override { location_ = location; }
  void Open(const std::string& connection_string, const std::string& user,
            const std::string& password, int32_t options) override {
    const bool given = !connection_string.empty();
    CubeServices& services = choose_(given ? connection_string : text_);
    reached_.Withdraw();
    services_ = nullptr;
    inner_ = services.NewConnection();
    if (!given) inner_->SetConnectionString(text_);
    if (location_) inner_->SetCursorLocation(*location_);
    reached_.Publish(*inner_);
    inner_->Open(connection_string, user, password, options);
    services_ = &services;
  }
  void Close() override {
    if (services_ != nullptr) inner_->Close();
  }
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
  static const RoutedConnection& From(const CubeConnection& connection) {
    const auto* own = dynamic_cast<const RoutedConnection*>(&connection);
    if (own != nullptr) return *own;
    throw Failure(failure_number::kObjectClosed, "The connection to the cube is another host's.");
  }

 private:
  const ChooseCubeServices& choose_;
  std::string text_;
  std::optional<CursorLocation> location_;
  std::unique_ptr<CubeConnection> inner_;  ///< also while it is being opened
  CubeServices* services_ = nullptr;       ///< those of an open connection
  Published<CubeConnection> reached_;      ///< the inner one
};

class RoutedCatalog : public CubeCatalog {
 public:
  void SetActiveConnection(CubeConnection& connection) override {
    const auto& routed = RoutedConnection::From(connection);
    inner_ = routed.services().NewCatalog();
    inner_->SetActiveConnection(routed.Inner());
  }
  std::size_t CubeCount() const override { return Made(inner_).CubeCount(); }
  std::unique_ptr<CubeDef> CubeAt(std::size_t index) const override {
    return Made(inner_).CubeAt(index);
  }

 private:
  std::unique_ptr<CubeCatalog> inner_;
};

class RoutedCellset : public Cellset {
 public:
  void SetActiveConnection(CubeConnection& connection) override {
    const auto& routed = RoutedConnection::From(connection);
    inner_ = routed.services().NewCellset();
    inner_->SetActiveConnection(routed.Inner());
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

std::unique_ptr<CubeConnection> RoutedCubeServices::NewConnection() {
  return std::make_unique<RoutedConnection>(choose_);
}

std::unique_ptr<CubeCatalog> RoutedCubeServices::NewCatalog() {
  return std::make_unique<RoutedCatalog>();
}

std::unique_ptr<Cellset> RoutedCubeServices::NewCellset() {
  return std::make_unique<RoutedCellset>();
}

}  // namespace vok
