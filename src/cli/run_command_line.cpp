#include "cli/run_command_line.h"

#include <QCoreApplication>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <signal.h>
#include <thread>
#include <variant>

#include "cli/denoise_command.h"
#include "cli/info_command.h"
#include "cli/interrupt.h"
#include "cli/options.h"
#include "imaging/initialise.h"
#include "platform/dispatch.h"
#include "platform/log.h"

namespace velmara::cli {
namespace {

int carryOut(const Command& command) {
  struct Visitor {
    int operator()(const DenoiseOptions& options) const { return runDenoise(options); }
    int operator()(const InfoOptions& options) const { return runInfo(options); }
    int operator()(const CalibrateOptions& options) const { return runCalibrate(options); }
    int operator()(const PrintAndExit& words) const { return words.exitCode; }
  };
  return std::visit(Visitor{}, command);
}

}  // namespace

int runCommandLine(int argc, char** argv) {
  const Command command = parseCommandLine(argc, argv);
  if (const auto* words = std::get_if<PrintAndExit>(&command)) {
    std::fputs(words->text.c_str(), words->exitCode == 0 ? stdout : stderr);
    return words->exitCode;
  }
  const QCoreApplication application(argc, argv);
  // Qt takes the user's locale over; numbers in files and messages keep their point.
  std::setlocale(LC_NUMERIC, "C");
  if (std::getenv("VELMARA_LOG") == nullptr) setLogSink(silentLog());
  ::signal(SIGPIPE, SIG_IGN);
  endOnInterrupt();
  initialiseImaging();

  int exitCode = 0;
  std::thread worker([&] {
    exitCode = carryOut(command);
    mainQueue().async([] { QCoreApplication::quit(); });
  });
  QCoreApplication::exec();
  worker.join();
  return exitCode;
}

}  // namespace velmara::cli
