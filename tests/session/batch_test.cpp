#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/dispatch.h"
#include "session/batch/batch_run.h"
#include "session/batch/batch_targets.h"
#include "session/batch/found_photos.h"
#include "session/editing_fixture.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::contentsOf;
using testing_support::ScratchFolder;
using testing_support::writeFile;
using Ending = BatchOutcome::End;
using Existing = BatchNaming::Existing;

NamePattern pattern(const std::string& text) {
  return NamePattern::parse(text).value();
}

TEST(BatchNamesTest, ResultsAreNamedAfterTheirPhotos) {
  using enum FileFormat;
  const BatchNaming beside, into{.folder = "out"}, kept{.folder = "out", .keepsFolders = true};
  const struct {
    BatchPhoto photo;
    std::optional<FileFormat> own;
    BatchNaming naming;
    std::string path;
    FileFormat format;
  } rows[] = {
      {{"d/a.JPG", ""}, jpeg, beside, "d/a-denoised.JPG", jpeg},
      {{"a.jpeg", ""}, jpeg, into, "out/a-denoised.jpeg", jpeg},
      {{"s/t/a.tif", "t"}, tiff, into, "out/a-denoised.tif", tiff},
      {{"s/t/a.tif", "t"}, tiff, kept, "out/t/a-denoised.tif", tiff},
      {{"/x/a.webp", ""}, {}, beside, "/x/a-denoised.png", png},
      {{"a.jpg", ""}, png, beside, "a-denoised.png", png},
      {{"a.b.jpg", ""}, jpeg, {.format = gif}, "a.b-denoised.gif", gif},
      {{"noextension", ""}, jpeg, beside, "noextension-denoised.jpg", jpeg},
      {{".hidden", ""}, bmp, beside, ".hidden-denoised.bmp", bmp},
      {{"a.jpg", ""}, jpeg, {.file = "x.tiff"}, "x.tiff", tiff},
      {{"a.jpg", ""}, jpeg, {.file = "-", .format = bmp}, "-", bmp},
      {{"/p/june/a.jpg", ""},
       jpeg,
       {.pattern = pattern("{folder}-{number}")},
       "/p/june/june-005.jpg",
       jpeg},
      {{"/p/a.jpg", ""}, jpeg, {.pattern = pattern("{name}")}, "/p/a.jpg", jpeg},
  };
  for (const auto& row : rows) {
    const PhotoOutput output = namedOutput(row.photo, 4, 120, row.own, row.naming);
    EXPECT_EQ(output.path, row.path);
    EXPECT_EQ(output.format, row.format) << row.path;
  }
}

class BatchTest : public testing::Test {
 protected:
  // A photo large enough to be filtered.
  std::string photoIn(const std::string& name, int width = 120) {
    std::string path = folder.file(name);
    fs::create_directories(fs::path(path).parent_path());
    const auto bytes = encodeImage(grayPicture(width, 100), nullptr, FileFormat::png);
    writeFile(path, std::string(bytes->begin(), bytes->end()));
    return path;
  }
  std::vector<std::string> found(const PhotoSearch& search) {
    std::vector<std::string> paths;
    const auto unreadable = [&](const std::string& path, const std::string&) {
      paths.push_back("unreadable " + path);
    };
    for (const BatchPhoto& photo : findPhotos(search, unreadable, control)) {
      paths.push_back(fs::relative(photo.path, folder.path()).string() + "|" + photo.subfolder);
    }
    return paths;
  }

  // A batch of files by their names, to be carried out by run().
  void prepare(const std::vector<std::string>& names, BatchNaming naming, int jobs,
               std::int64_t memory = 1 << 30) {
    std::vector<BatchPhoto> photos;
    photos.reserve(names.size());
    for (const std::string& name : names) photos.push_back({folder.file(name), {}});
    targets = std::make_unique<BatchTargets>(photos, std::move(naming));
    BatchRequest request;
    for (const BatchPhoto& photo : photos) request.photos.push_back(photo.path);
    request.job = [](std::size_t) { return PhotoJobRequest{}; };
    request.target = [this](std::size_t index, const LoadedPhoto& photo) {
      return targets->target(index, photo);
    };
    request.ended = [this](std::size_t index, const BatchOutcome& outcome) {
      const std::lock_guard lock(engine.mutex);
      engine.changed.notify_all();
      ends[index] = outcome.end;
      reasons[index] = outcome.reason;
    };
    request.jobs = jobs;
    request.memory = memory;
    batch = std::make_unique<BatchRun>(std::move(request), services, control);
  }
  // Meanwhile `whileRunning` is called on the test's thread.
  void run(const std::function<void()>& whileRunning = {}) {
    const std::jthread runner([this] { batch->run(); });
    if (whileRunning) whileRunning();
  }

  // An engine that lets pictures wait until they are let go, and counts those in it.
  class Gate final : public DenoiseEngine {
   public:
    Image denoise(const Image& image, const FilterParameters&,
                  const RunWatch& watch) const override {
      if (watch.awaitRows) watch.awaitRows(image.bitmap().height());
      std::unique_lock lock(mutex);
      most = std::max(most, ++inside);
      changed.notify_all();
      changed.wait(lock, [&] { return isOpen || watch.control->isCancelled(); });
      --inside;
      changed.notify_all();
      return watch.control->isCancelled() ? Image() : image;
    }
    double psnr(const Image&) const override { return 40.0; }
    std::int64_t processingSpeed(const Image&, const FilterParameters&,
                                 JobControl*) const override {
      return 1;
    }
    void waitFor(int count) {
      waitUntil([&] { return inside == count; });
    }
    void waitUntil(const std::function<bool()>& isThere) {
      std::unique_lock lock(mutex);
      EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(30), isThere));
    }
    void open() {
      const std::lock_guard lock(mutex);
      isOpen = true;
      changed.notify_all();
    }
    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    mutable int inside = 0, most = 0;
    bool isOpen = true;
  } engine;

  ScratchFolder folder;
  JobControl control;
  const PhotoJobServices services{
      engine, mainQueue(), globalQueue(), [](const std::string&) {}, {}};
  std::unique_ptr<BatchTargets> targets;
  std::unique_ptr<BatchRun> batch;
  std::map<std::size_t, Ending> ends;
  std::map<std::size_t, std::string> reasons;
};

TEST_F(BatchTest, FoldersStandForTheirPhotosButNotForResults) {
  for (const char* name : {"b.jpg", "a.PNG", "a-denoised.png", "only-denoised.png", "notes.txt",
                           ".hidden.png", "sub/c.jpg", "sub/deep/d.tif", "out/e.png"}) {
    photoIn(name);
  }
  fs::create_directory_symlink(folder.path(), folder.path() / "sub/loop");
  fs::create_symlink("b.jpg", folder.path() / "twice.jpg");
  const std::string top = folder.path();
  EXPECT_THAT(found({{top}}), ElementsAre("a.PNG|", "b.jpg|", "only-denoised.png|"));
  EXPECT_THAT(found({{top + "/b.jpg", top}, true, {}, top + "/out"}),
              ElementsAre("b.jpg|", "a.PNG|", "only-denoised.png|", "sub/c.jpg|sub",
                          "sub/deep/d.tif|sub/deep"));
  EXPECT_THAT(found({{top}, false, pattern("{name}")}), testing::SizeIs(4));
  EXPECT_THAT(found({{top + "/none.jpg", top + "/notes.txt"}}),
              ElementsAre("none.jpg|", "notes.txt|"));
  control.cancel();
  EXPECT_THAT(found({{top}, true}), IsEmpty());
}

TEST_F(BatchTest, EachEndsAsItsFileAllows) {
  for (const char* name : {"a.png", "b.png", "c/a.png", "d.png"}) photoIn(name);
  writeFile(folder.file("broken.png"), "no picture");
  fs::create_directory(folder.path() / "out");
  writeFile(folder.file("out/b-denoised.png"), "precious");
  const std::vector<std::string> names{"a.png", "b.png", "broken.png", "c/a.png", "d.png"};
  const struct {
    Existing existing;
    Ending ends[5];
    bool keepsPrecious;
  } rows[] = {
      {Existing::refuse,
       {Ending::written, Ending::failed, Ending::failed, Ending::failed, Ending::written},
       true},
      {Existing::skip,
       {Ending::skipped, Ending::skipped, Ending::failed, Ending::failed, Ending::skipped},
       true},
      {Existing::rename,
       {Ending::written, Ending::written, Ending::failed, Ending::written, Ending::written},
       true},
      {Existing::replace,
       {Ending::written, Ending::written, Ending::failed, Ending::failed, Ending::written},
       false},
  };
  for (const auto& row : rows) {
    prepare(names, {.folder = folder.file("out"), .existing = row.existing}, 3);
    run();
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(ends[i], row.ends[i]) << i << reasons[i];
    EXPECT_EQ(contentsOf(folder.file("out/b-denoised.png")) == "precious", row.keepsPrecious);
    EXPECT_DOUBLE_EQ(batch->progress(), 1.0);
  }
  EXPECT_THAT(reasons[3], HasSubstr("two pictures would be written to"));
  EXPECT_TRUE(fs::exists(folder.file("out/a-denoised 2.png")));
  EXPECT_TRUE(fs::exists(folder.file("out/a-denoised 3.png")));
}

TEST_F(BatchTest, APhotoIsNeverReplacedByTheResultOfAnother) {
  photoIn("a.png");
  photoIn("a-denoised.png");
  prepare({"a.png", "a-denoised.png"}, {.existing = Existing::replace}, 2);
  run();
  EXPECT_THAT(reasons[0], HasSubstr("an input is never replaced"));
  EXPECT_EQ(ends[1], Ending::written);
}

TEST_F(BatchTest, AsManyAtOnceAsMemoryAllows) {
  const std::vector<std::string> names{"a.png", "b.png", "c.png", "d.png"};
  for (const std::string& name : names) photoIn(name);
  for (const auto& [memory, most] : {std::pair<std::int64_t, int>{1 << 30, 3}, {1, 1}}) {
    engine.isOpen = false;
    engine.most = 0;
    prepare(names, {.existing = Existing::replace}, 3, memory);
    run([this, most = most] {
      engine.waitFor(most);
      EXPECT_LE(batch->progress(), 0.75);
      EXPECT_FALSE(batch->underWay().empty());
      engine.open();
    });
    EXPECT_EQ(engine.most, most);
    EXPECT_THAT(ends, testing::SizeIs(4));
  }
}

TEST_F(BatchTest, WhilePausedNoPhotoBegins) {
  for (const char* name : {"a.png", "b.png", "c.png"}) photoIn(name);
  engine.isOpen = false;
  prepare({"a.png", "b.png", "c.png"}, {}, 1);
  run([this] {
    engine.waitFor(1);
    batch->setPaused(true);
    engine.open();
    engine.waitUntil([this] { return ends.size() == 1; });
    EXPECT_EQ(engine.inside, 0);
    batch->setPaused(false);
  });
  EXPECT_THAT(ends, testing::SizeIs(3));
}

TEST_F(BatchTest, ACancelledBatchLeavesNoFileOfThoseUnderWay) {
  for (const char* name : {"a.png", "b.png", "c.png"}) photoIn(name);
  engine.isOpen = false;
  prepare({"a.png", "b.png", "c.png"}, {.folder = folder.file("out")}, 2);
  run([this] {
    engine.waitFor(2);
    control.cancel();
    engine.changed.notify_all();
    engine.waitFor(0);
  });
  EXPECT_THAT(
      ends, ElementsAre(testing::Pair(0, Ending::cancelled), testing::Pair(1, Ending::cancelled)));
  EXPECT_TRUE(fs::is_empty(folder.path() / "out"));
}

}  // namespace
}  // namespace velmara
