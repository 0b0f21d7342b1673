#include "services/curl_api.h"

#include "platform/late_library.h"

namespace velmara {
namespace {

CurlApi load() {
  CurlApi api;
  LateLibrary library(VELMARA_CURL_LIBRARY);
#define X(name) library.find(api.name, "curl_" #name);
  VELMARA_CURL_OPERATIONS(X)
#undef X
  api.isLoaded = library.isComplete() && api.global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return api;
}

}  // namespace

const CurlApi& curl() {
  static const CurlApi api = load();
  return api;
}

}  // namespace velmara
