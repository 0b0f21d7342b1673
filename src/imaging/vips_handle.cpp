#include "imaging/vips_handle.h"

namespace velmara {

std::string takeVipsError() {
  char* buffer = vips_error_buffer_copy();
  std::string text = buffer;
  g_free(buffer);
  text.resize(std::min(text.size(), text.find('\n')));
  const std::size_t colon = text.find(": ");
  if (colon != std::string::npos) text.erase(0, colon + 2);
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = ' ';
  }
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

}  // namespace velmara
