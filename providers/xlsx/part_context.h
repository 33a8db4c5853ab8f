// What the readers of a workbook's parts share: how they fail, and how they say that something they
// passed over would be lost by a save.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "providers/xml/xml_parser.h"

namespace vok::xlsx {

class PartContext {
 public:
  /// `unkept` is the workbook's list and must outlive this.
  PartContext(std::string path, std::string part, std::vector<std::string>& unkept);

  /// Reads the part's XML. Failure 1004 that names the file and the part for what is no proper XML.
  void Parse(std::string_view xml, xml::Handler& handler) const;

  /// Failure 1004 that names the file and the part.
  [[noreturn]] void Fail(std::string_view why) const;
  /// Notes, once, that the part holds something that is not kept.
  void Lose(std::string_view what);
  /// The element of that name is not kept.
  void LoseElement(std::string_view name);

  /// The attribute as a number of at most `most`; `missing` when it is not there.
  uint32_t Count(std::string_view name, std::string_view text, uint32_t missing,
                 uint32_t most) const;

 private:
  std::string path_;
  std::string part_;
  std::vector<std::string>& unkept_;
};

}  // namespace vok::xlsx
