#include "hosts/composition/query_window.h"

#include <utility>

#include "texts/language.h"

namespace vok {
namespace {

std::unique_ptr<QueryWindow> Open(const Host& host, Publics& publics, bool from_right) {
  auto desktop = OpenDesktop(host.component);
  publics.language.RightToLeftMarker = from_right ? 1 : 0;
  return std::make_unique<DesktopWindow>(std::move(desktop), host, publics);
}

}  // namespace

std::unique_ptr<QueryWindow> OpenQueryWindow(const Host& host, Publics& publics) {
  InitLanguage(host, publics.environment, publics.language);
  return Open(host, publics, IsReadFromRight(publics.language));
}

std::unique_ptr<QueryWindow> OpenQueryWindowFromRight(const Host& host, Publics& publics) {
  return Open(host, publics, true);
}

}  // namespace vok
