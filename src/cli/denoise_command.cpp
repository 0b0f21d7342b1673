#include <chrono>
#include <cstdio>
#include <string>
#include <unistd.h>
#include <utility>

#include "base/fixed_text.h"
#include "cli/commands.h"
#include "cli/comparison.h"
#include "cli/output.h"
#include "cli/terminal.h"
#include "engine/denoise_algo_implementation.h"
#include "imaging/file_format.h"
#include "imaging/image_writer.h"
#include "platform/dispatch.h"
#include "platform/log.h"
#include "platform/temporary_files.h"
#include "platform/whole_file.h"
#include "session/photo_job.h"

namespace velmara::cli {
namespace {

// One photo's way through the command.
struct PhotoCommand {
  const DenoiseOptions& options;
  const PhotoJobServices& services;
  OutputFiles& files;

  /// What became of the photo: one line, or five with the details.
  Result<std::string> run(const std::string& input) const {
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
    return describe(input, target, result, std::chrono::steady_clock::now() - start);
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

  std::string describe(const std::string& input, const OutputTarget& target,
                       const PhotoJobResult& result, std::chrono::duration<double> time) const {
    const bool isMeasured = result.parameters && !options.explicitParameters;
    const std::string size =
        std::to_string(result.writtenWidth) + " x " + std::to_string(result.writtenHeight) + " px";
    const std::string filter = filterText(result) + ", " + fixedText(time.count(), 2) + " s";
    const std::string noise = isMeasured ? noiseText(result.psnrOfRealImage) : "not measured";
    if (!options.details) {
      return input + " -> " + target.path + ": " + size + ", " + (isMeasured ? noise + ", " : "") +
             filter + "\n";
    }
    return "Photo:      " + input + "\n" +   //
           "Noise:      " + noise + "\n" +   //
           "Filter:     " + filter + "\n" +  //
           "Result:     " + target.path + ", " + size + "\n" +
           "Comparison: " + options.comparison.value_or("none (--compare FILE.png)") + "\n";
  }

  std::string filterText(const PhotoJobResult& result) const {
    if (options.isDeep && result.deepNoise) return "deep, noise " + noiseText(*result.deepNoise);
    if (!result.parameters) return "too small to filter, kept as it is";
    const FilterParameters& p = *result.parameters;
    return "sigma " + std::to_string(p.sigmaVal) + ", template " +
           std::to_string(p.templateWinSize) + ", search " + std::to_string(p.searchWinSize);
  }
};

}  // namespace

EngineEnvironment commandLineEngine(bool isReference) {
  EngineEnvironment environment;
  environment.workers = &globalQueue();
  environment.mainQueue = &mainQueue();
  environment.log = logLine;
  environment.recompressJpeg = recompressJpeg;
  if (isReference) environment.kernel = KernelChoice::kReference;
  return environment;
}

int run(const DenoiseOptions& options) {
  removeUnfinishedFiles();
  OutputFiles files(options.inputs, options.force);
  const DenoiseAlgoImplementation algorithm(commandLineEngine(options.referenceEngine));
  const AlgorithmEngine engine(algorithm);
  const PhotoJobServices services{engine, mainQueue(), globalQueue(), logLine, {}};
  const PhotoCommand command{options, services, files};
  std::FILE* report = options.output == "-" ? stderr : stdout;
  return onEachPhoto(options.inputs, [&](const std::string& input) -> Status {
    const auto summary = command.run(input);
    if (!summary) return Error{summary.error()};
    if (!options.quiet && !cancelledByInterrupt().isCancelled()) {
      std::fputs(summary->c_str(), report);
      std::fflush(report);
    }
    return Done{};
  });
}

}  // namespace velmara::cli
