#include "platform/row_text.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"
#include "platform/utf8.h"

namespace vok {
namespace {

/// What a backslash before the letter stands for.
char Meant(char letter) {
  constexpr std::string_view kLetters = "bfnrtv0";
  constexpr std::string_view kMeant("\b\f\n\r\t\v\0", kLetters.size());
  const std::size_t at = kLetters.find(letter);
  return at == kLetters.npos ? letter : kMeant[at];
}

/// In place: what it stands for is never longer.
std::string_view Unescaped(char* begin, char* end) {
  char* to = std::find(begin, end, '\\');
  for (const char* from = to; from < end; ++from) {
    *to++ = *from == '\\' && from + 1 < end ? Meant(*++from) : *from;
  }
  return {begin, to};
}

}  // namespace

RowText::RowText(std::string text, std::size_t width, std::string place, uint64_t first_row)
    : text_(std::move(text)),
      place_(std::move(place)),
      row_(first_row - 1),
      at_(text_.data()),
      end_(text_.data() + text_.size()),
      is_utf8_(IsUtf8(text_)),
      fields_(width) {}

bool RowText::Next() {
  if (at_ == end_) return false;
  ++row_;
  for (Field& field : fields_) {
    const bool is_last = &field == &fields_.back();
    TakeField(is_last ? '\n' : '\t', field);
  }
  return true;
}

void RowText::TakeField(char last, Field& field) {
  char* end = at_;
  while (end < end_ && *end != '\t' && *end != '\n') ++end;
  if (end == end_ || *end != last) {
    Fail("the server sent another number of fields than was asked for");
  }
  const std::string_view written(at_, end);
  field.is_null = written == "\\N";
  field.text = field.is_null ? std::string_view() : Unescaped(at_, end);
  if (!is_utf8_ && !IsUtf8(field.text)) Fail("a field is not valid UTF-8");
  at_ = end + 1;
}

void RowText::Fail(const std::string& what) const {
  throw Failure(failure_number::kUnspecified, PlaceOf(row_) + ": " + what);
}

}  // namespace vok
