#include "platform/files.h"

namespace vok {

void WriteWholeFile(Files& files, const std::string& path, std::string_view bytes) {
  const auto replacement = files.Replace(path);
  replacement->Write(std::as_bytes(std::span(bytes.data(), bytes.size())));
  replacement->Commit();
}

}  // namespace vok
