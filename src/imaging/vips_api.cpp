#include "imaging/vips_api.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "platform/late_library.h"

namespace velmara {
namespace {

VipsApi load() {
  VipsApi api;
  // Never unloaded also because GLib's types cannot be.
  LateLibrary library(VELMARA_VIPS_LIBRARY);
#define X(name) library.find(api.name, "vips_" #name);
  VELMARA_VIPS_OPERATIONS(X)
#undef X
#define X(name) library.find(api.name, "g_" #name);
  VELMARA_GOBJECT_OPERATIONS(X)
#undef X
  api.isLoaded = library.isComplete();
  return api;
}

thread_local DecoderWarnings* listener = nullptr;

// One line without the name of the operation in front and places in sources behind.
std::string inWords(std::string text) {
  text.resize(std::min({text.size(), text.find('\n'), text.find(" `"), text.find(" @ ")}));
  const std::size_t colon = text.find(": ");
  if (colon != std::string::npos) text.erase(0, colon + 2);
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = ' ';
  }
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

}  // namespace

const VipsApi& vips() {
  static const VipsApi api = load();
  return api;
}

std::string takeVipsError() {
  // There is no error to ask for before the library was loaded with all of its operations.
  char* buffer = vips().error_buffer_copy();  // NOLINT(clang-analyzer-core.CallAndMessage)
  std::string text = buffer;
  g_free(buffer);
  return inWords(std::move(text));
}

DecoderWarnings::DecoderWarnings() {
  listener = this;
}

DecoderWarnings::~DecoderWarnings() {
  listener = nullptr;
}

void DecoderWarnings::note(const char* message) {
  if (listener == nullptr) return;
  constexpr std::string_view kCounted = "read gave ";
  if (std::string_view(message).starts_with(kCounted)) {
    listener->count_ =
        std::max(listener->count_, std::strtol(message + kCounted.size(), nullptr, 10));
  } else if (listener->first_.empty()) {
    listener->first_ = inWords(message);
  }
}

}  // namespace velmara
