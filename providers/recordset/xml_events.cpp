#include "providers/recordset/xml_events.h"

#include <expat.h>

#include <exception>
#include <memory>
#include <new>
#include <type_traits>

#include "providers/recordset/rowset.h"

namespace vok::recordset {
namespace {

constexpr char kSeparator = '|';  // of no address of a name space

/// Carries the handler's exceptions over the C code in between.
struct Session {
  XML_Parser parser;
  XmlHandler& handler;
  std::size_t depth = 0;
  std::string refusal;
  std::exception_ptr thrown;

  bool IsOver() const { return thrown || !refusal.empty(); }
  template <typename Call>
  void Guard(Call call) {
    if (IsOver()) return;
    try {
      call();
    } catch (...) {
      thrown = std::current_exception();
      XML_StopParser(parser, XML_FALSE);
    }
  }
  void Refuse(const char* why) {
    if (IsOver()) return;
    refusal = why;
    XML_StopParser(parser, XML_FALSE);
  }
};

void OnStart(void* data, const char* name, const char** attributes) {
  auto& session = *static_cast<Session*>(data);
  if (++session.depth > kDeepestElement)
    return session.Refuse("its elements are nested too deeply");
  session.Guard([&] { session.handler.Start(SplitName(name), XmlAttributes(attributes)); });
}

void OnEnd(void* data, const char*) {
  auto& session = *static_cast<Session*>(data);
  --session.depth;
  session.Guard([&] { session.handler.End(); });
}

void OnDoctype(void* data, const char*, const char*, const char*, int) {
  static_cast<Session*>(data)->Refuse("it has a DOCTYPE");
}

}  // namespace

XmlName SplitName(std::string_view joined) {
  const auto at = joined.rfind(kSeparator);
  if (at == std::string_view::npos) return {{}, joined};
  return {joined.substr(0, at), joined.substr(at + 1)};
}

const char* XmlAttributes::Get(XmlName name) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2) {
    if (SplitName(pair[0]) == name) return pair[1];
  }
  return nullptr;
}

void ParseXml(std::span<const std::byte> bytes, XmlHandler& handler, const std::string& name) {
  const std::unique_ptr<std::remove_pointer_t<XML_Parser>, void (*)(XML_Parser)> parser(
      XML_ParserCreateNS(nullptr, kSeparator), XML_ParserFree);
  if (!parser) throw std::bad_alloc();
  Session session{parser.get(), handler, 0, {}, {}};
  XML_SetUserData(parser.get(), &session);
  XML_SetElementHandler(parser.get(), OnStart, OnEnd);
  XML_SetStartDoctypeDeclHandler(parser.get(), OnDoctype);
  static_assert(kLargestFile < 0x7FFFFFFF);  // expat counts bytes in an int
  const auto status = XML_Parse(parser.get(), reinterpret_cast<const char*>(bytes.data()),
                                static_cast<int>(bytes.size()), XML_TRUE);
  if (session.thrown) std::rethrow_exception(session.thrown);
  if (status == XML_STATUS_OK) return;
  if (!session.refusal.empty()) ThrowUnreadable(name, session.refusal);
  ThrowUnreadable(name, std::string("it is no proper XML: ") +
                            XML_ErrorString(XML_GetErrorCode(parser.get())) + " in line " +
                            std::to_string(XML_GetCurrentLineNumber(parser.get())));
}

}  // namespace vok::recordset
