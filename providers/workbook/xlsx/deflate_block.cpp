#include "providers/workbook/xlsx/deflate_block.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <span>
#include <utility>

namespace vok::xlsx {
namespace {

constexpr std::size_t kShortest = 3;
constexpr std::size_t kLongest = 258;
constexpr std::size_t kFarthest = 32'768;
constexpr std::size_t kHashed = 4;       // bytes that a text is looked for by
constexpr std::size_t kLongEnough = 32;  // not to look whether a longer one begins next
constexpr uint32_t kIsMatch = 0x80000000;
constexpr unsigned kLengthShift = 16;
constexpr unsigned kLengthMask = 0xFF;
constexpr unsigned kDistanceMask = 0xFFFF;
constexpr unsigned kEnd = 256;
constexpr unsigned kCodeBits = 15;
constexpr std::size_t kMostStored = 65'535;
/// Readers take a large part for a trap that expands by more than 200.
constexpr std::size_t kMostRatio = 150;

/// A number that is told by a symbol and the bits after it.
struct Split {
  uint16_t symbol;
  uint8_t bits;
  uint16_t rest;
};

/// `value` counted from 0; 2^`steps_log` symbols for each number of bits.
constexpr Split SplitOf(unsigned value, unsigned steps_log) {
  const unsigned width = static_cast<unsigned>(std::bit_width(value));
  if (width <= steps_log + 1) return {static_cast<uint16_t>(value), 0, 0};
  const unsigned bits = width - steps_log - 1;
  const unsigned step = value >> bits;  // with its leading one
  return {static_cast<uint16_t>((bits << steps_log) + step), static_cast<uint8_t>(bits),
          static_cast<uint16_t>(value & ((1U << bits) - 1))};
}

Split LengthSplit(unsigned length) {
  constexpr uint16_t kFirst = 257, kLast = 285;
  if (length == kLongest) return {kLast, 0, 0};
  Split split = SplitOf(length - kShortest, 2);
  split.symbol = static_cast<uint16_t>(split.symbol + kFirst);
  return split;
}

Split DistanceSplit(unsigned distance) { return SplitOf(distance - 1, 1); }

uint32_t FourBytes(const char* at) {
  uint32_t value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

/// Bits, the first lowest, into bytes.
class BitWriter {
 public:
  explicit BitWriter(ByteBuffer& out) : out_(out) {}

  void Put(uint32_t bits, unsigned count) {
    held_ |= uint64_t{bits} << count_;
    count_ += count;
    if (count_ >= 32) Flush();
  }
  void Put(PrefixCode code) { Put(code.code, code.bits); }
  /// Up to a whole byte.
  void Align() {
    count_ = (count_ + 7) / 8 * 8;
    Flush();
  }

 private:
  void Flush() {
    char* at = out_.Reserve(sizeof held_);
    const unsigned whole = count_ / 8;
    for (unsigned i = 0; i < whole; ++i) at[i] = static_cast<char>(held_ >> (8 * i));
    out_.Advance(whole);
    held_ = whole == sizeof held_ ? 0 : held_ >> (8 * whole);
    count_ -= 8 * whole;
  }

  ByteBuffer& out_;
  uint64_t held_ = 0;
  unsigned count_ = 0;
};

void PutStoredHeader(bool last, std::size_t size, BitWriter& bits) {
  bits.Put(last ? 1 : 0, 3);
  bits.Align();
  bits.Put(static_cast<uint32_t>(size), 16);
  bits.Put(static_cast<uint32_t>(~size & 0xFFFF), 16);
}

/// The lengths of two sets of codes, run by run, as the format begins a block.
class CodeLengths {
 public:
  void Add(std::span<const PrefixCode> codes) {
    for (const PrefixCode& code : codes) lengths_.push_back(code.bits);
  }

  void Write(BitWriter& bits) {
    constexpr std::array<uint8_t, kKinds> kOrder{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                 11, 4,  12, 3, 13, 2, 14, 1, 15};
    constexpr unsigned kMostBits = 7;
    FindRuns();
    std::array<PrefixCode, kKinds> codes;
    MakePrefixCodes(counts_, kMostBits, codes);
    bits.Put(kKinds - 4, 4);
    for (const uint8_t kind : kOrder) bits.Put(codes[kind].bits, 3);
    for (const Run& run : runs_) {
      bits.Put(codes[run.kind]);
      bits.Put(run.rest, run.bits);
    }
  }

 private:
  static constexpr std::size_t kKinds = 19;
  struct Run {
    uint8_t kind;
    uint8_t bits;
    uint8_t rest;
  };

  void FindRuns() {
    for (std::size_t at = 0; at < lengths_.size();) {
      const uint8_t length = lengths_[at];
      std::size_t end = at + 1;
      while (end < lengths_.size() && lengths_[end] == length) ++end;
      AddRun(length, end - at);
      at = end;
    }
  }

  void AddRun(uint8_t length, std::size_t count) {
    constexpr std::size_t kManyZeros = 11, kMostZeros = 138, kZeros = 10, kMostSame = 6;
    if (length != 0) {
      AddKind({length, 0, 0});
      --count;
    }
    while (count >= 3) {
      const std::size_t most = length != 0 ? kMostSame : count < kManyZeros ? kZeros : kMostZeros;
      const std::size_t taken = std::min(count, most);
      if (length != 0) {
        AddKind({16, 2, static_cast<uint8_t>(taken - 3)});
      } else if (taken < kManyZeros) {
        AddKind({17, 3, static_cast<uint8_t>(taken - 3)});
      } else {
        AddKind({18, 7, static_cast<uint8_t>(taken - kManyZeros)});
      }
      count -= taken;
    }
    for (; count > 0; --count) AddKind({length, 0, 0});
  }

  void AddKind(Run run) {
    runs_.push_back(run);
    ++counts_[run.kind];
  }

  std::vector<uint8_t> lengths_;
  std::vector<Run> runs_;
  std::array<uint32_t, kKinds> counts_{};
};

}  // namespace

DeflateBlock::DeflateBlock() = default;

void DeflateBlock::Match(std::size_t length, std::size_t distance) {
  const auto short_length = static_cast<uint32_t>(length);
  const auto short_distance = static_cast<uint32_t>(distance);
  tokens_.push_back(kIsMatch | (short_length - kShortest) << kLengthShift | (short_distance - 1));
  ++symbol_counts_[LengthSplit(short_length).symbol];
  ++distance_counts_[DistanceSplit(short_distance).symbol];
}

std::size_t DeflateBlock::Extend(std::size_t at, std::size_t least) {
  if (tokens_.empty() || (tokens_.back() & kIsMatch) == 0) return 0;
  const uint32_t token = tokens_.back();
  const std::size_t length = (token >> kLengthShift & kLengthMask) + kShortest;
  const std::size_t distance = (token & kDistanceMask) + 1;
  const std::size_t more = Common(at - distance, at, kLongest - length);
  if (more < least) return 0;
  --symbol_counts_[LengthSplit(static_cast<uint32_t>(length)).symbol];
  --distance_counts_[DistanceSplit(static_cast<uint32_t>(distance)).symbol];
  tokens_.pop_back();
  Match(length + more, distance);
  return more;
}

void DeflateBlock::MatchFrom(std::size_t earlier, std::size_t at, std::size_t size) {
  const std::size_t distance = at - earlier;
  while (earlier > 0 && size < kLongest && !tokens_.empty() && (tokens_.back() & kIsMatch) == 0 &&
         bytes_.data()[earlier - 1] == bytes_.data()[at - 1]) {
    --symbol_counts_[tokens_.back()];
    tokens_.pop_back();
    --earlier;
    --at;
    ++size;
  }
  Match(size, distance);
}

void DeflateBlock::Add(Repeated& run) {
  const std::size_t at = bytes_.size();
  bytes_.Append(run.bytes);
  if (Extend(at, run.bytes.size()) == 0) {
    const bool near = run.block == block_ && at - run.at <= kFarthest;
    if (near && run.bytes.size() >= kShortest) {
      MatchFrom(run.at, at, run.bytes.size());
    } else {
      Search(at);
    }
  }
  run.block = block_;
  run.at = at;
}

void DeflateBlock::AddNew(std::string_view bytes) {
  const std::size_t at = bytes_.size();
  bytes_.Append(bytes);
  Literals(bytes.substr(Extend(at, 1)));
}

std::size_t DeflateBlock::Common(std::size_t earlier, std::size_t at, std::size_t most) const {
  const char* const now = bytes_.data() + at;
  const char* const then = bytes_.data() + earlier;
  most = std::min(bytes_.size() - at, most);
  std::size_t size = 0;
  while (size < most && then[size] == now[size]) ++size;
  return size;
}

std::size_t DeflateBlock::Remember(std::size_t at) {
  constexpr uint32_t kSpread = 2654435761;
  uint32_t& place = places_[FourBytes(bytes_.data() + at) * kSpread >> (32 - kHashBits)];
  return std::exchange(place, static_cast<uint32_t>(at + 1));
}

void DeflateBlock::AddText(std::string_view bytes) {
  const std::size_t at = bytes_.size();
  bytes_.Append(bytes);
  Search(at + Extend(at, std::min(bytes.size(), kHashed)));
}

DeflateBlock::Found DeflateBlock::Find(std::size_t at) {
  const std::size_t earlier = Remember(at);
  const bool near = earlier != 0 && at + 1 - earlier <= kFarthest;
  return near ? Found{earlier - 1, Common(earlier - 1, at, kLongest)} : Found{};
}

void DeflateBlock::Search(std::size_t at) {
  const std::size_t end = bytes_.size();
  std::optional<Found> next;  // what stands at `at`, when it was looked for
  while (at + kHashed <= end) {
    const Found found = next ? *next : Find(at);
    next.reset();
    if (found.size < kLongEnough && at + 1 + kHashed <= end) next = Find(at + 1);
    if (found.size < kHashed || (next && next->size > found.size)) {
      Literal(bytes_.data()[at++]);
      continue;
    }
    MatchFrom(found.earlier, at, found.size);
    for (const std::size_t past = at + found.size; ++at < past;) {
      if (at + kHashed <= end) Remember(at);
    }
    next.reset();
  }
  Literals(bytes_.View().substr(at));
}

void DeflateBlock::AppendCoded(bool last, ByteBuffer& out) {
  std::array<PrefixCode, kSymbols> symbols;
  std::array<PrefixCode, kDistances> distances;
  ++symbol_counts_[kEnd];
  MakePrefixCodes(symbol_counts_, kCodeBits, symbols);
  MakePrefixCodes(distance_counts_, kCodeBits, distances);
  BitWriter bits(out);
  bits.Put(last ? 5 : 4, 3);
  bits.Put(kSymbols - 257, 5);
  bits.Put(kDistances - 1, 5);
  CodeLengths lengths;
  lengths.Add(symbols);
  lengths.Add(distances);
  lengths.Write(bits);
  for (const uint32_t token : tokens_) {
    if ((token & kIsMatch) == 0) {
      bits.Put(symbols[token]);
      continue;
    }
    const Split length = LengthSplit((token >> kLengthShift & kLengthMask) + kShortest);
    bits.Put(symbols[length.symbol]);
    bits.Put(length.rest, length.bits);
    const Split distance = DistanceSplit((token & kDistanceMask) + 1);
    bits.Put(distances[distance.symbol]);
    bits.Put(distance.rest, distance.bits);
  }
  bits.Put(symbols[kEnd]);
  if (last) {
    bits.Align();
  } else {
    PutStoredHeader(false, 0, bits);
    bits.Align();
  }
}

void DeflateBlock::AppendStored(bool last, ByteBuffer& out) const {
  std::string_view rest = bytes_.View();
  while (!rest.empty()) {
    const std::size_t size = std::min(rest.size(), kMostStored);
    BitWriter bits(out);
    PutStoredHeader(last && size == rest.size(), size, bits);
    bits.Align();
    out.Append(rest.substr(0, size));
    rest.remove_prefix(size);
  }
}

void DeflateBlock::Finish(bool last, ByteBuffer& out) {
  const std::size_t before = out.size();
  AppendCoded(last, out);
  if ((out.size() - before) * kMostRatio < bytes_.size()) {
    out.Resize(before);
    AppendStored(last, out);
  }
  bytes_.Resize(0);
  tokens_.clear();
  symbol_counts_ = {};
  distance_counts_ = {};
  places_ = {};
  ++block_;
}

}  // namespace vok::xlsx
