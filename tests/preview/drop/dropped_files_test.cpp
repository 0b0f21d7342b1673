#include "preview/drop/dropped_files.h"

#include <gtest/gtest.h>

#include <QMimeData>
#include <QSysInfo>
#include <QUrl>

#include <string>
#include <vector>

namespace velmara {
namespace {

using Paths = std::vector<std::string>;

TEST(DroppedFilesTest, AUriListGivesPathsInTheirOwnBytes) {
  const std::string host = QSysInfo::machineHostName().toStdString();
  struct Case {
    std::string list;
    Paths paths;
  };
  const Case cases[] = {
      {"", {}},
      {"file:///a/b.jpg\r\n", {"/a/b.jpg"}},
      {"file:///b.jpg\nfile:///a.jpg", {"/b.jpg", "/a.jpg"}},
      {"# a comment\r\nfile:///a.jpg\r\n\r\n", {"/a.jpg"}},
      {"file:///a%20%C3%A4.jpg", {"/a \xc3\xa4.jpg"}},
      {"file:///%FF%fe.jpg", {"/\xff\xfe.jpg"}},
      {"file:/a.jpg", {"/a.jpg"}},
      {"FILE:///a.jpg", {"/a.jpg"}},
      {"file://localhost/a.jpg", {"/a.jpg"}},
      {"file://" + host + "/a.jpg", {"/a.jpg"}},
      {"file:///a%231%3f.jpg", {"/a#1?.jpg"}},
      // No files of this machine.
      {"file://elsewhere.invalid/a.jpg", {""}},
      {"http://example.org/a.jpg\r\nfile:///b.jpg", {"", "/b.jpg"}},
      {"sftp://host/a.jpg", {""}},
      {"file:///a%00b.jpg", {""}},
      {"file:relative.jpg", {""}},
      {"file://host", {""}},
      {"file:", {""}},
      {"fil", {""}},
  };
  for (const Case& c : cases) EXPECT_EQ(pathsOfUriList(c.list), c.paths) << c.list;
}

TEST(DroppedFilesTest, OnlyAListOfAddressesIsADragOfFiles) {
  QMimeData text;
  text.setText(QStringLiteral("file:///a.jpg"));
  EXPECT_FALSE(draggedFiles(text));
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile(QStringLiteral("/a b.jpg")),
                 QUrl(QStringLiteral("https://example.org/c.jpg"))});
  EXPECT_EQ(draggedFiles(files), (Paths{"/a b.jpg", ""}));
}

}  // namespace
}  // namespace velmara
