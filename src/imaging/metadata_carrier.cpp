#include "imaging/metadata_carrier.h"

namespace velmara {
namespace {

std::mutex exiv2Mutex;
std::recursive_mutex xmpMutex;

}  // namespace

std::unique_lock<std::mutex> lockExiv2() {
  return std::unique_lock(exiv2Mutex);
}

void lockXmpToolkit(void* /*data*/, bool lock) {
  if (lock) {
    xmpMutex.lock();
  } else {
    xmpMutex.unlock();
  }
}

}  // namespace velmara
