#include "providers/database/jet/reader/jet_text.h"

#include <glib.h>

#include <memory>
#include <vector>

namespace vok::jet {
namespace {

constexpr std::string_view kMark = "\xFF\xFE";

using Units = std::vector<gunichar2>;

gunichar2 Unit(unsigned char low, unsigned char high) {
  return static_cast<gunichar2>(low | high << 8);
}

std::optional<Units> WholeUnits(std::string_view bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  Units units;
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    units.push_back(
        Unit(static_cast<unsigned char>(bytes[i]), static_cast<unsigned char>(bytes[i + 1])));
  }
  return units;
}

std::optional<Units> Expanded(std::string_view bytes) {
  Units units;
  bool single = true;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto low = static_cast<unsigned char>(bytes[i]);
    if (single && low != 0) {
      units.push_back(low);
    } else if (low == 0) {
      single = !single;
    } else if (++i < bytes.size()) {
      units.push_back(Unit(low, static_cast<unsigned char>(bytes[i])));
    } else {
      return std::nullopt;
    }
  }
  return units;
}

}  // namespace

std::optional<std::string> TextOf(std::string_view bytes) {
  const bool short_form = bytes.starts_with(kMark);
  const auto units = short_form ? Expanded(bytes.substr(kMark.size())) : WholeUnits(bytes);
  if (!units) return std::nullopt;
  if (units->empty()) return std::string();
  glong size = 0;
  const std::unique_ptr<gchar, decltype(&g_free)> text(
      g_utf16_to_utf8(units->data(), static_cast<glong>(units->size()), nullptr, &size, nullptr),
      &g_free);
  if (!text) return std::nullopt;
  return std::string(text.get(), static_cast<std::size_t>(size));
}

}  // namespace vok::jet
