#include "app/sheets/export_options_view.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

#include "imaging/image_writer.h"

namespace velmara {
namespace {

// What the writer of files uses when it is told nothing.
constexpr int kWrittenQuality = EncodeOptions{}.quality;
constexpr int kLongestSlider = 160;

}  // namespace

ExportOptionsView::ExportOptionsView(QWidget* parent)
    : QWidget(parent),
      btnPopupFileFormat_(new QComboBox(this)),
      viewExportQuality_(new QWidget(this)),
      sliderExportQuality_(new QSlider(Qt::Horizontal, viewExportQuality_)) {
  setObjectName(QStringLiteral("viewExportOptions"));
  btnPopupFileFormat_->setObjectName(QStringLiteral("btnPopupFileFormat"));
  btnPopupFileFormat_->setAccessibleName(tr("Format"));
  viewExportQuality_->setObjectName(QStringLiteral("viewExportQuality"));
  sliderExportQuality_->setObjectName(QStringLiteral("sliderExportQuality"));
  sliderExportQuality_->setAccessibleName(tr("Quality"));
  sliderExportQuality_->setRange(0, 100);
  sliderExportQuality_->setValue(kWrittenQuality);
  sliderExportQuality_->setMaximumWidth(kLongestSlider);

  auto* quality = new QHBoxLayout(viewExportQuality_);
  quality->setContentsMargins(0, 0, 0, 0);
  quality->addWidget(new QLabel(tr("Quality:"), viewExportQuality_));
  quality->addWidget(sliderExportQuality_);
  auto* note =
      new QLabel(tr("JPEG is always written at %1, 4:4:4: visually lossless").arg(kWrittenQuality),
                 viewExportQuality_);
  note->setObjectName(QStringLiteral("lblQualityNote"));
  note->setProperty("role", "dim");
  quality->addWidget(note);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 4, 0, 4);
  layout->setSpacing(12);
  layout->addWidget(new QLabel(tr("Format:"), this));
  layout->addWidget(btnPopupFileFormat_);
  layout->addSpacing(12);
  layout->addWidget(viewExportQuality_);
  layout->addStretch();
  connect(btnPopupFileFormat_, &QComboBox::activated, this, &ExportOptionsView::selectFormat);
}

void ExportOptionsView::setTitles(const std::vector<std::string>& titles) {
  btnPopupFileFormat_->clear();
  for (const std::string& title : titles) {
    btnPopupFileFormat_->addItem(QString::fromStdString(title));
  }
}

void ExportOptionsView::setQualityShown(bool isShown) {
  viewExportQuality_->setVisible(isShown);
}

}  // namespace velmara
