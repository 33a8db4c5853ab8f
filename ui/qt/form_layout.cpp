#include "ui/qt/form_layout.h"

#include <algorithm>

namespace vok::qt {

FormLayout::FormLayout(QWidget& window, ScrolledBody& body) {
  auto* parts = new QVBoxLayout(&window);
  parts->setContentsMargins({});
  parts->setSpacing(0);
  auto* foot = new QWidget(&window);
  parts->addWidget(&body, 1);
  parts->addWidget(foot);
  regions_[Region::kBody].layout = new QGridLayout(&body.body());
  regions_[Region::kBeside].layout = new QGridLayout(&body.beside());
  regions_[Region::kFoot].layout = new QGridLayout(foot);
}

FormLayout::Grid& FormLayout::GridOf(const Control& control) {
  const auto frame = frames_.find(control.Container);
  return frame != frames_.end() ? frame->second : regions_.at(control.Region);
}

void FormLayout::Place(const Control& control, QWidget& widget) {
  const GridCell& cell = control.Cell;
  Grid& grid = GridOf(control);
  grid.layout->addWidget(&widget, cell.row, cell.column, cell.rows, cell.columns,
                         control.AtEnd ? Qt::AlignRight : Qt::Alignment());
  grid.controls.push_back(&control);
  if (control.Type != ControlType::kFrame) return;
  Grid& inner = frames_[control.Name];
  inner.layout = new QGridLayout(&widget);
  constexpr int kBetweenDenseRows = 1;  // pixel
  if (control.Dense) inner.layout->setVerticalSpacing(kBetweenDenseRows);
  if (control.Caption.empty()) inner.layout->setContentsMargins({});
}

void FormLayout::Finish() {
  const auto share = [](const auto& grids) {
    for (const auto& [name, grid] : grids) {
      ShareWidth(grid);
      ShareHeight(grid);
    }
  };
  share(regions_);
  share(frames_);
}

/// A control over several columns gives its share to the last of them, unless one of them grows for
/// another control. Where nothing grows, all stand together at the start.
void FormLayout::ShareWidth(const Grid& grid) {
  QGridLayout& layout = *grid.layout;
  std::vector<const Control*> growing;
  std::copy_if(grid.controls.begin(), grid.controls.end(), std::back_inserter(growing),
               [](const Control* control) { return control->Grows; });
  std::stable_sort(growing.begin(), growing.end(), [](const Control* a, const Control* b) {
    return a->Cell.columns < b->Cell.columns;
  });
  for (const Control* control : growing) {
    const int end = control->Cell.column + control->Cell.columns;
    bool grows = false;
    for (int column = control->Cell.column; column < end; ++column) {
      grows = grows || layout.columnStretch(column) > 0;
    }
    if (!grows) layout.setColumnStretch(end - 1, 1);
  }
  if (growing.empty()) layout.setColumnStretch(layout.columnCount(), 1);
}

void FormLayout::ShareHeight(const Grid& grid) {
  QGridLayout& layout = *grid.layout;
  bool grows = false;
  for (const Control* control : grid.controls) {
    if (!control->GrowsDown) continue;
    layout.setRowStretch(control->Cell.row + control->Cell.rows - 1, 1);
    grows = true;
  }
  if (!grows) layout.setRowStretch(layout.rowCount(), 1);
}

}  // namespace vok::qt
