#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include "base/residual.h"
#include "cli/commands.h"
#include "cli/comparison.h"
#include "cli/denoise_report.h"
#include "cli/photo_list.h"
#include "cli/terminal.h"
#include "engine/denoise_algo_implementation.h"
#include "imaging/image_writer.h"
#include "platform/dispatch.h"
#include "platform/log.h"
#include "platform/temporary_files.h"
#include "platform/whole_file.h"
#include "session/batch/batch_run.h"
#include "session/batch/batch_targets.h"

namespace velmara::cli {
namespace {

using End = BatchOutcome::End;

// The photos' way through the command.
class DenoiseCommand {
 public:
  DenoiseCommand(const DenoiseOptions& options, std::vector<BatchPhoto> photos)
      : options_(options),
        photos_(std::move(photos)),
        own_(partOf(options, photos_.size())),
        targets_(photos_, options.naming) {}

  int run(const PhotoJobServices& services) {
    BatchRequest request;
    for (const std::size_t place : own_) request.photos.push_back(photos_[place].path);
    request.job = [this](std::size_t) { return job(); };
    request.target = [this](std::size_t index, const LoadedPhoto& photo) {
      return target(index, photo);
    };
    request.ended = [this](std::size_t index, const BatchOutcome& outcome) {
      ended(index, outcome);
    };
    request.jobs = options_.jobs.value_or(usualBatchJobs());
    request.memory = usualBatchMemory();
    BatchRun batch(std::move(request), services, cancelledByInterrupt());
    {
      const ProgressLine progress([&batch] { return batch.progress(); },
                                  !options_.quiet && ::isatty(STDERR_FILENO) == 1);
      batch.run();
    }
    if (cancelledByInterrupt().isCancelled()) return kInterrupted;
    return failures_ == 0 ? 0 : 1;
  }

 private:
  PhotoJobRequest job() const {
    PhotoJobRequest request;
    request.mode = options_.mode;
    request.isDeep = options_.isDeep;
    request.parameters = options_.explicitParameters;
    request.isBare = options_.isBare;
    return request;
  }

  Result<BatchTarget> target(std::size_t index, const LoadedPhoto& photo) {
    // As if one worker did them all, in their order.
    const std::size_t place = own_[index];
    for (; nextNamed_ < place; ++nextNamed_) {
      const bool isOwn = std::binary_search(own_.begin(), own_.end(), nextNamed_);
      if (!isOwn) targets_.leaveToOthers(nextNamed_);
    }
    auto target = targets_.target(place, photo);
    for (const auto& path : {options_.comparison, options_.residual}) {
      if (!target || !path) continue;
      if (Status allowed = targets_.promise(*path); !allowed) target = Error{allowed.error()};
    }
    return target;
  }

  // Photos are told of in their order, whichever ends first.
  void ended(std::size_t index, const BatchOutcome& outcome) {
    Report report;
    const Status taken = outcome.end == End::written ? takeFiles(outcome) : Done{};
    BatchOutcome told;
    told.end = taken ? outcome.end : End::failed;
    told.reason = taken ? outcome.reason : taken.error();
    if (told.end == End::failed) ++failures_;
    report.fault = told.end == End::failed ? told.reason : std::string();
    report.text = textOf(photos_[own_[index]].path, taken ? outcome : told);
    waiting_[index] = std::move(report);
    while (!waiting_.empty() && waiting_.begin()->first == nextTold_) {
      tell(photos_[own_[nextTold_++]].path, waiting_.begin()->second);
      waiting_.erase(waiting_.begin());
    }
  }

  std::string textOf(const std::string& photo, const BatchOutcome& outcome) const {
    if (options_.json) return denoiseJson(photo, outcome, options_) + "\n";
    const bool isTold = outcome.end == End::written || outcome.end == End::skipped;
    return isTold && !options_.quiet ? denoiseText(photo, outcome, options_) : std::string();
  }

  struct Report {
    std::string text;
    std::string fault;
  };

  void tell(const std::string& photo, const Report& report) const {
    if (!report.fault.empty()) {
      std::fprintf(stderr, "velmara: %s: %s\n", photo.c_str(), report.fault.c_str());
    }
    if (cancelledByInterrupt().isCancelled() && !options_.json) return;
    std::FILE* file = options_.naming.file == "-" ? stderr : stdout;
    std::fputs(report.text.c_str(), file);
    std::fflush(file);
  }

  // What the job leaves to do: standard output and the pictures of what was done.
  Status takeFiles(const BatchOutcome& outcome) const {
    if (outcome.output.path.empty()) {
      if (Status written = writeToStandardOutput(outcome.job.encoded); !written) return written;
    }
    if (!options_.comparison && !options_.residual) return Done{};
    const PhotoJobResult& job = outcome.job;
    const auto shown = [&](const Image& image) {
      return options_.isBare ? Result<Image>(image) : uprightAtFullSize(job.photo, image);
    };
    const auto before = shown(options_.isBare ? job.photo.image : wholePhotoToFilter(job.photo));
    const auto after = shown(job.image);
    if (!before || !after) return Error{(before ? after : before).error()};
    if (options_.comparison) {
      const Bitmap picture = sideBySide(before->bitmap(), after->bitmap());
      Status written = writePicture(picture, before->profile(), *options_.comparison);
      if (!written) return written;
    }
    if (!options_.residual) return Done{};
    // Its samples are differences, which no profile is about.
    return writePicture(residual(before->bitmap(), after->bitmap()), nullptr, *options_.residual);
  }

  Status writePicture(const Bitmap& picture, const ColorProfile& profile,
                      const std::string& path) const {
    if (!picture.isValid()) return Error{"not enough memory for " + path};
    const auto bytes = encodeImage(picture, profile, FileFormat::png);
    if (!bytes) return Error{bytes.error()};
    const bool mayReplace = options_.naming.existing == BatchNaming::Existing::replace;
    return mayReplace ? replaceFile(path, *bytes) : createFile(path, *bytes);
  }

  const DenoiseOptions& options_;
  /// All workers' photos, and the places of this one's among them.
  const std::vector<BatchPhoto> photos_;
  const std::vector<std::size_t> own_;
  BatchTargets targets_;
  std::map<std::size_t, Report> waiting_;
  std::size_t nextNamed_ = 0;
  std::size_t nextTold_ = 0;
  int failures_ = 0;
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
  bool isWhole = true;
  auto photos = photosOf(options, isWhole);
  if (photos && photos->empty() && isWhole) {
    photos = Error{"there are no photos to be read"};
  }
  if (!photos) {
    std::fprintf(stderr, "velmara: %s\n", photos.error().c_str());
    return 1;
  }
  const DenoiseAlgoImplementation algorithm(commandLineEngine(options.referenceEngine));
  const AlgorithmEngine engine(algorithm);
  const PhotoJobServices services{engine, mainQueue(), globalQueue(), logLine, {}};
  const int code = DenoiseCommand(options, std::move(photos).value()).run(services);
  return code == 0 && !isWhole ? 1 : code;
}

}  // namespace velmara::cli
