#include "menubar/LabelFont.h"

#include "model/Logging.h"

#include <QFontDatabase>
#include <QFontMetricsF>

namespace lumetra {

bool hasTabularDigits(const QFont& font) {
    const QFontMetricsF metrics(font);
    const qreal zero = metrics.horizontalAdvance(QLatin1Char('0'));
    for (char digit = '1'; digit <= '9'; ++digit) {
        if (qAbs(metrics.horizontalAdvance(QLatin1Char(digit)) - zero) > 0.01)
            return false;
    }
    return true;
}

QFont withTabularDigits(const QFont& preferred) {
    if (hasTabularDigits(preferred))
        return preferred;
    // Qt 6.4 cannot switch on the "tnum" feature, so a font with proportional digits is
    // replaced as a whole: mixing two fonts in one label would misalign the baseline.
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (preferred.pointSizeF() > 0)
        fixed.setPointSizeF(preferred.pointSizeF());
    else
        fixed.setPixelSize(preferred.pixelSize());
    qCInfo(logUi, "Label font %s has proportional digits; using %s",
           qUtf8Printable(preferred.family()), qUtf8Printable(fixed.family()));
    return fixed;
}

const QFont& labelFont() {
    static const QFont font =
        withTabularDigits(QFontDatabase::systemFont(QFontDatabase::GeneralFont));
    return font;
}

} // namespace lumetra
