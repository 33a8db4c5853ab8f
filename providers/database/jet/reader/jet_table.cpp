#include "providers/database/jet/reader/jet_table.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "providers/database/jet/reader/jet_text.h"

namespace vok::jet {
namespace {

constexpr int kDeleted = 0x8000;  // flags of a row's start
constexpr int kMoved = 0x4000;
constexpr int kStart = 0x1FFF;
constexpr int kMostMoves = 16;
constexpr std::size_t kPointerSize = 4;

constexpr int kInteger = 3;  // ADO's data types
constexpr int kDate = 7;
constexpr int kBoolean = 11;
constexpr int kText = 202;

/// 0 for a kind that is not read.
int DataType(const MdbColumn& column) {
  switch (column.col_type) {
    case MDB_BYTE:
    case MDB_INT:
    case MDB_LONGINT:
      return kInteger;
    case MDB_DATETIME:
      return kDate;
    case MDB_BOOL:
      return kBoolean;
    case MDB_TEXT:
      return kText;
    default:
      return 0;
  }
}

template <typename Number>
Number Copied(std::string_view bytes) {
  Number number{};
  std::memcpy(&number, bytes.data(), sizeof number);
  return number;
}

/// Nothing for a size that no such number has.
std::optional<int64_t> WholeNumber(std::string_view bytes) {
  switch (bytes.size()) {
    case 1:
      return Copied<uint8_t>(bytes);
    case 2:
      return Copied<int16_t>(bytes);
    case 4:
      return Copied<int32_t>(bytes);
    default:
      return std::nullopt;
  }
}

}  // namespace

JetTable::JetTable(MdbHandle& file, const std::string& name, unsigned long page,
                   const std::set<std::string>& wanted)
    : file_(file) {
  entry_.mdb = &file;
  entry_.object_type = MDB_TABLE;
  entry_.table_pg = page;
  std::snprintf(entry_.object_name, sizeof entry_.object_name, "%s", name.c_str());
  table_ = mdb_read_table(&entry_);
  if (table_ == nullptr || mdb_read_columns(table_) == nullptr) {
    mdb_free_tabledef(table_);
    ThrowDamaged("the definition of the table " + name + " cannot be read");
  }
  for (guint i = 0; i < table_->columns->len; ++i) {
    const auto* column = static_cast<const MdbColumn*>(g_ptr_array_index(table_->columns, i));
    if (!wanted.empty() && !wanted.contains(column->name)) continue;
    if (DataType(*column) == 0) {
      unread_.emplace_back(column->name);
    } else {
      columns_.push_back({column->name, static_cast<int>(i), column});
    }
  }
}

JetTable::~JetTable() { mdb_free_tabledef(table_); }

Json JetTable::Columns() const {
  Json columns = Json::array();
  for (const Column& column : columns_) {
    const int type = DataType(*column.definition);
    columns.push_back({{"name", column.name},
                       {"type", type},
                       {"size", type == kText ? column.definition->col_size / 2 : 0}});
  }
  return columns;
}

std::size_t JetTable::ColumnNamed(const std::string& name) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (columns_[i].name == name) return i;
  }
  ThrowDamaged("the table " + std::string(table_->name) + " has no column " + name);
}

std::vector<Row> JetTable::Rows() {
  std::vector<Row> rows;
  mdb_rewind_table(table_);
  while (mdb_read_next_dpg(table_) != 0) {
    const guint32 page = file_.cur_pg;
    const int count = mdb_get_int16(file_.pg_buf, file_.fmt->row_count_offset);
    for (int row = 0; row < count; ++row) {
      const auto place = Find(page, static_cast<unsigned>(row));
      if (place) rows.push_back(ReadRow(*place));
    }
  }
  // A file that was not closed may say that it has none: more are never a fault.
  if (rows.size() < table_->num_rows) {
    ThrowDamaged("the table " + std::string(table_->name) + " should have " +
                 std::to_string(table_->num_rows) + " rows, " + std::to_string(rows.size()) +
                 " can be found");
  }
  return rows;
}

// A row that outgrew its page leaves a pointer there. Where it went it is marked as deleted, so
// that those who look through the pages meet it once.
std::optional<JetTable::Place> JetTable::Find(uint32_t page, unsigned row) {
  for (int moves = 0; moves < kMostMoves; ++moves) {
    Place place{};
    if (mdb_read_pg(&file_, page) == 0 || file_.pg_buf[0] != MDB_PAGE_DATA ||
        mdb_find_row(&file_, static_cast<int>(row), &place.start, &place.size) != 0) {
      break;
    }
    const int flags = place.start;
    place.start &= kStart;
    if (moves == 0 && (flags & kDeleted) != 0) return std::nullopt;
    if ((flags & kMoved) == 0) return place;
    if (place.size < kPointerSize) break;
    const auto pointer = static_cast<uint32_t>(mdb_get_int32(file_.pg_buf, place.start));
    page = pointer >> 8;
    row = pointer & 0xFF;
  }
  ThrowDamaged("a row of the table " + std::string(table_->name) + " cannot be found on page " +
               std::to_string(page));
}

Row JetTable::ReadRow(const Place& place) {
  std::vector<MdbField> fields(table_->num_cols);
  const int stored = mdb_crack_row(table_, place.start, place.size, fields.data());
  if (stored < 0)
    ThrowDamaged("a row of the table " + std::string(table_->name) + " makes no sense");
  Row row;
  for (const Column& column : columns_) {
    MdbField& field = fields[static_cast<std::size_t>(column.position)];
    // Columns that were added later are not in the rows from before.
    if (column.definition->col_num >= stored) field.is_null = 1;
    row.push_back(ReadField(column, field, place));
  }
  return row;
}

Json JetTable::ReadField(const Column& column, const MdbField& field, const Place& place) const {
  const int type = DataType(*column.definition);
  if (type == kBoolean) return field.is_null == 0;
  if (field.is_null != 0) return nullptr;
  const auto* row = file_.pg_buf + place.start;
  const auto* value = static_cast<const unsigned char*>(field.value);
  const bool inside =
      value != nullptr && value >= row && field.siz >= 0 && value + field.siz <= row + place.size;
  if (inside) {
    const std::string_view bytes(reinterpret_cast<const char*>(value),
                                 static_cast<std::size_t>(field.siz));
    if (type == kText) {
      if (const auto text = TextOf(bytes)) return *text;
    } else if (type == kInteger) {
      if (const auto number = WholeNumber(bytes)) return *number;
    } else if (bytes.size() == sizeof(double) && std::isfinite(Copied<double>(bytes))) {
      return Copied<double>(bytes);
    }
  }
  ThrowDamaged("a value in the column " + column.name + " of the table " +
               std::string(table_->name) + " makes no sense");
}

}  // namespace vok::jet
