// The binary form: an Advanced Data Adtg as [MS-ADTG], section 2.2.3.14, describes it.
//
// Header, options, one result descriptor, its context, table descriptors, column descriptors, rows,
// an end mark; each but the rows and the end has its size in front. What the public description
// gives without an example is read as it stands there: the changes, insertions and deletions that
// wait to be sent. Their two maps have one bit per column: a value follows, the field became NULL.
// Child record sets and big-endian files are refused.
#include "platform/failure.h"
#include "providers/recordset/adtg_column.h"
#include "providers/recordset/byte_reader.h"

namespace vok::recordset {
namespace {

enum Token : uint8_t {
  kHeader = 0x01,
  kHandlerOptions = 0x02,
  kResultDescriptor = 0x03,
  kTableDescriptor = 0x05,
  kColumnDescriptor = 0x06,
  kRow = 0x07,
  kChangedRow = 0x0A,
  kDeletedRow = 0x0C,
  kInsertedRow = 0x0D,
  kDone = 0x0F,
  kContext = 0x10
};

constexpr int kUnicode = 1200;  // where a code page is named

/// One bit per column, the first one uppermost in the first byte.
class BitMap {
 public:
  BitMap(ByteReader& reader, std::size_t bits) : bytes_(reader.Take((bits + 7) / 8)) {}
  bool operator[](std::size_t bit) const {
    return (std::to_integer<unsigned>(bytes_[bit / 8]) & (0x80U >> bit % 8)) != 0;
  }

 private:
  std::span<const std::byte> bytes_;
};

class AdtgReader {
 public:
  AdtgReader(std::span<const std::byte> bytes, const std::string& name, const CodePage& code_page)
      : reader_(bytes, name), name_(name), code_page_(code_page) {}

  Rowset Read() {
    ReadHeader();
    Part(kHandlerOptions);
    ReadResultDescriptor();
    Part(kContext);
    for (std::size_t table = 0; table < table_count_; ++table) ReadTable();
    ReadColumns();
    return ReadRows();
  }

 private:
  void Expect(Token token) {
    const auto found = reader_.Get<uint8_t>();
    if (found != token) {
      reader_.Throw("part " + std::to_string(token) + " is expected, part " +
                    std::to_string(found) + " is there");
    }
  }

  /// The content of a part with its size in front.
  ByteReader Part(Token token) {
    Expect(token);
    return reader_.Part(reader_.Get<uint16_t>());
  }

  void ReadHeader() {
    Expect(kHeader);
    ByteReader part = reader_.Part(reader_.Get<uint8_t>());
    part.Take(3);  // "TG!"
    if (part.Get<uint16_t>() != 0) part.Throw("it is of a newer version");
    if (part.Get<uint8_t>() != 0) part.Throw("its bytes stand in the other order, big end first");
    if (part.Get<uint8_t>() != 0) part.Throw("its texts are stored in a way that is not read");
  }

  void ReadResultDescriptor() {
    ByteReader part = Part(kResultDescriptor);
    part.Take(18);  // identifier, information, cursor
    if (part.Get<uint8_t>() != 0) part.Throw("its rows are stored in a way that is not read");
    visible_count_ = part.Get<uint16_t>();
    column_count_ = part.Get<uint16_t>();
    part.Take(2);  // computed columns
    table_count_ = part.Get<uint16_t>();
    if (visible_count_ == 0 || visible_count_ > column_count_) {
      part.Throw("it counts no columns, or more to be seen than there are");
    }
    CheckSize(0, column_count_, name_);
  }

  /// Of use is only the code page of its texts, where nobody asked for another.
  void ReadTable() {
    ByteReader part = Part(kTableDescriptor);
    if (code_page_.number != 0) return;
    try {
      part.Take(2);                                      // ordinal
      part.Take(std::size_t{2} * part.Get<uint16_t>());  // its name
      part.Take(std::size_t{2} * part.Get<uint16_t>());  // its name in changes
      const int number = part.Get<uint16_t>();
      if (number != kUnicode) code_page_.number = number;
    } catch (const Failure&) {
      // A description that ends before it names one.
    }
  }

  void ReadColumns() {
    for (std::size_t index = 0; index < column_count_; ++index) {
      columns_.emplace_back(Part(kColumnDescriptor));
      if (index > 0 && columns_[index].ordinal() <= columns_[index - 1].ordinal()) {
        reader_.Throw("its columns are out of order");
      }
      if (columns_[index].IsNullable()) ++nullable_count_;
    }
  }

  /// By the rule of files in use; where that does not come out even, by the other.
  Rowset ReadRows() {
    const ByteReader begin = reader_;
    try {
      return ReadRowsBy(LengthRule::kBytes);
    } catch (const Failure&) {
      bool another_rule = false;
      for (const auto& column : columns_) another_rule |= column.DependsOnRule();
      if (!another_rule) throw;
    }
    reader_ = begin;
    return ReadRowsBy(LengthRule::kCharacters);
  }

  Rowset ReadRowsBy(LengthRule rule) {
    Rowset rowset;
    for (std::size_t index = 0; index < visible_count_; ++index) {
      rowset.columns.push_back(columns_[index].column());
    }
    bool may_change = false;  // the row before, and only once
    for (;;) {
      const auto token = reader_.Get<uint8_t>();
      if (token == kDone) break;
      ReadRow(token, rule, may_change, rowset.rows);
      may_change = token == kRow;
    }
    if (!reader_.AtEnd()) reader_.Throw("more bytes follow its end");
    for (Row& row : rowset.rows) row.resize(visible_count_);
    return rowset;
  }

  void ReadRow(uint8_t token, LengthRule rule, bool may_change, std::vector<Row>& rows) {
    if (token == kRow || token == kInsertedRow) {
      CheckSize(rows.size() + 1, column_count_, name_);
      rows.emplace_back(column_count_, Null{});
      if (token == kRow) {
        ReadOriginal(rule, rows.back());
      } else {
        ReadChanges(rule, rows.back());
      }
    } else if (token == kChangedRow && may_change) {
      ReadChanges(rule, rows.back());
    } else if (token == kDeletedRow && may_change) {
      rows.pop_back();
    } else {
      reader_.Throw("part " + std::to_string(token) + " stands among its rows");
    }
  }

  void ReadOriginal(LengthRule rule, Row& row) {
    const BitMap present(reader_, nullable_count_);
    std::size_t nullable = 0;
    for (std::size_t index = 0; index < column_count_; ++index) {
      const AdtgColumn& column = columns_[index];
      if (column.IsNullable() && !present[nullable++]) continue;
      row[index] = column.Read(reader_, rule, code_page_);
    }
  }

  void ReadChanges(LengthRule rule, Row& row) {
    const BitMap changed(reader_, column_count_);
    const BitMap made_null(reader_, column_count_);
    for (std::size_t index = 0; index < column_count_; ++index) {
      if (made_null[index]) {
        row[index] = Null{};
      } else if (changed[index]) {
        row[index] = columns_[index].Read(reader_, rule, code_page_);
      }
    }
  }

  ByteReader reader_;
  const std::string& name_;
  CodePage code_page_;
  std::size_t visible_count_ = 0;
  std::size_t column_count_ = 0;  ///< with the hidden ones, which follow those that are seen
  std::size_t table_count_ = 0;
  std::size_t nullable_count_ = 0;
  std::vector<AdtgColumn> columns_;
};

}  // namespace

Rowset ReadAdtg(std::span<const std::byte> bytes, const std::string& name,
                const CodePage& code_page) {
  return AdtgReader(bytes, name, code_page).Read();
}

}  // namespace vok::recordset
