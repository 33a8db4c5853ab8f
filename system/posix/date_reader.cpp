#include "system/posix/date_reader.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/calendar.h"

namespace vok {
namespace {

constexpr std::size_t kMostBytes = 200;  // no country writes a date as long as that
constexpr int kMostDigits = 8;           // of an ISO 8601 date without separators

struct Token {
  enum class Kind { kNumber, kWord, kMark, kBlank };
  Kind kind;
  std::string text;
  int value = 0;   // of a number
  int digits = 0;  // of a number

  bool Is(char mark) const { return kind == Kind::kMark && text[0] == mark; }
};

using Tokens = std::span<const Token>;

UChar32 NextCharacter(std::string_view text, std::size_t& at) {
  UChar32 character = 0;
  auto offset = static_cast<int32_t>(at);
  U8_NEXT(text.data(), offset, static_cast<int32_t>(text.size()), character);
  at = static_cast<std::size_t>(offset);
  return character;
}

bool IsLetter(UChar32 c) {
  return u_isalpha(c) || (U_MASK(u_charType(c)) & (U_GC_MN_MASK | U_GC_MC_MASK)) != 0;
}

// Marks of writing direction, and the apostrophes of names cut short.
bool IsInvisible(UChar32 c) {
  return c == 0x200E || c == 0x200F || c == 0x061C || c == 0x05F3 || c == 0x2019 || c == '\'';
}

void AddDigit(std::vector<Token>& tokens, int digit) {
  if (tokens.empty() || tokens.back().kind != Token::Kind::kNumber) {
    tokens.push_back({Token::Kind::kNumber, {}});
  }
  Token& number = tokens.back();
  if (++number.digits <= kMostDigits) number.value = number.value * 10 + digit;
}

void AddText(std::vector<Token>& tokens, Token::Kind kind, std::string_view text) {
  const bool joins = kind == Token::Kind::kWord || kind == Token::Kind::kBlank;
  if (!joins || tokens.empty() || tokens.back().kind != kind) tokens.push_back({kind, {}});
  tokens.back().text += text;
}

// Nothing for a text that holds a character which no date is written with.
std::optional<std::vector<Token>> Split(std::string_view text) {
  std::vector<Token> tokens;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    const UChar32 c = NextCharacter(text, at);
    const std::string_view bytes = text.substr(start, at - start);
    if (const int digit = c < 0 ? -1 : u_charDigitValue(c); digit >= 0) {
      AddDigit(tokens, digit);
    } else if (c >= 0 && IsLetter(c)) {
      AddText(tokens, Token::Kind::kWord, bytes);
    } else if (c >= 0 && u_isblank(c)) {
      AddText(tokens, Token::Kind::kBlank, " ");
    } else if (c > 0 && c < 0x80 &&
               std::string_view("/.-,:").find(static_cast<char>(c)) != std::string_view::npos) {
      AddText(tokens, Token::Kind::kMark, bytes);
    } else if (c == 0x060C) {  // the Arabic comma
      AddText(tokens, Token::Kind::kMark, ",");
    } else if (!IsInvisible(c)) {
      return std::nullopt;
    }
  }
  return tokens;
}

Tokens TrimmedBlanks(Tokens tokens) {
  while (!tokens.empty() && tokens.front().kind == Token::Kind::kBlank) tokens = tokens.subspan(1);
  while (!tokens.empty() && tokens.back().kind == Token::Kind::kBlank) {
    tokens = tokens.first(tokens.size() - 1);
  }
  return tokens;
}

std::string WordsOf(Tokens tokens) {
  std::string words;
  for (const Token& token : tokens) {
    if (token.kind == Token::Kind::kWord) words += token.text;
  }
  return words;
}

/// Reads one text; what it gathers is looked at when all of it is read.
class Reader {
 public:
  explicit Reader(const DateCustoms& customs) : customs_(customs) {}

  std::optional<Date> Read(Tokens tokens) {
    tokens = TrimmedBlanks(tokens);
    const auto colon =
        std::find_if(tokens.begin(), tokens.end(), [](const Token& t) { return t.Is(':'); });
    if (colon == tokens.end()) return ReadDay(tokens);

    const auto place = static_cast<std::size_t>(colon - tokens.begin());
    if (place == 0) return std::nullopt;
    Tokens before = tokens.first(place - 1);
    const Tokens time = tokens.subspan(place - 1);
    TakeHalfOfDay(before);
    const auto seconds = ReadTime(time);
    if (!seconds) return std::nullopt;
    const auto day = before.empty() ? Date{} : ReadDay(before);
    if (!day) return std::nullopt;
    return Date{day->serial + *seconds / 86400.0};
  }

 private:
  // Cuts off what stands between the date and the time: the half of the day, where it comes first,
  // or the "T" of ISO 8601.
  void TakeHalfOfDay(Tokens& before) {
    before = TrimmedBlanks(before);
    std::size_t size = before.size();
    while (size > 0 && (before[size - 1].kind == Token::Kind::kWord ||
                        before[size - 1].kind == Token::Kind::kBlank)) {
      --size;
    }
    const std::string words = WordsOf(before.subspan(size));
    const bool half = !words.empty() && (words == customs_.morning || words == customs_.afternoon);
    if (half) half_ = words;
    if (half || words == "t") before = TrimmedBlanks(before.first(size));
  }

  std::optional<int> ReadTime(Tokens tokens) {
    std::vector<int> parts;
    std::size_t at = 0;
    for (;; ++at) {
      if (at == tokens.size() || tokens[at].kind != Token::Kind::kNumber) return std::nullopt;
      if (tokens[at].digits > 2) return std::nullopt;
      parts.push_back(tokens[at].value);
      ++at;
      if (parts.size() == 3 || at == tokens.size() || !tokens[at].Is(':')) break;
    }
    Tokens rest = tokens.subspan(at);
    const bool fraction = parts.size() == 3 && rest.size() > 1 && rest[0].Is('.') &&
                          rest[1].kind == Token::Kind::kNumber;
    if (fraction) rest = rest.subspan(2);
    if (half_.empty() ? !TakeTail(rest) : !rest.empty()) return std::nullopt;
    return parts.size() < 2 ? std::nullopt : Seconds(parts);
  }

  // The half of the day, or a word that the country ends a time with.
  bool TakeTail(Tokens rest) {
    for (const Token& token : rest) {
      if (token.kind == Token::Kind::kNumber) return false;
      if (token.kind == Token::Kind::kMark && !token.Is('.')) return false;
    }
    const std::string words = WordsOf(rest);
    if (words.empty()) return rest.empty();
    if (words == customs_.morning || words == customs_.afternoon) half_ = words;
    return !half_.empty() || customs_.fillers.contains(words);
  }

  std::optional<int> Seconds(const std::vector<int>& parts) const {
    int hour = parts[0];
    const int second = parts.size() == 3 ? parts[2] : 0;
    if (parts[1] > 59 || second > 59 || hour > 23) return std::nullopt;
    if (!half_.empty()) {
      if (hour < 1 || hour > 12) return std::nullopt;
      hour = hour % 12 + (half_ == customs_.afternoon ? 12 : 0);
    }
    return (hour * 60 + parts[1]) * 60 + second;
  }

  std::optional<Date> ReadDay(Tokens tokens) {
    if (!tokens.empty() && tokens.back().Is('.')) tokens = tokens.first(tokens.size() - 1);
    char mark = 0;  // since the last number or word
    bool first = true;
    for (const Token& token : tokens) {
      if (token.kind == Token::Kind::kBlank) continue;
      if (token.kind == Token::Kind::kMark) {
        const bool after_word = word_last_ && mark == '.' && token.Is(',');
        if (first || token.Is(':') || (mark != 0 && !after_word)) return std::nullopt;
        mark = token.text[0];
        commas_ = commas_ || mark == ',';
        continue;
      }
      if (!Take(token)) return std::nullopt;
      mark = 0;
      first = false;
    }
    if (mark != 0) return std::nullopt;
    return Assemble();
  }

  bool Take(const Token& token) {
    word_last_ = token.kind == Token::Kind::kWord;
    if (!word_last_) {
      numbers_.push_back(token);
      return numbers_.size() <= 3;
    }
    if (const int month = MonthNamed(token.text); month != 0) {
      if (month_ != 0) return false;
      month_ = month;
      return true;
    }
    worded_ = true;
    return customs_.fillers.contains(token.text);
  }

  int MonthNamed(const std::string& word) const {
    if (const auto month = customs_.months.NamedOrCutShort(word)) return *month;
    for (const std::string& filler :
         customs_.fillers) {  // a preposition may be written as a prefix
      if (!word.starts_with(filler)) continue;
      if (const auto rest = customs_.months.Named(word.substr(filler.size()))) return *rest;
    }
    return 0;
  }

  std::optional<Date> Assemble() const {
    if (month_ != 0) return AssembleNamed();
    if (commas_ && !worded_) return std::nullopt;
    if (numbers_.size() == 1 && numbers_[0].digits == kMostDigits) {
      const int value = numbers_[0].value;
      return CalendarDay(value / 10000, value / 100 % 100, value % 100);
    }
    if (numbers_.size() != 3) return std::nullopt;
    const Token& a = numbers_[0];
    const Token& b = numbers_[1];
    const Token& c = numbers_[2];
    using Order = DateCustoms::Order;
    const bool year_first =
        a.digits > 2 || (c.digits <= 2 && customs_.order == Order::kYearMonthDay);
    if (year_first) return Dated(a, b, c);
    return customs_.order == Order::kMonthDayYear ? Dated(c, a, b) : Dated(c, b, a);
  }

  std::optional<Date> AssembleNamed() const {
    if (numbers_.size() != 2) return std::nullopt;
    const Token& a = numbers_[0];
    const Token& b = numbers_[1];
    const bool year_first =
        a.digits > 2 || (b.digits <= 2 && customs_.order == DateCustoms::Order::kYearMonthDay);
    const Token month{Token::Kind::kNumber, {}, month_, 2};
    return year_first ? Dated(a, month, b) : Dated(b, month, a);
  }

  static std::optional<Date> Dated(const Token& year, const Token& month, const Token& day) {
    if (month.digits > 2 || day.digits > 2) return std::nullopt;
    if (year.digits == 2) {
      return CalendarDay(YearOfTwoDigits(year.value), month.value, day.value);
    }
    if (year.digits != 4) return std::nullopt;
    return CalendarDay(year.value, month.value, day.value);
  }

  const DateCustoms& customs_;
  std::vector<Token> numbers_;
  int month_ = 0;
  bool commas_ = false;
  bool worded_ = false;
  bool word_last_ = false;
  std::string half_;
};

}  // namespace

std::optional<Date> ReadDate(const DateCustoms& customs, std::string_view folded) {
  if (folded.size() > kMostBytes) return std::nullopt;
  const auto tokens = Split(folded);
  if (!tokens) return std::nullopt;
  return Reader(customs).Read(*tokens);
}

std::string LettersOf(std::string_view text) {
  std::string letters;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    const UChar32 c = NextCharacter(text, at);
    if (c >= 0 && IsLetter(c)) letters += text.substr(start, at - start);
  }
  return letters;
}

}  // namespace vok
