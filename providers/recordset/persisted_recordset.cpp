#include "providers/recordset/persisted_recordset.h"

#include <numeric>
#include <string_view>
#include <utility>

#include "platform/failure.h"
#include "platform/text.h"
#include "providers/recordset/criterion.h"

namespace vok::recordset {
namespace {

[[noreturn]] void ThrowNoField(const std::string& field) {
  throw Failure(failure_number::kItemNotFound,
                "Item cannot be found in the collection: field " + field);
}

}  // namespace

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
