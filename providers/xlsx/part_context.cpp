#include "providers/xlsx/part_context.h"

#include <algorithm>
#include <charconv>

#include "platform/failure.h"

namespace vok::xlsx {
namespace {

constexpr std::size_t kDeepestElement = 64;

}  // namespace

PartContext::PartContext(std::string path, std::string part, std::vector<std::string>& unkept)
    : path_(std::move(path)), part_(std::move(part)), unkept_(unkept) {}

void PartContext::Parse(std::string_view xml, xml::Handler& handler) const {
  const auto fault = xml::Parser(handler, kDeepestElement).Read(xml, true);
  if (!fault) return;
  throw Failure(failure_number::kAutomation,
                "The workbook \"" + path_ + "\" cannot be opened: its part \"" + part_ +
                    "\" is no proper XML: " + (fault->refused ? fault->why : fault->InLine()) +
                    ". Restore it from a copy.");
}

void PartContext::Fail(std::string_view why) const {
  throw Failure(failure_number::kAutomation,
                "The workbook \"" + path_ + "\" cannot be opened: in its part \"" + part_ + "\" " +
                    std::string(why) + ". Restore it from a copy.");
}

void PartContext::Lose(std::string_view what) {
  std::string note = part_ + ": " + std::string(what);
  if (std::find(unkept_.begin(), unkept_.end(), note) == unkept_.end()) {
    unkept_.push_back(std::move(note));
  }
}

void PartContext::LoseElement(std::string_view name) {
  std::string tag = "<";
  tag.append(name).append(">");
  Lose(tag);
}

uint32_t PartContext::Count(std::string_view name, std::string_view text, uint32_t missing,
                            uint32_t most) const {
  if (text.empty()) return missing;
  uint32_t value = 0;
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), value);
  if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size() || value > most) {
    Fail("the attribute " + std::string(name) + " is \"" + std::string(text.substr(0, 40)) + "\"");
  }
  return value;
}

}  // namespace vok::xlsx
