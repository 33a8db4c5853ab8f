#include "platform/failure.h"

#include <new>
#include <system_error>
#include <utility>

namespace vok {

Failure::Failure(int32_t number, std::string description, std::string source, int section)
    : number_(number),
      description_(std::move(description)),
      source_(std::move(source)),
      section_(section) {}

Failure CurrentFailure() {
  try {
    throw;
  } catch (const Failure& failure) {
    return failure;
  } catch (const std::bad_alloc&) {
    return Failure(failure_number::kOutOfMemory, "Out of memory");
  } catch (const std::system_error& refused) {  // such as a thread, or where the program stands
    const bool scarce = refused.code() == std::errc::resource_unavailable_try_again;
    return Failure(scarce ? failure_number::kOutOfMemory : failure_number::kDeviceError,
                   std::string("The system refuses what the program needs: ") + refused.what());
  } catch (const std::exception& other) {
    return Failure(failure_number::kInternal, std::string("Internal error: ") + other.what());
  } catch (...) {
    return Failure(failure_number::kInternal, "Internal error");
  }
}

}  // namespace vok
