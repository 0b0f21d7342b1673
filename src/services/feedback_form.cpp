#define PCRE2_CODE_UNIT_WIDTH 8
#include "services/feedback_form.h"

#include <QString>

#include <memory>
#include <pcre2.h>

#include "platform/log.h"
#include "services/text.h"

namespace velmara {
namespace {

// "\x21-\x5a\x53-\x7f" holds the backslash that the alternative beside it starts with: a text full
// of backslashes can be read in exponentially many ways. Hence the matcher below that follows all
// readings at once instead of trying one after the other.
constexpr std::string_view kPattern =
    R"re((?:[a-z0-9!#$%\&'*+/=?\^_`{|}~-]+(?:\.[a-z0-9!#$%\&'*+/=?\^_`{|}~-]+)*)re"
    R"re(|"(?:[\x01-\x08\x0b\x0c\x0e-\x1f\x21\x23-\x5b\x5d-\x7f]|\\[\x01-\x09\x0b\x0c\x0e-\x7f])*"))re"
    R"re(@(?:(?:[a-z0-9](?:[a-z0-9-]*[a-z0-9])?\.)+[a-z0-9](?:[a-z0-9-]*[a-z0-9])?)re"
    R"re(|\[(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\.){3}(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)re"
    R"re(|[a-z0-9-]*[a-z0-9]:(?:[\x01-\x08\x0b\x0c\x0e-\x1f\x21-\x5a\x53-\x7f]|\\[\x01-\x09\x0b\x0c\x0e-\x7f])+)\]))re";

// Bytes beyond ASCII are in no class of the pattern, so none needs decoding.
pcre2_code* compile() {
  int error = 0;
  PCRE2_SIZE offset = 0;
  return pcre2_compile(reinterpret_cast<PCRE2_SPTR>(kPattern.data()), kPattern.size(),
                       PCRE2_ANCHORED, &error, &offset, nullptr);
}

}  // namespace

void tidyFeedbackFields(FeedbackForm& form) {
  form.email = StringEscaping::trim(QString::fromStdString(form.email).toLower().toStdString());
  form.experience = StringEscaping::trim(form.experience);
}

FeedbackFaults checkFeedbackFields(FeedbackForm& form) {
  tidyFeedbackFields(form);
  logLine("Title :" + form.type);
  return {.invalidEmail = !validateEmail(form.email),
          .invalidType = form.type == kNoFeedbackType,
          .invalidExp = form.experience.empty()};
}

bool validateEmail(std::string_view address) {
  static const std::unique_ptr<pcre2_code, void (*)(pcre2_code*)> code(compile(), pcre2_code_free);
  const std::unique_ptr<pcre2_match_data, void (*)(pcre2_match_data*)> match(
      pcre2_match_data_create(1, nullptr), pcre2_match_data_free);
  if (code == nullptr || match == nullptr || address.empty()) return false;
  std::array<int, 4096> workspace;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  const int found =
      pcre2_dfa_match(code.get(), reinterpret_cast<PCRE2_SPTR>(address.data()), address.size(), 0,
                      0, match.get(), nullptr, workspace.data(), workspace.size());
  // The longest reading comes first; it counts if it is the whole address.
  return found >= 0 && pcre2_get_ovector_pointer(match.get())[1] == address.size();
}

}  // namespace velmara
