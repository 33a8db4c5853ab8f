// The grids of a window: each container's controls in the cells that they name.
#pragma once

#include <QtWidgets/QGridLayout>
#include <map>
#include <string>
#include <vector>

#include "ui/model/form.h"

namespace vok::qt {

class FormLayout {
 public:
  explicit FormLayout(QWidget& window);

  /// Containers are placed before what stands in them.
  void Place(const Control& control, QWidget& widget);
  /// Shares out what is left over, when all are placed.
  void Finish();

 private:
  struct Grid {
    QGridLayout* layout;
    std::vector<const Control*> controls;
  };
  static void ShareWidth(const Grid& grid);
  static void ShareHeight(const Grid& grid);

  std::map<std::string, Grid> grids_;  ///< by the container's name
};

}  // namespace vok::qt
