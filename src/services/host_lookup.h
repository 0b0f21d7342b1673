#pragma once

#include <QHostAddress>
#include <QObject>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace velmara {

/// The addresses of a host, found by waiting for it.
using HostResolver = std::function<std::vector<QHostAddress>(const std::string& host)>;

/// Asks the system. Names under "invalid" are reserved for never existing and are not asked for.
std::vector<QHostAddress> systemAddressesOf(const std::string& host);

/// One question for the addresses of a host, asked on a thread of its own, so that neither a slow
/// name server nor its end holds anybody up: destroying the lookup abandons it at once.
class HostLookup {
 public:
  using Completion = std::function<void(std::vector<QHostAddress>)>;

  /// The completion runs once, from the event loop of this thread; no address means that there is
  /// none. It may destroy the lookup.
  HostLookup(std::string host, HostResolver resolver, Completion completion);
  HostLookup(const HostLookup&) = delete;
  HostLookup& operator=(const HostLookup&) = delete;
  ~HostLookup();

 private:
  // What the thread knows: the receiver, until the lookup is abandoned.
  struct Link {
    std::mutex mutex;
    QObject* receiver = nullptr;
  };

  QObject receiver_;
  std::shared_ptr<Link> link_;
};

}  // namespace velmara
