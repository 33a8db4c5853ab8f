// The words of the example ledger: goods, kinds of entry, overheads and departments in the four
// languages of the reports. Data only.
#pragma once

#include <array>
#include <string_view>

namespace vok::examples {

struct Name {
  std::string_view english, hebrew, russian, german;
};

inline constexpr std::array<Name, 30> kGoods = {{
    {"Coffee", "קפה", "Кофе", "Kaffee"},
    {"Tea", "תה", "Чай", "Tee"},
    {"Olive oil, virgin", "שמן זית", "Оливковое масло", "Olivenöl"},
    {"Red wine", "יין אדום", "Красное вино", "Rotwein"},
    {"White wine", "יין לבן", "Белое вино", "Weißwein"},
    {"Wheat flour", "קמח חיטה", "Пшеничная мука", "Weizenmehl"},
    {"Sugar", "סוכר", "Сахар", "Zucker"},
    {"Rice", "אורז", "Рис", "Reis"},
    {"Honey", "דבש", "Мёд", "Honig"},
    {"Dates", "תמרים", "Финики", "Datteln"},
    {"Almonds", "שקדים", "Миндаль", "Mandeln"},
    {"Walnuts", "אגוזי מלך", "Грецкие орехи", "Walnüsse"},
    {"Chocolate", "שוקולד", "Шоколад", "Schokolade"},
    {"Biscuits", "ביסקוויטים", "Печенье", "Kekse"},
    {"Salt", "מלח", "Соль", "Salz"},
    {"Pepper", "פלפל", "Перец", "Pfeffer"},
    {"Cinnamon", "קינמון", "Корица", "Zimt"},
    {"Vinegar", "חומץ", "Уксус", "Essig"},
    {"Mustard", "חרדל", "Горчица", "Senf"},
    {"Tomato paste", "רסק עגבניות", "Томатная паста", "Tomatenmark"},
    {"Orange juice", "מיץ תפוזים", "Апельсиновый сок", "Orangensaft"},
    {"Mineral water", "מים מינרליים", "Минеральная вода", "Mineralwasser"},
    {"Soap", "סבון", "Мыло", "Seife"},
    {"Candles", "נרות", "Свечи", "Kerzen"},
    {"Paper \"A4\"", "נייר \"A4\"", "Бумага «А4»", "Papier „A4“"},
    {"Glassware", "כלי זכוכית", "Стеклянная посуда", "Glaswaren"},
    {"Cotton fabric", "בד כותנה", "Хлопковая ткань", "Baumwollstoff"},
    {"Wool", "צמר", "Шерсть", "Wolle"},
    {"Shoes", "נעליים", "Обувь", "Schuhe"},
    {"Garden tools", "כלי גינה", "Садовый инвентарь", "Gartengeräte"},
}};

/// What one kind of goods is booked under, in the order in which its report lines are numbered.
enum Kind { kSales, kReturns, kDiscounts, kCost, kFreight, kDuty, kReceivables, kStock, kKinds };

inline constexpr std::array<Name, kKinds> kKindNames = {{
    {"Sales", "מכירות", "Продажи", "Umsatz"},
    {"Returns", "החזרות", "Возвраты", "Rücksendungen"},
    {"Discounts", "הנחות", "Скидки", "Rabatte"},
    {"Cost of goods", "עלות המכר", "Себестоимость", "Wareneinsatz"},
    {"Freight", "הובלה", "Перевозка", "Fracht"},
    {"Customs duty", "מכס", "Пошлины", "Zoll"},
    {"Receivables", "לקוחות", "Дебиторы", "Forderungen"},
    {"Stock", "מלאי", "Запасы", "Vorräte"},
}};

inline constexpr std::array<Name, 20> kOverheads = {{
    {"Wages", "שכר עבודה", "Заработная плата", "Löhne"},
    {"Social insurance", "ביטוח לאומי", "Социальное страхование", "Sozialversicherung"},
    {"Rent", "שכר דירה", "Аренда", "Miete"},
    {"Electricity", "חשמל", "Электроэнергия", "Strom"},
    {"Heating", "חימום", "Отопление", "Heizung"},
    {"Cooling", "קירור", "Охлаждение", "Kühlung"},
    {"Water", "מים", "Вода", "Wasser"},
    {"Cleaning", "ניקיון", "Уборка", "Reinigung"},
    {"Telephone", "טלפון", "Телефон", "Telefon"},
    {"Postage", "דואר", "Почта", "Porto"},
    {"Office supplies", "ציוד משרדי", "Канцтовары", "Bürobedarf"},
    {"Repairs", "תיקונים", "Ремонт", "Reparaturen"},
    {"Vehicles", "רכב", "Автотранспорт", "Fuhrpark"},
    {"Travel", "נסיעות", "Командировки", "Reisekosten"},
    {"Advertising", "פרסום", "Реклама", "Werbung"},
    {"Insurance", "ביטוח", "Страхование", "Versicherung"},
    {"Audit", "ביקורת", "Аудит", "Prüfung"},
    {"Bank charges", "עמלות בנק", "Банковские комиссии", "Bankgebühren"},
    {"Training", "הדרכה", "Обучение", "Schulung"},
    {"Depreciation", "פחת", "Амортизация", "Abschreibung"},
}};

inline constexpr std::array<Name, 3> kDepartments = {{
    {"Office", "משרד", "Офис", "Büro"},
    {"Warehouse", "מחסן", "Склад", "Lager"},
    {"Shops", "חנויות", "Магазины", "Läden"},
}};

}  // namespace vok::examples
