// The grids of a window: each container's controls in the cells that they name.
#pragma once

#include <QtWidgets/QGridLayout>
#include <map>
#include <string>
#include <vector>

#include "ui/model/form.h"
#include "ui/qt/scrolled_body.h"

namespace vok::qt {

class FormLayout {
 public:
  FormLayout(QWidget& window, ScrolledBody& body);

  /// Containers are placed before what stands in them.
  void Place(const Control& control, QWidget& widget);
  /// Shares out what is left over, when all are placed.
  void Finish();

 private:
  struct Grid {
    QGridLayout* layout;
    std::vector<const Control*> controls;
  };
  Grid& GridOf(const Control& control);
  static void ShareWidth(const Grid& grid);
  static void ShareHeight(const Grid& grid);

  std::map<Region, Grid> regions_;
  std::map<std::string, Grid> frames_;  ///< by name
};

}  // namespace vok::qt
