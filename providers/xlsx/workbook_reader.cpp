#include <algorithm>
#include <set>

#include "providers/xlsx/shared_strings.h"
#include "providers/xlsx/sheet_xml.h"
#include "providers/xlsx/styles.h"
#include "providers/xlsx/workbook.h"
#include "providers/xlsx/workbook_parts.h"
#include "providers/xlsx/zip_reader.h"

namespace vok::xlsx {
namespace {

class WorkbookReader {
 public:
  WorkbookReader(std::span<const std::byte> file, const std::string& path)
      : zip_(file, path), path_(path) {}

  Workbook Read() {
    Take(part::kContentTypes);
    const std::string main = MainPart();
    const std::string folder = main.substr(0, main.find_last_of('/') + 1);
    PartContext context = Context(main);
    const WorkbookXml list = ReadWorkbookXml(Take(main).View(), context);
    ReadMainRelations(folder, main.substr(folder.size()));
    ReadTables();
    for (const SheetEntry& entry : list.sheets) ReadOne(entry, context);
    workbook_.active = list.active;
    NoteOtherParts();
    return std::move(workbook_);
  }

 private:
  PartContext Context(const std::string& part) { return {path_, part, workbook_.unkept}; }

  ByteBuffer Take(const std::string& part) {
    if (!taken_.insert(part).second) Context(part).Fail("there is what two parts were to hold");
    return zip_.Read(part);
  }

  std::string MainPart() {
    const auto relations =
        ReadRelations(Take(part::kRelations).View(), "", Context(part::kRelations));
    const auto main =
        std::find_if(relations.begin(), relations.end(),
                     [](const Relation& relation) { return relation.kind == "officeDocument"; });
    if (main == relations.end()) Context(part::kRelations).Fail("no workbook is named");
    return main->target;
  }

  void ReadMainRelations(const std::string& folder, const std::string& name) {
    const std::string part = folder + "_rels/" + name + ".rels";
    relations_ = ReadRelations(Take(part).View(), folder, Context(part));
  }

  void ReadTables() {
    for (const Relation& relation : relations_) {
      PartContext context = Context(relation.target);
      if (relation.kind == "styles") {
        formats_ = ReadStyles(Take(relation.target).View(), workbook_, context);
      } else if (relation.kind == "sharedStrings") {
        texts_ = ReadSharedStrings(Take(relation.target).View(), workbook_.texts, context);
      }
    }
  }

  void ReadOne(const SheetEntry& entry, const PartContext& main) {
    const auto relation =
        std::find_if(relations_.begin(), relations_.end(),
                     [&](const Relation& known) { return known.id == entry.relation; });
    if (relation == relations_.end()) main.Fail("sheet \"" + entry.name + "\" has no part");
    PartContext context = Context(relation->target);
    Sheet& sheet = workbook_.sheets.emplace_back(entry.name);
    ReadSheet(Take(relation->target).View(), {texts_, formats_}, workbook_.texts, sheet, context);
  }

  /// Parts that can be computed again, that every program makes for itself, or that only point at
  /// parts which are noted themselves.
  static bool IsHarmless(const std::string& part) {
    return part.ends_with('/') || part.find("_rels/") != std::string::npos ||
           part.find("/theme/") != std::string::npos || part.ends_with("/calcChain.xml") ||
           part == part::kApplication || part == "docProps/core.xml";
  }

  void NoteOtherParts() {
    for (const auto& [part, entry] : zip_.entries()) {
      if (!taken_.contains(part) && !IsHarmless(part)) {
        workbook_.unkept.push_back(part);
      }
    }
  }

  ZipReader zip_;
  const std::string& path_;
  Workbook workbook_;
  std::set<std::string> taken_;
  std::vector<Relation> relations_;
  std::vector<uint32_t> texts_;
  std::vector<uint16_t> formats_{0};  // General, if there is no part that says more
};

}  // namespace

Workbook ReadWorkbook(std::span<const std::byte> file, const std::string& path) {
  return WorkbookReader(file, path).Read();
}

}  // namespace vok::xlsx
