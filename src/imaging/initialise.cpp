#include "imaging/initialise.h"

#include <exiv2/exiv2.hpp>

#include <mutex>

#include "imaging/file_format.h"
#include "imaging/vips_api.h"

namespace velmara {
namespace {

// Warnings are no concern of whoever reads standard error.
void takeLogMessage(const char* /*domain*/, GLogLevelFlags /*level*/, const char* message,
                    void* /*data*/) {
  DecoderWarnings::note(message);
}

void lockXmpToolkit(void* /*data*/, bool lock) {
  static std::recursive_mutex mutex;
  lock ? mutex.lock() : mutex.unlock();
}

bool start() {
  if (!vips().isLoaded) return false;
  constexpr auto kSilenced =
      static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING | G_LOG_LEVEL_MESSAGE |
                                  G_LOG_LEVEL_INFO | G_LOG_LEVEL_DEBUG | G_LOG_FLAG_RECURSION);
  g_log_set_handler("VIPS", kSilenced, takeLogMessage, nullptr);
  // A size that a property of libvips does not take is a warning of the object system's.
  g_log_set_handler("GLib-GObject", G_LOG_LEVEL_WARNING, takeLogMessage, nullptr);
  if (vips().init("velmara") != 0) return false;
  vips().cache_set_max(0);
  vips().cache_set_max_mem(0);
  vips().cache_set_max_files(0);
  // Of everything else it could open, SVG and PDF run whole interpreters, and others are untested.
  vips().operation_block_set("VipsForeignLoad", TRUE);
  for (const FormatFacts& facts : fileFormats()) {
    if (facts.decoder != nullptr) vips().operation_block_set(facts.decoder, FALSE);
  }

  Exiv2::enableBMFF(true);  // the wrapping of one maker's RAW files
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
  return Exiv2::XmpParser::initialize(lockXmpToolkit, nullptr);
}

}  // namespace

bool initialiseImaging() {
  static const bool started = start();
  return started;
}

}  // namespace velmara
