// A desk whose windows are drawn: by Qt, with the texts of a language and the dates of a country.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "providers/recordset/persisted_recordset.h"
#include "tests/support/ui/real_desk.h"
#include "ui/qt/qt_desktop.h"

namespace vok::test {

struct QtDesk : RealDesk {
  /// `language` is 0, 1 or 2: English, Hebrew (drawn from right to left), Russian.
  explicit QtDesk(const std::string& country = "en_GB", int language = 0) : customs(country) {
    publics.language.RightToLeftMarker = language == 1 ? 1 : 0;
    memory.registry.ini[settings + "\\Qel.ini|Qel|QelUILanguage"] = std::to_string(language);
    std::filesystem::copy_file(LANGUAGE_TABLE, folder.File("Lang.rs"));
  }

  struct Desktop : qt::QtDesktop {
    std::string PickFile(const FileDialog& dialog) override {
      return picked.empty() ? QtDesktop::PickFile(dialog) : picked;
    }
    std::string picked;  ///< "": asks the person
  };
  struct Database : ImpatientDatabase {
    Database(Files& all, const Locale& locale)
        : ImpatientDatabase(all, locale), files(all), customs(locale) {}
    std::unique_ptr<Recordset> OpenRecordset(const std::string& source,
                                             const std::string& connection) override {
      return recordset::OpenPersisted(files, customs, source, connection);
    }
    Files& files;
    const Locale& customs;
  };

  std::unique_ptr<FrmPeriods> OpenDrawn() {
    auto window = std::make_unique<FrmPeriods>(shown, publics, desktop);
    std::string host_database;
    window->Initialize(host_database);
    return window;
  }

  IcuLocale customs;
  Desktop desktop;
  Database tables{files, customs};
  Host shown{host.component, files, memory.registry, customs, memory.clock, desktop,
             tables,         cube,  spreadsheet};
};

}  // namespace vok::test
