#include "hosts/composition/kept_open.h"

#include <algorithm>

namespace vok {

namespace {

constexpr std::size_t kMostCubes = 8;  // open at a time

/// A database's connection for one who closes it when it is done.
class SharedConnection : public Connection {
 public:
  explicit SharedConnection(std::shared_ptr<Connection> kept) : kept_(std::move(kept)) {}
  std::unique_ptr<Rows> Query(const std::string& statement) override {
    return kept_->Query(statement);
  }
  std::unique_ptr<WritableTable> OpenTable(const std::string& name) override {
    return kept_->OpenTable(name);
  }
  void Execute(const std::string& statement) override { kept_->Execute(statement); }
  std::unique_ptr<DatabaseStructure> OpenStructure() override { return kept_->OpenStructure(); }
  void Begin(Purpose purpose) override { kept_->Begin(purpose); }
  void Commit() override { kept_->Commit(); }
  void Rollback() noexcept override { kept_->Rollback(); }

 private:
  std::shared_ptr<Connection> kept_;
};

}  // namespace

/// A cube's connection for one who closes it when it is done.
class KeptConnection : public CubeConnection {
  template <typename Ask>
  auto OrDrop(const Ask& ask) {
    try {
      return ask();
    } catch (...) {
      all_.Drop(kept_.get());
      throw;
    }
  }

 public:
  KeptConnection(KeptCubes& all, std::shared_ptr<CubeConnection> kept)
      : all_(all), kept_(std::move(kept)) {}
  std::string DefaultDatabase() const override { return kept_->DefaultDatabase(); }
  std::vector<std::string> CatalogNames() const override { return kept_->CatalogNames(); }
  std::unique_ptr<CubeCatalog> Structure() override {
    return OrDrop([this] { return kept_->Structure(); });
  }
  std::unique_ptr<Cellset> Execute(const std::string& mdx) override {
    return OrDrop([&] { return kept_->Execute(mdx); });
  }

 private:
  KeptCubes& all_;
  std::shared_ptr<CubeConnection> kept_;
};

std::unique_ptr<CubeConnection> KeptCubes::Connect(const std::string& text, const QueryStop* stop) {
  const std::lock_guard lock(mutex_);  // also while it is opened: that is done once
  const auto known = std::find_if(kept_.begin(), kept_.end(), [&](const Kept& kept) {
    return kept.text == text && kept.stop == stop;
  });
  if (known != kept_.end()) return std::make_unique<KeptConnection>(*this, known->connection);
  std::unique_ptr<CubeConnection> connection = below_.Connect(text, stop);
  if (!connection->ServesManyRuns()) return connection;
  const std::shared_ptr<CubeConnection> opened = std::move(connection);
  kept_.push_front({text, stop, opened});
  if (kept_.size() > kMostCubes) kept_.pop_back();
  return std::make_unique<KeptConnection>(*this, opened);
}

void KeptCubes::Drop(const CubeConnection* failed) {
  const std::lock_guard lock(mutex_);
  std::erase_if(kept_, [failed](const Kept& kept) { return kept.connection.get() == failed; });
}

std::unique_ptr<Connection> KeptDatabases::Open(const std::string& path, int32_t timeout) {
  std::shared_ptr<Connection>& kept = kept_[path];
  if (kept == nullptr) kept = below_.Open(path, timeout);
  return std::make_unique<SharedConnection>(kept);
}

}  // namespace vok
