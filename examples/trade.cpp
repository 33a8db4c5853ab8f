#include "examples/trade.h"

#include <algorithm>
#include <utility>

namespace vok::examples {
namespace {

/// Entries that one invoice makes, in the mean: what turns a number of facts into invoices.
constexpr int64_t kEntriesPerInvoice = 7;

/// Sales of a month in thousandths of an even month: winter goods, summer goods, even goods.
constexpr int kSeason[3][12] = {
    {1500, 1350, 1100, 900, 750, 600, 550, 600, 800, 1050, 1300, 1500},
    {600, 650, 800, 950, 1200, 1450, 1600, 1550, 1200, 850, 600, 550},
    {960, 930, 1000, 990, 1000, 1000, 980, 970, 1000, 1010, 1030, 1130}};

/// Heating and cooling follow the weather, insurance and audit come once a quarter.
constexpr int kHeating = 4, kCooling = 5, kInsurance = 15, kAudit = 16;

uint64_t Mix(uint64_t value) {
  value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9U;
  value = (value ^ (value >> 27)) * 0x94d049bb133111ebU;
  return value ^ (value >> 31);
}

int64_t Grown(int64_t value, int month) { return value * (1000 + 8 * month) / 1000; }

int BookOf(Kind kind) {
  if (kind == kReceivables) return 2;
  return kind == kSales || kind == kReturns || kind == kDiscounts ? 0 : 1;
}

}  // namespace

uint64_t Dice::Next() { return Mix(state_ += 0x9e3779b97f4a7c15U); }

int64_t Dice::Below(int64_t bound) {
  // The remainder's bias is of no account at these bounds, and it is the same everywhere.
  return static_cast<int64_t>(Next() % static_cast<uint64_t>(bound));
}

Trade::Trade(const Plan& plan, Sink sink)
    : plan_(plan),
      sink_(std::move(sink)),
      dice_(plan.seed),
      goods_((std::max(0, plan.lines - kOverheadLines) + kKinds - 1) / kKinds) {
  int64_t overheads = int64_t{std::min(plan.lines, kOverheadLines)} * plan.ledgers * plan.months;
  int64_t traded = 0;
  for (int ledger = 0; ledger < plan.ledgers; ++ledger) {
    for (int goods = 0; goods < goods_; ++goods) traded += Trades(ledger, goods) ? 1 : 0;
  }
  int64_t invoices = std::max<int64_t>(0, plan.facts - overheads) * 1000 / kEntriesPerInvoice;
  invoices_per_mille_ = invoices / std::max<int64_t>(1, traded * plan.months);
}

void Trade::Run() {
  OpenFirstYear();
  for (int month = 0; month < plan_.months; ++month) {
    if (month % 12 == 0) PostOpeningBalances(month);
    for (int ledger = 0; ledger < plan_.ledgers; ++ledger) {
      for (int goods = 0; goods < goods_; ++goods) {
        if (Trades(ledger, goods)) BookGoods(month, ledger, goods);
      }
      BookOverheads(month, ledger);
    }
  }
}

/// Some goods are sold by one ledger only, and every fifteenth by none: lines without any facts.
bool Trade::Trades(int ledger, int goods) const {
  if (goods % 15 == 14) return false;
  return Mix(plan_.seed * 1000003 + static_cast<uint64_t>(ledger) * 8191 +
             static_cast<uint64_t>(goods)) %
             10 <
         7;
}

void Trade::OpenFirstYear() {
  for (int ledger = 0; ledger < plan_.ledgers; ++ledger) {
    for (int goods = 0; goods < goods_; ++goods) {
      if (!Trades(ledger, goods)) continue;
      int line = kOverheadLines + goods * kKinds;
      int64_t units = dice_.Between(200, 900);
      balances_[{ledger, line + kStock, 0}] = {units * dice_.Between(200, 4000), units};
      balances_[{ledger, line + kReceivables, 0}] = {dice_.Between(50'000, 900'000), 0};
    }
  }
}

void Trade::PostOpeningBalances(int month) {
  for (const auto& [key, balance] : balances_) {
    auto [ledger, line, money] = key;
    if (line >= plan_.lines || (balance.cents == 0 && balance.units == 0)) continue;
    bool counted = (line - kOverheadLines) % kKinds == kStock;
    sink_({month, 1, line, ledger, 3 % plan_.files, money, kOpeningBalance, balance.cents,
           counted ? std::optional(balance.units) : std::nullopt});
  }
}

void Trade::BookGoods(int month, int ledger, int goods) {
  if (dice_.OneIn(12)) {
    // A month without trade in which all that was booked was taken back: sums of zero.
    BookMistake(month, ledger, Draw(month, ledger, goods));
    return;
  }
  int64_t invoices = invoices_per_mille_ / 1000;
  if (dice_.Below(1000) < invoices_per_mille_ % 1000) ++invoices;
  for (int64_t i = 0; i < invoices; ++i) {
    Order order = Draw(month, ledger, goods);
    BookInvoice(month, ledger, order);
    if (dice_.OneIn(15)) BookMistake(month, ledger, Draw(month, ledger, goods));
  }
}

Trade::Order Trade::Draw(int month, int ledger, int goods) {
  Order order;
  order.goods = goods;
  bool home = ledger == 0 && !dice_.OneIn(5);
  order.money = home ? 0 : static_cast<int>(dice_.Below(plan_.money_sets));
  int64_t usual = 40 + static_cast<int64_t>(Mix(static_cast<uint64_t>(goods) + 7) % 160);
  int64_t units = Grown(usual * kSeason[goods % 3][month % 12] / 1000, month);
  order.units = std::max<int64_t>(1, units * dice_.Between(70, 130) / 100);
  int64_t list_price = 350 + static_cast<int64_t>(Mix(static_cast<uint64_t>(goods)) % 9000);
  order.price = list_price * (1000 + 3 * month) / 1000;
  return order;
}

void Trade::BookInvoice(int month, int ledger, const Order& order) {
  int64_t amount = order.units * order.price;
  Post(month, ledger, order, kSales, amount, order.units);
  if (dice_.OneIn(40)) Post(month, ledger, order, kSales, 0, 2);  // samples, free of charge
  BookDeductions(month, ledger, order);
  if (dice_.OneIn(2)) {
    Post(month, ledger, order, kFreight, 1500 + order.units * dice_.Between(5, 25), std::nullopt);
  }
  if (ledger > 0 && dice_.OneIn(3)) {
    Post(month, ledger, order, kDuty, amount * dice_.Between(20, 80) / 1000, std::nullopt);
  }
  BookStockAndPayment(month, ledger, order);
}

void Trade::BookDeductions(int month, int ledger, const Order& order) {
  if (dice_.OneIn(4)) {
    int64_t discount = order.units * order.price * dice_.Between(15, 50) / 1000;
    Post(month, ledger, order, kDiscounts, -discount, std::nullopt);
  }
  if (dice_.OneIn(6)) {
    int64_t returned = 1 + dice_.Below(order.units / 4 + 1);
    Post(month, ledger, order, kReturns, -returned * order.price, -returned);
  }
}

void Trade::BookStockAndPayment(int month, int ledger, const Order& order) {
  int64_t cost = order.price * dice_.Between(55, 70) / 100;
  int64_t bought = order.units * dice_.Between(85, 118) / 100;
  Post(month, ledger, order, kCost, order.units * cost, order.units);
  Post(month, ledger, order, kStock, bought * cost, bought);
  Post(month, ledger, order, kStock, -order.units * cost, -order.units);
  int64_t owed = order.units * order.price;
  Post(month, ledger, order, kReceivables, owed, std::nullopt);
  Post(month, ledger, order, kReceivables, -owed * dice_.Between(80, 100) / 100, std::nullopt);
}

/// An invoice that was booked by mistake and taken back within the month.
void Trade::BookMistake(int month, int ledger, const Order& order) {
  int64_t amount = order.units * order.price;
  Post(month, ledger, order, kSales, amount, order.units);
  Post(month, ledger, order, kSales, -amount, -order.units);
}

void Trade::BookOverheads(int month, int ledger) {
  for (int line = 0; line < std::min(plan_.lines, kOverheadLines); ++line) {
    int overhead = line / static_cast<int>(kDepartments.size());
    bool quarterly = overhead == kInsurance || overhead == kAudit;
    bool shops = line % static_cast<int>(kDepartments.size()) == 2;
    if ((quarterly && month % 3 != 2) || (shops && ledger > 0)) continue;
    int64_t usual = 30'000 + static_cast<int64_t>(Mix(static_cast<uint64_t>(line) + 99) % 400'000);
    if (overhead == kHeating) usual = usual * kSeason[0][month % 12] / 1000;
    if (overhead == kCooling) usual = usual * kSeason[1][month % 12] / 1000;
    int64_t cents = Grown(usual, month) * dice_.Between(90, 110) / 100;
    PostLine(month, ledger, line, 3, 0, cents, std::nullopt);
  }
}

void Trade::Post(int month, int ledger, const Order& order, Kind kind, int64_t cents,
                 std::optional<int64_t> units) {
  int line = kOverheadLines + order.goods * kKinds + kind;
  if (kind == kStock || kind == kReceivables) {
    Balance& balance = balances_[{ledger, line, order.money}];
    balance.cents += cents;
    balance.units += units.value_or(0);
  }
  PostLine(month, ledger, line, BookOf(kind), order.money, cents, units);
}

void Trade::PostLine(int month, int ledger, int line, int book, int money, int64_t cents,
                     std::optional<int64_t> units) {
  int day = 1 + static_cast<int>(dice_.Below(DaysInMonth(month)));
  int volumes = (plan_.files + 3) / 4;
  int file = (book + 4 * static_cast<int>(dice_.Below(volumes))) % plan_.files;
  if (line >= plan_.lines) return;
  sink_({month, day, line, ledger, file, money, kMovement, cents, units});
}

}  // namespace vok::examples
