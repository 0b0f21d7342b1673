#include "platform/notification_center.h"

#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

namespace velmara {

struct NotificationCenter::Registry : std::enable_shared_from_this<Registry> {
  struct Observer {
    const QObject* owner;
    std::string name;
    Handler handler;
    std::atomic<bool> isRegistered = true;
  };
  using Observers = std::vector<std::shared_ptr<Observer>>;

  // Registers an observer, and returns what ends that.
  std::function<void()> add(const QObject* owner, std::string_view name, Handler handler) {
    const std::shared_ptr<Observer> added(
        new Observer{owner, std::string(name), std::move(handler)});
    const std::scoped_lock lock(mutex);
    observers.push_back(added);
    return [center = weak_from_this(), observer = std::weak_ptr(added)] {
      const auto registry = center.lock();
      const auto ended = observer.lock();
      if (registry) registry->removeIf([&](const auto& other) { return other == ended; });
    };
  }

  template <typename Predicate>
  void removeIf(Predicate predicate) {
    Observers removed;  // Handlers die outside the lock: their captures may call back.
    const std::scoped_lock lock(mutex);
    std::erase_if(observers, [&](const auto& observer) {
      if (!predicate(observer)) return false;
      observer->isRegistered = false;
      removed.push_back(observer);
      return true;
    });
  }

  Observers current() {
    const std::scoped_lock lock(mutex);
    return observers;
  }

  std::mutex mutex;
  Observers observers;
};

NotificationCenter::NotificationCenter() : registry_(std::make_shared<Registry>()) {}

NotificationCenter::~NotificationCenter() = default;

void NotificationCenter::post(std::string_view name, std::any object, UserInfo userInfo) {
  const Notification notification{std::string(name), std::move(object), std::move(userInfo)};
  for (const auto& observer : registry_->current()) {
    if (observer->name == name && observer->isRegistered) observer->handler(notification);
  }
}

void NotificationCenter::addObserver(const QObject& owner, std::string_view name, Handler handler) {
  QObject::connect(&owner, &QObject::destroyed, registry_->add(&owner, name, std::move(handler)));
}

NotificationCenter::Token NotificationCenter::addObserver(std::string_view name, Handler handler) {
  // The token's value is of no interest, only its end is.
  return {static_cast<const void*>(registry_.get()),
          [end = registry_->add(nullptr, name, std::move(handler))](const void*) { end(); }};
}

void NotificationCenter::removeObserver(const QObject& owner) {
  registry_->removeIf([&](const auto& observer) { return observer->owner == &owner; });
}

NotificationCenter& defaultCenter() {
  static NotificationCenter center;
  return center;
}

}  // namespace velmara
