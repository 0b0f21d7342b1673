// A property list that goes along with feedback.
#include <QString>

#include "fuzzing.h"
#include "services/usage_report.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace velmara;
  const auto text = rewritePropertyList(fuzzing::textOf(data, size));
  if (!text) return 0;
  fuzzing::require(text->starts_with("<?xml"), "what is sent is XML");
  fuzzing::require(QString::fromStdString(*text).toStdString() == *text, "what is sent is UTF-8");
  return 0;
}
