#include "providers/xml/xml_parser.h"

#include <expat.h>

#include <cstdint>
#include <new>

#include "providers/xml/parser_memory.h"

namespace vok::xml {
namespace {

constexpr std::size_t kPiece = kLongestToken / 4;  // a token is at most this much too long
constexpr char kSeparator = '|';                   // of no address of a name space
constexpr const char* kHugeToken = "one of its tags or comments is huge";

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
      const int size = XML_GetCurrentByteCount(parser.parser_.get());
      if (static_cast<std::size_t>(size) > kLongestToken) throw Refusal{kHugeToken};
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
      memory_(std::make_unique<ParserMemory>()),
      parser_(nullptr, XML_ParserFree) {
  const ParserMemory::Scope scope(*memory_);
  const char* separator = names == Names::kResolved ? &kSeparator : nullptr;
  parser_.reset(XML_ParserCreate_MM(nullptr, ParserMemory::Functions(), separator));
  if (!parser_) throw std::bad_alloc();
  XML_SetUserData(parser_.get(), this);
  XML_SetElementHandler(parser_.get(), Callbacks::OnStart, Callbacks::OnEnd);
  XML_SetCharacterDataHandler(parser_.get(), Callbacks::OnCharacters);
  XML_SetStartDoctypeDeclHandler(parser_.get(), Callbacks::OnDoctype);
}

Parser::~Parser() = default;

/// Expat scans an open token anew with each piece: the next one comes when it is as long as what is
/// open, and so each byte is scanned twice at most.
std::optional<Fault> Parser::Read(std::string_view piece, bool last) {
  if (!last && held_.size() + piece.size() < open_) {
    held_ += piece;
    return std::nullopt;
  }
  std::string held = std::move(held_);
  held_.clear();
  if (!held.empty()) piece = held.append(piece);
  return Feed(piece, last) ? std::nullopt : std::optional(FaultNow());
}

/// False for a fault.
bool Parser::Feed(std::string_view text, bool last) {
  const ParserMemory::Scope scope(*memory_);
  bool good = true;
  do {
    const std::string_view part = text.substr(0, kPiece);
    text.remove_prefix(part.size());
    good = XML_Parse(parser_.get(), part.data(), static_cast<int>(part.size()),
                     last && text.empty()) == XML_STATUS_OK;
    fed_ += part.size();
    // Expat's index may be of 32 bits, and is -1 before the first token.
    const auto index = static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_.get()));
    open_ = static_cast<uint32_t>(fed_ - index);
    if (good && open_ > kLongestToken + kPiece) refusal_ = kHugeToken;
    if (memory_->refused()) refusal_ = "it has too many different names";
  } while (good && refusal_ == nullptr && !text.empty());
  if (thrown_) std::rethrow_exception(thrown_);
  return good && refusal_ == nullptr;
}

Fault Parser::FaultNow() const {
  const XML_Error error = XML_GetErrorCode(parser_.get());
  const bool refused = refusal_ != nullptr;
  return {refused ? refusal_ : XML_ErrorString(error), XML_GetCurrentLineNumber(parser_.get()),
          refused, !refused && EndedEarly(error)};
}

}  // namespace vok::xml
