#include "platform/clock.h"

namespace velmara {
namespace {

class SystemClock final : public Clock {
 public:
  std::chrono::steady_clock::time_point monotonic() const override {
    return std::chrono::steady_clock::now();
  }
  std::chrono::system_clock::time_point wall() const override {
    return std::chrono::system_clock::now();
  }
};

}  // namespace

const Clock& systemClock() {
  static const SystemClock clock;
  return clock;
}

}  // namespace velmara
