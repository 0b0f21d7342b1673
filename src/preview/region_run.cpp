#include "preview/region_run.h"

#include <filesystem>
#include <fstream>
#include <mutex>
#include <system_error>
#include <utility>

#include "imaging/image_writer.h"

namespace velmara {
namespace {

// How long the capture of a picture that overflows both ways waits.
constexpr Seconds kCaptureDelay(0.2);

// Not to the disk: the file is of the moment.
bool writeFile(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  const std::string part = path + ".part";
  std::ofstream file(part, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  file.close();
  std::error_code failure;
  if (file) std::filesystem::rename(part, path, failure);
  if (file && !failure) return true;
  std::filesystem::remove(part, failure);
  return false;
}

}  // namespace

/// Writes the regions of photos to their files, one at a time, so that the last one stays. Any
/// thread.
class RegionRun::RegionFile {
 public:
  RegionFile(std::string folder, LogSink log) : folder_(std::move(folder)), log_(std::move(log)) {}

  /// The region file of a photo: named after it whatever its format.
  std::string pathFor(const PhotoFile& photo) const {
    const bool isJoined = !folder_.empty() && folder_.back() == '/';
    return folder_ + (isJoined ? "" : "/") + photo.fileName;
  }

  /// Registers a region that replaces those before it.
  GenerationCounter::Token announce() { return newest_.advance(); }
  /// Nothing is written where there is no folder for it.
  void write(const std::string& path, const Bitmap& region, const GenerationCounter::Token& token) {
    const std::scoped_lock lock(mutex_);
    if (!newest_.isCurrent(token)) return;
    const auto png = encodeImage(region, nullptr, FileFormat::png);
    if (folder_.empty() || !png || !writeFile(path, *png)) {
      log_(path + ": the visible region was not written");
    }
  }

 private:
  std::string folder_;
  LogSink log_;
  GenerationCounter newest_;
  std::mutex mutex_;
};

RegionRun::RegionRun(const PreviewServices& services)
    : services_(services),
      file_(std::make_shared<RegionFile>(services.temporaryDirectory, services.log)) {}

RegionRun::~RegionRun() {
  services_.timers.cancel(this);
}

void RegionRun::post(std::function<void()> request) {
  services_.timers.cancel(this);
  services_.timers.after(this, "cropVisiblePartofImageAndDenoise", Seconds(0), std::move(request));
}

void RegionRun::cropVisiblePartofImageAndDenoise(const Viewport& viewport,
                                                 const ScaledPicture& picture) {
  services_.log("Dispatch Queue in cropVisiblePartofImageAndDenoise");
  const RegionCase which = viewport.regionCase();
  services_.log(std::string(logLineOf(which)));
  zoom_ = viewport.currentZooomFactor;
  const Cut cut{picture, viewport.seen(), generation_.current()};
  if (which != RegionCase::kBothOverflow) {
    render(cut);
    return;
  }
  captureBegins();
  services_.timers.after(this, "takeScreenShotAndProccess", kCaptureDelay,
                         [this, cut] { takeScreenShotAndProccess(cut); });
}

void RegionRun::takeScreenShotAndProccess(const Cut& cut) {
  if (!generation_.isCurrent(cut.token)) return;
  services_.log("Taking Screenshot Of Visible Part Of Image !!");
  render(cut);
}

void RegionRun::render(const Cut& cut) {
  services_.globalQueue.async(
      [this, alive = std::weak_ptr(alive_), cut, mainQueue = &services_.mainQueue] {
        const Bitmap region = cut.picture.render(cut.pixels);
        if (!region.isValid()) return;
        mainQueue->async([this, alive, region, token = cut.token,
                          place = ShownPlace{cut.pixels, cut.picture.size()}] {
          if (!alive.expired() && generation_.isCurrent(token)) process(region, place);
        });
      });
}

void RegionRun::process(const Bitmap& region, const ShownPlace& place) {
  if (!hasPhoto()) return;
  if (isRunning()) {
    // A run of what was seen before has begun meanwhile.
    setStale();
    return;
  }
  imgToBeFilter_ = region;
  PhotoFile record;
  record.filePath = file_->pathFor(*services_.session.selectedImageFile());
  record.fileURL = record.filePath;
  record.fileName = services_.session.selectedImageFile()->fileName;
  record.width = region.width();
  record.height = region.height();
  services_.globalQueue.async([file = file_, region, path = record.filePath,
                               token = file_->announce()] { file->write(path, region, token); });
  services_.session.setSelectedImageFileToProccessing(record);
  services_.session.setRegion(Image(region), zoom_, place);
  regionCut();
  services_.session.seletedPhotoToBeFilteredIsChanged();
}

void RegionRun::overtake() {
  generation_.advance();
  services_.session.dropResultInFlight();
}

void RegionRun::forget() {
  overtake();
  imgToBeFilter_ = {};
}

}  // namespace velmara
