#include "providers/xmla/xml_stream.h"

#include <expat.h>

#include <algorithm>
#include <new>

#include "platform/failure.h"

namespace vok::xmla {
namespace {

constexpr std::size_t kPiece = std::size_t{16} << 20;  // expat counts bytes in an int

std::string_view LocalName(const char* name) {
  const std::string_view whole(name);
  const std::size_t colon = whole.find(':');
  return colon == std::string_view::npos ? whole : whole.substr(colon + 1);
}

bool EndedEarly(XML_Error error) {
  return error == XML_ERROR_NO_ELEMENTS || error == XML_ERROR_UNCLOSED_TOKEN ||
         error == XML_ERROR_PARTIAL_CHAR || error == XML_ERROR_UNCLOSED_CDATA_SECTION;
}

}  // namespace

/// Exceptions must not pass through the C code in between: they are kept, and parsing stops.
struct XmlStream::Callbacks {
  template <typename Call>
  static void Guard(XmlStream& stream, Call call) {
    if (stream.thrown_ || !stream.refusal_.empty()) return;
    try {
      call();
    } catch (...) {
      stream.thrown_ = std::current_exception();
      XML_StopParser(stream.parser_.get(), XML_FALSE);
    }
  }

  static void OnStart(void* data, const char* name, const char** attributes) {
    auto& stream = *static_cast<XmlStream*>(data);
    if (++stream.depth_ > kMaxXmlDepth) return stream.Refuse("its elements are nested too deeply");
    stream.text_.clear();
    Guard(stream, [&] { stream.handler_.Start(LocalName(name), XmlAttributes(attributes)); });
  }

  static void OnEnd(void* data, const char* name) {
    auto& stream = *static_cast<XmlStream*>(data);
    --stream.depth_;
    Guard(stream, [&] { stream.handler_.End(LocalName(name), stream.text_); });
    stream.text_.clear();
  }

  static void OnText(void* data, const char* text, int length) {
    auto& stream = *static_cast<XmlStream*>(data);
    const auto size = static_cast<std::size_t>(length);
    if (stream.text_.size() + size > kMaxXmlText) return stream.Refuse("one of its texts is huge");
    Guard(stream, [&] { stream.text_.append(text, size); });
  }

  static void OnDoctype(void* data, const char*, const char*, const char*, int) {
    static_cast<XmlStream*>(data)->Refuse("it has a DOCTYPE");
  }
};

std::string_view XmlAttributes::Get(std::string_view name) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2) {
    if (LocalName(pair[0]) == name) return pair[1];
  }
  return {};
}

XmlStream::XmlStream(XmlHandler& handler)
    : handler_(handler), parser_(XML_ParserCreate(nullptr), XML_ParserFree) {
  if (!parser_) throw std::bad_alloc();
  XML_SetUserData(parser_.get(), this);
  XML_SetElementHandler(parser_.get(), Callbacks::OnStart, Callbacks::OnEnd);
  XML_SetCharacterDataHandler(parser_.get(), Callbacks::OnText);
  XML_SetStartDoctypeDeclHandler(parser_.get(), Callbacks::OnDoctype);
}

XmlStream::~XmlStream() = default;

bool XmlStream::Finish() {
  try {
    Parse({}, true);
  } catch (const Failure&) {
    if (thrown_ || !refusal_.empty() || !EndedEarly(XML_GetErrorCode(parser_.get()))) throw;
    return false;
  }
  return true;
}

void XmlStream::Parse(std::string_view piece, bool last) {
  bool good = true;
  do {
    const std::string_view part = piece.substr(0, kPiece);
    piece.remove_prefix(part.size());
    const bool final = last && piece.empty();
    good = XML_Parse(parser_.get(), part.data(), static_cast<int>(part.size()), final) ==
           XML_STATUS_OK;
  } while (good && !piece.empty());
  if (thrown_) std::rethrow_exception(thrown_);
  if (good) return;
  const std::string what =
      refusal_.empty() ? XML_ErrorString(XML_GetErrorCode(parser_.get())) : refusal_;
  throw Failure(failure_number::kUnspecified,
                what + " in line " + std::to_string(XML_GetCurrentLineNumber(parser_.get())));
}

void XmlStream::Refuse(const char* why) {
  if (refusal_.empty()) refusal_ = why;
  XML_StopParser(parser_.get(), XML_FALSE);
}

}  // namespace vok::xmla
