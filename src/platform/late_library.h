#pragma once

#include <dlfcn.h>

namespace velmara {

/// A shared library that is loaded when it is first needed instead of at the start of the program.
/// Its symbols stay its own, and it is never unloaded. Any thread.
class LateLibrary {
 public:
  /// Loads the library of a name as the loader knows it: "libvips.so.42".
  explicit LateLibrary(const char* name)
      : handle_(::dlopen(name, RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE)),
        isComplete_(handle_ != nullptr) {}

  /// Whether it was there, and all that was asked of it.
  bool isComplete() const { return isComplete_; }

  /// Sets a pointer to the function of a name; null if there is none.
  template <typename Function>
  void find(Function*& function, const char* symbol) {
    function = handle_ == nullptr ? nullptr : reinterpret_cast<Function*>(::dlsym(handle_, symbol));
    isComplete_ = isComplete_ && function != nullptr;
  }

 private:
  void* handle_;
  bool isComplete_;
};

}  // namespace velmara
