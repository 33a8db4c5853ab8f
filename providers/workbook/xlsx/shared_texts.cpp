#include "providers/workbook/xlsx/shared_texts.h"

#include "providers/workbook/xlsx/text_rules.h"

namespace vok::xlsx {

std::vector<SharedCell> SharedTexts::Share(const CellBlock& block) {
  std::vector<SharedCell> cells;
  for (std::size_t row = 1; row <= block.rows(); ++row) {
    for (std::size_t column = 1; column <= block.columns(); ++column) {
      const BlockCell& cell = block.Row(row)[column - 1];
      if (cell.kind != BlockCell::Kind::kText || !HasLookalike(block.Text(cell))) continue;
      const std::string text = ToUtf8(block.Text(cell));
      auto known = numbers_.find(text);
      if (known == numbers_.end()) {
        if (texts_.size() >= kMostTexts || bytes_ >= kMostBytes) continue;
        known = numbers_.emplace(text, static_cast<uint32_t>(texts_.size())).first;
        texts_.push_back(text);
        bytes_ += text.size();
      }
      cells.push_back({row, column, known->second});
      ++uses_;
    }
  }
  return cells;
}

void SharedTexts::AppendTo(ByteBuffer& xml) const {
  xml << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
         "<sst xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" count=\""
      << std::to_string(uses_) << "\" uniqueCount=\"" << std::to_string(texts_.size()) << "\">";
  for (const std::string& text : texts_) {
    xml << (NeedsPreserve(text) ? "<si><t xml:space=\"preserve\">" : "<si><t>");
    AppendXmlText(xml, text);
    xml << "</t></si>";
  }
  xml << "</sst>";
}

}  // namespace vok::xlsx
