#include "providers/xlsx/shared_strings.h"

#include "platform/text.h"
#include "providers/xlsx/text_rules.h"

namespace vok::xlsx {
namespace {

/// Enough for the longest text with every unit written as an escape.
constexpr std::size_t kMaxTextBytes = kMaxTextUnits * 7;

class SharedStringsReader : public xml::Handler {
 public:
  SharedStringsReader(TextPool& pool, PartContext& context) : pool_(pool), context_(context) {}

  void Start(std::string_view name, const xml::Attributes&) override {
    if (name == "si") {
      item_.Begin();
    } else if (name == "extLst") {
      context_.LoseElement(name);
    } else {
      item_.Start(name, context_);
    }
  }
  void End(std::string_view name) override {
    if (name == "si") {
      texts.push_back(item_.Finish(pool_, context_));
    } else {
      item_.End(name);
    }
  }
  void Characters(std::string_view characters) override { item_.Characters(characters, context_); }

  std::vector<uint32_t> texts;

 private:
  TextPool& pool_;
  PartContext& context_;
  StringItem item_;
};

}  // namespace

void StringItem::Begin() {
  text_.clear();
  in_text_ = false;
  in_phonetic_ = false;
}

void StringItem::Start(std::string_view name, PartContext& context) {
  if (name == "t") {
    in_text_ = !in_phonetic_;
  } else if (name == "rPh") {
    in_phonetic_ = true;
    context.LoseElement(name);
  } else if (name == "rPr") {
    context.LoseElement(name);
  }
}

void StringItem::End(std::string_view name) {
  if (name == "t") in_text_ = false;
  if (name == "rPh") in_phonetic_ = false;
}

void StringItem::Characters(std::string_view characters, const PartContext& context) {
  if (!in_text_) return;
  text_ += characters;
  if (text_.size() > kMaxTextBytes) context.Fail("a text is longer than a cell can hold");
}

uint32_t StringItem::Finish(TextPool& pool, const PartContext& context) {
  text_ = ResolveEscapes(std::move(text_));
  if (text_.size() > kMaxTextUnits && Utf16Length(text_) > kMaxTextUnits) {
    context.Fail("a text is longer than a cell can hold");
  }
  return pool.Intern(text_);
}

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

std::vector<uint32_t> ReadSharedStrings(std::string_view xml, TextPool& pool,
                                        PartContext& context) {
  SharedStringsReader reader(pool, context);
  context.Parse(xml, reader);
  return std::move(reader.texts);
}

}  // namespace vok::xlsx
