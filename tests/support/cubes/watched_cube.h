// A cube on the real engine that says what it was asked, and does what a test wants meanwhile.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "native.h"
#include "platform/cube.h"
#include "providers/cube/olap/olap_provider.h"
#include "tests/support/cubes/sample_cube.h"

namespace vok::test {

/// Any connection text leads to the one cube file. It cannot stop a query.
class WatchedCube : public CubeProvider {
 public:
  /// Puts `to` for every `from` in the schema, or in a table; before the first connection.
  WatchedCube& Change(const std::string& from, const std::string& to,
                      const std::string& table = "") {
    std::string& text = table.empty() ? texts.schema : texts.tables.at(table);
    for (auto at = text.find(from); at != text.npos; at = text.find(from, at + to.size())) {
      text.replace(at, from.size(), to);
    }
    return *this;
  }

  std::unique_ptr<CubeConnection> Connect(const std::string& text, const QueryStop*) override {
    calls.push_back("connect " + text);
    on_open();
    if (!built_) built_.emplace(texts);
    return std::make_unique<Watched>(*this,
                                     engine_.Connect("Data Source=" + built_->path(), nullptr));
  }

  CubeTexts texts = SampleLedger();
  std::vector<std::string> calls;  ///< of connections
  std::vector<std::string> queries;
  std::function<void()> on_open = [] {}, on_query = [] {}, on_close = [] {};  ///< may throw

 private:
  class Watched : public CubeConnection {
   public:
    Watched(WatchedCube& cube, std::unique_ptr<CubeConnection> real)
        : cube_(cube), real_(std::move(real)) {}
    std::string DefaultDatabase() const override { return real_->DefaultDatabase(); }
    std::vector<std::string> CatalogNames() const override { return real_->CatalogNames(); }
    std::unique_ptr<CubeCatalog> Structure() override { return real_->Structure(); }
    std::unique_ptr<Cellset> Execute(const std::string& mdx) override {
      cube_.queries.push_back(mdx);
      cube_.on_query();
      return real_->Execute(mdx);
    }
    void Close() override {
      cube_.calls.emplace_back("close");
      cube_.on_close();
      real_->Close();
    }

   private:
    WatchedCube& cube_;
    std::unique_ptr<CubeConnection> real_;
  };

  NativeFiles files_;
  NativeLocale locale_{"en_US"};
  olap::OlapCubeProvider engine_{files_, locale_};
  std::optional<BuiltCube> built_;
};

}  // namespace vok::test
