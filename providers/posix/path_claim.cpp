#include "providers/posix/path_claim.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <functional>

#include "providers/file_failures/file_failures.h"

namespace vok {
namespace {

/// The same for every spelling of one path: its folder's identity and its last name.
std::string ClaimName(const std::string& path) {
  const auto slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  const std::string name = path.substr(slash == std::string::npos ? 0 : slash + 1);
  struct stat identity {};
  if (::stat(folder.c_str(), &identity) != 0) return {};
  return "vokcube " + std::to_string(identity.st_dev) + ' ' + std::to_string(identity.st_ino) +
         ' ' + std::to_string(std::hash<std::string>{}(name));
}

/// A socket bound to a name in the abstract name space, which the kernel frees with the socket.
class SocketClaim : public PathClaim {
 public:
  SocketClaim(const std::string& name, const std::string& path)
      : socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::size_t length = std::min(name.size(), sizeof address.sun_path - 1);
    std::copy_n(name.begin(), length, address.sun_path + 1);  // the leading NUL makes it abstract
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length);
    if (::bind(socket_, reinterpret_cast<const sockaddr*>(&address), size) == 0 ||
        errno != EADDRINUSE) {
      return;
    }
    Release();
    ThrowClaimed(path);
  }
  ~SocketClaim() override { Release(); }
  SocketClaim(const SocketClaim&) = delete;
  SocketClaim& operator=(const SocketClaim&) = delete;

 private:
  void Release() const {
    if (socket_ >= 0) ::close(socket_);
  }

  int socket_;
};

}  // namespace

std::unique_ptr<PathClaim> ClaimPath(const std::string& path) {
  const std::string name = ClaimName(path);
  // Nothing can be written into a folder that is not there; the writer will say so.
  if (name.empty()) return std::make_unique<PathClaim>();
  return std::make_unique<SocketClaim>(name, path);
}

}  // namespace vok
