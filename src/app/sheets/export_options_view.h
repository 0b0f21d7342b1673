#pragma once

#include <QWidget>

#include <memory>
#include <string>
#include <vector>

namespace Ui {
class ExportOptionsView;
}

namespace velmara {

/// The accessory view of the save panel, `viewExportOptions`: the format popup and, for JPEG only,
/// the quality control. The quality does not reach the file: every format is written with the
/// photo's own properties. Main thread.
class ExportOptionsView : public QWidget {
  Q_OBJECT

 public:
  /// Without titles, the quality hidden.
  explicit ExportOptionsView(QWidget* parent = nullptr);
  ~ExportOptionsView() override;

  /// The popup's titles, and whether the quality control is seen.
  void setTitles(const std::vector<std::string>& titles);
  void setQualityShown(bool isShown);

 Q_SIGNALS:
  /// The format at an index was chosen by the user.
  void selectFormat(int index);

 private:
  std::unique_ptr<Ui::ExportOptionsView> ui_;
};

}  // namespace velmara
