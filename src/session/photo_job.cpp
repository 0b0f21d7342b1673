#include "session/photo_job.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

#include "base/fixed_text.h"
#include "engine/noise_level.h"
#include "imaging/image_writer.h"
#include "imaging/rotate_with_exif.h"
#include "platform/whole_file.h"
#include "session/photo_decoding.h"
#include "session/photo_job_plan.h"

namespace velmara {
namespace {

using End = PhotoJobResult::End;
using Seconds = std::chrono::duration<double>;

constexpr const char* kNoMemory = "not enough memory for the picture";

// One job's way through its steps. Each gives its status; the first that is not well, or a wish to
// stop between two, ends it.
class Run {
 public:
  Run(const PhotoJobRequest& request, const PhotoJobServices& services, JobControl& control,
      const std::function<void(std::int64_t)>& calibrated)
      : request_(request),
        services_(services),
        control_(control),
        calibrated_(calibrated),
        plan_(request) {
    if (request.photo) result_.photo = *request.photo;
    result_.psnrOfRealImage = request.psnrOfRealImage;
    result_.mapping = request.mapping;
    result_.deepNoise = request.deepNoise;
    result_.pixelsProcessRate = request.pixelsProcessRate;
  }

  PhotoJobResult run() && {
    const std::pair<PhotoStep, Status (Run::*)()> steps[] = {
        {PhotoStep::load, &Run::load},       {PhotoStep::calibrate, &Run::calibrate},
        {PhotoStep::measure, &Run::measure}, {PhotoStep::choose, &Run::choose},
        {PhotoStep::filter, &Run::filter},   {PhotoStep::turn, &Run::turn},
        {PhotoStep::encode, &Run::encode},   {PhotoStep::write, &Run::write}};
    for (const auto& [step, work] : steps) {
      if (plan_.has(step) && !carryOut(step, work)) break;
    }
    if (result_.reason.empty() && result_.end != End::cancelled) {
      result_.end = End::finished;
      control_.setProgress(1.0);
    } else if (result_.end == End::cancelled || result_.step <= PhotoStep::filter) {
      result_.image = {};
    }
    if (decoding_ != nullptr) result_.photo.image = {};  // Its rows may not all be there.
    return std::move(result_);
  }

 private:
  bool isOnlyWritten() const { return request_.filtered.isValid(); }
  bool isWhole() const { return request_.isExportingPhoto(); }

  // Whether the job goes on after a step.
  bool carryOut(PhotoStep step, Status (Run::*work)()) {
    result_.step = step;
    if (control_.isCancelled()) {
      result_.end = End::cancelled;
      return false;
    }
    if (request_.output && !request_.output->format) {
      result_.reason = "cannot write " + request_.output->path + ": unknown format";
      return false;
    }
    if (wouldReplaceRaw()) {
      result_.reason = "cannot write " + request_.output->path + ": a RAW file is never replaced";
      return false;
    }
    const auto begin = std::chrono::steady_clock::now();
    const Status status = [&]() -> Status {
      try {
        return (this->*work)();
      } catch (const std::bad_alloc&) {
        return Error{kNoMemory};
      } catch (const std::exception& fault) {
        return Error{fault.what()};
      }
    }();
    result_.seconds[static_cast<int>(step)] =
        Seconds(std::chrono::steady_clock::now() - begin).count();
    if (!status) {
      result_.end = control_.isCancelled() ? End::cancelled : End::failed;
      if (result_.end == End::failed) result_.reason = inWords(step, status.error());
    } else {
      control_.setProgress(plan_.shareAfter(step));
    }
    return status.ok();
  }

  // What a camera recorded is in no other file.
  bool wouldReplaceRaw() const {
    if (!request_.output || result_.photo.record.filePath.empty()) return false;
    const std::string& path = request_.output->path;
    std::error_code failure;
    return isPhotosOwnFile(result_.photo.record, path)
               ? result_.photo.record.format == FileFormat::raw
               : isNamedAsRaw(path) && std::filesystem::exists(path, failure);
  }

  // What is written says where to; replacing a file says it by itself.
  std::string inWords(PhotoStep step, const std::string& reason) const {
    const bool isNamed = step != PhotoStep::turn && step != PhotoStep::encode;
    const std::string path = request_.output ? request_.output->path : std::string();
    return isNamed || path.empty() ? reason : "cannot write " + path + ": " + reason;
  }

  Status load() {
    if (!request_.photo) {
      auto opened = openPhoto(request_.path);
      if (!opened) return Error{opened.error()};
      result_.photo = std::move(opened).value();
    }
    if (!plan_.needsPixels()) return Done{};
    decoding_ = std::make_unique<PhotoDecoding>(result_.photo, control_);
    if (mayBeginWithFirstRows()) {
      const Image picture = decoding_->picture();
      if (isFilteredAsDecoded(result_.photo, picture)) {
        result_.photo.image = picture;
        return Done{};
      }
    }
    return takeDecodedPhoto();
  }

  // Whether measuring and filtering ask for the rows they look at before they do.
  bool mayBeginWithFirstRows() const {
    return plan_.has(PhotoStep::filter) && isWhole() && !request_.isDeep && !request_.calibrates;
  }

  // What has been decoded meanwhile, all of it.
  Status takeDecodedPhoto() {
    auto loaded = decoding_->finish();
    decoding_ = nullptr;
    if (loaded) {
      result_.photo = std::move(loaded).value();
      return Done{};
    }
    result_.photo.image = {};
    result_.step = PhotoStep::load;
    return Error{loaded.error()};
  }

  // Before an export the speed is measured anew, as its windows will be; choosing them leaves its
  // mapping behind like every other choice.
  Status calibrate() {
    FilterParameters parameters = kFirstCalibration;
    const bool isKnown = result_.pixelsProcessRate != 0;
    if (!isKnown || isWhole()) {
      if (isKnown) {
        const DenoiseMode mode{request_.mode.isAutoMode, DenoiseMode::kManualThreshold,
                               request_.mode.denoiseLevelValue};
        const MappedParameters mapped =
            mapNoiseToParameters(double{result_.psnrOfRealImage}, mode, true, result_.mapping);
        result_.mapping = mapped.mapping;
        parameters = calibrationParameters(mapped.parameters, mode);
      }
      JobControl part = partOfStep();
      const std::int64_t rate =
          services_.engine.processingSpeed(services_.loadTestImage(), parameters, &part);
      if (part.isCancelled()) return Error{"cancelled"};
      result_.pixelsProcessRate = rate;
    }
    if (calibrated_) {
      services_.mainQueue.async(
          [tell = calibrated_, rate = result_.pixelsProcessRate] { tell(rate); });
    }
    return Done{};
  }

  bool isTooSmall() const {
    if (request_.isBare) return false;
    if (isWhole() || request_.isDeep) return !isLargeEnoughToFilter(result_.photo.record);
    const Bitmap& bitmap = request_.region->bitmap();
    return std::int64_t{bitmap.width()} * bitmap.height() <= kLargestUnfilteredPhoto;
  }

  Status measure() {
    if (isTooSmall()) return Done{};
    const Image& photo = result_.photo.image;
    if (request_.isDeep) {
      // The deep method takes opaque colours as they are.
      const Image picture = isPlainColour(photo) ? photo : atOwnSize(photo);
      if (!picture.isValid()) return Error{kNoMemory};
      JobControl part = partOfStep();
      const DeepNoise noise = measureNoise(picture.bitmap(), &part);
      if (part.isCancelled()) return Error{"cancelled"};
      result_.deepNoise = noise;
      return Done{};
    }
    const int rows = rowsMeasuredOfCanvas(photo.bitmap().width(), photo.bitmap().height());
    if (decoding_ != nullptr && !decoding_->awaitRows(rows)) {
      if (Status decoded = takeDecodedPhoto(); !decoded) return decoded;
    }
    result_.psnrOfRealImage = static_cast<float>(services_.engine.psnr(photo));
    return Done{};
  }

  Status choose() {
    if (isTooSmall() || request_.isDeep) return Done{};
    if (request_.parameters) {
      result_.parameters = request_.parameters;
      const FilterParameters& p = *request_.parameters;
      return p.templateWinSize <= p.searchWinSize
                 ? Status(Done{})
                 : Error{"the template window must not be larger than the search window"};
    }
    const double psnr =
        effectivePsnr(result_.psnrOfRealImage, isWhole(), request_.currentZooomFactor);
    const MappedParameters mapped =
        mapNoiseToParameters(psnr, request_.mode, isWhole(), result_.mapping);
    result_.mapping = mapped.mapping;
    result_.parameters = filterParameters(mapped.parameters, request_.mode);
    services_.log(parametersLogLine(psnr, *result_.parameters));
    return Done{};
  }

  Image pictureToFilter() const {
    if (request_.isBare) return result_.photo.image;
    return isWhole() ? wholePhotoToFilter(result_.photo) : atOwnSize(*request_.region);
  }

  // Whether nothing is left to do with the filter's rows but to encode them.
  bool isWrittenAsFiltered(const Image& picture) const {
    return request_.output && result_.parameters && isWhole() && !request_.isBare &&
           picture.size() == result_.photo.fullSize &&
           !isTurnedBy(result_.photo.record.orientation().value_or(1));
  }

  JobControl partOfStep() {
    return {control_, plan_.shareBefore(result_.step), plan_.shareAfter(result_.step)};
  }

  Status filter() {
    if (request_.isDeep && result_.deepNoise) return filterDeeply();
    const Image picture = pictureToFilter();
    if (!picture.isValid()) return Error{kNoMemory};
    JobControl part = partOfStep();
    RunWatch watch{&part};
    if (isWrittenAsFiltered(picture)) {
      encoder_ = startEncoding(result_.photo.record, picture, *request_.output->format, &control_);
    }
    if (encoder_ != nullptr) {
      watch.rowsFinished = [this](const std::uint8_t* rows, int firstRow, int rowCount) {
        encoder_->add(rows, firstRow, rowCount);
      };
    }
    if (decoding_ != nullptr) {
      watch.awaitRows = [this](int rows) { return decoding_->awaitRows(rows); };
    }
    result_.image = result_.parameters
                        ? services_.engine.denoise(picture, *result_.parameters, watch)
                        : picture;
    if (decoding_ != nullptr) {
      if (Status decoded = takeDecodedPhoto(); !decoded) return decoded;
      const bool hasBegunAnew =
          result_.photo.image.bitmap().storage() != picture.bitmap().storage();
      if (hasBegunAnew) return filter();
    }
    return result_.image.isValid() ? Status(Done{}) : Error{"the picture could not be filtered"};
  }

  Status filterDeeply() {
    JobControl part = partOfStep();
    const DeepRequest deep{deepStrength(request_.mode), &services_.globalQueue,
                           static_cast<int>(std::thread::hardware_concurrency())};
    if (!isWhole()) {
      auto shown = denoiseRegionDeeply(result_.photo, *request_.region, request_.place,
                                       *result_.deepNoise, deep, part);
      if (!shown) return Error{kNoMemory};
      result_.image = Image(std::move(*shown), request_.region->profile());
      return Done{};
    }
    const Image picture = pictureToFilter();
    if (!picture.isValid()) return Error{kNoMemory};
    auto filtered = denoiseDeeply(picture.bitmap(), *result_.deepNoise, deep, part);
    if (!filtered) return Error{kNoMemory};
    result_.image = Image(std::move(*filtered), picture.profile()).withSize(picture.size());
    return Done{};
  }

  Status turn() {
    if (isOnlyWritten()) result_.image = request_.filtered;
    if (request_.isBare) {
      upright_ = result_.image;
    } else {
      auto upright = uprightAtFullSize(result_.photo, result_.image);
      if (!upright) return Error{upright.error()};
      upright_ = std::move(upright).value();
    }
    result_.writtenWidth = upright_.bitmap().width();
    result_.writtenHeight = upright_.bitmap().height();
    return Done{};
  }

  Status encode() {
    // In rows it can be stopped.
    const Bitmap& bitmap = upright_.bitmap();
    if (request_.isDeep && bitmap.samplesPerPixel() == 3) {
      encoder_ = startEncoding(result_.photo.record, upright_, *request_.output->format, &control_);
      if (encoder_ != nullptr) encoder_->add(bitmap.row(0), 0, bitmap.height());
    }
    if (const auto encoder = std::move(encoder_)) {
      auto bytes = finishEncoding(result_.photo.record, *encoder, *request_.output->format);
      if (bytes) result_.encoded = std::move(bytes).value();
      // What had no room beside the filter may have it now.
      if (!result_.encoded.empty() || control_.isCancelled()) return Done{};
    }
    auto bytes = request_.isBare
                     ? encodeImage(upright_.bitmap(), upright_.profile(), *request_.output->format)
                     : encodeExport(result_.photo.record, upright_, *request_.output->format);
    if (!bytes) return Error{bytes.error()};
    result_.encoded = std::move(bytes).value();
    return Done{};
  }

  Status write() {
    const PhotoOutput& output = *request_.output;
    const bool isOwnFile = isPhotosOwnFile(result_.photo.record, output.path);
    Status written = output.mayReplace ? replaceFile(output.path, result_.encoded)
                                       : createFile(output.path, result_.encoded);
    if (!written) return written;
    result_.encoded = {};
    if (isOwnFile) {
      result_.hasReplacedPhoto = true;
      result_.photo = {
          PhotoFile::initWithFileUrl(result_.photo.record.filePath), {}, upright_.size(), nullptr};
      result_.image = upright_;
    }
    return Done{};
  }

  const PhotoJobRequest& request_;
  const PhotoJobServices& services_;
  JobControl& control_;
  const std::function<void(std::int64_t)>& calibrated_;
  const PhotoJobPlan plan_;
  /// While the photo's rows are still being decoded.
  std::unique_ptr<PhotoDecoding> decoding_;
  /// Where rows are encoded while others are still filtered.
  std::unique_ptr<RowEncoder> encoder_;
  Image upright_;
  PhotoJobResult result_;
};

}  // namespace

PhotoJobResult runPhotoJob(const PhotoJobRequest& request, const PhotoJobServices& services,
                           JobControl& control,
                           const std::function<void(std::int64_t)>& calibrated) {
  return Run(request, services, control, calibrated).run();
}

std::shared_ptr<PhotoJob> PhotoJob::start(PhotoJobRequest request, const PhotoJobServices& services,
                                          PhotoJobListener listener) {
  auto job = std::make_shared<PhotoJob>();
  services.globalQueue.async(
      [job, request = std::move(request), services, listener = std::move(listener)] {
        auto result = std::make_shared<PhotoJobResult>(
            runPhotoJob(request, services, job->control_, listener.calibrated));
        services.mainQueue.async([job, result, finished = listener.finished] {
          if (finished) finished(*result);
        });
      });
  return job;
}

std::string parametersLogLine(double psnr, const FilterParameters& parameters) {
  return "psnrOfInputImage " + fixedText(psnr, 6) + " sigma " +
         std::to_string(parameters.sigmaVal) + " templateWindow " +
         std::to_string(parameters.templateWinSize) + " searchWindow " +
         std::to_string(parameters.searchWinSize);
}

}  // namespace velmara
