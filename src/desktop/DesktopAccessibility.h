#pragma once

#include <QDBusVariant>
#include <QObject>

namespace lumetra {

// The desktop's accessibility settings that change how backgrounds are drawn, read from the
// XDG desktop portal's Settings interface (the "contrast" appearance key, GNOME's
// high-contrast key) and re-read when the portal says one changed. No portal: both off.
// The portal is asked asynchronously, so a missing one never holds up start-up.
class DesktopAccessibility : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool reduceTransparency READ reduceTransparency NOTIFY changed)
    Q_PROPERTY(bool increaseContrast READ increaseContrast NOTIFY changed)

public:
    explicit DesktopAccessibility(QObject* parent = nullptr);

    bool reduceTransparency() const { return reduceTransparency_; }
    bool increaseContrast() const { return increaseContrast_; }

    // Interpretation of the portal's values, apart from the bus.
    static bool contrastIsHigh(const QVariant& appearanceContrast);

signals:
    void changed();

private slots:
    void onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void readAll();
    void read(const QString& group, const QString& key);
    void apply(const QString& group, const QString& key, const QVariant& value);
    void update(bool reduceTransparency, bool increaseContrast);

    bool reduceTransparency_ = false;
    bool increaseContrast_ = false;
    bool portalHighContrast_ = false;
    bool gnomeHighContrast_ = false;
};

} // namespace lumetra
