#include "providers/workbook/xlsx/shared_strings.h"

#include "providers/workbook/xlsx/text_rules.h"

namespace vok::xlsx {

void AppendSharedStrings(ByteBuffer& xml, const TextPool& pool, const TextOrder& order) {
  xml << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
         "<sst xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" count=\""
      << std::to_string(order.uses()) << "\" uniqueCount=\"" << std::to_string(order.order().size())
      << "\">";
  for (const uint32_t number : order.order()) {
    const std::string_view text = pool.At(number);
    xml << (NeedsPreserve(text) ? "<si><t xml:space=\"preserve\">" : "<si><t>");
    AppendXmlText(xml, text);
    xml << "</t></si>";
  }
  xml << "</sst>";
}

}  // namespace vok::xlsx
