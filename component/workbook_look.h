// How the workbook of a run looks.
#pragma once

#include <string>

#include "component/publics.h"
#include "platform/host.h"

namespace vok {

/// The formats are those of the periods' measures as the probed cube has them, else
/// "#,##0.###" for quantities and "#,##0.00" for money; negative figures look as the user's country
/// writes them. It is read from right to left where the windows' texts are.
WorkbookLook RunLook(const Host& host, Publics& publics, const std::string& title);

/// The number format that a spreadsheet program has for a measure's, `otherwise` where it may not
/// understand it. `negative` is how the country writes a negative number whose digits are "1": then
/// such numbers have a format of their own unless it is a mere minus sign before them.
std::string SheetFormat(const std::string& measure_format, const std::string& otherwise,
                        const std::string& negative);

}  // namespace vok
