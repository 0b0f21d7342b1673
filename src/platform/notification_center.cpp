#include "platform/notification_center.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <utility>
#include <vector>

namespace velmara {

struct NotificationCenter::Registry {
  struct Observer {
    std::uint64_t id;
    const QObject* owner;
    std::string name;
    std::shared_ptr<const Handler> handler;
  };

  std::uint64_t add(const QObject* owner, std::string_view name, Handler handler) {
    const std::scoped_lock lock(mutex);
    observers.push_back(
        {++lastId, owner, std::string(name), std::make_shared<const Handler>(std::move(handler))});
    return lastId;
  }

  template <typename Predicate>
  void removeIf(Predicate predicate) {
    std::vector<Observer> removed;  // Handlers die outside the lock: their captures may call back.
    const std::scoped_lock lock(mutex);
    const auto end =
        std::stable_partition(observers.begin(), observers.end(),
                              [&](const Observer& observer) { return !predicate(observer); });
    std::move(end, observers.end(), std::back_inserter(removed));
    observers.erase(end, observers.end());
  }

  std::vector<std::uint64_t> idsFor(std::string_view name) {
    const std::scoped_lock lock(mutex);
    std::vector<std::uint64_t> ids;
    for (const Observer& observer : observers) {
      if (observer.name == name) ids.push_back(observer.id);
    }
    return ids;
  }

  std::shared_ptr<const Handler> handlerOf(std::uint64_t id) {
    const std::scoped_lock lock(mutex);
    for (const Observer& observer : observers) {
      if (observer.id == id) return observer.handler;
    }
    return nullptr;
  }

  std::mutex mutex;
  std::uint64_t lastId = 0;
  std::vector<Observer> observers;
};

NotificationCenter::NotificationCenter() : registry_(std::make_shared<Registry>()) {}

NotificationCenter::~NotificationCenter() = default;

void NotificationCenter::post(std::string_view name, std::any object, UserInfo userInfo) {
  const Notification notification{std::string(name), std::move(object), std::move(userInfo)};
  const std::shared_ptr<Registry> registry = registry_;
  for (const std::uint64_t id : registry->idsFor(name)) {
    if (const auto handler = registry->handlerOf(id)) (*handler)(notification);
  }
}

void NotificationCenter::addObserver(const QObject& owner, std::string_view name, Handler handler) {
  const std::uint64_t id = registry_->add(&owner, name, std::move(handler));
  const std::weak_ptr<Registry> weak = registry_;
  QObject::connect(&owner, &QObject::destroyed, [weak, id] {
    if (const auto registry = weak.lock()) {
      registry->removeIf([id](const Registry::Observer& observer) { return observer.id == id; });
    }
  });
}

NotificationCenter::Token NotificationCenter::addObserver(std::string_view name, Handler handler) {
  const std::uint64_t id = registry_->add(nullptr, name, std::move(handler));
  const std::weak_ptr<Registry> weak = registry_;
  // The token's value is of no interest, only its end is.
  return {static_cast<const void*>(registry_.get()), [weak, id](const void*) {
            if (const auto registry = weak.lock()) {
              registry->removeIf(
                  [id](const Registry::Observer& observer) { return observer.id == id; });
            }
          }};
}

void NotificationCenter::removeObserver(const QObject& owner) {
  registry_->removeIf(
      [&owner](const Registry::Observer& observer) { return observer.owner == &owner; });
}

NotificationCenter& defaultCenter() {
  static NotificationCenter center;
  return center;
}

}  // namespace velmara
