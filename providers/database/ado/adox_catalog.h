// The structure of a database through the platform's data objects (ADOX).
#pragma once

#include "platform/database.h"
#include "system/automation/object.h"

namespace vok::windows {

class AdoxCatalog : public DatabaseCatalog {
 public:
  AdoxCatalog() : catalog_(Object::Create("ADOX.Catalog")) {}
  void Create(const std::string& connection_string) override;
  void SetActiveConnection(Connection& connection) override;
  std::vector<std::string> TableNames() const override;
  int32_t ColumnCount(const std::string& table) const override;
  void AppendTable(const TableDefinition& table) override;
  void AppendColumn(const std::string& table, const ColumnDefinition& column) override;
  void AppendIndex(const std::string& table, const IndexDefinition& index) override;

 private:
  Object Table(const std::string& name) const;

  Object catalog_;
};

}  // namespace vok::windows
