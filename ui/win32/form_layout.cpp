#include "ui/win32/form_layout.h"

namespace vok::windows {
namespace {

using enum ControlType;

bool FillsHeight(const Control& control) {
  constexpr int kOneLine = 1;
  return control.Height > kOneLine || control.Type == kFrame || control.Type == kListBox ||
         control.Type == kListView || control.Type == kChart;
}

Area EdgesOf(const Control* frame, const LayoutSizes& sizes) {
  if (frame == nullptr) return {sizes.margin, sizes.margin, 2 * sizes.margin, 2 * sizes.margin};
  if (frame->Caption.empty()) return {};
  return {sizes.frame_edge, sizes.frame_top, 2 * sizes.frame_edge,
          sizes.frame_top + sizes.frame_edge};
}

}  // namespace

bool IsShown(const Form& form, const Control& control) {
  if (!control.Visible) return false;
  return control.Container.empty() || IsShown(form, form.At(control.Container));
}

Extent FormLayout::Container::Least() const {
  const Extent inside = grid.Least();
  return {inside.width + edges.width, inside.height + edges.height};
}

FormLayout::FormLayout(const Form& form, const LayoutSizes& sizes)
    : root_(Read(form, nullptr, sizes)), least_(root_.Least()) {}

FormLayout::Container FormLayout::Read(const Form& form, const Control* frame,
                                       const LayoutSizes& sizes) const {
  Container container;
  container.frame = frame;
  container.edges = EdgesOf(frame, sizes);
  std::vector<GridItem> items;
  for (const Control& control : form.Controls()) {
    if (control.Type == kMenu || !control.Visible) continue;
    if (control.Container != (frame == nullptr ? "" : frame->Name)) continue;
    Extent least;
    if (control.Type == kFrame) {
      Container inner = Read(form, &control, sizes);
      if (inner.controls.empty()) continue;
      least = inner.Least();
      container.frames.emplace(&control, std::move(inner));
    } else {
      least = sizes.least(control);
    }
    container.controls.push_back(&control);
    items.push_back({control.Cell, least, control.Grows, control.GrowsDown, control.AtEnd,
                     FillsHeight(control)});
  }
  container.grid = Grid(std::move(items), sizes.gap);
  return container;
}

std::map<const Control*, Area> FormLayout::Arrange(Extent client) const {
  std::map<const Control*, Area> places;
  Arrange(root_, {0, 0, client.width, client.height}, places);
  return places;
}

void FormLayout::Arrange(const Container& container, const Area& area,
                         std::map<const Control*, Area>& places) {
  const Area& edges = container.edges;
  const auto inner = container.grid.Arrange({area.left + edges.left, area.top + edges.top,
                                             area.width - edges.width, area.height - edges.height});
  for (std::size_t i = 0; i < inner.size(); ++i) {
    const Control* control = container.controls[i];
    places[control] = inner[i];
    const auto frame = container.frames.find(control);
    if (frame != container.frames.end()) Arrange(frame->second, inner[i], places);
  }
}

}  // namespace vok::windows
