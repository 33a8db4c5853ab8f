#include "providers/workbook/xlsx/spool.h"

#include <span>

namespace vok::xlsx {

void Spool::Append(std::string_view bytes) {
  held_.Append(bytes);
  if (held_.size() < kMostHeld) return;
  if (!file_) file_ = files_.Scratch(path_);
  file_->Write(std::as_bytes(std::span(held_.data(), held_.size())));
  on_disk_ += held_.size();
  held_.Resize(0);
}

}  // namespace vok::xlsx
