// What the component asks of this module when it loads it.
#include "ui/qt/qt_desktop.h"

extern "C" __attribute__((visibility("default"))) vok::Desktop* vokcube_open_desktop() {
  return new vok::qt::QtDesktop;
}
