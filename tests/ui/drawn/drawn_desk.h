// What the main window works on when it is drawn.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "drawn_desktop.h"
#include "tests/support/ui/real_desk.h"

namespace vok::test {

/// A desk whose windows are drawn, with the texts of a language.
struct DrawnDesk : RealDesk {
  struct Desktop : DrawnDesktop {
    explicit Desktop(std::string file) : cube(std::move(file)) {}
    std::string PickFile(const FileDialog&) override { return cube; }
    void OpenOnDesktop(const std::string& path) override { opened = path; }
    std::string cube, opened;
  };

  /// 0, 1 or 2: English, Hebrew (drawn from right to left), Russian. `server` answers for all
  /// cubes; nullptr: the cube file does.
  explicit DrawnDesk(int language = 0, CubeProvider* server = nullptr)
      : drawn{host.component, files,   memory.registry, locale,
              memory.clock,   desktop, database,        server != nullptr ? *server : cube,
              spreadsheet} {
    publics.language.RightToLeftMarker = language == 1 ? 1 : 0;
    memory.registry.ini[settings + "\\Qel.ini|Qel|QelUILanguage"] = std::to_string(language);
    std::filesystem::copy_file(LANGUAGE_TABLE, folder.File("Lang.rs"));
  }

  std::unique_ptr<FrmPeriods> OpenDrawn() {
    auto window = std::make_unique<FrmPeriods>(drawn, publics, desktop);
    std::string host_database;
    window->Initialize(host_database);
    return window;
  }

  /// The script with the texts of the desk's language in the place of their numbers: "#1108".
  std::string Said(std::string script) {
    for (auto at = script.find('#'); at != script.npos; at = script.find('#', at)) {
      constexpr std::size_t kDigits = 4;
      const int number = std::stoi(script.substr(at + 1, kDigits));
      script.replace(at, 1 + kDigits, GetLangString(publics.language, number));
    }
    return script;
  }

  Desktop desktop{Cube()};
  Host drawn;
};

}  // namespace vok::test
