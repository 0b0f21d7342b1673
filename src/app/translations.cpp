#include "app/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace velmara {

Translations::Translations(const QLocale& locale, const QString& catalogues) {
  // Who speaks none of the languages reads English, which has its plurals from a file too.
  if (!own_.load(locale, QStringLiteral("velmara"), QStringLiteral("_"), catalogues) &&
      !own_.load(QStringLiteral("velmara_en"), catalogues)) {
    return;
  }
  if (toolkit_.load(QLocale(own_.language()), QStringLiteral("qtbase"), QStringLiteral("_"),
                    QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(&toolkit_);
  }
  QCoreApplication::installTranslator(&own_);
}

Translations::~Translations() {
  QCoreApplication::removeTranslator(&own_);
  QCoreApplication::removeTranslator(&toolkit_);
}

}  // namespace velmara
