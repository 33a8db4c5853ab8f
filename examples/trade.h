// The business that the example ledger records: a trading company with seasons and growth, its
// invoices, returns, corrections, overheads and opening balances. Same plan, same entries, on every
// machine: whole numbers only and a generator of its own.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "examples/names.h"
#include "examples/plan.h"

namespace vok::examples {

inline constexpr int kOverheadLines = kOverheads.size() * kDepartments.size();

/// The members of `Opening_Balance`: a report asks for movements first, then for what was there.
enum OpeningKey { kOpeningBalance = 0, kMovement = 1 };

/// One entry of the ledger: amounts in hundredths, units whole or absent, `day` from 1.
struct Entry {
  int month, day, line, ledger, file, money;
  OpeningKey key;
  int64_t cents;
  std::optional<int64_t> units;
};

/// splitmix64: small, fast, the same everywhere.
class Dice {
 public:
  explicit Dice(uint64_t seed) : state_(seed) {}
  uint64_t Next();
  /// A number from 0 to `bound` - 1.
  int64_t Below(int64_t bound);
  int64_t Between(int64_t least, int64_t most) { return least + Below(most - least + 1); }
  bool OneIn(int64_t bound) { return Below(bound) == 0; }

 private:
  uint64_t state_;
};

class Trade {
 public:
  using Sink = std::function<void(const Entry&)>;
  Trade(const Plan& plan, Sink sink);

  /// Books all months in their order.
  void Run();

 private:
  struct Balance {
    int64_t cents = 0, units = 0;
  };
  struct Order {
    int goods, money;
    int64_t units, price;
  };

  void OpenFirstYear();
  void PostOpeningBalances(int month);
  void BookGoods(int month, int ledger, int goods);
  void BookInvoice(int month, int ledger, const Order& order);
  void BookDeductions(int month, int ledger, const Order& order);
  void BookStockAndPayment(int month, int ledger, const Order& order);
  void BookMistake(int month, int ledger, const Order& order);
  void BookOverheads(int month, int ledger);
  void Post(int month, int ledger, const Order& order, Kind kind, int64_t cents,
            std::optional<int64_t> units);
  void PostLine(int month, int ledger, int line, int book, int money, int64_t cents,
                std::optional<int64_t> units);

  Order Draw(int month, int ledger, int goods);
  bool Trades(int ledger, int goods) const;

  Plan plan_;
  Sink sink_;
  Dice dice_;
  int goods_;
  int64_t invoices_per_mille_;
  /// What stands on the lines that keep a balance: by ledger, line and money set.
  std::map<std::array<int, 3>, Balance> balances_;
};

}  // namespace vok::examples
