#include "app/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QString>
#include <QTranslator>

namespace lumetra {

void installTranslations(QCoreApplication& app) {
    const QString base = QCoreApplication::applicationDirPath();
    static QTranslator qt;
    if (qt.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        app.installTranslator(&qt);
    static QTranslator own;
    for (const QString& dir : {base + QStringLiteral("/" LUMETRA_TRANSLATIONS_RELATIVE_DIR),
                               base + QStringLiteral("/translations")}) {
        if (own.load(QLocale(), QStringLiteral("lumetra"), QStringLiteral("_"), dir)) {
            app.installTranslator(&own);
            return;
        }
    }
}

} // namespace lumetra
