#include "cli/denoise_command.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>

#include "cli/comparison.h"
#include "cli/engine_setup.h"
#include "cli/output_file.h"
#include "cli/output_paths.h"
#include "cli/progress_line.h"
#include "cli/summary.h"
#include "engine/denoise_algo_implementation.h"
#include "imaging/file_format.h"
#include "imaging/image_reader.h"
#include "platform/unfinished_file.h"
#include "session/photo_file.h"
#include "session/whole_photo.h"

namespace velmara::cli {
namespace {

double secondsNow() {
  using Seconds = std::chrono::duration<double>;
  return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// One photo's way through the command.
struct Job {
  const DenoiseOptions& options;
  DenoiseAlgoImplementation& engine;
  OutputFiles& files;

  Result<Summary> run(const std::string& input) const {
    const double start = secondsNow();
    const PhotoFile photo = PhotoFile::initWithFileUrl(input);
    const OutputTarget target = outputTarget(input, formatOfFile(input), options);
    if (Status allowed = files.check(target.path); !allowed) return Error{allowed.error()};
    if (options.comparison) {
      if (Status allowed = files.check(*options.comparison); !allowed) {
        return Error{allowed.error()};
      }
    }
    auto summary =
        options.explicitParameters ? filterAsItIs(photo, target) : filterAsExport(photo, target);
    if (!summary) return summary;
    Summary finished = std::move(summary).value();
    finished.input = input;
    finished.output = target.path;
    finished.comparison = options.comparison;
    finished.seconds = secondsNow() - start;
    return finished;
  }

  // What exporting the whole photo does.
  Result<Summary> filterAsExport(const PhotoFile& photo, const OutputTarget& target) const {
    auto loaded = loadWholePhoto(photo);
    if (!loaded) return Error{loaded.error()};
    const Image image = std::move(loaded).value();
    Summary summary;
    Image filtered = image;
    if (isLargeEnoughToFilter(photo)) {
      summary.psnr = engine.getPSNRofImage(image);
      summary.parameters = exportParameters(*summary.psnr, options.mode);
      auto result = filter(image, *summary.parameters);
      if (!result) return Error{result.error()};
      filtered = std::move(result).value();
    }
    const auto upright = uprightAtFullSize(photo, filtered);
    if (!upright) return Error{upright.error()};
    filtered = Image();
    summary.width = upright->bitmap().width();
    summary.height = upright->bitmap().height();
    if (options.comparison) {
      const auto before = uprightAtFullSize(photo, image);
      if (!before) return Error{before.error()};
      if (Status written = writeComparison(*before, *upright); !written) {
        return Error{written.error()};
      }
    }
    const auto bytes = encodeExport(photo, *upright, target.format);
    return finish(target, bytes, summary);
  }

  // The decoded file with the filter's three numbers, and nothing else.
  Result<Summary> filterAsItIs(const PhotoFile& photo, const OutputTarget& target) const {
    const auto loaded = readImage(photo.filePath);
    if (!loaded) return Error{loaded.error()};
    Summary summary;
    summary.parameters = options.explicitParameters;
    const auto filtered = filter(*loaded, *options.explicitParameters);
    if (!filtered) return Error{filtered.error()};
    summary.width = filtered->bitmap().width();
    summary.height = filtered->bitmap().height();
    if (options.comparison) {
      if (Status written = writeComparison(*loaded, *filtered); !written) {
        return Error{written.error()};
      }
    }
    return finish(target, encodeImage(filtered->bitmap(), filtered->profile(), target.format),
                  summary);
  }

  Result<Image> filter(const Image& image, const FilterParameters& parameters) const {
    if (parameters.templateWinSize > parameters.searchWinSize) {
      return Error{"the template window must not be larger than the search window"};
    }
    Image filtered = engine.denoiseImageUsingCustomFastNLMeans(
        image, parameters.templateWinSize, parameters.searchWinSize, parameters.sigmaVal);
    if (!filtered.isValid()) return Error{"the picture could not be filtered"};
    return filtered;
  }

  Status writeComparison(const Image& before, const Image& after) const {
    const Bitmap picture = sideBySide(before.bitmap(), after.bitmap());
    if (!picture.isValid()) return Error{"not enough memory for the comparison"};
    const auto bytes = encodeImage(picture, before.profile(), FileFormat::png);
    if (!bytes) return Error{bytes.error()};
    return files.write(*options.comparison, *bytes);
  }

  Result<Summary> finish(const OutputTarget& target, const Result<std::vector<std::uint8_t>>& bytes,
                         const Summary& summary) const {
    if (!bytes) return Error{bytes.error()};
    if (Status written = files.write(target.path, *bytes); !written) {
      return Error{written.error()};
    }
    return summary;
  }
};

}  // namespace

int runDenoise(const DenoiseOptions& options) {
  removeUnfinishedFiles();
  OutputFiles files(options.inputs, options.force);
  ProgressLine progress(!options.quiet && ::isatty(STDERR_FILENO) == 1, secondsNow);
  DenoiseAlgoImplementation engine(commandLineEngine(options, progress));
  const Job job{options, engine, files};
  std::FILE* report = options.output == "-" ? stderr : stdout;
  int exitCode = 0;
  for (const std::string& input : options.inputs) {
    std::string fault;
    try {
      const auto summary = job.run(input);
      progress.clear();
      if (summary && !options.quiet) {
        std::fputs(describe(*summary, options.details).c_str(), report);
        std::fflush(report);
      }
      if (!summary) fault = summary.error();
    } catch (const std::exception& exception) {
      progress.clear();
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
