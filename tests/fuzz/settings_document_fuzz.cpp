// Any bytes as a settings document: refused, or written out and read again the same.
#include "cli/settings_document.h"
#include "tests/fuzz/fuzz.h"

void FuzzOne(std::string_view bytes) {
  const auto written = [](std::string_view json) {
    return vok::cli::PrintSettingsDocument(vok::cli::ParseSettingsDocument(json, "input.json"));
  };
  std::string first;
  if (Refuses([&] { first = written(bytes); })) return;
  if (written(first) != first) std::abort();
}
