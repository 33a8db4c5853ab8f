// A host whose component has a language table. Tests that include this link the room `recordset`.
#pragma once

#include <string>
#include <vector>

#include "providers/recordset/persisted_recordset.h"
#include "tests/support/memory_host.h"

namespace vok::test {

class PersistedDatabase : public NoDatabase {
 public:
  explicit PersistedDatabase(MemoryHost& memory) : memory_(memory) {}
  std::unique_ptr<Recordset> OpenRecordset(const std::string& path) override {
    return recordset::OpenPersisted(memory_.files, memory_.locale, path);
  }

 private:
  MemoryHost& memory_;
};

/// The file is "component\Lang.rs"; there is none before `SetTable`.
struct LanguageHost {
  MemoryHost memory;
  PersistedDatabase database{memory};
  Host host = memory.On(database);

  void SetTable(std::vector<recordset::Row> rows,
                std::vector<recordset::Column> columns = {{"sId", recordset::FieldType::kInteger},
                                                          {"lId", recordset::FieldType::kInteger},
                                                          {"text", recordset::FieldType::kText}}) {
    File() = recordset::WriteXmlRowset({std::move(columns), std::move(rows)});
  }
  std::string& File() { return memory.files.files["component\\Lang.rs"]; }
  void SetIni(const std::string& text) {
    memory.registry.ini["component\\Qel.ini|Qel|QelUILanguage"] = text;
  }
};

}  // namespace vok::test
