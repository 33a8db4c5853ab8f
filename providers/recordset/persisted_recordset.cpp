#include "providers/recordset/persisted_recordset.h"

#include <charconv>
#include <numeric>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/failure.h"
#include "platform/text.h"

namespace vok::recordset {
namespace {

[[noreturn]] void ThrowBad(std::string_view text) {
  throw Failure(failure_number::kWrongArguments,
                "The criterion \"" + std::string(text) +
                    "\" is not understood: a field, =, and a number or a text in single quotes "
                    "are expected");
}

std::optional<double> NumberIn(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

/// The text between single quotes, which stand doubled inside.
std::optional<std::string> Unquoted(std::string_view text) {
  if (text.size() < 2 || !text.starts_with('\'') || !text.ends_with('\'')) return std::nullopt;
  text = text.substr(1, text.size() - 2);
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    plain += text[at];
    if (text[at] != '\'') continue;
    if (++at >= text.size() || text[at] != '\'') return std::nullopt;
  }
  return plain;
}

[[noreturn]] void ThrowNoField(const std::string& field) {
  throw Failure(failure_number::kItemNotFound,
                "Item cannot be found in the collection: field " + field);
}

}  // namespace

Criterion::Criterion(std::string_view text) {
  const auto equals = text.find('=');
  if (equals == std::string_view::npos) ThrowBad(text);
  auto field = TrimBlanks(text.substr(0, equals));
  if (field.starts_with('[') && field.ends_with(']')) field = field.substr(1, field.size() - 2);
  if (field.empty() || field.find_first_of(" <>[]'") != std::string_view::npos) ThrowBad(text);
  field_ = field;

  const auto literal = TrimBlanks(text.substr(equals + 1));
  if (const auto number = NumberIn(literal)) {
    wanted_ = *number;
  } else if (auto quoted = Unquoted(literal)) {
    wanted_ = *std::move(quoted);
  } else {
    ThrowBad(text);
  }
}

bool Criterion::IsMet(const Locale& locale, const Value& value) const {
  const auto* text = value.As<std::string>();
  if (const auto* wanted = std::get_if<std::string>(&wanted_)) {
    return text != nullptr && EqualNoCase(locale, *text, *wanted);
  }
  if (value.IsNull() || value.IsEmpty()) return false;
  const auto number = text != nullptr ? NumberIn(TrimBlanks(*text)) : value.ToDouble();
  return number && *number == std::get<double>(wanted_);
}

PersistedRecordset::PersistedRecordset(Rowset rowset, const Locale& locale)
    : locale_(locale), rowset_(std::move(rowset)) {
  SetFilter("");
}

void PersistedRecordset::MoveFirst() {
  position_ = 0;
  CheckNotAtEnd();
}

void PersistedRecordset::MoveNext() {
  CheckNotAtEnd();
  ++position_;
}

void PersistedRecordset::SetFilter(const std::string& text) {
  std::vector<std::size_t> shown(rowset_.rows.size());
  std::iota(shown.begin(), shown.end(), std::size_t{0});
  if (!text.empty()) {
    const Criterion criterion(text);
    const std::size_t place = PlaceOf(criterion.field());
    std::erase_if(shown, [&](std::size_t row) {
      return !criterion.IsMet(locale_, rowset_.rows[row][place]);
    });
  }
  shown_ = std::move(shown);
  position_ = 0;
}

void PersistedRecordset::Find(const std::string& text) {
  const Criterion criterion(text);
  const std::size_t place = PlaceOf(criterion.field());
  CheckNotAtEnd();
  while (position_ < shown_.size() &&
         !criterion.IsMet(locale_, rowset_.rows[shown_[position_]][place])) {
    ++position_;
  }
}

int32_t PersistedRecordset::FieldCount() const {
  return static_cast<int32_t>(rowset_.columns.size());
}

std::string PersistedRecordset::FieldName(int32_t index) const {
  return rowset_.columns[Checked(index)].name;
}

Value PersistedRecordset::Field(int32_t index) const { return Shown(Checked(index)); }

Value PersistedRecordset::Field(const std::string& name) const { return Shown(PlaceOf(name)); }

void PersistedRecordset::CheckNotAtEnd() const {
  if (!AtEnd()) return;
  throw Failure(failure_number::kNoCurrentRecord,
                "No current record: the record set is empty or at its end");
}

std::size_t PersistedRecordset::PlaceOf(const std::string& name) const {
  const auto& columns = rowset_.columns;
  for (std::size_t place = 0; place < columns.size(); ++place) {
    if (EqualNoCase(locale_, columns[place].name, name)) return place;
  }
  ThrowNoField("\"" + name + "\"");
}

std::size_t PersistedRecordset::Checked(int32_t index) const {
  if (index < 0 || index >= FieldCount()) ThrowNoField("number " + std::to_string(index));
  return static_cast<std::size_t>(index);
}

Value PersistedRecordset::Shown(std::size_t place) const {
  CheckNotAtEnd();
  const Value& value = rowset_.rows[shown_[position_]][place];
  const auto* unshown = value.As<CellError>();
  if (unshown == nullptr) return value;
  throw Failure(failure_number::kTypeMismatch, "The field \"" + rowset_.columns[place].name +
                                                   "\" cannot be shown: " + unshown->description);
}

std::unique_ptr<Recordset> OpenPersisted(const Files& files, const Locale& locale,
                                         const std::string& path) {
  const std::string bytes = ReadWholeFile(files, path);
  return std::make_unique<PersistedRecordset>(
      ReadRowset(std::as_bytes(std::span(bytes)), files.NativePath(path), {&locale}), locale);
}

}  // namespace vok::recordset
