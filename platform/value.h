// A value of any type, as it travels between the ports and to the host program.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "platform/date.h"

namespace vok {

/// The NULL of a database field.
struct Null {
  friend bool operator==(const Null&, const Null&) = default;
};

/// A cell whose computation failed.
struct CellError {
  std::string description;
  friend bool operator==(const CellError&, const CellError&) = default;
};

class Value {
 public:
  using TextArray = std::vector<std::string>;
  using Int16Array = std::vector<int16_t>;
  using Array = std::vector<Value>;
  using Storage = std::variant<std::monostate, Null, bool, int16_t, int32_t, double, Date,
                               std::string, CellError, TextArray, Int16Array, Array>;

  Value() = default;
  template <typename T>
  requires std::is_constructible_v<Storage, T> Value(T&& value)
      : storage_(std::forward<T>(value)) {}                 // NOLINT: a value of any type
  Value(const char* text) : storage_(std::string(text)) {}  // NOLINT

  const Storage& storage() const { return storage_; }
  bool IsEmpty() const { return Is<std::monostate>(); }
  bool IsNull() const { return Is<Null>(); }
  template <typename T>
  bool Is() const {
    return std::holds_alternative<T>(storage_);
  }
  /// The held value; nullptr when it is of another type.
  template <typename T>
  const T* As() const {
    return std::get_if<T>(&storage_);
  }

  /// Conversions as the platform does them. Failures: 94 for NULL, 13 for a value that has no such
  /// form, 6 for a number out of range. An empty value is "", 0, false or the zero date.
  std::string ToText() const;
  double ToDouble() const;
  int16_t ToInt16() const;
  int32_t ToInt32() const;
  bool ToBoolean() const;
  Date ToDate() const;

  friend bool operator==(const Value& a, const Value& b) { return a.storage_ == b.storage_; }

 private:
  Storage storage_;
};

}  // namespace vok
