// What is dragged over the window, and what is dropped on it.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QMouseEvent>
#include <QSysInfo>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "preview/drop/dragging_view.h"
#include "preview/drop/drop_drawing.h"
#include "preview/drop/dropped_files.h"
#include "preview/views/tiled_view.h"
#include "support/scratch_folder.h"
#include "widgets/image_provider.h"
#include "widgets/style.h"

namespace velmara {
namespace {

using Strings = std::vector<std::string>;

TEST(DroppedFilesTest, AUriListGivesPathsInTheirOwnBytes) {
  const std::string host = QSysInfo::machineHostName().toStdString();
  const struct {
    std::string list;
    Strings paths;
  } rows[] = {{"", {}},
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
              {"file:///a%00b.jpg", {""}},
              {"file:relative.jpg", {""}},
              {"file://host", {""}},
              {"file:", {""}},
              {"fil", {""}}};
  for (const auto& row : rows) EXPECT_EQ(pathsOfUriList(row.list), row.paths) << row.list;
}

class RecordingDelegate final : public DropDelegate {
 public:
  void photoDraggedWithPath(const std::string& path) override {
    calls.push_back(path);
    if (whenDropped) whenDropped();
  }
  void mouseDown(QMouseEvent&) override { calls.emplace_back("down"); }
  void mouseDragged(QMouseEvent&) override { calls.emplace_back("dragged"); }
  void mouseUp(QMouseEvent&) override { calls.emplace_back("up"); }

  Strings calls;
  std::function<void()> whenDropped;
};

class DropViewsTest : public testing::Test {
 protected:
  DropViewsTest() {
    QImage picture(4, 3, QImage::Format_RGB32);
    picture.fill(Qt::red);
    picture.save(QString::fromStdString(file("plain.png")));
    // By its contents, and by a name that is no text in any encoding.
    std::filesystem::copy_file(file("plain.png"), file("camera"));
    std::filesystem::copy_file(file("plain.png"), file("odd \xff.png"));
    testing_support::writeFile(file("notes.txt"), "words");
    std::filesystem::create_directory(file("folder"));
    for (FileDraggingView* view : views()) {
      view->resize(400, 300);
      view->setDelegate(&delegate);
    }
  }

  std::string file(const std::string& name) const { return folder.file(name); }
  std::vector<FileDraggingView*> views() { return {&plain, &ringing}; }

  std::unique_ptr<QMimeData> dragOf(const Strings& names) const {
    QByteArray list;
    for (const std::string& name : names) {
      const bool isAddress = name.find("://") != std::string::npos;
      const QByteArray path = QByteArray::fromStdString(file(name)).toPercentEncoding("/");
      list += (isAddress ? QByteArray::fromStdString(name) : "file://" + path) + "\r\n";
    }
    auto data = std::make_unique<QMimeData>();
    data->setData(QStringLiteral("text/uri-list"), list);
    return data;
  }

  static Qt::DropAction enter(QWidget& view, const QMimeData& data,
                              Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction) {
    QDragEnterEvent event({10, 10}, actions, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &event);
    QDragMoveEvent move({20, 20}, actions, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &move);
    EXPECT_EQ(move.isAccepted(), event.isAccepted());
    return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
  }
  /// A drop follows upon an accepted drag; what is dropped may be something else by then.
  void drop(QWidget& view, const QMimeData& data) const {
    enter(view, *dragOf({"plain.png"}));
    QDropEvent event({20, 20}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &event);
    EXPECT_TRUE(event.isAccepted());
    EXPECT_NE(event.dropAction(), Qt::MoveAction);
  }

  const testing_support::ScratchFolder folder;
  RecordingDelegate delegate;
  FileDraggingView plain;
  DraggingView ringing;
};

TEST_F(DropViewsTest, OnlyImagesMayEnter) {
  const struct {
    Strings files;
    bool isAccepted;
  } rows[] = {{{"plain.png"}, true},
              {{"camera", "odd \xff.png", "plain.png"}, true},
              {{}, true},
              {{"plain.png", "notes.txt"}, false},
              {{"folder"}, false},
              {{"notes.txt", "plain.png"}, false},
              {{"missing.png"}, false},
              {{"plain.png", "sftp://host/a.png"}, false}};
  for (const auto& row : rows) {
    const auto data = dragOf(row.files);
    const std::string what = row.files.empty() ? "nothing" : row.files.front();
    for (FileDraggingView* view : views()) {
      view->setHighlighted(!row.isAccepted);  // A refused drag takes an earlier ring away.
      EXPECT_TRUE(view->acceptDrops());
      EXPECT_EQ(enter(*view, *data) != Qt::IgnoreAction, row.isAccepted) << what;
      EXPECT_EQ(view->isHighlighted(), row.isAccepted && view == &ringing) << what;
    }
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(&ringing, &leave);
    EXPECT_FALSE(ringing.isHighlighted());
  }
  // The program that the files come from may remove what was moved.
  const auto data = dragOf({"plain.png"});
  EXPECT_EQ(enter(plain, *data, Qt::MoveAction | Qt::LinkAction | Qt::CopyAction), Qt::CopyAction);
  EXPECT_EQ(enter(plain, *data, Qt::MoveAction | Qt::LinkAction), Qt::LinkAction);
}

TEST_F(DropViewsTest, ImagesReachTheDelegateInOrderAfterTheDrop) {
  QMimeData text;  // Which is no list of files, whatever it says.
  text.setText(QStringLiteral("file:///a.jpg"));
  const auto files = dragOf({"plain.png", "notes.txt", "odd \xff.png", "folder", "camera"});
  for (FileDraggingView* view : views()) {
    delegate.calls.clear();
    for (const QMimeData* data : {&text, std::as_const(files).get()}) {
      view->setHighlighted(true);
      drop(*view, *data);
      EXPECT_FALSE(view->isHighlighted());
      EXPECT_TRUE(delegate.calls.empty());
      QCoreApplication::processEvents();
    }
    EXPECT_EQ(delegate.calls, (Strings{file("plain.png"), file("odd \xff.png"), file("camera")}));
  }
}

TEST_F(DropViewsTest, TheDelegateOrTheViewMayGoMeanwhile) {
  auto brief = std::make_unique<FileDraggingView>();
  brief->setDelegate(&delegate);
  const std::function<void()> ends[] = {[&] { plain.setDelegate(nullptr); },
                                        [&] { brief.reset(); }};
  for (FileDraggingView* view : {&plain, brief.get()}) {
    delegate.calls.clear();
    delegate.whenDropped = ends[view == &plain ? 0 : 1];
    drop(*view, *dragOf({"plain.png", "camera"}));
    QCoreApplication::processEvents();
    EXPECT_EQ(delegate.calls, Strings{file("plain.png")});
  }
  drop(plain, *dragOf({"plain.png"}));  // Has no delegate.
  QCoreApplication::processEvents();
}

TEST_F(DropViewsTest, ForwardsSingleClicksAndEveryDrag) {
  // What happens (down, up, Double click, move), when, and at which x.
  const std::pair<const char*, Strings> rows[] = {
      {"d0@10 u50@10", {"down", "up"}},
      // The toolkit sends the third press of a row as a plain one.
      {"d0@10 u50@10 D100@10 u150@10 d200@10 u250@10", {"down", "up"}},
      {"d0@10 u50@10 d5000@10 u5050@10", {"down", "up", "down", "up"}},
      {"d0@10 u50@10 d100@200 u150@200", {"down", "up", "down", "up"}},
      {"d0@10 m40@30 u50@10", {"down", "dragged", "up"}},
      {"d0@10 u50@10 D100@10 m120@30 u150@10", {"down", "up", "dragged"}}};
  quint64 start = 0;
  for (const auto& [steps, calls] : rows) {
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
      delegate.calls.clear();
      start += 100'000;
      std::istringstream words(steps);
      for (std::string step; words >> step;) {
        const std::map<char, QEvent::Type> types{{'d', QEvent::MouseButtonPress},
                                                 {'u', QEvent::MouseButtonRelease},
                                                 {'D', QEvent::MouseButtonDblClick},
                                                 {'m', QEvent::MouseMove}};
        const QPointF where(std::stoi(step.substr(step.find('@') + 1)), 10);
        QMouseEvent event(types.at(step[0]), where, where, step[0] == 'm' ? Qt::NoButton : button,
                          step[0] == 'u' ? Qt::NoButton : button, Qt::NoModifier);
        event.setTimestamp(start + std::stoul(step.substr(1)));
        QCoreApplication::sendEvent(&ringing, &event);
      }
      EXPECT_EQ(delegate.calls, button == Qt::LeftButton ? calls : Strings()) << steps;
    }
  }
}

QImage picture(QWidget& view) {
  QImage image(view.size(), QImage::Format_RGB32);
  image.fill(style::kSurround);
  view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
  return image;
}

int darkPixels(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += qGray(image.pixel(x, y)) < 90 ? 1 : 0;
  }
  return count;
}

// First and last row of each run of rows with dark pixels.
std::vector<QPoint> darkLines(const QImage& image) {
  std::vector<QPoint> lines;
  for (int y = 0; y < image.height(); ++y) {
    if (darkPixels(image.copy(0, y, image.width(), 1)) == 0) continue;
    if (lines.empty() || lines.back().y() < y - 1) lines.emplace_back(y, y);
    lines.back().setY(y);
  }
  return lines;
}

// Over a photo nothing is drawn but the ring; a window without one invites in its middle.
TEST_F(DropViewsTest, DrawsTheRingInsideTheViewAndTheInvitationInItsMiddle) {
  for (FileDraggingView* view : views()) {
    const QImage without = picture(*view);
    view->setHighlighted(true);
    const QImage with = picture(*view);
    for (const QPoint edge :
         {QPoint(0, 150), {5, 150}, {399, 150}, {394, 150}, {200, 0}, {200, 299}}) {
      EXPECT_NE(without.pixelColor(edge), style::kFocusRing);
      EXPECT_EQ(with.pixelColor(edge), style::kFocusRing) << edge.x() << " " << edge.y();
    }
    EXPECT_EQ(with.copy(8, 8, 384, 284), without.copy(8, 8, 384, 284));
    view->setHighlighted(false);
  }
  EXPECT_EQ(defaultLineWidth(), 6.0);
  ringing.resize(900, 600);
  const QImage image = picture(ringing);
  EXPECT_GT(darkPixels(image.copy(250, 150, 400, 300)), 300);
  EXPECT_EQ(darkPixels(image.copy(0, 0, 900, 150)) + darkPixels(image.copy(0, 450, 900, 150)), 0);
  // The icon, the words and the shortcut stand apart, one below the other, on a card.
  const std::vector<QPoint> lines = darkLines(image);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_GT(lines[1].x() - lines[0].y(), 12);
  EXPECT_GT(lines[2].x() - lines[1].y(), 12);
  EXPECT_NE(image.pixelColor(450, lines[0].x() - 15), image.pixelColor(450, 150));
  ringing.setLiesOverPhoto(true);
  EXPECT_EQ(darkPixels(picture(ringing)), 0);
  ringing.setLiesOverPhoto(false);
  ringing.resize(90, 60);
  EXPECT_EQ(darkPixels(picture(ringing)), 0);
}

TEST(TiledViewTest, RepeatsItsPicture) {
  TiledView view(nullptr, bundleImages());
  view.setImageName(QStringLiteral("footer_bg_mid"));
  const QImage tile = bundleImages().imageNamed(QStringLiteral("footer_bg_mid"), 1.0).toImage();
  ASSERT_FALSE(tile.isNull());
  view.resize(2 * tile.width(), 2 * tile.height());
  const QImage shown = picture(view);
  for (const QPoint at : {QPoint(), QPoint(tile.width(), tile.height())}) {
    EXPECT_EQ(shown.copy(QRect(at, tile.size())), tile.convertToFormat(shown.format()));
  }
}

}  // namespace
}  // namespace velmara
