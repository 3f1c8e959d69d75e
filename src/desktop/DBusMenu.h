#pragma once

#include "desktop/StatusNotifierDBusObject.h"

#include <QList>
#include <QString>

namespace lumetra {

// One entry of a flat menu: its id (above 0; 0 is the root) and its text.
struct DBusMenuEntry {
    int id = 0;
    QString label;

    bool operator==(const DBusMenuEntry&) const = default;
};

// A flat menu exported as com.canonical.dbusmenu, the menu panels show for a
// StatusNotifierItem (GNOME's top bar drops an item without one). A click on an entry
// comes back as triggered(id).
class DBusMenu : public StatusNotifierDBusObject {
    Q_OBJECT

public:
    explicit DBusMenu(QList<DBusMenuEntry> entries = {}, QObject* parent = nullptr);

    const QList<DBusMenuEntry>& entries() const { return entries_; }

signals:
    void triggered(int id);

protected:
    QVariantMap properties() const override;
    bool handleMethod(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    const DBusMenuEntry* entry(int id) const;
    QVariantMap itemProperties(int id, const QStringList& names) const;
    void click(int id, const QString& eventId);

    QList<DBusMenuEntry> entries_;
    // The entries never change: one layout revision for the menu's life.
    static constexpr uint kRevision = 1;
};

} // namespace lumetra
