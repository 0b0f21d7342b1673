#include "app/sheets/export_options_view.h"

#include "imaging/image_writer.h"
#include "ui_ExportOptionsView.h"

namespace velmara {
namespace {

// What the writer of files uses when it is told nothing.
constexpr int kWrittenQuality = EncodeOptions{}.quality;

}  // namespace

ExportOptionsView::ExportOptionsView(QWidget* parent)
    : QWidget(parent), ui_(std::make_unique<Ui::ExportOptionsView>()) {
  ui_->setupUi(this);
  ui_->sliderExportQuality->setValue(kWrittenQuality);
  ui_->lblQualityNote->setText(
      tr("JPEG is always written at %1, 4:4:4: visually lossless").arg(kWrittenQuality));
  connect(ui_->btnPopupFileFormat, &QComboBox::activated, this, &ExportOptionsView::selectFormat);
}

ExportOptionsView::~ExportOptionsView() = default;

void ExportOptionsView::setTitles(const std::vector<std::string>& titles) {
  ui_->btnPopupFileFormat->clear();
  for (const std::string& title : titles) {
    ui_->btnPopupFileFormat->addItem(QString::fromStdString(title));
  }
}

void ExportOptionsView::setQualityShown(bool isShown) {
  ui_->viewExportQuality->setVisible(isShown);
}

}  // namespace velmara
