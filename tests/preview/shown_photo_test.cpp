#include "preview/shown_photo.h"

#include <gtest/gtest.h>

#include "imaging/picture_files.h"

namespace velmara {
namespace {

using testing_support::convert;
using testing_support::runTool;
using testing_support::ScratchFolder;

// A photo is decoded once: what is shown are its own pixels, unless something is done to them.
TEST(ShownPhotoTest, SharesThePixelsWhereNothingIsDoneToThem) {
  struct Case {
    const char* name;
    std::vector<std::string> options;
    bool shares;
    int orientation = 0;
  };
  const Case cases[] = {
      {"plain.jpg", {}, true},
      {"upright.jpg", {}, true, 1},
      {"turned.jpg", {}, false, 6},
      {"mirrored.jpg", {}, false, 2},
      {"gray.jpg", {"-colorspace", "Gray", "-type", "Grayscale"}, true},
      {"clear.png", {"-alpha", "set", "-channel", "A", "-evaluate", "set", "50%"}, false},
  };
  const ScratchFolder folder;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path = folder.file(c.name);
    std::vector<std::string> arguments{"-seed",  "5", "-size", "160x120",  "plasma:red-blue",
                                       "-depth", "8", "-type", "TrueColor"};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    ASSERT_TRUE(convert(arguments, path));
    if (c.orientation != 0) {
      ASSERT_TRUE(
          runTool({"exiftool", "-n", "-Orientation=" + std::to_string(c.orientation), path}).ok);
    }
    auto opened = openPhoto(path);
    ASSERT_TRUE(opened);
    const auto photo = loadPixels(*opened);
    ASSERT_TRUE(photo);
    const ShownPhoto shown = shownPhoto(*photo);
    ASSERT_TRUE(shown.picture.isValid());
    const Bitmap& picture = shown.picture.picture();
    EXPECT_EQ(picture.bytes().data() == photo->image.bitmap().bytes().data(), c.shares);
    EXPECT_EQ(picture.width(), c.orientation == 6 ? 120 : 160);
    EXPECT_EQ(picture.samplesPerPixel() % 2, 1) << "no alpha";
    EXPECT_EQ(shown.profile, photo->image.profile());
  }
}

}  // namespace
}  // namespace velmara
