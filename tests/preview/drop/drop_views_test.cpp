#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "preview/drop/dragging_view.h"
#include "preview/drop/drop_drawing.h"
#include "support/scratch_folder.h"
#include "widgets/style.h"

namespace velmara {
namespace {

using testing_support::ScratchFolder;
using testing_support::writeFile;
using Strings = std::vector<std::string>;

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
    writeFile(file("notes.txt"), "words");
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
      list += isAddress ? QByteArray::fromStdString(name) : "file://" + path;
      list += "\r\n";
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
  bool drop(QWidget& view, const QMimeData& data) const {
    enter(view, *dragOf({"plain.png"}));
    QDropEvent event({20, 20}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &event);
    EXPECT_NE(event.dropAction(), Qt::MoveAction);
    return event.isAccepted();
  }
  static void leave(QWidget& view) {
    QDragLeaveEvent event;
    QCoreApplication::sendEvent(&view, &event);
  }

  const ScratchFolder folder;
  RecordingDelegate delegate;
  FileDraggingView plain;
  DraggingView ringing;
};

TEST_F(DropViewsTest, OnlyImagesMayEnter) {
  struct Case {
    Strings files;
    bool accepted;
  };
  const Case cases[] = {
      {{"plain.png"}, true},
      {{"camera", "odd \xff.png", "plain.png"}, true},
      {{}, true},
      {{"plain.png", "notes.txt"}, false},
      {{"notes.txt", "plain.png"}, false},
      {{"folder"}, false},
      {{"missing.png"}, false},
      {{"https://example.org/a.png"}, false},
      {{"plain.png", "sftp://host/a.png"}, false},
  };
  for (const Case& c : cases) {
    const auto data = dragOf(c.files);
    const std::string what = c.files.empty() ? "nothing" : c.files.front();
    for (FileDraggingView* view : views()) {
      EXPECT_EQ(enter(*view, *data) != Qt::IgnoreAction, c.accepted) << what;
    }
    EXPECT_FALSE(plain.isHighlighted()) << what;
    EXPECT_EQ(ringing.isHighlighted(), c.accepted) << what;
    leave(ringing);
    EXPECT_FALSE(ringing.isHighlighted());
  }
}

TEST_F(DropViewsTest, ARefusedDragTakesAnEarlierRingAway) {
  for (FileDraggingView* view : views()) {
    view->setHighlighted(true);
    enter(*view, *dragOf({"notes.txt"}));
    EXPECT_FALSE(view->isHighlighted());
  }
}

TEST_F(DropViewsTest, WhatIsNoFileIsAcceptedAndComesToNothing) {
  QMimeData text;
  text.setText(QStringLiteral("words"));
  for (FileDraggingView* view : views()) {
    EXPECT_NE(enter(*view, text), Qt::IgnoreAction);
    EXPECT_FALSE(view->isHighlighted());
    view->setHighlighted(true);
    EXPECT_TRUE(drop(*view, text));
    EXPECT_FALSE(view->isHighlighted());
    QCoreApplication::processEvents();
  }
  EXPECT_TRUE(delegate.calls.empty());
}

// The program that the files come from may remove what was moved.
TEST_F(DropViewsTest, TakesACopyAndNeverAMoveWhereThereIsAChoice) {
  const auto data = dragOf({"plain.png"});
  EXPECT_EQ(enter(plain, *data, Qt::MoveAction | Qt::CopyAction), Qt::CopyAction);
  EXPECT_EQ(enter(plain, *data, Qt::MoveAction | Qt::LinkAction), Qt::LinkAction);
}

TEST_F(DropViewsTest, ImagesReachTheDelegateInOrderAfterTheDrop) {
  const auto data = dragOf({"plain.png", "notes.txt", "odd \xff.png", "folder", "camera"});
  for (FileDraggingView* view : views()) {
    delegate.calls.clear();
    view->setHighlighted(true);
    EXPECT_TRUE(drop(*view, *data));
    EXPECT_FALSE(view->isHighlighted());
    EXPECT_TRUE(delegate.calls.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(delegate.calls, (Strings{file("plain.png"), file("odd \xff.png"), file("camera")}));
  }
}

TEST_F(DropViewsTest, TheDelegateOrTheViewMayGoMeanwhile) {
  delegate.whenDropped = [&] { plain.setDelegate(nullptr); };
  drop(plain, *dragOf({"plain.png", "camera"}));
  QCoreApplication::processEvents();
  EXPECT_EQ(delegate.calls, Strings{file("plain.png")});

  delegate.calls.clear();
  auto view = std::make_unique<FileDraggingView>();
  view->setDelegate(&delegate);
  drop(*view, *dragOf({"plain.png", "camera"}));
  delegate.whenDropped = [&] { view.reset(); };
  QCoreApplication::processEvents();
  EXPECT_EQ(delegate.calls, Strings{file("plain.png")});
  drop(plain, *dragOf({"plain.png"}));  // Has no delegate.
  QCoreApplication::processEvents();
}

// A step is what happens (Down, up, Double click, move), when, and at which x.
struct MouseStep {
  char what;
  quint64 time;
  int x = 10;
  Qt::MouseButton button = Qt::LeftButton;
};

TEST_F(DropViewsTest, ForwardsSingleClicksAndEveryDrag) {
  struct Case {
    const char* name;
    std::vector<MouseStep> steps;
    Strings calls;
  };
  const MouseStep down{'d', 0}, up{'u', 50}, again{'D', 100}, upAgain{'u', 150};
  const Case cases[] = {
      {"single", {down, up}, {"down", "up"}},
      {"double", {down, up, again, upAgain}, {"down", "up"}},
      // The toolkit sends the third press of a row as a plain one.
      {"triple", {down, up, again, upAgain, {'d', 200}, {'u', 250}}, {"down", "up"}},
      {"two singles", {down, up, {'d', 5000}, {'u', 5050}}, {"down", "up", "down", "up"}},
      {"two places", {down, up, {'d', 100, 200}, {'u', 150, 200}}, {"down", "up", "down", "up"}},
      {"drag", {down, {'m', 40, 30}, up}, {"down", "dragged", "up"}},
      {"drag of a double click",
       {down, up, again, {'m', 120, 30}, upAgain},
       {"down", "up", "dragged"}},
      {"right", {{'d', 0, 10, Qt::RightButton}, {'u', 50, 10, Qt::RightButton}}, {}},
      {"hover", {{'m', 0, 10, Qt::NoButton}}, {}},
  };
  quint64 start = 100'000;
  for (const Case& c : cases) {
    delegate.calls.clear();
    for (const MouseStep& step : c.steps) {
      const QEvent::Type type = step.what == 'd'   ? QEvent::MouseButtonPress
                                : step.what == 'u' ? QEvent::MouseButtonRelease
                                : step.what == 'D' ? QEvent::MouseButtonDblClick
                                                   : QEvent::MouseMove;
      const QPointF where(step.x, 10);
      QMouseEvent event(type, where, where, step.what == 'm' ? Qt::NoButton : step.button,
                        step.what == 'u' ? Qt::NoButton : step.button, Qt::NoModifier);
      event.setTimestamp(start + step.time);
      QCoreApplication::sendEvent(&ringing, &event);
    }
    EXPECT_EQ(delegate.calls, c.calls) << c.name;
    start += 100'000;
  }
}

QImage picture(QWidget& view) {
  QImage image(view.size(), QImage::Format_RGB32);
  image.fill(style::kSurround);
  QPainter painter(&image);
  view.render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
  return image;
}

int darkPixels(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += qGray(image.pixel(x, y)) < 90 ? 1 : 0;
  }
  return count;
}

TEST_F(DropViewsTest, TheRingLiesInsideTheView) {
  for (FileDraggingView* view : views()) {
    view->resize(420, 320);
    const QImage without = picture(*view);
    view->setHighlighted(true);
    const QImage with = picture(*view);
    const QPoint edges[] = {{0, 160}, {5, 160}, {419, 160}, {414, 160}, {210, 0}, {210, 319}};
    for (const QPoint& edge : edges) {
      EXPECT_NE(without.pixelColor(edge), style::kFocusRing);
      EXPECT_EQ(with.pixelColor(edge), style::kFocusRing) << edge.x() << " " << edge.y();
    }
    EXPECT_EQ(with.copy(8, 8, 404, 304), without.copy(8, 8, 404, 304));
  }
  EXPECT_EQ(defaultLineWidth(), 6.0);
}

// Over a photo it draws nothing but the ring.
TEST_F(DropViewsTest, AnEmptyWindowInvitesInItsMiddle) {
  ringing.resize(900, 600);
  const QImage image = picture(ringing);
  EXPECT_GT(darkPixels(image.copy(250, 150, 400, 300)), 300);
  EXPECT_EQ(darkPixels(image.copy(0, 0, 900, 150)), 0);
  EXPECT_EQ(darkPixels(image.copy(0, 450, 900, 150)), 0);
  ringing.setLiesOverPhoto(true);
  EXPECT_EQ(darkPixels(picture(ringing)), 0);
  ringing.setLiesOverPhoto(false);
  ringing.resize(90, 60);
  EXPECT_EQ(darkPixels(picture(ringing)), 0);
}

}  // namespace
}  // namespace velmara
