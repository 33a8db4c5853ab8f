// The cube selection window: a cube file, and one of its catalogs whose names end in "QEL".
//
// Controls: `TxtFileName`, `ComCubeFile` (picks the file), `ComboCube` (the catalogs), `cmdOk`,
// `cmdCancel`.
#pragma once

#include <string>

#include "platform/cube.h"
#include "ui/model/toolkit.h"

namespace vok {

class frmCube {
 public:
  explicit frmCube(const WindowServices& services);
  frmCube(const frmCube&) = delete;
  frmCube& operator=(const frmCube&) = delete;

  /// What is chosen when the window opens and, after OK, what the user chose.
  std::string CubeFile;
  std::string CubeName;
  std::string DbPath;  ///< the settings database of the program that shows the window

  /// Fills the list of catalogs anew; nullptr empties and disables it. A list that stays empty is
  /// told in a message.
  void UpdListCube(const CubeConnection* connection);

  /// Shows the window; true when a cube was chosen and confirmed.
  bool ShowForm();
  Form& form() { return form_; }

 private:
  void ListCatalogs();
  void PickFile();
  void FileLeft();
  void Ok();

  const WindowServices& services_;
  Form form_;
  bool confirmed_ = false;
};

}  // namespace vok
