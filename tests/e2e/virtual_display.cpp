#include "e2e/virtual_display.h"

#include <QFile>
#include <QtEndian>

#include <cstdint>
#include <cstdlib>
#include <sstream>

#include "support/run_program.h"

namespace velmara::e2e {
namespace {

using testing_support::hasTool;

// The fields of an XWD file's header that are needed here, by their place.
enum XwdField : std::size_t {
  kHeaderSize = 0,
  kWidth = 4,
  kHeight = 5,
  kBitsPerPixel = 11,
  kBytesPerLine = 12,
  kColors = 19,
};
constexpr qsizetype kXwdColorBytes = 12;

std::uint32_t fieldOf(const uchar* dump, XwdField field) {
  return qFromBigEndian<std::uint32_t>(dump + field * sizeof(std::uint32_t));
}

std::string number(int value) {
  return std::to_string(value);
}

}  // namespace

bool canMakeDisplay() {
  return hasTool("Xvfb") && hasTool("openbox") && hasTool("xdotool") && hasTool("xprop");
}

VirtualDisplay::VirtualDisplay(const QSize& size) {
  // Two servers that are started at the same moment find the same number free, and one of them
  // ends.
  for (int tries = 0; tries < 3 && !isReady_; ++tries) {
    isReady_ = startServer(size) && startWindowManager();
  }
}

// The server finds a free number itself and says it on its output.
bool VirtualDisplay::startServer(const QSize& size) {
  windowManager_.reset();
  const std::string output = folder_.file("server.log");
  testing_support::writeFile(output, "");
  server_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0",
                               number(size.width()) + "x" + number(size.height()) + "x24", "-fbdir",
                               folder_.path().string(), "-nolisten", "tcp", "-nocursor",
                               "-noreset"},
      std::vector<std::pair<std::string, std::string>>{}, output);
  // Where other servers run it complains, number by number, until one is free.
  const auto saidName = [&] {
    std::istringstream said(testing_support::contentsOf(output));
    for (std::string line; std::getline(said, line) && !said.eof();) {
      if (!line.empty() && line.find_first_not_of("0123456789") == std::string::npos) {
        name_ = ":" + line;
        return true;
      }
    }
    return false;
  };
  return waitUntil([&] { return saidName() || !server_->isRunning(); }) && saidName();
}

bool VirtualDisplay::startWindowManager() {
  windowManager_ =
      std::make_unique<ChildProcess>(std::vector<std::string>{"openbox", "--sm-disable"},
                                     std::vector<std::pair<std::string, std::string>>{
                                         {"DISPLAY", name_}, {"HOME", folder_.path().string()}},
                                     folder_.file("openbox.log"));
  const auto isManaged = [this] {
    return ask({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}).find("window id") !=
           std::string::npos;
  };
  return waitUntil([&] { return isManaged() || !windowManager_->isRunning(); }) && isManaged();
}

QImage VirtualDisplay::screen(const QRect& place) const {
  QFile file(QString::fromStdString(folder_.file("Xvfb_screen0")));
  if (!file.open(QIODevice::ReadOnly)) return {};
  const uchar* dump = file.map(0, file.size());
  if (dump == nullptr || fieldOf(dump, kBitsPerPixel) != 32) return {};
  const qsizetype rowBytes = fieldOf(dump, kBytesPerLine);
  const qsizetype start = fieldOf(dump, kHeaderSize) + fieldOf(dump, kColors) * kXwdColorBytes;
  const auto height = static_cast<int>(fieldOf(dump, kHeight));
  if (file.size() < start + rowBytes * height) return {};
  const QImage whole(dump + start, static_cast<int>(fieldOf(dump, kWidth)), height, rowBytes,
                     QImage::Format_RGB32);
  return whole.copy(place);
}

std::string VirtualDisplay::ask(const std::vector<std::string>& words) const {
  ::setenv("DISPLAY", name_.c_str(), 1);  // The test itself does not look at it.
  return testing_support::runProgram(words).output;
}

void VirtualDisplay::moveTo(const QPoint& place) const {
  ask({"xdotool", "mousemove", number(place.x()), number(place.y())});
}

void VirtualDisplay::dragTo(const QPoint& from, const QPoint& to, int steps) const {
  moveTo(from);
  ask({"xdotool", "mousedown", "1"});
  for (int step = 1; step <= steps; ++step) moveTo(from + (to - from) * step / steps);
}

void VirtualDisplay::keys(const std::vector<std::string>& keys) const {
  std::vector<std::string> words{"xdotool", "key"};
  words.insert(words.end(), keys.begin(), keys.end());
  ask(words);
}

void VirtualDisplay::type(const std::string& text) const {
  ask({"xdotool", "type", "--delay", "4", "--", text});
}

std::string VirtualDisplay::activeWindow() const {
  std::string number = ask({"xdotool", "getactivewindow"});
  if (number.ends_with('\n')) number.pop_back();
  return number;
}

bool VirtualDisplay::waitForActive(const std::string& title, bool isActive) const {
  return waitUntil([&] {
    const std::string active = ask({"xdotool", "getactivewindow", "getwindowname"});
    return (active.find(title) != std::string::npos) == isActive;
  });
}

}  // namespace velmara::e2e
