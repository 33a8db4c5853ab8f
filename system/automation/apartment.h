// The use of automation objects on one thread, for as long as this lives. Objects are let go
// before.
#pragma once

#include "system/automation/ole.h"

namespace vok::windows {

class Apartment {
 public:
  Apartment() : entered_(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() {
    if (entered_) ::CoUninitialize();
  }

 private:
  bool entered_;
};

}  // namespace vok::windows
