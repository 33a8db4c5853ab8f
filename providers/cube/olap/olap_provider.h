// Cube access over cube files.
//
// A connection's "Data Source" is the path of a cube file, relative to the current directory. Each
// cube of the file is a catalog; without "Initial Catalog" the first one is the default, and
// queries may name any.
#pragma once

#include <memory>
#include <string>

#include "platform/cube.h"
#include "platform/files.h"
#include "platform/locale.h"

namespace vok::olap {

class OlapCubeProvider : public CubeProvider {
 public:
  /// Both outlive the provider and all that it hands out.
  OlapCubeProvider(const Files& files, const Locale& locale) : files_(files), locale_(locale) {}

  /// Failures: 3706 for another provider; -2147467259 for a text that names no file, a catalog that
  /// the file does not have, and a file that is not a cube file or is damaged; 53 for no such file.
  std::unique_ptr<CubeConnection> Connect(const std::string& text, const QueryStop* stop) override;

 private:
  const Files& files_;
  const Locale& locale_;
};

}  // namespace vok::olap
