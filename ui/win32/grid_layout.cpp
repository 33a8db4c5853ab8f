#include "ui/win32/grid_layout.h"

#include <algorithm>

namespace vok::windows {

Grid::Grid(std::vector<GridItem> items, Extent gap) : items_(std::move(items)), gap_(gap) {
  std::vector<Span> across, down;
  for (const GridItem& item : items_) {
    across.push_back({item.cell.column, item.cell.columns, item.least.width, item.grows});
    down.push_back({item.cell.row, item.cell.rows, item.least.height, item.grows_down});
  }
  columns_ = TracksOf(std::move(across), gap_.width);
  rows_ = TracksOf(std::move(down), gap_.height);
}

/// The narrow ones first: a wide one asks only for what they have left wanting.
Grid::Tracks Grid::TracksOf(std::vector<Span> spans, int gap) {
  std::stable_sort(spans.begin(), spans.end(),
                   [](const Span& a, const Span& b) { return a.count < b.count; });
  Tracks tracks;
  for (const Span& span : spans) {
    const auto end = static_cast<std::size_t>(span.first) + static_cast<std::size_t>(span.count);
    if (tracks.size() < end) tracks.resize(end);
    MakeRoom(tracks, span, gap);
  }
  return tracks;
}

void Grid::MakeRoom(Tracks& tracks, const Span& span, int gap) {
  const auto begin = tracks.begin() + span.first;
  const auto end = begin + span.count;
  std::vector<Track*> used, growing;
  for (auto track = begin; track != end; ++track) {
    if (track->used) used.push_back(&*track);
    if (track->grows) growing.push_back(&*track);
  }
  if (used.empty()) used.push_back(&*begin);
  used.front()->used = true;
  if (growing.empty() && span.grows) {
    used.back()->grows = true;
    growing.push_back(used.back());
  }
  const int wanting = span.least - SizeOf(tracks, span.first, span.count, gap);
  if (wanting > 0) (growing.empty() ? used : growing).back()->size += wanting;
}

int Grid::SizeOf(const Tracks& tracks, int first, int count, int gap) {
  return StretchOf(tracks, first, count, gap).size;
}

/// On a screen that is too small they give what is wanting, each up to its half.
Grid::Tracks Grid::Grown(Tracks tracks, int size, int gap) {
  int left = size - SizeOf(tracks, 0, static_cast<int>(tracks.size()), gap);
  auto growing = static_cast<int>(
      std::count_if(tracks.begin(), tracks.end(), [](const Track& track) { return track.grows; }));
  for (Track& track : tracks) {
    if (!track.grows) continue;
    const int share = std::max(left / growing--, -track.size / 2);
    track.size += share;
    left -= share;
  }
  return tracks;
}

Grid::Stretch Grid::StretchOf(const Tracks& tracks, int first, int count, int gap) {
  Stretch stretch;
  int at = 0;
  for (int i = 0; i < first + count; ++i) {
    const Track& track = tracks[static_cast<std::size_t>(i)];
    if (i == first) stretch.start = at;
    if (track.used) at += track.size + gap;
  }
  stretch.size = std::max(0, at - gap - stretch.start);
  return stretch;
}

Extent Grid::Least() const {
  return {SizeOf(columns_, 0, static_cast<int>(columns_.size()), gap_.width),
          SizeOf(rows_, 0, static_cast<int>(rows_.size()), gap_.height)};
}

std::vector<Area> Grid::Arrange(const Area& area) const {
  const Tracks columns = Grown(columns_, area.width, gap_.width);
  const Tracks rows = Grown(rows_, area.height, gap_.height);
  std::vector<Area> places;
  for (const GridItem& item : items_) {
    const Stretch across = StretchOf(columns, item.cell.column, item.cell.columns, gap_.width);
    const Stretch down = StretchOf(rows, item.cell.row, item.cell.rows, gap_.height);
    Area place{area.left + across.start, area.top + down.start, across.size, down.size};
    if (item.at_end) place.left += place.width - item.least.width;
    if (item.at_start || item.at_end) place.width = item.least.width;
    if (!item.fills_height) {
      place.top += (place.height - item.least.height) / 2;
      place.height = item.least.height;
    }
    places.push_back(place);
  }
  return places;
}

}  // namespace vok::windows
