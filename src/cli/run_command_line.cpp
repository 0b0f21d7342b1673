#include <QCoreApplication>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <signal.h>
#include <thread>
#include <variant>

#include "cli/commands.h"
#include "cli/options.h"
#include "cli/terminal.h"
#include "imaging/initialise.h"
#include "platform/dispatch.h"
#include "platform/log.h"

namespace velmara::cli {

int run(const PrintAndExit& words) {
  std::fputs(words.text.c_str(), words.exitCode == 0 ? stdout : stderr);
  return words.exitCode;
}

namespace {

// Whatever is thrown becomes words.
int guarded(const std::function<int()>& action) {
  try {
    return action();
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "velmara: %s\n", fault.what());
  }
  return 1;
}

int carryOut(int argc, char** argv) {
  const Command command = parseCommandLine(argc, argv);
  if (const auto* words = std::get_if<PrintAndExit>(&command)) return run(*words);
  const QCoreApplication application(argc, argv);
  // Qt takes the user's locale over; numbers in files and messages keep their point.
  std::setlocale(LC_NUMERIC, "C");
  if (std::getenv("VELMARA_LOG") == nullptr) setLogSink(silentLog());
  ::signal(SIGPIPE, SIG_IGN);
  endOnInterrupt();
  initialiseImaging();

  int exitCode = 0;
  std::thread worker([&] {
    exitCode = guarded(
        [&] { return std::visit([](const auto& options) { return run(options); }, command); });
    mainQueue().async([] { QCoreApplication::quit(); });
  });
  QCoreApplication::exec();
  worker.join();
  return exitCode;
}

}  // namespace

int runCommandLine(int argc, char** argv) {
  const int exitCode = guarded([&] { return carryOut(argc, argv); });
  // Of all that was printed, whether it arrived.
  const bool isPrinted = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
  if (isPrinted || exitCode != 0) return exitCode;
  std::fputs("velmara: cannot write to standard output\n", stderr);
  return 1;
}

}  // namespace velmara::cli
