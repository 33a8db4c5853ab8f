// What many runs open once: cubes and settings databases, which stay open for the next run that
// names them.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "platform/cube.h"
#include "platform/database.h"

namespace vok {

/// Connections by their texts and stops, the last few of them. One that failed is opened anew the
/// next time. Several threads may connect, where those below may be asked by several at once, as
/// cube files may.
class KeptCubes : public CubeProvider {
 public:
  explicit KeptCubes(CubeProvider& below) : below_(below) {}
  std::unique_ptr<CubeConnection> Connect(const std::string& text, const QueryStop* stop) override;

 private:
  friend class KeptConnection;
  void Drop(const CubeConnection* failed);

  struct Kept {
    std::string text;
    const QueryStop* stop;
    std::shared_ptr<CubeConnection> connection;
  };
  CubeProvider& below_;
  std::mutex mutex_;
  std::deque<Kept> kept_;  ///< opened last, first
};

/// Settings databases by their paths, for one thread. What is kept is for reading: who changes the
/// structure of a database, or makes one, uses it as before.
class KeptDatabases : public Database {
 public:
  explicit KeptDatabases(Database& below) : below_(below) {}
  std::unique_ptr<Connection> Open(const std::string& path, int32_t timeout) override;
  std::unique_ptr<DatabaseStructure> OpenStructure(const std::string& path) override {
    return below_.OpenStructure(path);
  }
  std::unique_ptr<NewDatabase> Create(const std::string& path) override {
    return below_.Create(path);
  }
  std::unique_ptr<Recordset> OpenRecordset(const std::string& path) override {
    return below_.OpenRecordset(path);
  }

 private:
  Database& below_;
  std::map<std::string, std::shared_ptr<Connection>> kept_;
};

}  // namespace vok
