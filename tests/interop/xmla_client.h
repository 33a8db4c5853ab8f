// Asks a server by XML for Analysis: SOAP over HTTP, one connection per query.
#pragma once

#include <cstdint>
#include <string>

#include "tests/interop/answer.h"

namespace vok::interop {

class XmlaClient {
 public:
  /// A server on the loopback interface that answers at /xmla.
  explicit XmlaClient(uint16_t port) : port_(port) {}

  /// What the server answers, its faults among it. std::runtime_error when it cannot be reached,
  /// says nothing for a minute, or sends what is no XMLA.
  Answer Run(const std::string& catalog, const std::string& mdx) const;

 private:
  std::string Post(const std::string& body) const;

  uint16_t port_;
};

}  // namespace vok::interop
