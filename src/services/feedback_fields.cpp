#include "services/feedback_fields.h"

#include <QString>

#include "platform/log.h"
#include "services/email_address.h"
#include "services/string_escaping.h"

namespace velmara {

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

}  // namespace velmara
