#include "widgets/breakable_text.h"

namespace velmara {
namespace {

constexpr int kLongestWord = 30;
constexpr QChar kZeroWidthSpace(0x200B);

}  // namespace

QString breakableText(const QString& text) {
  QString result;
  int length = 0;
  for (const QChar c : text) {
    length = c.isSpace() ? 0 : length + 1;
    // Not between the halves of a character, nor before what is drawn upon the last one.
    if (length > kLongestWord && !c.isLowSurrogate() && !c.isMark()) result += kZeroWidthSpace;
    result += c;
  }
  return result;
}

}  // namespace velmara
