#include "preview/shown_photo.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/alpha.h"
#include "imaging/picture_files.h"
#include "session/whole_photo.h"

namespace velmara {
namespace {

using testing_support::convert;
using testing_support::runTool;
using testing_support::ScratchFolder;

// The pixels shown stand in for the file's in an export only where they are the same.
TEST(ShownPhotoTest, IsTheStoredPictureWhereNothingWasDoneToIt) {
  struct Case {
    const char* name;
    std::vector<std::string> options;
    bool isAsStored;
    int orientation = 0;
  };
  const Case cases[] = {
      {"plain.jpg", {}, true},
      {"plain.png", {}, true},
      {"upright.jpg", {}, true, 1},
      {"turned.jpg", {}, false, 6},
      {"mirrored.jpg", {}, false, 2},
      {"deep.png", {"-depth", "16", "-evaluate", "Multiply", "0.93"}, true},
      {"gray.jpg", {"-colorspace", "Gray", "-type", "Grayscale"}, false},
      {"clear.png", {"-alpha", "set", "-channel", "A", "-evaluate", "set", "50%"}, false},
      {"pages.tif", {"(", "-clone", "0", "-resize", "200%", ")"}, false},
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
    const PhotoFile photo = PhotoFile::initWithFileUrl(path);
    const ShownPhoto shown = loadShownPhoto(photo);
    ASSERT_TRUE(shown.picture.isValid());
    EXPECT_EQ(shown.asStored.isValid(), c.isAsStored);
    if (!shown.asStored.isValid()) continue;
    EXPECT_EQ(shown.asStored.bitmap().bytes().data(), shown.picture.picture().bytes().data());
    const auto read = loadWholePhoto(photo);
    ASSERT_TRUE(read);
    const Bitmap canvas = asRgba(shown.asStored.bitmap());
    EXPECT_TRUE(std::ranges::equal(canvas.bytes(), read->bitmap().bytes()));
    EXPECT_EQ(shown.asStored.profile(), read->profile());
  }
  EXPECT_FALSE(loadShownPhoto(PhotoFile::initWithFileUrl(folder.file("no.jpg"))).picture.isValid());
}

}  // namespace
}  // namespace velmara
