// A fuzz target is one function, which neither crashes nor takes long with any bytes.
// Its file includes this one and is the only one of its program that does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/failure.h"

/// Aborts when what the bytes give is wrong.
void FuzzOne(std::string_view bytes);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  FuzzOne({reinterpret_cast<const char*>(data), size});
  return 0;
}

/// Whether the act ends with a failure, as it may.
template <typename Act>
bool Refuses(Act act) {
  try {
    act();
    return false;
  } catch (const vok::Failure&) {
    return true;
  }
}

/// Aborts unless `rewrite` refuses the bytes, or makes of its own text that text again.
template <typename Rewrite>
void IsRewrittenTheSame(std::string_view bytes, Rewrite rewrite) {
  std::string first;
  if (!Refuses([&] { first = rewrite(bytes); }) && rewrite(first) != first) std::abort();
}
