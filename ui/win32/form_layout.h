// Where all controls of a form stand: a grid for each region of the form and for each of its
// frames.
//
// Body and what stands beside it are a page, which may be larger than what can be seen of it; the
// foot is below. Menus have no place. What is not to be seen takes no room, and so does a frame in
// which nothing is to be seen.
#pragma once

#include <functional>
#include <map>

#include "ui/model/form.h"
#include "ui/win32/grid_layout.h"

namespace vok::windows {

/// Whether the control and the frames around it are visible.
bool IsShown(const Form& form, const Control& control);

/// The region of the form that the control, or the outermost frame around it, stands in.
Region RegionOf(const Form& form, const Control& control);

/// Sizes of one screen and font, in pixels.
struct LayoutSizes {
  std::function<Extent(const Control&)> least;  ///< of a control that is not a frame
  Extent gap;                                   ///< between rows and columns
  int dense_gap = 0;                            ///< between the rows of a dense frame
  int margin = 0;                               ///< between the window's edge and its controls
  int frame_top = 0;                            ///< of a frame with a caption, above its controls
  int frame_edge = 0;                           ///< and on their other sides
};

class FormLayout {
 public:
  /// The places of the controls and frames that are shown.
  using Places = std::map<const Control*, Area>;

  FormLayout(const Form& form, const LayoutSizes& sizes);

  /// What the form needs with its page side by side, its margins with it.
  Extent Least() const;
  int FootHeight() const { return foot_.Least().height; }
  /// What the page needs when it is that wide.
  Extent LeastPage(int width) const;
  /// `split` is the body's share of the width in pixels, as far as both parts have what they need;
  /// 0: what is left over is halved.
  Places ArrangePage(Extent page, int split) const;
  Places ArrangeFoot(Extent client) const;
  /// The strip between body and what stands beside it; of no width where there is none.
  Area Splitter(Extent page, int split) const;

 private:
  struct Container {
    const Control* frame = nullptr;  ///< nullptr: a region of the form
    Area edges;                      ///< around the grid: left, top, and both sides in all
    std::vector<const Control*> controls;
    std::map<const Control*, Container> frames;
    Grid grid{{}, {}};
    bool IsEmpty() const { return controls.empty(); }
    Extent Least() const;
  };
  template <typename IsInside>
  Container Read(const Form& form, const Control* frame, const LayoutSizes& sizes,
                 IsInside is_inside) const;
  Container ReadRegion(const Form& form, Region region, const LayoutSizes& sizes) const;
  Container ReadFrame(const Form& form, const Control& frame, const LayoutSizes& sizes) const;
  static void Arrange(const Container& container, const Area& area, Places& places);
  bool IsSideBySide(int width) const;
  int BodyWidth(int width, int split) const;

  int margin_;
  Container body_, beside_, foot_;
};

}  // namespace vok::windows
