// A record set out of a file, for reading: the whole of it in memory, the file is not held. It is
// filtered and searched by a criterion, such as "field = 1" or "[field]='text'".
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/database.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "platform/value.h"
#include "providers/recordset/rowset.h"

namespace vok::recordset {

/// One field, "=", and a number or a text in single quotes (doubled inside).
class Criterion {
 public:
  /// Failure 3001 for any other text.
  explicit Criterion(std::string_view text);

  const std::string& field() const { return field_; }
  /// A number equals a number, and a text that writes it; a text equals a text without regard to
  /// case. NULL equals nothing.
  bool IsMet(const Locale& locale, const Value& value) const;

 private:
  std::string field_;
  std::variant<double, std::string> wanted_;
};

/// Failures: 3021 without a current row, 3265 for a field that is not there, 13 for a value that
/// cannot be shown.
class PersistedRecordset : public Recordset {
 public:
  /// `locale` outlives it.
  PersistedRecordset(Rowset rowset, const Locale& locale);

  /// Of the rows that the filter shows, as are all the moves.
  int32_t Count() const override { return static_cast<int32_t>(shown_.size()); }
  bool AtEnd() const override { return position_ >= shown_.size(); }
  void MoveFirst() override;
  void MoveNext() override;
  void SetFilter(const std::string& criterion) override;
  void Find(const std::string& criterion) override;

  int32_t FieldCount() const override;
  std::string FieldName(int32_t index) const override;
  Value Field(int32_t index) const override;
  Value Field(const std::string& name) const override;

 private:
  void CheckNotAtEnd() const;
  std::size_t PlaceOf(const std::string& name) const;
  std::size_t Checked(int32_t index) const;
  Value Shown(std::size_t place) const;

  const Locale& locale_;
  Rowset rowset_;
  std::vector<std::size_t> shown_;  ///< rows, by their place in the set
  std::size_t position_ = 0;        ///< in `shown_`
};

/// Opens the file, as the platform's provider "MSPersist" does. Failures: those of `Files::Map`,
/// -2147467259 for a file that is not a record set.
std::unique_ptr<Recordset> OpenPersisted(const Files& files, const Locale& locale,
                                         const std::string& path);

}  // namespace vok::recordset
