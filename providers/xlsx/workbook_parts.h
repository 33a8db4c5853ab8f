// The small parts that tie a workbook file together: which parts there are, how they relate, and
// the list of sheets.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "providers/xlsx/part_context.h"
#include "providers/xlsx/workbook.h"

namespace vok::xlsx {

inline constexpr std::size_t kMaxSheets = 1024;

/// Where the writer puts the parts.
namespace part {
inline constexpr const char* kContentTypes = "[Content_Types].xml";
inline constexpr const char* kRelations = "_rels/.rels";
inline constexpr const char* kApplication = "docProps/app.xml";
inline constexpr const char* kWorkbook = "xl/workbook.xml";
inline constexpr const char* kWorkbookRelations = "xl/_rels/workbook.xml.rels";
inline constexpr const char* kStyles = "xl/styles.xml";
inline constexpr const char* kSharedStrings = "xl/sharedStrings.xml";
/// `index` counted from 0.
std::string Sheet(std::size_t index);
}  // namespace part

void AppendContentTypes(ByteBuffer& xml, std::size_t sheets);
void AppendRelations(ByteBuffer& xml);
void AppendApplication(ByteBuffer& xml);
void AppendWorkbookXml(ByteBuffer& xml, const Workbook& workbook);
void AppendWorkbookRelations(ByteBuffer& xml, std::size_t sheets);

/// One relationship of a part.
struct Relation {
  std::string id;
  std::string kind;    ///< last piece of the type, such as "worksheet"
  std::string target;  ///< the name of the part, from the container's root
};

/// The relationships of the part that lies in `folder` ("" or "xl/").
std::vector<Relation> ReadRelations(std::string_view xml, const std::string& folder,
                                    const PartContext& context);

struct SheetEntry {
  std::string name;
  std::string relation;
};

struct WorkbookXml {
  std::vector<SheetEntry> sheets;
  std::size_t active = 0;
};

WorkbookXml ReadWorkbookXml(std::string_view xml, PartContext& context);

}  // namespace vok::xlsx
