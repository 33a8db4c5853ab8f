// A host in memory: files, registry and ini values that a test sets and looks at.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "platform/host.h"
#include "tests/support/stand_ins.h"

namespace vok::test {

/// Files by the very text of their path. A path in `refused` fails every change with 75.
class MemoryFiles : public Files {
 public:
  bool Exists(const std::string& path) const override { return files.contains(path); }
  bool IsDirectory(const std::string& path) const override { return folders.contains(path); }
  void Delete(const std::string& path) override {
    Check(path);
    files.erase(path);
  }
  void CreateDirectory(const std::string& path) override {
    Check(path);
    folders.insert(path);
    made.push_back(path);
  }
  void Append(const std::string& path, std::string_view bytes) override {
    Check(path);
    files[path] += bytes;
  }
  std::unique_ptr<FileReader> Open(const std::string& path) const override {
    return ReaderOf(std::as_bytes(std::span(files.at(path))));
  }
  std::unique_ptr<FileReplacement> Replace(const std::string& path) override {
    Check(path);
    return std::make_unique<Replacement>(*this, path);
  }
  Date LastModified(const std::string& path) const override { return modified.at(path); }
  void ChangeDirectory(const std::string& path) override {
    Check(path);
    current_directory = path;
  }
  std::string NativePath(const std::string& path) const override { return path; }

  std::map<std::string, std::string> files;
  std::set<std::string> folders;
  std::map<std::string, Date> modified;
  std::set<std::string> refused;
  std::vector<std::string> made;  ///< folders, in the order of their making
  std::string current_directory = "start";

 private:
  struct Replacement : FileReplacement {
    Replacement(MemoryFiles& all, std::string path) : files(all), target(std::move(path)) {}
    void Write(std::span<const std::byte> bytes) override {
      text.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    void Commit() override { files.files[target] = text; }
    MemoryFiles& files;
    std::string target;
    std::string text;
  };
  void Check(const std::string& path) const {
    if (refused.contains(path)) {
      throw Failure(failure_number::kPathAccess, "Path/File access error: " + path);
    }
  }
};

/// One key, "HKEY_CURRENT_USER\Software\Vok\Varnel 17", and ini values by "file|section|key".
class MemoryRegistry : public Registry {
 public:
  int32_t OpenKey(RegistryKey parent, const std::string& path, RegistryKey& opened) override {
    if (!problem.empty()) return 1015;
    if (parent != kCurrentUser || path != "Software\\Vok\\Varnel 17" || values.empty()) return 2;
    opened = next_handle;
    ++open;
    return 0;
  }
  int32_t QueryValue(RegistryKey, const std::string& name, uint32_t& type, std::string* buffer,
                     uint32_t& size) override {
    const auto value = values.find(name);
    if (value == values.end()) return 2;
    type = value->second.first;
    size = static_cast<uint32_t>(value->second.second.size());
    if (buffer != nullptr) *buffer = value->second.second;
    return buffer != nullptr ? read_status : 0;
  }
  int32_t CloseKey(RegistryKey) override { return open-- > 0 ? 0 : 6; }
  uint32_t PrivateProfileString(const std::string& section, const std::string& key,
                                std::string& buffer, uint32_t size,
                                const std::string& file) override {
    const auto value = ini.find(file + "|" + section + "|" + key);
    const std::string text = value == ini.end() ? "" : value->second.substr(0, size - 1);
    buffer.replace(0, text.size() + 1, text + '\0');
    return static_cast<uint32_t>(text.size());
  }

  std::string Problem() const override { return problem; }

  /// Sets "MDBPath" as a string.
  void SetFolder(const std::string& folder) {
    values["MDBPath"] = {kRegistryString, folder + std::string(1, '\0')};
  }

  std::map<std::string, std::pair<uint32_t, std::string>> values;  ///< type and bytes
  std::map<std::string, std::string> ini;
  RegistryKey next_handle = 100;
  int32_t read_status = 0;  ///< of the query with a buffer
  std::string problem;      ///< why nothing can be read
  int open = 0;             ///< keys that are open now
};

/// Case of ASCII and Cyrillic letters; no dates, no months, plain numbers.
class SimpleLocale : public Locale {
 public:
  std::string FoldCase(std::string_view text) const override {
    std::string folded(text);
    for (std::size_t at = 0; at < folded.size(); ++at) {
      char& c = folded[at];
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
      if (c == '\xD0' && at + 1 < folded.size()) FoldCyrillic(c, folded[at + 1]);
    }
    return folded;
  }
  std::optional<std::string> FromCodePage(std::string_view, int) const override {
    return std::nullopt;
  }
  std::optional<Date> ParseDate(std::string_view) const override { return std::nullopt; }
  std::optional<int> MonthNamed(std::string_view) const override { return std::nullopt; }
  std::string ShortDate(Date) const override { return {}; }
  std::string DateText(Date) const override { return {}; }
  std::string NumberText(double number, int) const override { return std::to_string(number); }

 private:
  static void FoldCyrillic(char& lead, char& trail) {
    const auto code = static_cast<unsigned char>(trail);
    if (code >= 0x90 && code <= 0x9F) trail = static_cast<char>(code + 0x20);
    if (code >= 0xA0 && code <= 0xAF) {
      lead = '\xD1';
      trail = static_cast<char>(code - 0x20);
    }
  }
};

/// For tests that must not reach the port.
class NoDatabase : public Database {
 public:
  std::unique_ptr<Connection> Open(const std::string&, int32_t) override {
    throw std::logic_error("no database");
  }
  std::unique_ptr<DatabaseStructure> OpenStructure(const std::string&) override {
    throw std::logic_error("no database");
  }
  std::unique_ptr<NewDatabase> Create(const std::string&) override {
    throw std::logic_error("no database");
  }
};

class NoCube : public CubeProvider {
 public:
  std::unique_ptr<CubeConnection> Connect(const std::string&, const QueryStop*) override {
    throw std::logic_error("no cube");
  }
};

class NoSpreadsheet : public Spreadsheet {
 public:
  std::unique_ptr<OutputWorkbook> NewOutput(const std::string&, bool) override {
    throw std::logic_error("no spreadsheet");
  }
};

/// A title that comes from the executable must not come from the product.
inline constexpr char kExecutable[] = "VokExecutable";

/// All of it. The component's folder is "component".
struct MemoryHost {
  MemoryFiles files;
  MemoryRegistry registry;
  SimpleLocale locale;
  FixedClock clock;
  RecordingMessageBoxes boxes;
  NoDatabase no_database;
  NoCube no_cube;
  NoSpreadsheet no_spreadsheet;

  Host On(Database& database) { return On(database, no_cube, no_spreadsheet, locale, clock); }
  Host On(Database& database, CubeProvider& cube, Spreadsheet& spreadsheet) {
    return On(database, cube, spreadsheet, locale, clock);
  }
  Host On(Database& database, CubeProvider& cube, Spreadsheet& spreadsheet, Locale& customs,
          Clock& time) {
    const ComponentInfo component{
        .folder = "component", .language_table = {}, .executable_name = kExecutable};
    return {component, files, registry, customs, time, boxes, database, cube, spreadsheet};
  }
  Host host = On(no_database);
};

}  // namespace vok::test
