#include "imaging/vips_api.h"

#include <dlfcn.h>

namespace velmara {
namespace {

VipsApi load() {
  VipsApi api;
  // Its symbols stay its own; it is never unloaded, as GLib's types cannot be.
  void* library = ::dlopen(VELMARA_VIPS_LIBRARY, RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) return api;
  api.isLoaded = true;
#define X(name)                                                                     \
  api.name = reinterpret_cast<decltype(api.name)>(::dlsym(library, "vips_" #name)); \
  api.isLoaded = api.isLoaded && api.name != nullptr;
  VELMARA_VIPS_OPERATIONS(X)
#undef X
  return api;
}

}  // namespace

const VipsApi& vips() {
  static const VipsApi api = load();
  return api;
}

}  // namespace velmara
