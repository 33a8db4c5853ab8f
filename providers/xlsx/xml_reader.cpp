#include "providers/xlsx/xml_reader.h"

#include <expat.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <type_traits>

#include "platform/failure.h"

namespace vok::xlsx {
namespace {

constexpr std::size_t kChunk = std::size_t{16} << 20;  // expat counts bytes in an int

/// Carries the handler's exceptions over the C code in between.
struct Session {
  XML_Parser parser;
  XmlHandler& handler;
  std::size_t depth = 0;
  std::string refusal;
  std::exception_ptr thrown;

  template <typename Call>
  void Guard(Call call) {
    if (thrown || !refusal.empty()) return;
    try {
      call();
    } catch (...) {
      thrown = std::current_exception();
      XML_StopParser(parser, XML_FALSE);
    }
  }
  void Refuse(const char* why) {
    refusal = why;
    XML_StopParser(parser, XML_FALSE);
  }
};

void OnStart(void* data, const char* name, const char** attributes) {
  auto& session = *static_cast<Session*>(data);
  if (++session.depth > kMaxXmlDepth) return session.Refuse("its elements are nested too deeply");
  session.Guard([&] { session.handler.Start(LocalName(name), XmlAttributes(attributes)); });
}

void OnEnd(void* data, const char* name) {
  auto& session = *static_cast<Session*>(data);
  --session.depth;
  session.Guard([&] { session.handler.End(LocalName(name)); });
}

void OnCharacters(void* data, const char* characters, int count) {
  auto& session = *static_cast<Session*>(data);
  session.Guard([&] { session.handler.Characters({characters, static_cast<std::size_t>(count)}); });
}

void OnDoctype(void* data, const char*, const char*, const char*, int) {
  static_cast<Session*>(data)->Refuse("it has a DOCTYPE");
}

std::string WhatIsWrong(const Session& session) {
  if (!session.refusal.empty()) return session.refusal;
  return std::string(XML_ErrorString(XML_GetErrorCode(session.parser))) + " in line " +
         std::to_string(XML_GetCurrentLineNumber(session.parser));
}

}  // namespace

std::string_view XmlAttributes::Get(std::string_view name) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2) {
    if (LocalName(pair[0]) == name) return pair[1];
  }
  return {};
}

bool XmlAttributes::IsTrue(std::string_view name) const {
  const std::string_view value = Get(name);
  return value == "1" || value == "true";
}

void ParseXml(std::string_view xml, XmlHandler& handler, const std::string& path,
              const std::string& part) {
  const std::unique_ptr<std::remove_pointer_t<XML_Parser>, void (*)(XML_Parser)> parser(
      XML_ParserCreate(nullptr), XML_ParserFree);
  if (!parser) throw std::bad_alloc();
  Session session{parser.get(), handler, 0, {}, {}};
  XML_SetUserData(parser.get(), &session);
  XML_SetElementHandler(parser.get(), OnStart, OnEnd);
  XML_SetCharacterDataHandler(parser.get(), OnCharacters);
  XML_SetStartDoctypeDeclHandler(parser.get(), OnDoctype);
  bool good = true;
  bool last = false;
  while (good && !last) {
    const std::string_view chunk = xml.substr(0, std::min(kChunk, xml.size()));
    xml.remove_prefix(chunk.size());
    last = xml.empty();
    good = XML_Parse(parser.get(), chunk.data(), static_cast<int>(chunk.size()), last) ==
           XML_STATUS_OK;
  }
  if (session.thrown) std::rethrow_exception(session.thrown);
  if (!good) {
    throw Failure(failure_number::kAutomation,
                  "The workbook \"" + path + "\" cannot be opened: its part \"" + part +
                      "\" is no proper XML: " + WhatIsWrong(session) + ". Restore it from a copy.");
  }
}

}  // namespace vok::xlsx
