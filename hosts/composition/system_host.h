// Puts every provider together that this operating system has.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "platform/host.h"
#include "platform/message_box.h"
#include "platform/query_stop.h"
#include "platform/table_server.h"

namespace vok {

/// Prints "title: text", further lines indented, and answers OK, or No to a question. The stream
/// stays the caller's.
class ConsoleMessageBoxes : public MessageBoxes {
 public:
  explicit ConsoleMessageBoxes(std::FILE* stream) : stream_(stream) {}
  MessageAnswer Show(const MessageBox& box) override;

 private:
  std::FILE* stream_;
};

struct SystemHostOptions {
  std::string settings_folder = {};       ///< in place of the registry's value; "": that decides
  MessageBoxes* message_boxes = nullptr;  ///< the caller's; nullptr: printed to standard error
  bool is_command = false;  ///< so that warnings are printed, also where the caller has boxes
  bool keep_open = false;   ///< settings databases and cubes, for the runs of one thread
  const QueryStop* stop = nullptr;     ///< ends waits for locks too; it outlives the host
  CubeProvider* cube_files = nullptr;  ///< that of another host, to share with it what is open
};

/// Owns the providers; the `Host` refers to them and lives no longer.
class SystemHost {
 public:
  /// The caller's message boxes outlive this object.
  explicit SystemHost(const SystemHostOptions& options);
  ~SystemHost();
  SystemHost(const SystemHost&) = delete;
  SystemHost& operator=(const SystemHost&) = delete;

  const Host& host() const;
  /// Keeps cube files open for the runs of many threads, which may use it at once.
  CubeProvider& cube_files();
  /// A database server, with the login of the section `Database`. Failures are those of
  /// `OpenTableServer`, and: of a kind that is not known, or not here.
  std::unique_ptr<TableServer> OpenTables(const std::string& address, const QueryStop& stop);
  /// From the next look for the settings folder on; "": the registry decides.
  void UseSettingsFolder(const std::string& folder);

 private:
  struct Providers;
  std::unique_ptr<Providers> providers_;
};

/// What files tell as the moment of their making, in seconds since 1970: now, or what the
/// environment says (SOURCE_DATE_EPOCH), so that the same work gives the same file.
int64_t MakingTime();

}  // namespace vok
