#pragma once

#include <QPlainTextEdit>
#include <QPointer>

#include <memory>
#include <optional>
#include <string>

#include "app/sheets/feedback_services.h"

namespace velmara {

/// Shows in a text view what a form would send. Main thread.
class FeedbackPreview {
 public:
  /// Shows nothing yet. The view must outlive this.
  FeedbackPreview(QPlainTextEdit& view, const FeedbackServices& services)
      : view_(&view), services_(services) {}
  FeedbackPreview(const FeedbackPreview&) = delete;
  FeedbackPreview& operator=(const FeedbackPreview&) = delete;
  ~FeedbackPreview() = default;

  /// Shows the view and gathers its content anew, which takes a moment for a long log.
  void show(const FeedbackForm& form);
  /// Takes typed texts over into what is shown, without gathering again; nothing while hidden.
  void typed(const FeedbackForm& form);
  /// Hides the view and forgets its content.
  void hide();

 private:
  void gathered(const FeedbackReport& report);
  void write();

  QPointer<QPlainTextEdit> view_;
  const FeedbackServices& services_;
  FeedbackForm form_;
  std::optional<FeedbackReport> report_;  ///< as last gathered
  /// Of the report that is being gathered; one that was overtaken finds it gone.
  std::shared_ptr<const bool> asked_;
};

}  // namespace velmara
