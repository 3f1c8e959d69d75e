#pragma once

#include "desktop/PanelMenu.h"
#include "desktop/StatusNotifierDBusObject.h"

namespace lumetra {

// The panel item's flat menu exported as com.canonical.dbusmenu, the menu panels show for a
// StatusNotifierItem (GNOME's top bar drops an item without one). A click on an entry
// comes back as triggered(id).
class DBusMenu : public StatusNotifierDBusObject {
    Q_OBJECT

public:
    explicit DBusMenu(PanelMenu menu = {}, QObject* parent = nullptr);

    const PanelMenu& menu() const { return menu_; }

signals:
    void triggered(int id);

protected:
    QVariantMap properties() const override;
    bool handleMethod(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QVariantMap itemProperties(int id, const QStringList& names) const;
    void click(int id, const QString& eventId);

    PanelMenu menu_;
    // The entries never change: one layout revision for the menu's life.
    static constexpr uint kRevision = 1;
};

} // namespace lumetra
