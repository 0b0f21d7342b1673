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
  const std::size_t at = ("\n" + text).find("\n" + name + "=");
  return at == std::string::npos ? 0 : std::stoi(text.substr(at + name.size() + 1));
}

}  // namespace

Program::Program(const VirtualDisplay& display, int scale) : display_(display), scale_(scale) {
  for (const char* name : {"home", "tmp", "run"}) {
    std::filesystem::create_directory(folder_.file(name));
    ::chmod(folder_.file(name).c_str(), 0700);
  }
  start();
}

std::unique_ptr<ChildProcess> Program::startWith(const std::vector<std::string>& words) const {
  const std::string home = folder_.file("home");
  return std::make_unique<ChildProcess>(
      words,
      std::vector<std::pair<std::string, std::string>>{{"DISPLAY", display_.name()},
                                                       {"WAYLAND_DISPLAY", ""},
                                                       {"QT_QPA_PLATFORM", "xcb"},
                                                       {"QT_SCALE_FACTOR", std::to_string(scale_)},
                                                       {"HOME", home},
                                                       {"XDG_CONFIG_HOME", home + "/.config"},
                                                       {"XDG_DATA_HOME", home + "/.local/share"},
                                                       {"XDG_CACHE_HOME", home + "/.cache"},
                                                       {"XDG_RUNTIME_DIR", folder_.file("run")},
                                                       {"TMPDIR", temporary_},
                                                       {"LC_ALL", "C.UTF-8"},
                                                       {"DBUS_SESSION_BUS_ADDRESS", "disabled:"}},
      folder_.file("output"));
}

void Program::start() {
  process_ = startWith({VELMARA_PROGRAM});
  waitUntil([this] {
    windowId_ = findWindow();
    return hasWindow() || !process_->isRunning();
  });
}

std::string Program::findWindow() const {
  std::istringstream ids(
      display_.ask({"xdotool", "search", "--onlyvisible", "--pid", std::to_string(process_->pid()),
                    "--name", "^" + mainBundle().CFBundleName + "$"}));
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

std::string Program::log() const {
  return testing_support::contentsOf(logFilePath(folder_.file("home"), mainBundle().CFBundleName));
}

int Program::timesLogged(const std::string& text) const {
  const std::string all = log();
  int times = 0;
  for (auto at = all.find(text); at != std::string::npos; at = all.find(text, at + 1)) ++times;
  return times;
}

bool Program::waitForLog(const std::string& text, int times) const {
  return waitUntil([&] { return timesLogged(text) >= times; });
}

bool Program::openByKeyboard(const std::string& path) const {
  display_.keys({"ctrl+o"});
  if (!display_.waitForActive("Open Image")) return false;
  display_.type(path);
  display_.keys({"Return"});
  return display_.waitForActive("Open Image", false);
}

bool Program::saveByKeyboard(const std::string& path, const std::string& format) const {
  display_.keys({"ctrl+s"});
  return confirmSavePanel(path, format);
}

bool Program::confirmSavePanel(const std::string& path, const std::string& format) const {
  if (!display_.waitForActive("Save Image")) return false;
  display_.keys({"ctrl+a"});
  display_.type(path);
  if (!format.empty()) display_.keys({"Tab", "Tab", "Tab", format});
  display_.keys({"Return"});
  return display_.waitForActive("Save Image", false);
}

bool Program::waitForMainWindow(bool isActive) const {
  return waitUntil([&] { return (display_.activeWindow() == windowId_) == isActive; });
}

}  // namespace velmara::e2e
