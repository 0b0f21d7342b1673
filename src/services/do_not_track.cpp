#include "services/do_not_track.h"

#include <cstdlib>
#include <string_view>

namespace velmara {

bool asksForNoTracking(const char* doNotTrack) {
  const std::string_view value = doNotTrack != nullptr ? doNotTrack : "";
  return !value.empty() && value != "0";
}

bool environmentAsksForNoTracking() {
  return asksForNoTracking(std::getenv("DO_NOT_TRACK"));
}

}  // namespace velmara
