#include "e2e/virtual_display.h"

#include <QFile>
#include <QtEndian>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <poll.h>
#include <unistd.h>
#include <utility>

#include "support/run_program.h"
#include "support/tools.h"

namespace velmara::e2e {
namespace {

using testing_support::hasTool;
using testing_support::runProgram;

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

std::string readLine(int fd) {
  std::string line;
  pollfd waiting{fd, POLLIN, 0};
  char letter = 0;
  constexpr int kMilliseconds = 30'000;
  while (::poll(&waiting, 1, kMilliseconds) > 0 && ::read(fd, &letter, 1) == 1 && letter != '\n') {
    line += letter;
  }
  return line;
}

std::string number(int value) {
  return std::to_string(value);
}

}  // namespace

bool canMakeDisplay() {
  return hasTool("Xvfb") && hasTool("openbox") && hasTool("xdotool") && hasTool("xprop");
}

VirtualDisplay::VirtualDisplay(const QSize& size) {
  isReady_ = startServer(size) && startWindowManager();
}

bool VirtualDisplay::startServer(const QSize& size) {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) return false;
  const std::string screen = number(size.width()) + "x" + number(size.height()) + "x24";
  server_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"Xvfb", "-displayfd", number(ends[1]), "-screen", "0", screen,
                               "-fbdir", folder_.path().string(), "-nolisten", "tcp", "-nocursor",
                               "-noreset"},
      Environment{}, folder_.file("server.log"), ends[1]);
  ::close(ends[1]);
  name_ = ":" + readLine(ends[0]);
  ::close(ends[0]);
  return name_.size() > 1;
}

bool VirtualDisplay::startWindowManager() {
  windowManager_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"openbox", "--sm-disable"},
      Environment{{"DISPLAY", name_}, {"HOME", folder_.path().string()}},
      folder_.file("openbox.log"));
  return waitUntil([this] {
    return ask({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}).find("window id") !=
           std::string::npos;
  });
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
  ::setenv("DISPLAY", name_.c_str(), 1);  // The test itself is offscreen and does not look at it.
  return runProgram(words).output;
}

void VirtualDisplay::moveTo(const QPoint& place) const {
  ask({"xdotool", "mousemove", number(place.x()), number(place.y())});
}

void VirtualDisplay::press(int button) const {
  ask({"xdotool", "mousedown", number(button)});
}

void VirtualDisplay::release(int button) const {
  ask({"xdotool", "mouseup", number(button)});
}

void VirtualDisplay::click(const QPoint& place, int button) const {
  moveTo(place);
  ask({"xdotool", "click", number(button)});
}

void VirtualDisplay::clickAll(const std::vector<QPoint>& places) const {
  std::vector<std::string> words{"xdotool"};
  for (const QPoint& place : places) {
    words.insert(words.end(),
                 {"mousemove", number(place.x()), number(place.y()), "click", number(1)});
  }
  ask(words);
}

void VirtualDisplay::dragTo(const QPoint& from, const QPoint& to, int steps) const {
  moveTo(from);
  press();
  for (int step = 1; step <= steps; ++step) moveTo(from + (to - from) * step / steps);
}

void VirtualDisplay::turnWheel(int notches) const {
  constexpr int kWheelUp = 4;
  constexpr int kWheelDown = 5;
  ask({"xdotool", "click", "--repeat", number(std::abs(notches)),
       number(notches > 0 ? kWheelUp : kWheelDown)});
}

void VirtualDisplay::key(const std::string& keys) const {
  ask({"xdotool", "key", keys});
}

void VirtualDisplay::keys(const std::vector<std::string>& keys) const {
  std::vector<std::string> words{"xdotool", "key"};
  words.insert(words.end(), keys.begin(), keys.end());
  ask(words);
}

void VirtualDisplay::keyDown(const std::string& key) const {
  ask({"xdotool", "keydown", key});
}

void VirtualDisplay::keyUp(const std::string& key) const {
  ask({"xdotool", "keyup", key});
}

void VirtualDisplay::type(const std::string& text) const {
  ask({"xdotool", "type", "--delay", "4", "--", text});
}

std::string VirtualDisplay::activeWindow() const {
  std::string number = ask({"xdotool", "getactivewindow"});
  if (number.ends_with('\n')) number.pop_back();
  return number;
}

std::string VirtualDisplay::activeTitle() const {
  return ask({"xdotool", "getactivewindow", "getwindowname"});
}

bool VirtualDisplay::waitForActive(const std::string& title) const {
  return waitUntil([&] { return activeTitle().find(title) != std::string::npos; });
}

}  // namespace velmara::e2e
