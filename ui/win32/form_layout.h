// Where all controls of a form stand: a grid for the form and one for each of its frames.
//
// Menus have no place. What is not to be seen takes no room, and so does a frame in which nothing
// is to be seen.
#pragma once

#include <functional>
#include <map>

#include "ui/model/form.h"
#include "ui/win32/grid_layout.h"

namespace vok::windows {

/// Whether the control and the frames around it are visible.
bool IsShown(const Form& form, const Control& control);

/// Sizes of one screen and font, in pixels.
struct LayoutSizes {
  std::function<Extent(const Control&)> least;  ///< of a control that is not a frame
  Extent gap;                                   ///< between rows and columns
  int margin = 0;                               ///< between the window's edge and its controls
  int frame_top = 0;                            ///< of a frame with a caption, above its controls
  int frame_edge = 0;                           ///< and on their other sides
};

class FormLayout {
 public:
  FormLayout(const Form& form, const LayoutSizes& sizes);

  /// What the form needs, its margins with it.
  Extent Least() const { return least_; }
  /// The places of the controls and frames that are shown.
  std::map<const Control*, Area> Arrange(Extent client) const;

 private:
  struct Container {
    const Control* frame = nullptr;  ///< nullptr: the form
    Area edges;                      ///< around the grid: left, top, and both sides in all
    std::vector<const Control*> controls;
    std::map<const Control*, Container> frames;
    Grid grid{{}, {}};
    Extent Least() const;
  };
  Container Read(const Form& form, const Control* frame, const LayoutSizes& sizes) const;
  static void Arrange(const Container& container, const Area& area,
                      std::map<const Control*, Area>& places);

  Container root_;
  Extent least_;
};

}  // namespace vok::windows
