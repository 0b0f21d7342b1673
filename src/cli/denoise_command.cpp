#include "cli/denoise_command.h"

#include <chrono>
#include <cstdio>
#include <exception>
#include <string>
#include <unistd.h>
#include <utility>

#include "cli/comparison.h"
#include "cli/interrupt.h"
#include "cli/output.h"
#include "cli/progress_line.h"
#include "cli/summary.h"
#include "engine/denoise_algo_implementation.h"
#include "imaging/file_format.h"
#include "imaging/recompress_jpeg.h"
#include "platform/atomic_file.h"
#include "platform/dispatch.h"
#include "platform/log.h"
#include "platform/temporary_files.h"
#include "session/photo_job.h"

namespace velmara::cli {
namespace {

// One photo's way through the command.
struct PhotoCommand {
  const DenoiseOptions& options;
  const PhotoJobServices& services;
  OutputFiles& files;

  Result<Summary> run(const std::string& input) const {
    using Seconds = std::chrono::duration<double>;
    const auto start = std::chrono::steady_clock::now();
    auto photo = openPhoto(input);
    if (!photo) return Error{photo.error()};
    const OutputTarget target = outputTarget(input, exportFormatOf(photo->file->format), options);
    for (const std::string& path : {target.path, options.comparison.value_or("-")}) {
      if (Status allowed = files.check(path); !allowed) return Error{allowed.error()};
    }
    const PhotoJobResult result = runPhotoJob(request(std::move(photo).value(), target));
    if (result.end != PhotoJobResult::End::finished) return Error{result.reason};
    if (Status written = takeFiles(result, target); !written) return Error{written.error()};
    Summary summary;
    summary.input = input;
    summary.output = target.path;
    summary.comparison = options.comparison;
    summary.width = result.writtenWidth;
    summary.height = result.writtenHeight;
    if (result.parameters && !options.explicitParameters) summary.psnr = result.psnrOfRealImage;
    summary.parameters = result.parameters;
    if (options.isDeep) summary.deepNoise = result.deepNoise;
    summary.seconds = Seconds(std::chrono::steady_clock::now() - start).count();
    return summary;
  }

  PhotoJobRequest request(LoadedPhoto photo, const OutputTarget& target) const {
    PhotoJobRequest request;
    request.photo = std::move(photo);
    request.mode = options.mode;
    request.isDeep = options.isDeep;
    request.parameters = options.explicitParameters;
    request.isBare = options.isBare;
    request.output = {target.format, target.isStandardOutput() ? std::string() : target.path,
                      files.mayReplace()};
    return request;
  }

  PhotoJobResult runPhotoJob(const PhotoJobRequest& request) const {
    JobControl control(cancelledByInterrupt(), 0.0, 1.0);
    const ProgressLine progress(control, !options.quiet && ::isatty(STDERR_FILENO) == 1);
    return velmara::runPhotoJob(request, services, control);
  }

  // What the job leaves to do: standard output and the comparison.
  Status takeFiles(const PhotoJobResult& result, const OutputTarget& target) const {
    if (target.isStandardOutput()) {
      if (Status written = writeToStandardOutput(result.encoded); !written) return written;
    } else {
      files.wasWritten(target.path);
    }
    return options.comparison ? writeComparison(result, *options.comparison) : Done{};
  }

  Status writeComparison(const PhotoJobResult& result, const std::string& path) const {
    if (Status allowed = files.check(path); !allowed) return allowed;
    const auto shown = [&](const Image& image) {
      return options.isBare ? Result<Image>(image) : uprightAtFullSize(result.photo, image);
    };
    const auto before =
        shown(options.isBare ? result.photo.image : wholePhotoToFilter(result.photo));
    const auto after = shown(result.image);
    if (!before || !after) return Error{(before ? after : before).error()};
    const Bitmap picture = sideBySide(before->bitmap(), after->bitmap());
    if (!picture.isValid()) return Error{"not enough memory for the comparison"};
    const auto bytes = encodeImage(picture, before->profile(), FileFormat::png);
    if (!bytes) return Error{bytes.error()};
    Status written = files.mayReplace() ? replaceFile(path, *bytes) : createFile(path, *bytes);
    if (written) files.wasWritten(path);
    return written;
  }
};

}  // namespace

EngineEnvironment commandLineEngine(bool isReference) {
  EngineEnvironment environment;
  environment.workers = &globalQueue();
  environment.mainQueue = &mainQueue();
  environment.log = [](const std::string& line) { logLine(line); };
  environment.recompressJpeg = recompressJpeg;
  if (isReference) environment.kernel = KernelChoice::kReference;
  return environment;
}

int runDenoise(const DenoiseOptions& options) {
  removeUnfinishedFiles();
  OutputFiles files(options.inputs, options.force);
  const DenoiseAlgoImplementation algorithm(commandLineEngine(options.referenceEngine));
  const AlgorithmEngine engine(algorithm);
  const PhotoJobServices services{
      engine, mainQueue(), globalQueue(), [](const std::string& line) { logLine(line); }, {}};
  const PhotoCommand command{options, services, files};
  std::FILE* report = options.output == "-" ? stderr : stdout;
  int exitCode = 0;
  for (const std::string& input : options.inputs) {
    std::string fault;
    try {
      const auto summary = command.run(input);
      if (cancelledByInterrupt().isCancelled()) return kInterrupted;
      if (summary && !options.quiet) {
        std::fputs(describe(*summary, options.details).c_str(), report);
        std::fflush(report);
      }
      if (!summary) fault = summary.error();
    } catch (const std::exception& exception) {
      fault = exception.what();
    }
    if (!fault.empty()) {
      std::fprintf(stderr, "velmara: %s: %s\n", input.c_str(), fault.c_str());
      exitCode = 1;
    }
  }
  return exitCode;
}

}  // namespace velmara::cli
