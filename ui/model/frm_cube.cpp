#include "ui/model/frm_cube.h"

#include "cube/discovery.h"
#include "env/environment.h"
#include "platform/text.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"
#include "ui/model/apply_language.h"
#include "ui/model/messages.h"
#include "ui/model/panel.h"

namespace vok {
namespace {

constexpr int kFileWidth = 44;
constexpr char kLastFolder[] = "CubeFolder";

}  // namespace

frmCube::frmCube(const WindowServices& services)
    : services_(services), form_("frmCube", std::to_string(text_number::kCubeWindow)) {
  form_.Remembered = true;
  Panel window(form_);
  Panel fields = window.Frame({0, 0}, "fraFields");
  form_.At("fraFields").Grows = true;
  fields.Label({0, 0}, "lblFileName", text_number::kCubeFileOfWindow);
  Control& file =
      fields.Field({0, 1}, ControlType::kTextBox, "TxtFileName", "lblFileName", kFileWidth);
  file.Grows = file.Path = true;
  file.ToolTipText = std::to_string(text_number::kTipCubeFile);
  fields.Button({0, 2}, "ComCubeFile", text_number::kOpenCubeFile);
  fields.Label({1, 0}, "lblCube", text_number::kCatalogOfWindow);
  fields.Field({1, 1}, ControlType::kComboBox, "ComboCube", "lblCube", kFileWidth).Locked = true;
  window.OkAndCancel();
  form_.On(FormEvent::kLeft, "TxtFileName", [this](int) { FileLeft(); });
  form_.On(FormEvent::kClicked, "ComCubeFile", [this](int) { PickFile(); });
  form_.On(FormEvent::kClicked, "cmdOk", [this](int) { Ok(); });
  form_.On(FormEvent::kClicked, "cmdCancel", [this](int) { form_.Visible = false; });
}

void frmCube::UpdListCube(const CubeConnection* connection) {
  QelCatalogs catalogs;
  if (connection != nullptr) catalogs = ListQelCatalogs(*connection);
  form_.At("ComboCube").Enabled = connection != nullptr;
  form_.SetText("ComboCube", "");
  form_.SetList("ComboCube", catalogs.names);
  if (catalogs.chosen) {
    form_.Choose("ComboCube", static_cast<int>(*catalogs.chosen));
    return;
  }
  ShowMessage(services_, StringTableText(text_number::kNoQelCube),
              services_.host.component.product_name, MessageIcon::kExclamation);
}

/// A file that cannot be opened leaves an empty list, after the report of why.
void frmCube::ListCatalogs() {
  form_.SetText("TxtFileName", CubeFile);
  form_.SetText("ComboCube", "");
  form_.SetList("ComboCube", {});
  form_.At("ComboCube").Enabled = false;
  RunReported(services_, {.FunctionName = "ComCubeFile_Click", .ModuleName = "frmCube"}, [this] {
    const auto connection = OpenForCatalogs(services_.host, CubeFile);
    UpdListCube(connection.get());
    connection->Close();
    if (!form_.Text("ComboCube").empty()) form_.Focus = ControlId("cmdOk");
  });
}

void frmCube::PickFile() {
  GoToSettingsFolder(services_.host, services_.publics.environment);
  const std::string picked = services_.toolkit.PickFile(
      {.title = services_.host.component.executable_name + StringTableText(text_number::kOpenAFile),
       .filter = "Cub files(*.cub)|*.cub",
       .flags = kFileMustExist | kHideReadOnly,
       .folder = services_.toolkit.Recall(kLastFolder)});
  if (picked.empty()) return;
  const std::size_t end = picked.find_last_of("/\\");
  if (end != std::string::npos) services_.toolkit.Remember(kLastFolder, picked.substr(0, end));
  CubeFile = picked;
  ListCatalogs();
}

/// An address cannot be picked.
void frmCube::FileLeft() {
  const std::string typed(TrimBlanks(form_.Text("TxtFileName")));
  if (typed == CubeFile) return;
  CubeFile = typed;
  ListCatalogs();
}

void frmCube::Ok() {
  confirmed_ = true;
  CubeName = form_.Text("ComboCube");
  form_.Visible = false;
}

bool frmCube::ShowForm() {
  LoadTexts(services_.host, services_.publics, form_);
  form_.At("ComboCube").Enabled = false;
  if (IsCubeThere(services_.host, CubeFile)) {
    const std::string before = CubeName;
    ListCatalogs();
    const auto& names = form_.At("ComboCube").List;
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (names[i] == before) form_.Choose("ComboCube", static_cast<int>(i));
    }
  }
  services_.toolkit.ShowModal(form_);
  return confirmed_ && !CubeName.empty();
}

}  // namespace vok
