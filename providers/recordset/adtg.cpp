// The binary form: an Advanced Data Adtg as [MS-ADTG], section 2.2.3.14, describes it.
//
// Header, options, one result descriptor, its context, table descriptors, column descriptors, rows,
// an end mark; each but the rows and the end has its size in front. What the public description
// gives without an example is read as it stands there: the changes, insertions and deletions that
// wait to be sent. Their two maps have one bit per column: a value follows, the field became NULL.
//
// A column may stand for record sets within the rows, of which the rows themselves hold nothing.
// Each such child set is described after the outermost one, in the same parts, and its columns tell
// its number; its rows have tokens of their own and begin with that number. They are passed over.
// Big-endian files are refused.
#include <algorithm>
#include <utility>

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
  kContext = 0x10,
  kOfChildSet = 0x80  // is added to the tokens of rows
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

struct AdtgSet {
  uint32_t number = 0;            ///< of a child set
  std::size_t visible_count = 0;  ///< the hidden columns follow those that are seen
  std::size_t nullable_count = 0;
  std::vector<AdtgColumn> columns;
  Row absent;             ///< without any values
  std::vector<Row> rows;  ///< the last one alone of a child set
};

class AdtgReader {
 public:
  AdtgReader(std::span<const std::byte> bytes, const std::string& name, const CodePage& code_page)
      : reader_(bytes, name), name_(name), code_page_(code_page) {}

  Rowset Read() {
    ReadHeader();
    Part(kHandlerOptions);
    do {
      ReadSet();
    } while (NextToken() == kResultDescriptor);
    return ReadRows();
  }

 private:
  uint8_t NextToken() const { return ByteReader(reader_).Get<uint8_t>(); }

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

  void ReadSet() {
    AdtgSet set;
    ByteReader part = Part(kResultDescriptor);
    part.Take(18);  // identifier, information, cursor
    if (part.Get<uint8_t>() != 0) part.Throw("its rows are stored in a way that is not read");
    set.visible_count = part.Get<uint16_t>();
    const std::size_t column_count = part.Get<uint16_t>();
    part.Take(2);  // computed columns
    const std::size_t table_count = part.Get<uint16_t>();
    if (set.visible_count == 0 || set.visible_count > column_count) {
      part.Throw("it counts no columns, or more to be seen than there are");
    }
    CheckSize(0, column_count_ + column_count, name_);
    Part(kContext);
    for (std::size_t table = 0; table < table_count; ++table) ReadTable();
    ReadColumns(column_count, set);
    if (!sets_.empty()) set.number = NumberOf(set);
    sets_.push_back(std::move(set));
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

  void ReadColumns(std::size_t count, AdtgSet& set) {
    for (std::size_t index = 0; index < count; ++index) {
      // The description has the columns of child sets counted here, too, in one of two places.
      if (index > 0 && NextToken() == kResultDescriptor) break;
      set.columns.emplace_back(Part(kColumnDescriptor));
      if (index > 0 && set.columns[index].ordinal() <= set.columns[index - 1].ordinal()) {
        reader_.Throw("its columns are out of order");
      }
      if (set.columns[index].IsNullable()) ++set.nullable_count;
      set.absent.push_back(set.columns[index].Absent());
    }
    column_count_ += set.columns.size();
    set.visible_count = std::min(set.visible_count, set.columns.size());
  }

  uint32_t NumberOf(const AdtgSet& set) const {
    for (const AdtgColumn& column : set.columns) {
      if (column.set_number()) return *column.set_number();
    }
    reader_.Throw("a record set within its rows has no number");
  }

  /// By the rule of files in use; where that does not come out even, by the other.
  Rowset ReadRows() {
    const ByteReader begin = reader_;
    try {
      return ReadRowsBy(LengthRule::kBytes);
    } catch (const Failure&) {
      if (!DependsOnRule()) throw;
    }
    reader_ = begin;
    return ReadRowsBy(LengthRule::kCharacters);
  }

  bool DependsOnRule() const {
    for (const AdtgSet& set : sets_) {
      for (const AdtgColumn& column : set.columns) {
        if (column.DependsOnRule()) return true;
      }
    }
    return false;
  }

  Rowset ReadRowsBy(LengthRule rule) {
    for (AdtgSet& set : sets_) set.rows.clear();
    row_count_ = 0;
    const AdtgSet* changeable = nullptr;  // whose last row may change, and only once
    for (;;) {
      const auto token = reader_.Get<uint8_t>();
      if (token == kDone) break;
      AdtgSet& set = SetOf(token);
      const int kind = token & ~kOfChildSet;
      ReadRow(kind, rule, changeable == &set, set);
      changeable = kind == kRow ? &set : nullptr;
    }
    if (!reader_.AtEnd()) reader_.Throw("more bytes follow its end");
    return TakeOutermost();
  }

  Rowset TakeOutermost() {
    AdtgSet& set = sets_.front();
    Rowset rowset;
    for (std::size_t index = 0; index < set.visible_count; ++index) {
      rowset.columns.push_back(set.columns[index].column());
    }
    rowset.rows = std::move(set.rows);
    for (Row& row : rowset.rows) row.resize(set.visible_count);
    return rowset;
  }

  /// The set that the row of that token is of.
  AdtgSet& SetOf(uint8_t token) {
    if ((token & kOfChildSet) == 0) return sets_.front();
    const auto number = reader_.Get<uint32_t>();
    for (std::size_t index = 1; index < sets_.size(); ++index) {
      if (sets_[index].number == number) return sets_[index];
    }
    reader_.Throw("part " + std::to_string(token) +
                  " stands among its rows, of a record set that is not described");
  }

  void ReadRow(int kind, LengthRule rule, bool may_change, AdtgSet& set) {
    if (kind == kRow || kind == kInsertedRow) {
      Row& row = AddRow(set);
      if (kind == kRow) {
        ReadOriginal(rule, set, row);
      } else {
        ReadChanges(rule, set, row);
      }
    } else if (kind == kChangedRow && may_change) {
      ReadChanges(rule, set, set.rows.back());
    } else if (kind == kDeletedRow && may_change) {
      set.rows.pop_back();
    } else {
      reader_.Throw("part " + std::to_string(kind) + " stands among its rows");
    }
  }

  Row& AddRow(AdtgSet& set) {
    CheckSize(++row_count_, column_count_, name_);
    if (&set != &sets_.front()) set.rows.clear();
    return set.rows.emplace_back(set.absent);
  }

  void ReadOriginal(LengthRule rule, const AdtgSet& set, Row& row) {
    const BitMap present(reader_, set.nullable_count);
    std::size_t nullable = 0;
    for (std::size_t index = 0; index < row.size(); ++index) {
      const AdtgColumn& column = set.columns[index];
      if (column.IsNullable() && !present[nullable++]) continue;
      row[index] = column.Read(reader_, rule, code_page_);
    }
  }

  void ReadChanges(LengthRule rule, const AdtgSet& set, Row& row) {
    const BitMap changed(reader_, row.size());
    const BitMap made_null(reader_, row.size());
    for (std::size_t index = 0; index < row.size(); ++index) {
      if (made_null[index]) {
        row[index] = set.absent[index];
      } else if (changed[index]) {
        row[index] = set.columns[index].Read(reader_, rule, code_page_);
      }
    }
  }

  ByteReader reader_;
  const std::string& name_;
  CodePage code_page_;
  std::vector<AdtgSet> sets_;     ///< the outermost one, then those within rows
  std::size_t column_count_ = 0;  ///< of all sets, as is the next
  std::size_t row_count_ = 0;
};

}  // namespace

Rowset ReadAdtg(std::span<const std::byte> bytes, const std::string& name,
                const CodePage& code_page) {
  return AdtgReader(bytes, name, code_page).Read();
}

}  // namespace vok::recordset
