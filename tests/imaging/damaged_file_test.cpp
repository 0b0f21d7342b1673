#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

#include "imaging/image_reader.h"
#include "imaging/metadata.h"
#include "imaging/picture_files.h"
#include "imaging/picture_set.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using namespace testing_support;

// Files made by hand, whose headers claim more than there is.
std::string pngOf(std::uint32_t width, std::uint32_t height) {
  // Neither a checksum nor a sample is needed to be believed at the open.
  const std::string header =
      "IHDR" + bigEndian(width, 4) + bigEndian(height, 4) + std::string("\x08\x02\0\0\0", 5);
  std::uint32_t crc = 0xffffffffU;
  for (const char c : header) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1U ^ ((crc & 1U) != 0 ? 0xedb88320U : 0U);
  }
  return "\x89PNG\r\n\x1a\n" + bigEndian(13, 4) + header + bigEndian(~crc, 4) +
         std::string("\0\0\0\0IDAT\x35\xaf\x06\x1e\0\0\0\0IEND\xae\x42\x60\x82", 24);
}

std::string bmpOf(std::uint32_t width, std::uint32_t height) {
  return "BM" + littleEndian(1000, 4) + littleEndian(0, 4) + littleEndian(54, 4) +
         littleEndian(40, 4) + littleEndian(width, 4) + littleEndian(height, 4) +
         littleEndian(1, 2) + littleEndian(24, 2) + std::string(24, '\0') + std::string(946, 'x');
}

std::string tiffOf(std::uint32_t width, std::uint32_t height) {
  std::string directory = littleEndian(9, 2);
  const std::uint32_t entries[][3] = {{256, 4, width}, {257, 4, height}, {258, 3, 8},
                                      {259, 3, 1},     {262, 3, 1},      {273, 4, 200},
                                      {277, 3, 1},     {278, 4, height}, {279, 4, 1000}};
  for (const auto& [tag, type, value] : entries) {
    directory +=
        littleEndian(tag, 2) + littleEndian(type, 2) + littleEndian(1, 4) + littleEndian(value, 4);
  }
  return std::string("II*\0", 4) + littleEndian(8, 4) + directory + std::string(1200, '\0');
}

std::string gifOf(std::uint32_t width, std::uint32_t height) {
  return "GIF89a" + littleEndian(width, 2) + littleEndian(height, 2) +
         std::string("\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0", 14) + littleEndian(width, 2) +
         littleEndian(height, 2) + std::string("\0\x02\x02\x4c\x01\0;", 7);
}

std::string pnmOf(std::uint32_t width, std::uint32_t height) {
  return "P6 " + std::to_string(width) + " " + std::to_string(height) + " 255\n" +
         std::string(300, 'x');
}

TEST(LyingFileTest, SizesAreCheckedBeforeAnythingIsAllocated) {
  const ScratchFolder folder;
  const std::string file = folder.file("lie");
  testing::internal::CaptureStderr();
  for (const auto& contents : {pngOf(2'000'000, 2'000'000), tiffOf(2'000'000, 2'000'000),
                               gifOf(65535, 65535), pnmOf(2'000'000, 2'000'000)}) {
    writeFile(file, contents);
    const auto image = readImage(file);
    ASSERT_FALSE(image);
    EXPECT_THAT(image.error(), HasSubstr("too large"));
    EXPECT_FALSE(readRepresentationSizes(file));
    EXPECT_EQ(readMetadata(file), std::nullopt);
  }
  // Sizes that are allowed, of pictures that are not there.
  for (const auto& contents :
       {pngOf(23000, 23000), tiffOf(23000, 23000), bmpOf(9000, 9000), bmpOf(2'000'000, 2'000'000),
        gifOf(23000, 23000), pnmOf(23000, 23000), pngOf(0, 0), tiffOf(0, 0), bmpOf(0, 0),
        gifOf(0, 0), pnmOf(0, 0), pngOf(0x7fffffff, 1), pnmOf(0xffffffff, 0xffffffff)}) {
    writeFile(file, contents);
    EXPECT_FALSE(readImage(file)) << contents.substr(0, 40);
  }
  EXPECT_THAT(testing::internal::GetCapturedStderr(), IsEmpty());
}

TEST(LyingFileTest, AJpegThatClaimsMoreRowsThanItHasIsRefused) {
  const ScratchFolder folder;
  for (const char* interlace : {"none", "JPEG"}) {
    std::string bytes = contentsOf(pictureIn(folder, {"", "a.jpg", {"-interlace", interlace}}));
    const std::size_t frame =
        bytes.find(std::string(interlace) == "none" ? "\xff\xc0" : "\xff\xc2");
    ASSERT_NE(frame, std::string::npos);
    for (const std::uint32_t side : {200U, 23000U}) {
      bytes.replace(frame + 5, 4, bigEndian(side, 2) + bigEndian(side, 2));
      writeFile(folder.file("lie.jpg"), bytes);
      const auto image = readImage(folder.file("lie.jpg"));
      ASSERT_FALSE(image) << interlace << side;
      EXPECT_THAT(image.error(), HasSubstr("damaged or cut short"));
    }
  }
}

TEST(LyingFileTest, HarmlessFaultsAreForgiven) {
  const ScratchFolder folder;
  const std::string whole = contentsOf(pictureIn(folder, {"", "a.jpg", {}}));
  const std::size_t scan = whole.find("\xff\xda");
  std::string stuffed = whole;
  stuffed.insert(scan, 3, '\0');
  std::string halved = stuffed;
  halved.resize(scan + 3 + (whole.size() - scan) / 2);
  halved += "\xff\xd9";
  const auto isRead = [&](const std::string& bytes) {
    writeFile(folder.file("b.jpg"), bytes);
    return readImage(folder.file("b.jpg")).ok();
  };
  EXPECT_TRUE(isRead(stuffed));
  EXPECT_TRUE(isRead(whole + std::string(5000, 'x')));
  EXPECT_FALSE(isRead(halved));
  EXPECT_TRUE(isRead("P4\t16\t2\nabcd")) << "not a byte too few";
  EXPECT_FALSE(isRead("P4 16 2\nabc"));
  EXPECT_TRUE(isRead("P5 1 1 65535 ab"));
  EXPECT_FALSE(isRead("P5 1 1 65536 abc"));
  ASSERT_TRUE(convert({"-size", "700x300", "xc:red"}, folder.file("wide.gif")));
  EXPECT_TRUE(readImage(folder.file("wide.gif"))) << "not a pixel too few";
  // A TIFF whose pages go round, the second one with its width in a byte.
  std::string round = tiffOf(40, 20);
  std::string second = tiffOf(30, 10).substr(8, 2 + 9 * 12) + littleEndian(8, 4);
  second.replace(2 + 2, 2, littleEndian(1, 2));
  round.replace(8 + 2 + 9 * 12, 4, littleEndian(round.size(), 4));
  round += second;
  writeFile(folder.file("round.tif"), round);
  EXPECT_THAT(readRepresentationSizes(folder.file("round.tif")).value(),
              testing::ElementsAre(RepresentationSize{40, 20}, RepresentationSize{30, 10}));
}

TEST(RefusedFileTest, SaysWhatIsWrong) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder.path() / "folder");
  ::mkfifo(folder.file("pipe").c_str(), 0600);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  folder.file("socket").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  writeFile(folder.file("empty.jpg"), "");
  writeFile(folder.file("text.jpg"), "not a picture");
  writeFile(folder.file("drawing.svg"), "<svg xmlns='http://www.w3.org/2000/svg'/>");
  writeFile(folder.file("page.pdf"), "%PDF-1.4\n");
  writeFile(folder.file("script.mvg"), "push graphic-context\n");
  std::filesystem::create_symlink("nowhere", folder.path() / "dangling");
  std::filesystem::create_symlink("looping", folder.path() / "looping");

  const char* const kNone = "not a picture of a kind that can be read";
  const std::pair<std::string, std::string> refusals[] = {
      {"folder", "it is a folder"}, {"pipe", "it is a pipe"},
      {"socket", "it is a socket"}, {"missing", "No such file"},
      {"dangling", "No such file"}, {"looping", "cannot open the file"},
      {"text.jpg", kNone},          {"empty.jpg", "the file is empty"},
      {"drawing.svg", kNone},       {"page.pdf", kNone},
      {"script.mvg", kNone}};
  for (const auto& [name, message] : refusals) {
    const auto image = readImage(folder.file(name));
    ASSERT_FALSE(image) << name;
    EXPECT_THAT(image.error(), HasSubstr(message));
    EXPECT_EQ(readMetadata(folder.file(name)), std::nullopt);
    EXPECT_FALSE(readRepresentationSizes(folder.file(name)));
  }
  ::close(socket);
  EXPECT_THAT(readImage("/dev/zero").error(), HasSubstr("no ordinary file"));
}

TEST(RefusedFileTest, AFileWithoutPermissionIsRefused) {
  const ScratchFolder folder;
  writeFile(folder.file("mine"), pngOf(1, 1));
  ::chmod(folder.file("mine").c_str(), 0);
  ::chmod(folder.path().c_str(), 0755);
  // Root reads everything, so it is nobody meanwhile; for others this changes nothing.
  const ::uid_t self = ::geteuid();
  ASSERT_EQ(::seteuid(self == 0 ? 65534 : self), 0);
  const auto image = readImage(folder.file("mine"));
  ASSERT_EQ(::seteuid(self), 0);
  ASSERT_FALSE(image);
  EXPECT_THAT(image.error(), HasSubstr("Permission denied"));
}

TEST(RefusedFileTest, ACamerasMosaicIsNotShownAsAPicture) {
  const ScratchFolder folder;
  // A mosaic at the top, and one below a thumbnail at the top.
  std::string mosaic = tiffOf(40, 20);
  const std::size_t photometric = mosaic.find(littleEndian(262, 2) + littleEndian(3, 2));
  mosaic.replace(photometric + 8, 4, littleEndian(32803, 4));
  writeFile(folder.file("mosaic.tif"), mosaic);

  std::string nested = tiffOf(40, 20);
  const std::size_t rows = nested.find(littleEndian(278, 2) + littleEndian(4, 2));
  nested.replace(rows, 2, littleEndian(330, 2));
  nested.replace(rows + 8, 4, littleEndian(nested.size(), 4));
  nested += mosaic.substr(8, 2 + 9 * 12 + 4);
  writeFile(folder.file("nested.tif"), nested);

  writeFile(folder.file("head.cr2"),
            std::string("II*\0\x10\0\0\0CR\x02\0", 12) + std::string(100, '\0'));
  for (const char* name : {"mosaic.tif", "nested.tif", "head.cr2"}) {
    const auto image = readImage(folder.file(name));
    ASSERT_FALSE(image) << name;
    EXPECT_THAT(image.error(), HasSubstr("RAW file is damaged or"));
  }
}

}  // namespace
}  // namespace velmara
