// Messages of the kernel about interfaces and routes.
#include <cstring>
#include <linux/netlink.h>
#include <vector>

#include "fuzzing.h"
#include "services/route_messages.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace velmara;
  Links links;
  // Each message in memory of its own length: nothing behind it may be read.
  for (std::size_t at = 0; size - at >= sizeof(nlmsghdr);) {
    nlmsghdr header{};
    std::memcpy(&header, data + at, sizeof(header));
    if (header.nlmsg_len < sizeof(header) || header.nlmsg_len > size - at) break;
    std::vector<std::uint8_t> bytes(data + at, data + at + header.nlmsg_len);
    bytes.resize(NLMSG_ALIGN(bytes.size()));
    const auto& message = *reinterpret_cast<const nlmsghdr*>(bytes.data());
    addLink(message, links);
    const auto routes = routesIn(message, links);
    // A route over several ways may have none of them left.
    fuzzing::require(routes.size() <= bytes.size(), "a message tells of no more than it holds");
    isDefaultRoute(message);
    at += std::min<std::size_t>(NLMSG_ALIGN(header.nlmsg_len), size - at);
  }
  return 0;
}
