// Where the parts of a container stand: rows and columns, worked out from what each part needs.
//
// Arithmetic alone, in pixels, left to right; a window that is read from the right is mirrored by
// the system. Nothing fails.
#pragma once

#include <vector>

#include "ui/model/form.h"

namespace vok::windows {

struct Extent {
  int width = 0;
  int height = 0;
  friend bool operator==(const Extent&, const Extent&) = default;
};

struct Area {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  friend bool operator==(const Area&, const Area&) = default;
};

struct GridItem {
  GridCell cell;
  Extent least;
  bool grows = false;
  bool grows_down = false;
  bool at_start = false;      ///< of its least width, at the start of its columns
  bool at_end = false;        ///< of its least width, at their end
  bool fills_height = false;  ///< as tall as its rows; otherwise of its least height, amid them
};

class Grid {
 public:
  /// `gap` is between rows and between columns; one that nothing stands in takes no room.
  Grid(std::vector<GridItem> items, Extent gap);

  /// What all items need.
  Extent Least() const;
  /// The places of the items, in their order. What the area has beyond the least extent goes to
  /// those that grow; what it lacks is taken from them, as far as it can be.
  std::vector<Area> Arrange(const Area& area) const;

 private:
  /// A row or a column.
  struct Track {
    int size = 0;
    bool used = false;
    bool grows = false;
  };
  /// What an item asks of the tracks that it lies in.
  struct Span {
    int first = 0;
    int count = 1;
    int least = 0;
    bool grows = false;
  };
  struct Stretch {
    int start = 0;
    int size = 0;
  };
  using Tracks = std::vector<Track>;

  static Tracks TracksOf(std::vector<Span> spans, int gap);
  static void MakeRoom(Tracks& tracks, const Span& span, int gap);
  static int SizeOf(const Tracks& tracks, int first, int count, int gap);
  static Tracks Grown(Tracks tracks, int size, int gap);
  static Stretch StretchOf(const Tracks& tracks, int first, int count, int gap);

  std::vector<GridItem> items_;
  Extent gap_;
  Tracks columns_;
  Tracks rows_;
};

}  // namespace vok::windows
