#pragma once

#include <QObject>

namespace lumetra {

// The two desktop accessibility options that change how backgrounds are drawn. The desktop
// glue reads them and hands them over with setFlags(); each flag notifies only when its
// value really changed.
class AppearanceManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool reduceTransparency READ reduceTransparency NOTIFY reduceTransparencyChanged)
    Q_PROPERTY(bool increaseContrast READ increaseContrast NOTIFY increaseContrastChanged)

public:
    explicit AppearanceManager(bool reduceTransparency = false, bool increaseContrast = false,
                               QObject* parent = nullptr);

    bool reduceTransparency() const { return reduceTransparency_; }
    bool increaseContrast() const { return increaseContrast_; }

    void setFlags(bool reduceTransparency, bool increaseContrast);

signals:
    void reduceTransparencyChanged();
    void increaseContrastChanged();

private:
    bool reduceTransparency_;
    bool increaseContrast_;
};

} // namespace lumetra
