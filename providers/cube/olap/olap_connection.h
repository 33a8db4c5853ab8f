// A connection to a cube file.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/cube.h"
#include "providers/cube/olap/mdx/query_limits.h"
#include "providers/cube/olap/opened_catalogs.h"

namespace vok::olap {

/// Failures of `Open`: 3706 for another provider; -2147467259 for a text that names no file, a
/// catalog that the file has not, and a file that is no cube file or damaged; 53 for no
/// such file. Asking a closed connection: 3704.
class OlapConnection : public CubeConnection {
 public:
  OlapConnection(const Files& files, const Locale& locale) : files_(files), locale_(locale) {}

  std::string ConnectionString() const override { return text_; }
  void SetConnectionString(const std::string& text) override { text_ = text; }
  /// Every cursor is on this side.
  void SetCursorLocation(CursorLocation) override {}
  void Open(const std::string& connection_string, const std::string& user,
            const std::string& password, int32_t options) override;
  void Close() override { opened_ = nullptr; }
  void Cancel() override { cancelled_->store(true, std::memory_order_relaxed); }
  std::string DefaultDatabase() const override;
  std::vector<std::string> CatalogNames() const override;

  std::shared_ptr<const OpenedCatalogs> opened() const;
  /// The catalog that the text names, if it names one.
  std::optional<std::size_t> catalog() const { return catalog_; }

  /// The limits that the text sets.
  const QueryLimits& limits() const { return limits_; }
  /// What `Cancel` sets.
  std::shared_ptr<const std::atomic<bool>> cancelled() const { return cancelled_; }

  /// Failure 3704 for a connection of other services.
  static const OlapConnection& From(const CubeConnection& connection);

 private:
  const Files& files_;
  const Locale& locale_;
  std::string text_;
  std::shared_ptr<const OpenedCatalogs> opened_;
  std::optional<std::size_t> catalog_;
  QueryLimits limits_;
  std::shared_ptr<std::atomic<bool>> cancelled_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace vok::olap
