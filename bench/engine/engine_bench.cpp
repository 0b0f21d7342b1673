// The program: its context says on what the figures were taken.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

#include "engine/fast/instruction_sets.h"

namespace {

std::string processorName() {
  std::ifstream info("/proc/cpuinfo");
  for (std::string line; std::getline(info, line);) {
    const auto colon = line.find(": ");
    if (line.starts_with("model name") && colon != std::string::npos) return line.substr(colon + 2);
  }
  return "unknown";
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  const char* forced = std::getenv("VELMARA_TARGET");
  benchmark::AddCustomContext("instruction_set",
                              forced == nullptr ? velmara::instructionSets().front() : forced);
  benchmark::AddCustomContext("processor", processorName());
  benchmark::AddCustomContext("threads", std::to_string(std::thread::hardware_concurrency()));
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
