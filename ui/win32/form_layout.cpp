#include "ui/win32/form_layout.h"

#include <algorithm>

namespace vok::windows {
namespace {

using enum ControlType;

bool FillsHeight(const Control& control) {
  constexpr int kOneLine = 1;
  return control.Height > kOneLine || control.Type == kFrame || control.Type == kListBox ||
         control.Type == kListView || control.Type == kChart;
}

Area EdgesOf(const Control& frame, const LayoutSizes& sizes) {
  if (frame.Caption.empty()) return {};
  return {sizes.frame_edge, sizes.frame_top, 2 * sizes.frame_edge,
          sizes.frame_top + sizes.frame_edge};
}

}  // namespace

bool IsShown(const Form& form, const Control& control) {
  if (!control.Visible) return false;
  return control.Container.empty() || IsShown(form, form.At(control.Container));
}

Region RegionOf(const Form& form, const Control& control) {
  return control.Container.empty() ? control.Region : RegionOf(form, form.At(control.Container));
}

Extent FormLayout::Container::Least() const {
  if (frame == nullptr && IsEmpty()) return {};
  const Extent inside = grid.Least();
  return {inside.width + edges.width, inside.height + edges.height};
}

FormLayout::FormLayout(const Form& form, const LayoutSizes& sizes)
    : margin_(sizes.margin),
      body_(ReadRegion(form, Region::kBody, sizes)),
      beside_(ReadRegion(form, Region::kBeside, sizes)),
      foot_(ReadRegion(form, Region::kFoot, sizes)) {}

/// The body's margins are around it; those of the others lack a side, which the body's serves.
FormLayout::Container FormLayout::ReadRegion(const Form& form, Region region,
                                             const LayoutSizes& sizes) const {
  Container container = Read(form, nullptr, sizes, [region](const Control& control) {
    return control.Container.empty() && control.Region == region;
  });
  const int m = sizes.margin;
  container.edges = region == Region::kBody     ? Area{m, m, 2 * m, 2 * m}
                    : region == Region::kBeside ? Area{0, m, m, 2 * m}
                                                : Area{m, 0, 2 * m, m};
  return container;
}

FormLayout::Container FormLayout::ReadFrame(const Form& form, const Control& frame,
                                            const LayoutSizes& sizes) const {
  LayoutSizes inner = sizes;
  if (frame.Dense) inner.gap.height = sizes.dense_gap;
  Container container = Read(form, &frame, inner, [&frame](const Control& control) {
    return control.Container == frame.Name;
  });
  container.edges = EdgesOf(frame, sizes);
  return container;
}

template <typename IsInside>
FormLayout::Container FormLayout::Read(const Form& form, const Control* frame,
                                       const LayoutSizes& sizes, IsInside is_inside) const {
  Container container;
  container.frame = frame;
  std::vector<GridItem> items;
  for (const Control& control : form.Controls()) {
    if (control.Type == kMenu || !control.Visible || !is_inside(control)) continue;
    Extent least;
    if (control.Type == kFrame) {
      Container inner = ReadFrame(form, control, sizes);
      if (inner.IsEmpty()) continue;
      least = inner.Least();
      container.frames.emplace(&control, std::move(inner));
    } else {
      least = sizes.least(control);
    }
    container.controls.push_back(&control);
    items.push_back({.cell = control.Cell,
                     .least = least,
                     .grows = control.Grows,
                     .grows_down = control.GrowsDown,
                     .at_start = !control.Symbol.empty(),
                     .at_end = control.AtEnd,
                     .fills_height = FillsHeight(control)});
  }
  container.grid = Grid(std::move(items), sizes.gap);
  return container;
}

Extent FormLayout::Least() const {
  const Extent body = body_.Least(), beside = beside_.Least(), foot = foot_.Least();
  return {std::max(body.width + beside.width, foot.width),
          std::max(body.height, beside.height) + foot.height};
}

bool FormLayout::IsSideBySide(int width) const {
  return beside_.IsEmpty() || width >= body_.Least().width + beside_.Least().width;
}

Extent FormLayout::LeastPage(int width) const {
  const Extent body = body_.Least(), beside = beside_.Least();
  if (IsSideBySide(width)) {
    return {body.width + beside.width, std::max(body.height, beside.height)};
  }
  return {std::max(body.width, beside.width + margin_), body.height + beside.height};
}

int FormLayout::BodyWidth(int width, int split) const {
  if (beside_.IsEmpty()) return width;
  const int least = body_.Least().width, most = width - beside_.Least().width;
  return std::clamp(split > 0 ? split : (least + most) / 2, least, most);
}

FormLayout::Places FormLayout::ArrangePage(Extent page, int split) const {
  Places places;
  if (IsSideBySide(page.width)) {
    const int body = BodyWidth(page.width, split);
    Arrange(body_, {0, 0, body, page.height}, places);
    Arrange(beside_, {body, 0, page.width - body, page.height}, places);
    return places;
  }
  const int body = body_.Least().height;
  Arrange(body_, {0, 0, page.width, body}, places);
  Arrange(beside_, {margin_, body, page.width - margin_, page.height - body}, places);
  return places;
}

Area FormLayout::Splitter(Extent page, int split) const {
  if (beside_.IsEmpty() || !IsSideBySide(page.width)) return {};
  return {BodyWidth(page.width, split) - margin_, 0, margin_, page.height};
}

FormLayout::Places FormLayout::ArrangeFoot(Extent client) const {
  Places places;
  Arrange(foot_, {0, client.height - FootHeight(), client.width, FootHeight()}, places);
  return places;
}

void FormLayout::Arrange(const Container& container, const Area& area, Places& places) {
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
