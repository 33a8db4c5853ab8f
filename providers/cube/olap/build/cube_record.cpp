#include "providers/cube/olap/build/cube_record.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

#include "providers/cube/olap/storage/bytes.h"

namespace vok::olap {
namespace {

constexpr uint32_t kHalfBits = 32;
constexpr uint32_t kWordBits = 64;
constexpr std::size_t kLeastText = sizeof(uint32_t);

/// False, and `number` is of no use, when that does not fit, or hardly.
bool Raise(Int128& number, int places) {
  constexpr uint32_t kRoom = 122;
  const Int128 most = Int128(1) << kRoom;
  for (; number < most && -most < number; --places) {
    if (places <= 0) return true;
    number = (number << 3) + (number << 1);  // ten times
  }
  return false;
}

void PutSum(ByteWriter& out, const std::optional<ExactSum>& sum) {
  out.Put(static_cast<uint8_t>(sum ? 1 : 0));
  if (!sum) return;
  out.Put(sum->scale);
  out.Put(static_cast<int64_t>(sum->number >> kWordBits));
  out.Put(static_cast<uint64_t>(sum->number));
}

std::optional<ExactSum> GetSum(ByteReader& in) {
  if (in.Get<uint8_t>() == 0) return std::nullopt;
  ExactSum sum;
  sum.scale = in.Get<uint8_t>();
  const auto high = in.Get<int64_t>();
  const auto low = in.Get<uint64_t>();
  sum.number = (Int128(high) << kWordBits) +
               (Int128(static_cast<int64_t>(low >> kHalfBits)) << kHalfBits) +
               Int128(int64_t{static_cast<uint32_t>(low)});
  return sum;
}

void PutRows(ByteWriter& out, const RecordedRows& rows) {
  out.Put(static_cast<uint32_t>(rows.width));
  out.Put(static_cast<uint32_t>(rows.leaves.size()));
  out.PutAll(std::span(rows.leaves));
  for (const auto& field : rows.fields) {
    out.Put(static_cast<uint8_t>(field ? 1 : 0));
    if (field) out.PutText(*field);
  }
}

RecordedRows GetRows(ByteReader& in) {
  RecordedRows rows;
  rows.width = in.Get<uint32_t>();
  rows.leaves.resize(in.GetCount(sizeof(uint32_t)));
  for (uint32_t& leaf : rows.leaves) leaf = in.Get<uint32_t>();
  for (std::size_t left = rows.width * rows.leaves.size(); left > 0; --left) {
    const bool is_there = in.Get<uint8_t>() != 0;
    rows.fields.push_back(is_there ? std::optional(in.GetText()) : std::nullopt);
  }
  return rows;
}

}  // namespace

void Sort(RecordedRows& rows) {
  std::vector<uint32_t> order(rows.leaves.size());
  std::iota(order.begin(), order.end(), 0U);
  const auto fields = [&rows](uint32_t row) {
    return std::span(rows.fields).subspan(row * rows.width, rows.width);
  };
  std::sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) {
    return std::ranges::lexicographical_compare(fields(a), fields(b));
  });
  RecordedRows sorted{rows.width, {}, {}};
  for (const uint32_t row : order) {
    sorted.leaves.push_back(rows.leaves[row]);
    std::ranges::move(fields(row), std::back_inserter(sorted.fields));
  }
  rows = std::move(sorted);
}

void AddTo(std::optional<ExactSum>& sum, Int128 number, uint8_t scale) {
  if (!sum) return;
  const uint8_t common = std::max(sum->scale, scale);
  if (Raise(sum->number, common - sum->scale) && Raise(number, common - scale)) {
    sum->number += number;
    sum->scale = common;
  } else {
    sum.reset();
  }
}

bool operator==(const ExactSum& a, const ExactSum& b) {
  std::optional<ExactSum> first(a);
  std::optional<ExactSum> second(b);
  AddTo(first, 0, b.scale);
  AddTo(second, 0, a.scale);
  return first && second && first->number == second->number;
}

std::string BytesOf(const CubeRecord& record) {
  ByteWriter out;
  out.PutText(record.schema);
  out.Put(static_cast<uint32_t>(record.hierarchies.size()));
  for (const RecordedRows& rows : record.hierarchies) PutRows(out, rows);
  out.Put(record.time);
  out.Put(static_cast<uint32_t>(record.totals.size()));
  for (const PeriodTotals& totals : record.totals) {
    out.Put(totals.facts);
    out.Put(static_cast<uint32_t>(totals.sums.size()));
    for (const auto& sum : totals.sums) PutSum(out, sum);
  }
  return std::string(out.bytes());
}

CubeRecord ReadRecord(std::span<const std::byte> bytes, const std::string& file_name) {
  ByteReader in(bytes, file_name);
  CubeRecord record;
  record.schema = in.GetText();
  record.hierarchies.resize(in.GetCount(2 * sizeof(uint32_t)));
  for (RecordedRows& rows : record.hierarchies) rows = GetRows(in);
  record.time = in.Get<uint32_t>();
  record.totals.resize(in.GetCount(sizeof(uint64_t) + kLeastText));
  for (PeriodTotals& totals : record.totals) {
    totals.facts = in.Get<uint64_t>();
    totals.sums.resize(in.GetCount(1));
    for (auto& sum : totals.sums) sum = GetSum(in);
  }
  return record;
}

}  // namespace vok::olap
