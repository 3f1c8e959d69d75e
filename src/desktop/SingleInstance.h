#pragma once

#include <QObject>
#include <QString>

namespace lumetra {

// One panel app per session. The first start owns the bus name `<app id>` and answers
// `Activate(what)` on it; a later start finds the name taken, asks the owner to show what it
// was started for ("popover" or "settings") and exits.
class SingleInstance : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.lumetra.Lumetra.Application")

public:
    enum class Outcome {
        primary,   // this process is the one instance
        forwarded, // another one runs and was told
        noBus,     // no session bus: run alone, unguarded
        failed,    // the name is owned but its owner did not answer
    };

    explicit SingleInstance(QObject* parent = nullptr);
    ~SingleInstance() override;

    // Claims the name or, when it is taken, forwards `request` to its owner.
    Outcome claimOrForward(const QString& request);

    static QString serviceName();
    static QString objectPath();

public slots:
    // Called over the bus by a second start.
    Q_SCRIPTABLE void Activate(const QString& what);

signals:
    void activationRequested(const QString& what);

private:
    bool registered_ = false;
};

} // namespace lumetra
