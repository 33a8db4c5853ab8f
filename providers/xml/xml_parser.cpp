#include "providers/xml/xml_parser.h"

#include <expat.h>

#include <new>

namespace vok::xml {
namespace {

constexpr std::size_t kPiece = std::size_t{16} << 20;  // expat counts bytes in an int
constexpr char kSeparator = '|';                       // of no address of a name space

bool EndedEarly(XML_Error error) {
  return error == XML_ERROR_NO_ELEMENTS || error == XML_ERROR_UNCLOSED_TOKEN ||
         error == XML_ERROR_PARTIAL_CHAR || error == XML_ERROR_UNCLOSED_CDATA_SECTION;
}

}  // namespace

const char* Attributes::Find(Name name) const {
  const char* found = nullptr;
  ForEach([&](Name each, const char* value) {
    if (found == nullptr && each == name) found = value;
  });
  return found;
}

std::string_view Attributes::Get(std::string_view local) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2) {
    if (SplitName(pair[0], separator_).local == local) return pair[1];
  }
  return {};
}

bool Attributes::IsTrue(std::string_view local) const {
  const std::string_view value = Get(local);
  return value == "1" || value == "true";
}

/// Exceptions must not pass through the C code in between: they are kept, and parsing stops.
struct Parser::Callbacks {
  template <typename Call>
  static void Guard(void* data, Call call) {
    auto& parser = *static_cast<Parser*>(data);
    if (parser.thrown_ || parser.refusal_ != nullptr) return;
    try {
      return call(parser);
    } catch (const Refusal& refusal) {
      parser.refusal_ = refusal.why;
    } catch (...) {
      parser.thrown_ = std::current_exception();
    }
    XML_StopParser(parser.parser_.get(), XML_FALSE);
  }

  static void OnStart(void* data, const char* name, const char** attributes) {
    Guard(data, [&](Parser& parser) {
      if (++parser.depth_ > parser.deepest_element_) {
        throw Refusal{"its elements are nested too deeply"};
      }
      const Name element = SplitName(name, parser.separator_);
      parser.handler_.Start(element.local, Attributes(element, attributes, parser.separator_));
    });
  }

  static void OnEnd(void* data, const char* name) {
    Guard(data, [&](Parser& parser) {
      --parser.depth_;
      parser.handler_.End(SplitName(name, parser.separator_).local);
    });
  }

  static void OnCharacters(void* data, const char* characters, int count) {
    Guard(data, [&](Parser& parser) {
      parser.handler_.Characters({characters, static_cast<std::size_t>(count)});
    });
  }

  static void OnDoctype(void* data, const char*, const char*, const char*, int) {
    Guard(data, [](Parser&) { throw Refusal{"it has a DOCTYPE"}; });
  }
};

Parser::Parser(Handler& handler, std::size_t deepest_element, Names names)
    : handler_(handler),
      deepest_element_(deepest_element),
      separator_(names == Names::kResolved ? kSeparator : ':'),
      parser_(names == Names::kResolved ? XML_ParserCreateNS(nullptr, kSeparator)
                                        : XML_ParserCreate(nullptr),
              XML_ParserFree) {
  if (!parser_) throw std::bad_alloc();
  XML_SetUserData(parser_.get(), this);
  XML_SetElementHandler(parser_.get(), Callbacks::OnStart, Callbacks::OnEnd);
  XML_SetCharacterDataHandler(parser_.get(), Callbacks::OnCharacters);
  XML_SetStartDoctypeDeclHandler(parser_.get(), Callbacks::OnDoctype);
}

Parser::~Parser() = default;

std::optional<Fault> Parser::Read(std::string_view piece, bool last) {
  bool good = true;
  do {
    const std::string_view part = piece.substr(0, kPiece);
    piece.remove_prefix(part.size());
    good = XML_Parse(parser_.get(), part.data(), static_cast<int>(part.size()),
                     last && piece.empty()) == XML_STATUS_OK;
  } while (good && !piece.empty());
  if (thrown_) std::rethrow_exception(thrown_);
  if (good) return std::nullopt;
  const XML_Error error = XML_GetErrorCode(parser_.get());
  const bool refused = refusal_ != nullptr;
  return Fault{refused ? refusal_ : XML_ErrorString(error), XML_GetCurrentLineNumber(parser_.get()),
               refused, !refused && EndedEarly(error)};
}

}  // namespace vok::xml
