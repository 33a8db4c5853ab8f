// The one error style of the system: every failure is this exception.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace vok {

/// A failure with the number that the platform would give it. The description says what failed, on
/// which file, cube, set or member, why, and what to do.
class Failure : public std::exception {
 public:
  Failure(int32_t number, std::string description, std::string source = "VokCubeQ17",
          int section = 0);

  int32_t number() const { return number_; }
  const std::string& description() const { return description_; }
  /// Who noticed it: the component's name, or the provider's.
  const std::string& source() const { return source_; }
  /// The numbered code section that failed; 0 when the procedure does not number its statements.
  int section() const { return section_; }

  const char* what() const noexcept override { return description_.c_str(); }

 private:
  int32_t number_;
  std::string description_;
  std::string source_;
  int section_;
};

/// The exception being handled, as a `Failure`: itself, or one made of a standard exception (out of
/// memory, file system). Call inside a `catch` block only.
Failure CurrentFailure();

/// The numbers known to callers. The first group is the run-time library's, the second the data
/// providers', the third this system's own.
namespace failure_number {
inline constexpr int32_t kInvalidCall = 5;
inline constexpr int32_t kOverflow = 6;
inline constexpr int32_t kOutOfMemory = 7;
inline constexpr int32_t kSubscript = 9;
inline constexpr int32_t kTypeMismatch = 13;
inline constexpr int32_t kInternal = 51;
inline constexpr int32_t kBadFileName = 52;
inline constexpr int32_t kFileNotFound = 53;
inline constexpr int32_t kDeviceError = 57;
inline constexpr int32_t kFileExists = 58;
inline constexpr int32_t kDiskFull = 61;
inline constexpr int32_t kPermissionDenied = 70;
inline constexpr int32_t kPathAccess = 75;
inline constexpr int32_t kPathNotFound = 76;
inline constexpr int32_t kObjectNotSet = 91;
inline constexpr int32_t kInvalidNull = 94;
inline constexpr int32_t kNotSupported = 445;
inline constexpr int32_t kAutomation = 1004;

inline constexpr int32_t kWrongArguments = 3001;         // adErrInvalidArgument
inline constexpr int32_t kItemNotFound = 3265;           // adErrItemNotFound
inline constexpr int32_t kObjectClosed = 3704;           // adErrObjectClosed
inline constexpr int32_t kNoCurrentRecord = 3021;        // adErrNoCurrentRecord
inline constexpr int32_t kProviderNotFound = 3706;       // adErrProviderNotFound
inline constexpr int32_t kUnspecified = -2147467259;     // E_FAIL: cannot open, locked, damaged
inline constexpr int32_t kSyntax = -2147217900;          // DB_E_ERRORSINCOMMAND
inline constexpr int32_t kNoTable = -2147217865;         // DB_E_NOTABLE
inline constexpr int32_t kIntegrity = -2147217873;       // DB_E_INTEGRITYVIOLATION
inline constexpr int32_t kColumnOverflow = -2147217833;  // DB_E_DATAOVERFLOW
inline constexpr int32_t kTimeout = -2147217871;         // DB_E_ABORTLIMITREACHED
inline constexpr int32_t kReadOnly = -2147217911;        // DB_SEC_E_PERMISSIONDENIED

inline constexpr int32_t kNoConnection = -2147221406;  // vbObjectError + 98
inline constexpr int32_t kDatabaseNotFound = 1111;
inline constexpr int32_t kSettingsUnreadable = 2222;
inline constexpr int32_t kConnectionError = 3333;
inline constexpr int32_t kInvalidDate = 4444;
inline constexpr int32_t kInvalidMeasure = 5555;
inline constexpr int32_t kNotFound = 9999;
}  // namespace failure_number

}  // namespace vok
