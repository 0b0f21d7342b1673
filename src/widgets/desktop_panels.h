#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>

#include "platform/panels.h"

namespace velmara {

/// Shows the toolkit's own file dialogs on the window in front. Opening and saving each remember
/// the folder they were last left in. A panel whose window is deleted is not answered any more.
class DesktopPanels final : public Panels {
 public:
  /// Shows panels without a window until one is set.
  explicit DesktopPanels(QWidget* mainWindow = nullptr) : mainWindow_(mainWindow) {}

  /// Which window panels belong to; null for none.
  void setMainWindow(QWidget* mainWindow) { mainWindow_ = mainWindow; }

  void beginOpenPanel(const OpenPanelOptions& options, OpenCompletion completion) override;
  std::shared_ptr<SavePanel> beginSavePanel(const SavePanelOptions& options,
                                            SaveCompletion completion) override;

 private:
  QPointer<QWidget> mainWindow_;
  // Shared with the dialogs, which may outlive this object.
  std::shared_ptr<QString> openFolder_ = std::make_shared<QString>();
  std::shared_ptr<QString> saveFolder_ = std::make_shared<QString>();
};

}  // namespace velmara
