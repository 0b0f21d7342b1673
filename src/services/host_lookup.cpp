#include "services/host_lookup.h"

#include <netdb.h>
#include <system_error>
#include <thread>
#include <utility>

namespace velmara {

std::vector<QHostAddress> systemAddressesOf(const std::string& host) {
  const QHostAddress literal(QString::fromStdString(host));
  if (!literal.isNull()) return {literal};
  if (host.ends_with(".invalid") || host.ends_with(".invalid.")) return {};

  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_ADDRCONFIG;
  addrinfo* found = nullptr;
  if (::getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0) return {};
  std::vector<QHostAddress> addresses;
  for (const addrinfo* entry = found; entry != nullptr; entry = entry->ai_next) {
    addresses.emplace_back(entry->ai_addr);
  }
  ::freeaddrinfo(found);
  return addresses;
}

HostLookup::HostLookup(std::string host, HostResolver resolver, Completion completion)
    : link_(std::make_shared<Link>()) {
  link_->receiver = &receiver_;
  const auto answer = [link = link_,
                       completion = std::move(completion)](std::vector<QHostAddress> addresses) {
    const std::scoped_lock lock(link->mutex);
    if (link->receiver == nullptr) return;
    // The event dies with the receiver; the completion is copied, since it may destroy both.
    QMetaObject::invokeMethod(
        link->receiver,
        [completion, addresses = std::move(addresses)] {
          const Completion running = completion;
          running(addresses);
        },
        Qt::QueuedConnection);
  };
  const auto ask = [host = std::move(host), resolver = std::move(resolver), answer] {
    answer(resolver(host));
  };
  try {
    std::thread(ask).detach();
  } catch (const std::system_error&) {
    answer({});  // No thread is to be had.
  }
}

HostLookup::~HostLookup() {
  const std::scoped_lock lock(link_->mutex);
  link_->receiver = nullptr;
}

}  // namespace velmara
