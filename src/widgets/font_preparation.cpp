#include "widgets/font_preparation.h"

#include <fontconfig/fontconfig.h>

namespace velmara {

std::jthread prepareFonts() {
  return std::jthread([] { FcInit(); });
}

}  // namespace velmara
