// Cube access over cube files.
//
// A connection's "Data Source" is the path of a cube file, relative to the current directory. Each
// cube of the file is a catalog; without "Initial Catalog" the first one is the default, and
// queries may name any.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/cube.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "platform/table_server.h"

namespace vok::olap {

class OlapCubeProvider : public CubeProvider {
 public:
  /// All outlive the provider and all that it hands out. `open_server` reaches the databases of
  /// live cubes.
  OlapCubeProvider(const Files& files, const Locale& locale, OpenTableServer open_server = {})
      : files_(files), locale_(locale), open_server_(std::move(open_server)) {}

  /// Failures: 3706 for another provider; -2147467259 for a text that names no file, a catalog that
  /// the file does not have, and a file that is not a cube file or is damaged; 53 for no such file.
  /// A live cube's database is asked here: also the failures of `OpenTableServer` and `LiveFacts`.
  std::unique_ptr<CubeConnection> Connect(const std::string& text, const QueryStop* stop) override;

 private:
  const Files& files_;
  const Locale& locale_;
  OpenTableServer open_server_;
};

}  // namespace vok::olap
