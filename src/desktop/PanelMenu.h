#pragma once

#include <QList>
#include <QString>

namespace lumetra {

// One entry of the panel item's menu: its id (above 0; 0 is a menu's root) and its text.
struct PanelMenuEntry {
    int id = 0;
    QString label;

    bool operator==(const PanelMenuEntry&) const = default;
};

// The panel item's menu, described once: the D-Bus menu that StatusNotifierItem hosts show
// and the tray fallback's menu are both built from it, so they cannot drift apart. A click
// on either comes back as the entry's id.
struct PanelMenu {
    QList<PanelMenuEntry> entries;

    const PanelMenuEntry* find(int id) const {
        for (const PanelMenuEntry& entry : entries)
            if (entry.id == id)
                return &entry;
        return nullptr;
    }

    bool operator==(const PanelMenu&) const = default;
};

} // namespace lumetra
