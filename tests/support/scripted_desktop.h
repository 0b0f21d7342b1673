#pragma once

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/panels.h"
#include "platform/workspace.h"

namespace velmara::testing_support {

/// Alerts that are answered from a list; with the list empty, by the first button.
class ScriptedAlerts final : public AlertPresenter {
 public:
  int runModal(const Alert& alert) override {
    shown.push_back(alert);
    return nextAnswer();
  }
  void beginSheet(const Alert& alert, Completion completion) override {
    shown.push_back(alert);
    completion(nextAnswer());
  }

  std::vector<Alert> shown;
  std::deque<int> answers;

 private:
  int nextAnswer() {
    if (answers.empty()) return 0;
    const int answer = answers.front();
    answers.pop_front();
    return answer;
  }
};

/// Panels that stay open until the test answers them.
class ScriptedPanels final : public Panels {
 public:
  void beginOpenPanel(const OpenPanelOptions& options, OpenCompletion completion) override {
    openOptions.push_back(options);
    openCompletion_ = std::move(completion);
  }
  std::shared_ptr<SavePanel> beginSavePanel(const SavePanelOptions& options,
                                            SaveCompletion completion) override {
    saveOptions.push_back(options);
    saveTypes = options.allowedFileTypes;
    saveCompletion_ = std::move(completion);
    return std::make_shared<Panel>(*this);
  }

  /// Answers the panel that is open; no path stands for its cancel button.
  void answerOpen(const std::vector<std::string>& paths) {
    if (const auto completion = std::exchange(openCompletion_, nullptr)) completion(paths);
  }
  void answerSave(const std::string& path) {
    if (const auto completion = std::exchange(saveCompletion_, nullptr)) completion(path);
  }

  std::vector<OpenPanelOptions> openOptions;
  std::vector<SavePanelOptions> saveOptions;
  std::vector<std::string> saveTypes;  ///< as last set by the panel's owner

 private:
  class Panel final : public SavePanel {
   public:
    explicit Panel(ScriptedPanels& panels) : panels_(panels) {}
    void setAllowedFileTypes(std::vector<std::string> types) override {
      panels_.saveTypes = std::move(types);
    }
    void cancel() override { panels_.answerSave({}); }

   private:
    ScriptedPanels& panels_;
  };

  OpenCompletion openCompletion_;
  SaveCompletion saveCompletion_;
};

/// A desktop that only writes down what it was asked.
class RecordingWorkspace final : public Workspace {
 public:
  bool openURL(const std::string& url, bool activates) override {
    opened.emplace_back(url, activates);
    return accepts;
  }
  void showInFolder(const std::string& path) override { chosen.push_back(path); }
  void showInFront(QObject& window) override { shownInFront.push_back(&window); }

  std::vector<std::pair<std::string, bool>> opened;
  std::vector<std::string> chosen;
  std::vector<QObject*> shownInFront;
  bool accepts = true;
};

}  // namespace velmara::testing_support
