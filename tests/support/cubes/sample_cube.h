// Cubes for tests, built from texts: a schema and CSV tables.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "providers/cube/olap/build/build_cube.h"
#include "providers/cube/olap/storage/cube_file.h"
#include "tests/support/temporary_folder.h"

namespace vok::test {

struct CubeTexts {
  std::string schema;
  std::map<std::string, std::string> tables;  ///< by name, without ".csv"
};

/// The texts written into a folder and built; the file stays open with it.
class BuiltCube {
 public:
  explicit BuiltCube(const CubeTexts& texts);

  const olap::CubeFile& file() const { return *file_; }
  std::shared_ptr<const olap::CubeFile> shared_file() const { return file_; }
  const olap::StoredCube& cube() const { return file_->cubes().front(); }
  const olap::BuildReport& report() const { return report_; }
  std::string path() const { return folder_.File("sample.cub"); }

 private:
  TemporaryFolder folder_;
  olap::BuildReport report_;
  std::shared_ptr<const olap::CubeFile> file_;
};

/// Writes the texts into the folder and builds "sample.cub" there.
olap::BuildReport BuildInto(const TemporaryFolder& folder, const CubeTexts& texts);

/// The cube of a folder beside this file: its schema and tables.
CubeTexts SampleTexts(const std::string& name);

/// A small ledger, cube "QEL": Date (All, Year, Quarter, Month; January 2009 to June 2010), QeL
/// (named QeL, no All, 6 lines with TABs in their captions, the last without facts), ActX with
/// hierarchy xlFile (Everything, Ledger, File; 2 ledgers with 3 files), Opening_Balance (All; 0 and
/// 1), MoneySet (All; EUR, NIS, USD). Measures Amount (default), Units (some NULL) and Facts, a
/// count. Some of the 60 facts cancel to 0.
inline CubeTexts SampleLedger() { return SampleTexts("ledger"); }

}  // namespace vok::test
