// A window that offers URLs to whoever takes them: drag from it. Says what became of the drag.
#include <QApplication>
#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

#include <cstdio>
#include <utility>

namespace {

void say(const char* word) {
  std::puts(word);
  std::fflush(stdout);
}

class DragSource : public QLabel {
 public:
  explicit DragSource(QList<QUrl> urls) : QLabel(QStringLiteral("drag")), urls_(std::move(urls)) {
    setWindowFlags(Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
    setGeometry(0, 0, 60, 30);
  }

 protected:
  void mousePressEvent(QMouseEvent* /*event*/) override {}
  void mouseMoveEvent(QMouseEvent* event) override {
    if (!event->buttons().testFlag(Qt::LeftButton)) return;
    auto* offered = new QMimeData;
    offered->setUrls(urls_);
    // Not on the stack: the other side asks for the data after exec() has returned.
    auto* drag = new QDrag(this);
    drag->setMimeData(offered);
    connect(drag, &QDrag::actionChanged, this,
            [](Qt::DropAction action) { say(action == Qt::IgnoreAction ? "unwanted" : "wanted"); });
    say("dragging");
    say(drag->exec(Qt::CopyAction) == Qt::IgnoreAction ? "refused" : "taken");
  }

 private:
  QList<QUrl> urls_;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QList<QUrl> urls;
  const QStringList words = QApplication::arguments();
  for (const QString& url : words.mid(1)) urls.append(QUrl(url));
  DragSource source(urls);
  source.show();
  say("ready");
  return QApplication::exec();
}
