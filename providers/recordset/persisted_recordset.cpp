#include "providers/recordset/persisted_recordset.h"

#include <numeric>
#include <string_view>
#include <utility>

#include "platform/failure.h"
#include "platform/text.h"
#include "providers/recordset/criterion.h"

namespace vok::recordset {
namespace {

[[noreturn]] void ThrowNoRow() {
  throw Failure(failure_number::kNoCurrentRecord,
                "There is no current record: the record set is empty or at its end");
}

[[noreturn]] void ThrowReadOnly() {
  throw Failure(failure_number::kFeatureNotAvailable,
                "A record set that was opened from a file is for reading alone");
}

[[noreturn]] void ThrowNoField(const std::string& field) {
  throw Failure(failure_number::kItemNotFound,
                "Item cannot be found in the collection: field " + field);
}

bool NamesThisProvider(const Locale& locale, std::string_view text) {
  if (text.ends_with(';')) text.remove_suffix(1);
  const auto equals = text.find('=');
  return equals != std::string_view::npos &&
         EqualNoCase(locale, TrimBlanks(text.substr(0, equals)), "Provider") &&
         EqualNoCase(locale, TrimBlanks(text.substr(equals + 1)), "MSPersist");
}

}  // namespace

PersistedRecordset::PersistedRecordset(Rowset rowset, const Locale& locale)
    : locale_(locale), rowset_(std::move(rowset)) {
  SetFilter("");
}

void PersistedRecordset::SetActiveConnection(Connection* connection) {
  if (connection != nullptr) ThrowReadOnly();
}

void PersistedRecordset::Open(const std::string&, CursorType, LockType, int32_t) {
  throw Failure(failure_number::kInvalidCall,
                "The record set was opened from a file; make a new one to open another");
}

void PersistedRecordset::Close() {
  Opened();
  rowset_.reset();
}

int32_t PersistedRecordset::RecordCount() const {
  Opened();
  return static_cast<int32_t>(shown_.size());
}

bool PersistedRecordset::EndOfFile() const {
  Opened();
  return position_ >= shown_.size();
}

void PersistedRecordset::MoveFirst() {
  Opened();
  if (shown_.empty()) ThrowNoRow();
  position_ = 0;
}

void PersistedRecordset::MoveNext() {
  if (EndOfFile()) ThrowNoRow();
  ++position_;
}

void PersistedRecordset::SetFilter(const std::string& text) {
  const Rowset& rowset = Opened();
  std::vector<std::size_t> shown(rowset.rows.size());
  std::iota(shown.begin(), shown.end(), std::size_t{0});
  if (!text.empty()) {
    const Criterion criterion(text);
    const std::size_t place = PlaceOf(criterion.field());
    std::erase_if(
        shown, [&](std::size_t row) { return !criterion.IsMet(locale_, rowset.rows[row][place]); });
  }
  shown_ = std::move(shown);
  position_ = 0;
}

void PersistedRecordset::Find(const std::string& text) {
  const Rowset& rowset = Opened();
  const Criterion criterion(text);
  const std::size_t place = PlaceOf(criterion.field());
  if (EndOfFile()) ThrowNoRow();
  while (position_ < shown_.size() &&
         !criterion.IsMet(locale_, rowset.rows[shown_[position_]][place])) {
    ++position_;
  }
}

int32_t PersistedRecordset::FieldCount() const {
  return static_cast<int32_t>(Opened().columns.size());
}

std::string PersistedRecordset::FieldName(int32_t index) const {
  return Opened().columns[Checked(index)].name;
}

Value PersistedRecordset::Field(int32_t index) const { return Shown(Checked(index)); }

Value PersistedRecordset::Field(const std::string& name) const { return Shown(PlaceOf(name)); }

void PersistedRecordset::AddNew() { ThrowReadOnly(); }
void PersistedRecordset::SetField(const std::string&, const Value&) { ThrowReadOnly(); }
void PersistedRecordset::Update() { ThrowReadOnly(); }

const Rowset& PersistedRecordset::Opened() const {
  if (!rowset_) {
    throw Failure(failure_number::kObjectClosed,
                  "Operation is not allowed when the object is closed: the record set");
  }
  return *rowset_;
}

std::size_t PersistedRecordset::PlaceOf(const std::string& name) const {
  const auto& columns = Opened().columns;
  for (std::size_t place = 0; place < columns.size(); ++place) {
    if (EqualNoCase(locale_, columns[place].name, name)) return place;
  }
  ThrowNoField("\"" + name + "\"");
}

std::size_t PersistedRecordset::Checked(int32_t index) const {
  if (index < 0 || index >= FieldCount()) ThrowNoField("number " + std::to_string(index));
  return static_cast<std::size_t>(index);
}

const Row& PersistedRecordset::CurrentRow() const {
  if (EndOfFile()) ThrowNoRow();
  return Opened().rows[shown_[position_]];
}

Value PersistedRecordset::Shown(std::size_t place) const {
  const Value& value = CurrentRow()[place];
  const auto* unshown = value.As<CellError>();
  if (unshown == nullptr) return value;
  throw Failure(failure_number::kTypeMismatch, "The field \"" + Opened().columns[place].name +
                                                   "\" cannot be shown: " + unshown->description);
}

std::unique_ptr<Recordset> OpenPersisted(const Files& files, const Locale& locale,
                                         const std::string& source,
                                         const std::string& connection_text) {
  if (!NamesThisProvider(locale, connection_text)) {
    throw Failure(failure_number::kProviderNotFound,
                  "Provider cannot be found: the connection text \"" + connection_text +
                      "\" names none that opens a record set from a file. Use Provider=MSPersist.");
  }
  const std::string bytes = ReadWholeFile(files, source);
  return std::make_unique<PersistedRecordset>(
      ReadRowset(std::as_bytes(std::span(bytes)), files.NativePath(source), {&locale}), locale);
}

}  // namespace vok::recordset
