#pragma once

#include <QString>
#include <QStringList>

namespace lumetra {

// One of the three update alerts, as words and buttons; a presenter turns it into a dialog.
struct UpdateAlert {
    enum class Kind { updateAvailable, upToDate, checkFailed };
    enum class Style { standard, warning };

    Kind kind = Kind::upToDate;
    Style style = Style::standard;
    QString message;
    QString informativeText;
    // In order; the first is the default button.
    QStringList buttons;

    static UpdateAlert updateAvailable(const QString& latestVersion, const QString& currentVersion);
    static UpdateAlert upToDate(const QString& currentVersion);
    static UpdateAlert checkFailed();

    friend bool operator==(const UpdateAlert&, const UpdateAlert&) = default;
};

} // namespace lumetra
