#include <algorithm>
#include <array>

#include "providers/xlsx/text_rules.h"
#include "providers/xlsx/workbook_parts.h"

namespace vok::xlsx {
namespace {

constexpr uint32_t kMaxTab = 0xFFFF;

/// Elements of the workbook part that say nothing a save would lose.
constexpr std::array<std::string_view, 14> kHarmless = {
    "workbook", "fileVersion",      "workbookPr", "bookViews", "workbookView", "sheets",
    "calcPr",   "AlternateContent", "Choice",     "absPath",   "revisionPtr",  "extLst",
    "ext",      "calcFeatures"};

/// "xl/" and "../a/./b.xml" → "a/b.xml". A target that begins with "/" counts from the root.
std::string Resolve(const std::string& folder, std::string_view target) {
  std::string path = target.starts_with('/') ? "" : folder;
  while (!target.empty()) {
    const std::size_t slash = target.find('/');
    const std::string_view piece = target.substr(0, slash);
    target.remove_prefix(slash == std::string_view::npos ? target.size() : slash + 1);
    if (piece == "..") {
      if (!path.empty()) path.pop_back();
      path.resize(path.find_last_of('/') + 1);
    } else if (!piece.empty() && piece != ".") {
      path += piece;
      if (!target.empty()) path += '/';
    }
  }
  return path;
}

class RelationsReader : public xml::Handler {
 public:
  explicit RelationsReader(std::string folder) : folder_(std::move(folder)) {}

  void Start(std::string_view name, const xml::Attributes& attributes) override {
    if (name != "Relationship" || attributes.Get("TargetMode") == "External") return;
    const std::string_view type = attributes.Get("Type");
    relations.push_back({std::string(attributes.Get("Id")),
                         std::string(type.substr(type.find_last_of('/') + 1)),
                         Resolve(folder_, attributes.Get("Target"))});
  }

  std::vector<Relation> relations;

 private:
  std::string folder_;
};

class WorkbookXmlReader : public xml::Handler {
 public:
  explicit WorkbookXmlReader(PartContext& context) : context_(context) {}

  void Start(std::string_view name, const xml::Attributes& attributes) override {
    if (name == "sheet") {
      AddSheet(attributes);
    } else if (name == "workbookView") {
      result.active = context_.Count("activeTab", attributes.Get("activeTab"), 0, kMaxTab);
    } else if (std::find(kHarmless.begin(), kHarmless.end(), name) == kHarmless.end()) {
      context_.LoseElement(name);
    }
    if (attributes.IsTrue("date1904")) context_.Lose("dates counted from 1904");
  }

  WorkbookXml result;

 private:
  void AddSheet(const xml::Attributes& attributes) {
    if (result.sheets.size() == kMaxSheets) {
      context_.Fail("there are more than " + std::to_string(kMaxSheets) + " sheets");
    }
    const std::string_view state = attributes.Get("state");
    if (!state.empty() && state != "visible") context_.Lose("hidden sheets");
    result.sheets.push_back(
        {ResolveEscapes(std::string(attributes.Get("name"))), std::string(attributes.Get("id"))});
  }

  PartContext& context_;
};

}  // namespace

std::vector<Relation> ReadRelations(std::string_view xml, const std::string& folder,
                                    const PartContext& context) {
  RelationsReader reader(folder);
  context.Parse(xml, reader);
  return std::move(reader.relations);
}

WorkbookXml ReadWorkbookXml(std::string_view xml, PartContext& context) {
  WorkbookXmlReader reader(context);
  context.Parse(xml, reader);
  if (reader.result.sheets.empty()) context.Fail("there is no sheet");
  reader.result.active = std::min(reader.result.active, reader.result.sheets.size() - 1);
  return std::move(reader.result);
}

}  // namespace vok::xlsx
