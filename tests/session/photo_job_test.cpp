#include "session/photo_job.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <mutex>
#include <new>
#include <string>
#include <vector>

#include "base/pixel_operations.h"
#include "engine/deep/deep_pictures.h"
#include "imaging/image_reader.h"
#include "imaging/resample.h"
#include "imaging/rotate_with_exif.h"
#include "platform/dispatch.h"
#include "session/export_formats.h"
#include "support/run_program.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing_support::contentsOf;
using testing_support::runProgram;
using testing_support::ScratchFolder;
using testing_support::writeFile;
using End = PhotoJobResult::End;

std::string outputOf(const std::vector<std::string>& words) {
  const auto result = runProgram(words);
  EXPECT_EQ(result.exitCode, 0) << result.errors;
  return result.output;
}

std::string pngOf(const Bitmap& bitmap) {
  const auto bytes = encodeImage(bitmap, nullptr, FileFormat::png);
  return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
}

// 240 x 160, its quarters of four colours, stored as an orientation says.
std::string photoIn(const ScratchFolder& folder, const std::string& name, int orientation = 6) {
  std::string path = folder.file(name);
  outputOf({"convert", "-size", "120x80", "xc:#d02010", "(", "-size", "120x80", "xc:#10c030", ")",
            "+append", "(", "-size", "240x80", "xc:#2040d0", ")", "-append", path});
  outputOf({"exiv2", "-Mset Exif.Image.Orientation Short " + std::to_string(orientation),
            "-Mset Exif.Image.Make Ascii Kamera", path});
  return path;
}

// An engine that changes nothing, tells its rows in pieces and writes down what it was asked.
class CopyingEngine final : public DenoiseEngine {
 public:
  Image denoise(const Image& image, const FilterParameters& parameters,
                const RunWatch& watch) const override {
    filtered.push_back(parameters);
    if (before) before();
    if (watch.control != nullptr && watch.control->isCancelled()) return {};
    if (watch.awaitRows && !watch.awaitRows(image.bitmap().height())) return {};
    const Bitmap rgb = withoutAlpha(asRgba(image.bitmap()));
    constexpr int kRows = 50;
    for (int y = 0; watch.rowsFinished && y < rgb.height(); y += kRows) {
      watch.rowsFinished(rgb.row(y), y, std::min(kRows, rgb.height() - y));
    }
    return gives ? Image(asRgba(rgb), image.profile()) : Image();
  }
  double psnr(const Image& image) const override {
    measured.push_back(image.size());
    return 40.0;
  }
  std::int64_t processingSpeed(const Image&, const FilterParameters&, JobControl*) const override {
    return 400'000;
  }

  bool gives = true;
  std::function<void()> before;
  mutable std::vector<FilterParameters> filtered;
  mutable std::vector<Size> measured;
};

class PhotoJobTest : public testing::Test {
 protected:
  static PhotoJobRequest exportOf(const std::string& path, FileFormat format,
                                  const std::string& target) {
    PhotoJobRequest request;
    request.path = path;
    request.output = {format, target, true};
    return request;
  }
  PhotoJobResult run(const PhotoJobRequest& request) {
    return runPhotoJob(request, services, control);
  }
  static LoadedPhoto loaded(const std::string& path) {
    auto photo = loadPixels(openPhoto(path).value());
    EXPECT_TRUE(photo.ok());
    return photo.value();
  }
  std::string lookOf(const std::string& name) const {
    return outputOf({"identify", "-format", "%m %wx%h", folder.file(name)});
  }

  ScratchFolder folder{testing_support::inMemory()};
  JobControl control;
  CopyingEngine engine;
  PhotoJobServices services{engine, mainQueue(), globalQueue(), [](const std::string&) {},
                            [] { return Image(); }};
};

TEST_F(PhotoJobTest, WritesEveryFormatUprightAndWhole) {
  const std::string photo = photoIn(folder, "side.png");
  const std::string expected = folder.file("expected.png");
  outputOf({"convert", photo, "-rotate", "90", expected});
  for (const std::string format : {"jpeg", "tiff", "bmp", "gif", "png"}) {
    const auto result = run(exportOf(photo, *writerFor(format), folder.file("out." + format)));
    ASSERT_EQ(result.end, End::finished) << result.reason;
    EXPECT_EQ(result.writtenWidth, 160);
    EXPECT_EQ(result.psnrOfRealImage, 40.0F);
    std::string look = lookOf("out." + format);
    std::ranges::transform(look, look.begin(), ::tolower);
    EXPECT_EQ(look, format + " 160x240");
    const auto compared =
        runProgram({"compare", "-metric", "AE", expected, folder.file("out." + format), "null:"});
    EXPECT_EQ(compared.errors == "0", format != "jpeg") << format << compared.errors;
  }
  EXPECT_THAT(outputOf({"exiv2", "-PEkv", folder.file("out.tiff")}), HasSubstr("Kamera"));
}

// Rows that are encoded while the filter runs make the file that the whole picture makes.
TEST_F(PhotoJobTest, StreamedOrNotTheFileIsTheSame) {
  const std::string photo = photoIn(folder, "upright.jpg", 1);
  for (const std::string format : {"jpeg", "tiff", "png", "bmp"}) {
    const auto writer = *writerFor(format);
    auto request = exportOf(photo, writer, folder.file("out." + format));
    const auto result = run(request);
    ASSERT_EQ(result.end, End::finished) << result.reason;
    const auto whole = encodeExport(result.photo.record, result.image, writer);
    ASSERT_TRUE(whole);
    EXPECT_EQ(contentsOf(folder.file("out." + format)), std::string(whole->begin(), whole->end()))
        << format;
    request.output->path.clear();
    request.parameters = FilterParameters{9, 3, 8};
    const auto again = run(request);
    EXPECT_EQ(again.encoded, *whole) << format;
    EXPECT_EQ(again.parameters, request.parameters);
    EXPECT_EQ(engine.filtered.back(), *request.parameters);
  }
}

// A fault of the wrapping that is met late makes reading begin anew; one of the samples is the end.
TEST_F(PhotoJobTest, APhotoIsFilteredWhileItIsRead) {
  outputOf({"convert", photoIn(folder, "a.png", 1), "-resize", "400x300!", folder.file("b.png")});
  outputOf(
      {"vips", "jpegsave", folder.file("b.png"), folder.file("a.jpg"), "--restart-interval=9"});
  const std::string whole = contentsOf(folder.file("a.jpg"));
  std::string stuffed = whole;
  stuffed.insert(whole.find("\xff\xd5", whole.size() * 2 / 3), 3, '\0');
  const struct {
    std::string contents;
    bool isRead;
  } rows[] = {{whole, true}, {stuffed, true}, {whole.substr(0, whole.size() / 2), false}};
  for (const auto& row : rows) {
    std::filesystem::remove(folder.file("b.png"));
    writeFile(folder.file("b.jpg"), row.contents);
    const auto result = run(exportOf(folder.file("b.jpg"), FileFormat::png, folder.file("b.png")));
    ASSERT_EQ(result.end, row.isRead ? End::finished : End::failed) << result.reason;
    if (!row.isRead) {
      EXPECT_EQ(result.step, PhotoStep::load);
      EXPECT_FALSE(std::filesystem::exists(folder.file("b.png")));
      EXPECT_FALSE(result.photo.image.isValid());
      continue;
    }
    const Image read = readImage(folder.file("b.jpg")).value();
    for (const Image& image : {readImage(folder.file("b.png")).value(), result.photo.image}) {
      EXPECT_TRUE(std::ranges::equal(image.bitmap().bytes(), read.bitmap().bytes()));
    }
  }
}

TEST_F(PhotoJobTest, ReplacesTheOpenedPhotoAndKnowsItAfterwards) {
  const std::string photo = photoIn(folder, "side.png");
  const std::string link = folder.file("link.png");
  std::filesystem::create_symlink(photo, link);
  const auto first = run(exportOf(photo, FileFormat::png, link));
  ASSERT_EQ(first.end, End::finished) << first.reason;
  EXPECT_TRUE(first.hasReplacedPhoto);
  EXPECT_EQ(first.photo.record.width, 160);
  EXPECT_EQ(first.photo.record.orientation(), 1);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_THAT(outputOf({"exiv2", "-PEkv", photo}), HasSubstr("Kamera"));

  // The same result once more, to another file: not filtered and not turned a second time.
  PhotoJobRequest again;
  again.photo = first.photo;
  again.filtered = first.image;
  again.output = {FileFormat::png, folder.file("again.png"), false};
  ASSERT_EQ(run(again).end, End::finished);
  EXPECT_EQ(engine.filtered.size(), 1U);
  for (const char* name : {"side.png", "again.png"}) {
    EXPECT_EQ(lookOf(name), "PNG 160x240");
    const auto image = readImage(folder.file(name));
    ASSERT_TRUE(image);
    const struct { int x, y, red; } corners[] = {{20, 20, 0x20}, {140, 20, 0xd0}, {140, 220, 0x10}};
    for (const auto& c : corners) EXPECT_EQ(image->bitmap().pixel(c.x, c.y)[0], c.red) << name;
  }
  const auto refused = run(again);
  EXPECT_EQ(refused.end, End::failed);
  EXPECT_EQ(refused.step, PhotoStep::write);
}

TEST_F(PhotoJobTest, AnOpenPhotoMayVanish) {
  for (const bool isDecoded : {true, false}) {
    const std::string path = photoIn(folder, "gone.png");
    auto request = exportOf(path, FileFormat::png, folder.file("out.png"));
    request.photo = isDecoded ? loaded(path) : openPhoto(path).value();
    std::filesystem::remove(path);
    const auto result = run(request);
    ASSERT_EQ(result.end, End::finished) << result.reason;
    EXPECT_EQ(lookOf("out.png"), "PNG 160x240");
    EXPECT_TRUE(result.photo.image.isValid());
  }
}

TEST_F(PhotoJobTest, ADeepPreviewShowsWhatTheExportGives) {
  const Bitmap clean = scene(240, 160);
  const std::string path = folder.file("noisy.png");
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const Bitmap noisy = withWhiteNoise(clean, 30.0);
    testing_support::writeFile(path, pngOf(noisy));
    outputOf({"exiv2", "-Mset Exif.Image.Orientation Short " + std::to_string(orientation), path});
    PhotoJobRequest request;
    request.path = path;
    request.isDeep = true;
    const auto exported = run(request);
    ASSERT_EQ(exported.end, End::finished) << exported.reason;
    ASSERT_TRUE(exported.deepNoise && exported.deepNoise->isBeyondLevels());
    const Bitmap upright = RotateWithEXIF(exported.image.bitmap(), orientation);
    request.photo = exported.photo;
    const PixelRect part{31, 20, 101, 110};
    for (const int zoom : {1, 2}) {
      const int width = zoom * upright.width();
      const int height = zoom * upright.height();
      request.place = {part, {1.0 * width, 1.0 * height}};
      request.region = Image(resampled(clean, part.width, part.height));
      const Bitmap shown = run(request).image.bitmap();
      const Bitmap wanted = ResampledBitmap(upright, width, height).part(part);
      EXPECT_GT(psnrBetween(asRgba(shown), wanted), zoom == 1 ? 98.0 : 60.0) << orientation;
    }
    // What is smaller is filtered as it is seen.
    request.place = {{0, 0, 120, 80}, {120.0, 80.0}};
    request.region = Image(resampled(noisy, 120, 80));
    const Bitmap small = resampled(clean, 120, 80);
    EXPECT_GT(psnrBetween(asRgba(run(request).image.bitmap()), small), 26.0);
  }
  EXPECT_TRUE(engine.measured.empty() && engine.filtered.empty());
}

TEST_F(PhotoJobTest, FailuresSayWhichStepAndWhyAndLeaveNothing) {
  const std::string photo = photoIn(folder, "side.png");
  testing_support::writeFile(folder.file("notes.png"), "no picture");
  std::filesystem::create_directory(folder.file("folder.png"));
  const std::string before = contentsOf(photo);
  const std::string out = folder.file("out.png");
  constexpr auto kPng = FileFormat::png;
  const struct {
    std::string input, target;
    std::optional<FileFormat> format;
    PhotoStep step;
    const char* reason;
    std::function<void()> duringFilter = {};
  } rows[] = {
      {folder.file("notes.png"), out, kPng, PhotoStep::load, "not a picture"},
      {photo, folder.file("missing/out.png"), kPng, PhotoStep::write, "No such file"},
      {photo, folder.file("folder.png"), kPng, PhotoStep::write, "not an ordinary"},
      {photo, photo + "/out.png", FileFormat::jpeg, PhotoStep::write, "Not a directory"},
      {photo, out, std::nullopt, PhotoStep::load, "unknown format"},
      {photo, out, kPng, PhotoStep::filter, "could not be", [this] { engine.gives = false; }},
      {photo, out, kPng, PhotoStep::filter, "not enough memory", [] { throw std::bad_alloc(); }},
      {photo, out, FileFormat::jpeg, PhotoStep::filter, "broken",
       [] { throw std::runtime_error("broken"); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.target + row.reason);
    engine.before = row.duringFilter;
    auto request = exportOf(row.input, FileFormat::png, row.target);
    request.output->format = row.format;
    const auto result = run(request);
    EXPECT_EQ(result.end, End::failed);
    EXPECT_EQ(result.step, row.step);
    EXPECT_THAT(result.reason, HasSubstr(row.reason));
    // What is filtered already need not be filtered again for another file.
    EXPECT_EQ(result.image.isValid(), row.step == PhotoStep::write);
    EXPECT_EQ(result.reason.find(row.target) != std::string::npos,
              row.step == PhotoStep::write || !row.format);
  }
  EXPECT_EQ(contentsOf(photo), before);
  EXPECT_THAT(folder.names(), testing::UnorderedElementsAre("side.png", "notes.png", "folder.png"));
}

TEST_F(PhotoJobTest, EndsInOneCallOnTheMainThreadWhateverHappens) {
  const std::string photo = photoIn(folder, "upright.jpg", 1);
  std::shared_ptr<PhotoJob> job;
  std::mutex isStarted;
  const auto cancel = [&] {
    const std::scoped_lock lock(isStarted);
    job->cancel();
  };
  const struct {
    std::function<void()> duringFilter;
    End end;
  } rows[] = {
      {{}, End::finished}, {cancel, End::cancelled}, {[] { throw std::bad_alloc(); }, End::failed}};
  for (const auto& row : rows) {
    engine.before = row.duringFilter;
    QEventLoop loop;
    int calls = 0;
    std::unique_lock lock(isStarted);
    job = PhotoJob::start(exportOf(photo, FileFormat::jpeg, folder.file("out.jpg")), services,
                          {{}, [&](const PhotoJobResult& result) {
                             EXPECT_EQ(QThread::currentThread(),
                                       QCoreApplication::instance()->thread());
                             EXPECT_EQ(result.end, row.end) << result.reason;
                             EXPECT_EQ(job->progress() == 1.0, row.end == End::finished);
                             ++calls;
                             loop.quit();
                           }});
    lock.unlock();
    EXPECT_EQ(calls, 0);
    QTimer::singleShot(20'000, &loop, &QEventLoop::quit);
    loop.exec();
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(std::filesystem::remove(folder.file("out.jpg")), row.end == End::finished);
    EXPECT_THAT(folder.names(), testing::ElementsAre("upright.jpg"));
  }
}

TEST_F(PhotoJobTest, ACancelledJobDoesNothingMore) {
  control.cancel();
  const auto result =
      run(exportOf(photoIn(folder, "p.png"), FileFormat::png, folder.file("out.png")));
  EXPECT_EQ(result.end, End::cancelled);
  EXPECT_TRUE(engine.measured.empty());
  EXPECT_FALSE(loadPixels(openPhoto(folder.file("p.png")).value(), &control));
  EXPECT_THAT(folder.names(), testing::ElementsAre("p.png"));
}

}  // namespace
}  // namespace velmara
