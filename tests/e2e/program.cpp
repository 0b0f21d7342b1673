#include "e2e/program.h"

#include <filesystem>
#include <sstream>
#include <sys/stat.h>

#include "platform/bundle.h"
#include "platform/log.h"

namespace velmara::e2e {
namespace {

// Qt's helper windows are a few pixels large.
constexpr int kSmallestMainWindow = 600;

// "X=12\nY=34\nWIDTH=...": what xdotool prints of a window.
int shellNumber(const std::string& text, const std::string& name) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(name + "=")) return std::stoi(line.substr(name.size() + 1));
  }
  return 0;
}

}  // namespace

Program::Program(const VirtualDisplay& display, int scale)
    : display_(display),
      scale_(scale),
      home_(folder_.file("home")),
      temporary_(folder_.file("tmp")) {
  for (const char* name : {"home", "tmp", "run"}) {
    std::filesystem::create_directory(folder_.file(name));
    ::chmod(folder_.file(name).c_str(), 0700);
  }
  start();
}

void Program::start() {
  const Environment environment{{"DISPLAY", display_.name()},
                                {"WAYLAND_DISPLAY", ""},
                                {"QT_QPA_PLATFORM", "xcb"},
                                {"QT_SCALE_FACTOR", std::to_string(scale_)},
                                {"HOME", home_},
                                {"XDG_CONFIG_HOME", home_ + "/.config"},
                                {"XDG_DATA_HOME", home_ + "/.local/share"},
                                {"XDG_CACHE_HOME", home_ + "/.cache"},
                                {"XDG_RUNTIME_DIR", folder_.file("run")},
                                {"TMPDIR", temporary_},
                                {"LC_ALL", "C.UTF-8"},
                                {"DBUS_SESSION_BUS_ADDRESS", "disabled:"}};
  process_ = std::make_unique<ChildProcess>(std::vector<std::string>{VELMARA_PROGRAM}, environment,
                                            folder_.file("output"));
  waitUntil([this] {
    windowId_ = findWindow();
    return !windowId_.empty() || !process_->isRunning();
  });
}

void Program::startAgain() {
  windowId_.clear();
  start();
}

std::string Program::findWindow() const {
  const std::string found =
      display_.ask({"xdotool", "search", "--onlyvisible", "--pid", std::to_string(process_->pid()),
                    "--name", "^" + mainBundle().CFBundleName + "$"});
  std::istringstream ids(found);
  for (std::string id; std::getline(ids, id);) {
    const std::string geometry = display_.ask({"xdotool", "getwindowgeometry", "--shell", id});
    if (shellNumber(geometry, "WIDTH") > kSmallestMainWindow) return id;
  }
  return {};
}

QRect Program::windowRect() const {
  const std::string text = display_.ask({"xdotool", "getwindowgeometry", "--shell", windowId_});
  return {shellNumber(text, "X"), shellNumber(text, "Y"), shellNumber(text, "WIDTH"),
          shellNumber(text, "HEIGHT")};
}

const WindowPlan& Program::planFor(const QSize& size) const {
  if (plan_ == nullptr || size != plannedSize_) {
    plan_ = std::make_unique<WindowPlan>(size);
    plannedSize_ = size;
  }
  return *plan_;
}

template <typename Part>
QRect Program::onScreen(Part part) const {
  const QRect window = windowRect();
  const QRect inWindow = part(planFor(window.size() / scale_));
  return {window.topLeft() + inWindow.topLeft() * scale_, inWindow.size() * scale_};
}

QRect Program::rectOf(const QString& view) const {
  return onScreen([&](const WindowPlan& plan) { return plan.rectOf(view); });
}

QPoint Program::middleOf(const QString& view) const {
  return rectOf(view).center();
}

QRect Program::previewArea() const {
  return onScreen([](const WindowPlan& plan) { return plan.previewArea(); });
}

QRect Program::leftHalf() const {
  return onScreen([](const WindowPlan& plan) { return plan.leftHalf(); });
}

QRect Program::rightHalf() const {
  return onScreen([](const WindowPlan& plan) { return plan.rightHalf(); });
}

QRect Program::captions() const {
  return onScreen([](const WindowPlan& plan) { return plan.captions(); });
}

void Program::click(const QString& view) const {
  display_.click(middleOf(view));
  display_.moveTo(rectOf(QStringLiteral("vwBottom")).center());
}

std::string Program::log() const {
  return testing_support::contentsOf(logFilePath(home_, mainBundle().CFBundleName));
}

int Program::timesLogged(const std::string& text) const {
  const std::string all = log();
  int times = 0;
  for (std::size_t at = all.find(text); at != std::string::npos; at = all.find(text, at + 1)) {
    ++times;
  }
  return times;
}

bool Program::waitForLog(const std::string& text, int times) const {
  return waitUntil([&] { return timesLogged(text) >= times; });
}

bool Program::openByKeyboard(const std::string& path) const {
  display_.key("ctrl+o");
  if (!display_.waitForActive("Open Image")) return false;
  display_.type(path);
  display_.key("Return");
  return waitUntil([&] { return display_.activeTitle().find("Open Image") == std::string::npos; });
}

bool Program::saveByKeyboard(const std::string& path, const std::string& format) const {
  display_.key("ctrl+s");
  return confirmSavePanel(path, format);
}

bool Program::confirmSavePanel(const std::string& path, const std::string& format,
                               SavePanelAnswer answer) const {
  const std::string panelTitle = "Save Image";
  if (!display_.waitForActive(panelTitle)) return false;
  display_.key("ctrl+a");
  display_.type(path);
  if (!format.empty()) display_.keys({"Tab", "Tab", "Tab", format});
  const std::string panel = display_.activeWindow();
  display_.key("Return");
  if (answer == SavePanelAnswer::kReplaces) {
    if (!waitUntil([&] { return display_.activeWindow() != panel; })) return false;
    display_.key("alt+y");
  }
  return waitUntil([&] { return display_.activeTitle().find(panelTitle) == std::string::npos; });
}

bool Program::isMainWindowActive() const {
  return display_.activeWindow() == windowId_;
}

bool Program::waitForSheet() const {
  return waitUntil([this] { return !isMainWindowActive(); });
}

bool Program::waitForMainWindow() const {
  return waitUntil([this] { return isMainWindowActive(); });
}

}  // namespace velmara::e2e
