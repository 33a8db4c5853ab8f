#include "hosts/portable/portable_cube.h"

#include <utility>

#include "platform/failure.h"
#include "platform/published.h"
#include "providers/common/connection_text.h"

namespace vok::portable {
namespace {

/// Which kind it is shows when it is opened.
class Connection : public CubeConnection {
 public:
  Connection(CubeServices& files, CubeServices& servers) : files_(files), servers_(servers) {}

  std::string ConnectionString() const override { return text_; }
  void SetConnectionString(const std::string& text) override { text_ = text; }
  void SetCursorLocation(CursorLocation location) override { cursor_ = location; }
  void Open(const std::string& connection_string, const std::string& user,
            const std::string& password, int32_t options) override {
    Close();
    if (!connection_string.empty()) text_ = connection_string;
    CubeServices& services =
        cube_text::NamesServer(cube_text::ParseConnectionText(text_)) ? servers_ : files_;
    inner_ = services.NewConnection();
    inner_->SetCursorLocation(cursor_);
    reached_.Publish(*inner_);
    inner_->Open(text_, user, password, options);
    services_ = &services;
  }
  void Close() override {
    reached_.Withdraw();
    services_ = nullptr;
    inner_.reset();
  }
  void Cancel() override {
    reached_.Use([](CubeConnection& inner) { inner.Cancel(); });
  }
  std::string DefaultDatabase() const override { return Inner().DefaultDatabase(); }
  std::vector<std::string> CatalogNames() const override { return Inner().CatalogNames(); }

  /// Failure 3704 when it is not open.
  CubeConnection& Inner() const {
    if (services_ != nullptr) return *inner_;
    throw Failure(failure_number::kObjectClosed, "The connection to the cube is not open.");
  }
  CubeServices& services() const { return *services_; }

 private:
  CubeServices& files_;
  CubeServices& servers_;
  std::string text_;
  CursorLocation cursor_ = CursorLocation::kClient;
  CubeServices* services_ = nullptr;       ///< those of an open connection
  std::unique_ptr<CubeConnection> inner_;  ///< also while it is being opened
  Published<CubeConnection> reached_;      ///< the same
};

const Connection& Own(const CubeConnection& connection) {
  const auto* own = dynamic_cast<const Connection*>(&connection);
  if (own == nullptr) {
    throw Failure(failure_number::kObjectClosed, "The connection to the cube is another host's.");
  }
  return *own;
}

class Catalog : public CubeCatalog {
 public:
  void SetActiveConnection(CubeConnection& connection) override {
    const Connection& own = Own(connection);
    CubeConnection& inner = own.Inner();
    inner_ = own.services().NewCatalog();
    inner_->SetActiveConnection(inner);
  }
  std::size_t CubeCount() const override { return inner_ == nullptr ? 0 : inner_->CubeCount(); }
  std::unique_ptr<CubeDef> CubeAt(std::size_t index) const override {
    if (inner_ != nullptr) return inner_->CubeAt(index);
    throw Failure(failure_number::kItemNotFound, "The catalog has no connection, and no cube.");
  }

 private:
  std::unique_ptr<CubeCatalog> inner_;
};

class ServedCellset : public Cellset {
 public:
  void SetActiveConnection(CubeConnection& connection) override {
    const Connection& own = Own(connection);
    CubeConnection& inner = own.Inner();
    inner_ = own.services().NewCellset();
    inner_->SetActiveConnection(inner);
    inner_->SetSource(source_);
  }
  void SetSource(const std::string& mdx) override {
    source_ = mdx;
    if (inner_ != nullptr) inner_->SetSource(mdx);
  }
  void Open() override { Inner().Open(); }
  void Close() override {
    if (inner_ != nullptr) inner_->Close();
  }
  std::size_t AxisCount() const override { return Inner().AxisCount(); }
  const CellsetAxis& AxisAt(std::size_t index) const override { return Inner().AxisAt(index); }
  Value Cell(std::size_t ordinal) const override { return Inner().Cell(ordinal); }
  std::string FormattedCell(std::size_t ordinal) const override {
    return Inner().FormattedCell(ordinal);
  }

 private:
  Cellset& Inner() const {
    if (inner_ != nullptr) return *inner_;
    throw Failure(failure_number::kObjectClosed, "The cellset has no open connection.");
  }

  std::string source_;
  std::unique_ptr<Cellset> inner_;
};

}  // namespace

std::unique_ptr<CubeConnection> PortableCubeServices::NewConnection() {
  return std::make_unique<Connection>(files_, servers_);
}

std::unique_ptr<CubeCatalog> PortableCubeServices::NewCatalog() {
  return std::make_unique<Catalog>();
}

std::unique_ptr<Cellset> PortableCubeServices::NewCellset() {
  return std::make_unique<ServedCellset>();
}

}  // namespace vok::portable
