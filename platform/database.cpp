#include "platform/database.h"

#include "platform/failure.h"

namespace vok {
namespace {

[[noreturn]] void ThrowNoCriteria(const std::string& criterion) {
  throw Failure(failure_number::kFeatureNotAvailable,
                "The provider of this record set knows no criteria: " + criterion);
}

}  // namespace

void Recordset::SetFilter(const std::string& criterion) { ThrowNoCriteria(criterion); }

void Recordset::Find(const std::string& criterion) { ThrowNoCriteria(criterion); }

std::unique_ptr<Recordset> Database::OpenRecordset(const std::string& source,
                                                   const std::string& connection_text) {
  throw Failure(
      failure_number::kProviderNotFound,
      "Provider cannot be found: \"" + connection_text + "\", which should open " + source);
}

}  // namespace vok
