#include "services/curl_api.h"

#include <dlfcn.h>
#include <type_traits>

namespace velmara {
namespace {

CurlApi load() {
  CurlApi api;
  void* library = ::dlopen(VELMARA_CURL_LIBRARY, RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) return api;
  api.isLoaded = true;
  const auto find = [&](auto& operation, const char* symbol) {
    operation =
        reinterpret_cast<std::remove_reference_t<decltype(operation)>>(::dlsym(library, symbol));
    api.isLoaded = api.isLoaded && operation != nullptr;
  };
#define X(name) find(api.name, "curl_" #name);
  VELMARA_CURL_OPERATIONS(X)
#undef X
  api.isLoaded = api.isLoaded && api.global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return api;
}

}  // namespace

const CurlApi& curl() {
  static const CurlApi api = load();
  return api;
}

}  // namespace velmara
