#include "imaging/parallel_rows.h"

#include <algorithm>
#include <cstdint>
#include <system_error>
#include <thread>
#include <vector>

namespace velmara {

void parallelRows(int rows, const std::function<void(int, int)>& work) {
  constexpr int kLeastRows = 16;
  const int stretches = std::clamp(
      rows / kLeastRows, 1, std::max(1, static_cast<int>(std::thread::hardware_concurrency())));
  const auto rowAt = [&](int stretch) {
    return static_cast<int>(std::int64_t{rows} * stretch / stretches);
  };
  std::vector<std::jthread> helpers;
  helpers.reserve(static_cast<std::size_t>(stretches));
  for (int i = 1; i < stretches; ++i) {
    try {
      helpers.emplace_back(work, rowAt(i), rowAt(i + 1));
    } catch (const std::system_error&) {
      work(rowAt(i), rowAt(i + 1));  // no thread to be had
    }
  }
  work(0, rowAt(1));
}

}  // namespace velmara
