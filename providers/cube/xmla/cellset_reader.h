// Reads a cellset as it arrives: format Multidimensional, axes as tuples. Properties of members and
// cells other than those that a cellset shows are passed over.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "providers/cube/xmla/cellset_data.h"
#include "providers/cube/xmla/soap_reader.h"

namespace vok::xmla {

/// Failure -2147467259 for a result that is not a cellset.
class CellsetReader : public ResultReader {
 public:
  /// `data` is empty and outlives the reader.
  explicit CellsetReader(CellsetData& data) : data_(data) {}

  void Start(std::size_t level, std::string_view name, const xml::Attributes& attributes) override;
  void End(std::size_t level, std::string_view name, std::string_view text) override;
  void Finish() override;

 private:
  enum class Section { kOther, kInfo, kAxes, kCells };

  void StartSection(std::string_view name);
  void StartInInfo(std::size_t level, std::string_view name, const xml::Attributes& attributes);
  void StartInAxes(std::size_t level, std::string_view name, const xml::Attributes& attributes);
  void StartInCells(std::size_t level, std::string_view name, const xml::Attributes& attributes);
  void EndInAxes(std::size_t level, std::string_view name, std::string_view text);
  void EndInCells(std::size_t level, std::string_view name, std::string_view text);
  void EndCell();

  CellsetData& data_;
  Section section_ = Section::kOther;
  bool has_axes_ = false;
  bool has_cells_ = false;
  std::vector<std::size_t> described_hierarchies_;  // per axis, as the description has them
  bool described_axis_ = false;
  bool in_axis_ = false;  // of the answer, not the slicer's
  std::string unique_name_, caption_, level_name_;
  uint64_t ordinal_ = 0;
  std::string type_, value_, formatted_;
  bool has_value_ = false;
  bool error_ = false;
};

}  // namespace vok::xmla
