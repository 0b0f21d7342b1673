#pragma once

#include <QLocale>
#include <QString>
#include <QTranslator>

namespace velmara {

/// The texts of one language while it stands: the program's own and the toolkit's (file panels,
/// standard buttons, names of keys), which are taken in the program's language only, so that no
/// window speaks two. Main thread, one at a time.
class Translations {
 public:
  /// Installs the first of the locale's languages that the program speaks, else English. The
  /// catalogues lie in a folder as velmara_de.qm. Where the toolkit's are not installed its texts
  /// stay English.
  explicit Translations(const QLocale& locale,
                        const QString& catalogues = QStringLiteral(":/translations"));
  Translations(const Translations&) = delete;
  Translations& operator=(const Translations&) = delete;
  ~Translations();

 private:
  QTranslator toolkit_;
  QTranslator own_;
};

}  // namespace velmara
