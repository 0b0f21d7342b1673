#include "imaging/vips_api.h"

#include <dlfcn.h>
#include <type_traits>

namespace velmara {
namespace {

VipsApi load() {
  VipsApi api;
  // Its symbols stay its own; it is never unloaded, as GLib's types cannot be.
  void* library = ::dlopen(VELMARA_VIPS_LIBRARY, RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) return api;
  api.isLoaded = true;
  const auto find = [&](auto& operation, const char* symbol) {
    operation =
        reinterpret_cast<std::remove_reference_t<decltype(operation)>>(::dlsym(library, symbol));
    api.isLoaded = api.isLoaded && operation != nullptr;
  };
#define X(name) find(api.name, "vips_" #name);
  VELMARA_VIPS_OPERATIONS(X)
#undef X
#define X(name) find(api.name, "g_" #name);
  VELMARA_GOBJECT_OPERATIONS(X)
#undef X
  return api;
}

}  // namespace

const VipsApi& vips() {
  static const VipsApi api = load();
  return api;
}

}  // namespace velmara
