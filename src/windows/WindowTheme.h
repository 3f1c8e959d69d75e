#pragma once

#include "settings/ThemePreference.h"

#include <QColor>
#include <QObject>
#include <QPalette>
#include <QPointer>

class QWidget;

namespace lumetra {

class SettingsStore;

// Keeps one window in the colours of the chosen theme: light, dark, or the desktop's when the
// theme is the system's (followed when the desktop switches). The windows draw their own
// grouped forms, so both schemes use the same palette roles.
class WindowTheme : public QObject {
    Q_OBJECT

public:
    // Applies the theme to `window` now and on every change; lives as the window's child.
    WindowTheme(QWidget* window, SettingsStore& settings);

    bool isDark() const { return dark_; }

    static QPalette palette(bool dark);
    // Text below the primary level: captions and descriptions, and dimmed rows.
    static QColor secondaryText(const QPalette& palette);
    static QColor tertiaryText(const QPalette& palette);
    // The fill of a grouped form's section and its hairline border.
    static QColor groupFill(const QPalette& palette);
    static QColor groupBorder(const QPalette& palette);
    static QColor destructive(const QPalette& palette);

signals:
    void darkChanged(bool dark);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void apply();

    QPointer<QWidget> window_;
    SettingsStore& settings_;
    bool dark_ = false;
};

} // namespace lumetra
