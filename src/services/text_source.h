#pragma once

#include <functional>
#include <string>
#include <utility>

namespace velmara {

/// A text that may be too long to hold: each call gives its next piece, "" the end.
using TextSource = std::function<std::string()>;

/// A text in one piece.
inline TextSource textSource(std::string text) {
  return [text = std::move(text)]() mutable { return std::exchange(text, {}); };
}

}  // namespace velmara
