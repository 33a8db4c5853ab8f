// A cube file, opened: its cubes with their structure and facts.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/files.h"
#include "providers/cube/olap/storage/block_cache.h"
#include "providers/cube/olap/storage/fact_store.h"
#include "providers/cube/olap/storage/live_source.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

struct StoredCube {
  CubeModel model;
  std::unique_ptr<FactStore> facts;             ///< nullptr for a live cube
  std::unique_ptr<const LiveSource> live = {};  ///< of a live cube; all of a file are, or none
  std::optional<CubeOrigin> origin = {};        ///< nothing where the file does not tell
};

/// Keeps the file open; a file that is replaced meanwhile does not disturb it. Structure is read
/// and checked when it is opened, facts and the texts of members when they are asked for, each into
/// memory of its own where it is checked: failure 75 when the file itself was changed since.
/// Failures -2147467259: no cube file, of a newer version, truncated, damaged; each names the file
/// and what to do. Failure 53: no such file.
class CubeFile {
 public:
  virtual ~CubeFile() = default;
  virtual const std::vector<StoredCube>& cubes() const = 0;
  /// What a cube's builder recorded; zeros may follow it.
  virtual HeldBlock RecordOf(const CubeOrigin& origin) const = 0;

  static std::shared_ptr<const CubeFile> Open(const Files& files, const std::string& path);
  /// From memory that outlives the result; `name` is used in failure texts.
  static std::shared_ptr<const CubeFile> Open(std::span<const std::byte> bytes,
                                              const std::string& name);
};

}  // namespace vok::olap
