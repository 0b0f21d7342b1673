#include "cli/engine_setup.h"

#include "imaging/recompress_jpeg.h"
#include "platform/dispatch.h"
#include "platform/log.h"

namespace velmara::cli {

EngineEnvironment measuringEngine() {
  EngineEnvironment environment;
  environment.workers = &globalQueue();
  environment.mainQueue = &mainQueue();
  environment.log = [](const std::string& line) { logLine(line); };
  environment.recompressJpeg = recompressJpeg;
  return environment;
}

EngineEnvironment commandLineEngine(const DenoiseOptions& options, ProgressLine& progress) {
  EngineEnvironment environment = measuringEngine();
  if (options.referenceEngine) environment.kernel = KernelChoice::kReference;
  environment.progress = [&progress](std::int64_t done, std::int64_t total) {
    progress.show(done, total);
  };
  return environment;
}

}  // namespace velmara::cli
