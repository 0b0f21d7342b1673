#include "imaging/raw_api.h"

#include "platform/late_library.h"

namespace velmara {
namespace {

RawApi loadRawApi() {
  RawApi api;
  LateLibrary library(VELMARA_RAW_LIBRARY);
#define X(name) library.find(api.name, "libraw_" #name);
  VELMARA_RAW_OPERATIONS(X)
#undef X
  api.isLoaded = library.isComplete();
  return api;
}

}  // namespace

const RawApi& rawApi() {
  static const RawApi api = loadRawApi();
  return api;
}

}  // namespace velmara
