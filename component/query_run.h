// The query run: from two setting names to the output workbook.
#pragma once

#include <cstdint>
#include <string>

#include "component/publics.h"
#include "component/workbook_writer.h"
#include "platform/cube.h"
#include "platform/host.h"

namespace vok {

/// Runs the data-source setting `CubeSetName` over the period setting `PeriodsName` and writes the
/// answers to the workbook `OutputPath` & ".xlsX", in place of an old one. Returns 0, also when
/// no period met the cube or the cube had no facts (then there is no workbook); 1111 no settings
/// database, 2222 settings not read, 3333 no connection to the cube, 4444 its dates not read, 5555
/// a measure that it does not have; else the number of the failure that ended the run. Failures
/// are shown in a message box, except that of a cancelled run (`kQueryCancelled`). Never throws.
/// The settings, the cube's state and the run's report stay in `publics`.
int32_t CubtoXls(const Host& host, Publics& publics, const std::string& CubeSetName,
                 const std::string& PeriodsName, const std::string& OutputPath);

/// Builds the grid of the run's query and writes it to the run's workbook, as `Arrtoxls` does,
/// unless the run is to stop by then. A failure is reported and thrown on.
void DisplayCellsetOmvinExcel(const Host& host, Publics& publics, const Cellset& cellset,
                              const RunOutput& output, bool append);

}  // namespace vok
