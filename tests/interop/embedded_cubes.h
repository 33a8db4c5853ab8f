// The engine under test: cube files built from the sample, one per schema.
#pragma once

#include <memory>
#include <string>

#include "tests/interop/answer.h"

namespace vok::interop {

class EmbeddedCubes {
 public:
  /// Builds `folder`/<schema>.cub for every schema of `schemas` over the tables in `tables`.
  EmbeddedCubes(const std::string& schemas, const std::string& tables, const std::string& folder);
  ~EmbeddedCubes();

  /// `catalog` is the name of a schema's file, without its ending.
  Answer Run(const std::string& catalog, const std::string& mdx) const;

 private:
  struct Opened;
  std::unique_ptr<Opened> opened_;
};

}  // namespace vok::interop
