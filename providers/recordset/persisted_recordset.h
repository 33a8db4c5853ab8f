// A record set out of a file, for reading: the whole of it in memory, the file is not held.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "providers/recordset/rowset.h"

namespace vok::recordset {

/// Open from the beginning, on its first row. Changes fail with 3251, as does a connection to send
/// them to; cursor and lock settings have no effect. Failures else: 3704 after `Close`, 3021
/// without a current row, 3265 for a field that is not there, 13 for a value that cannot be shown.
class PersistedRecordset : public Recordset {
 public:
  /// `locale` outlives it.
  PersistedRecordset(Rowset rowset, const Locale& locale);

  void SetCursorLocation(CursorLocation) override {}
  void SetActiveConnection(Connection* connection) override;
  void SetCursorType(CursorType) override {}
  void SetLockType(LockType) override {}
  void Open(const std::string& source, CursorType type, LockType lock, int32_t options) override;
  void Close() override;

  /// Of the rows that the filter shows, as are all the moves.
  int32_t RecordCount() const override;
  bool EndOfFile() const override;
  void MoveFirst() override;
  void MoveNext() override;
  void SetFilter(const std::string& criterion) override;
  void Find(const std::string& criterion) override;

  int32_t FieldCount() const override;
  std::string FieldName(int32_t index) const override;
  Value Field(int32_t index) const override;
  Value Field(const std::string& name) const override;

  void AddNew() override;
  void SetField(const std::string& name, const Value& value) override;
  void Update() override;

 private:
  const Rowset& Opened() const;
  std::size_t PlaceOf(const std::string& name) const;
  std::size_t Checked(int32_t index) const;
  const Row& CurrentRow() const;
  Value Shown(std::size_t place) const;

  const Locale& locale_;
  std::optional<Rowset> rowset_;
  std::vector<std::size_t> shown_;  ///< rows, by their place in the set
  std::size_t position_ = 0;        ///< in `shown_`
};

/// Opens the file `source` by the connection text "Provider=MSPersist". Failures: 3706 for another
/// text, those of `Files::Map`, -2147467259 for a file that is no record set.
std::unique_ptr<Recordset> OpenPersisted(const Files& files, const Locale& locale,
                                         const std::string& source,
                                         const std::string& connection_text);

}  // namespace vok::recordset
