// What an operating system itself offers a host: the build takes hosts/portable or hosts/windows.
#pragma once

#include <memory>
#include <string>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "platform/registry.h"
#include "providers/xmla/http_transport.h"

namespace vok {

struct SystemPlatform {
  std::unique_ptr<Files> files;
  std::unique_ptr<Locale> locale;
  std::unique_ptr<Registry> registry;
  std::unique_ptr<Clock> clock;
  xmla::NewHttpTransport transport;
  std::string component_folder;  ///< of the file that this code was loaded from
};

SystemPlatform NewSystemPlatform();

}  // namespace vok
