#include "platform/database.h"

#include "platform/failure.h"

namespace vok {

std::unique_ptr<Recordset> Database::OpenRecordset(const std::string& path) {
  throw Failure(failure_number::kProviderNotFound,
                "Provider cannot be found: nothing reads the record set " + path + " here.");
}

}  // namespace vok
