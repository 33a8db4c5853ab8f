// The structure of a database through the platform's data objects (ADOX).
#pragma once

#include <string>
#include <vector>

#include "platform/database.h"
#include "system/automation/object.h"

namespace vok::windows {

class AdoxStructure : public DatabaseStructure {
 public:
  /// Of nothing, before `Create`.
  AdoxStructure() : catalog_(Object::Create("ADOX.Catalog")) {}
  /// Of the database that the connection has open.
  explicit AdoxStructure(const Object& connection);
  /// Makes a new database file and leaves it open.
  void Create(const std::string& connection_string);

  std::vector<std::string> TableNames() const override;
  int32_t ColumnCount(const std::string& table) const override;
  void AppendTable(const TableDefinition& table) override;
  void AppendColumn(const std::string& table, const ColumnDefinition& column) override;
  void AppendIndex(const std::string& table, const IndexDefinition& index) override;
  /// Has those text columns take "" where they refuse it. Whether one did.
  bool AllowEmptyTexts(const std::string& table, const std::vector<std::string>& columns);

 private:
  Object TableNamed(const std::string& name) const;

  Object connection_;
  Object catalog_;
};

}  // namespace vok::windows
