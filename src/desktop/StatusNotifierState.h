#pragma once

namespace lumetra {

// Where the panel item stands with the desktop's panel: drawn, on its way, or which reason
// nobody draws it (each asks for the tray fallback in its own words).
enum class StatusNotifierState {
    connecting, // registering, or waiting to register again after the host dropped it
    registered, // a watcher took it and a host is there to draw it
    noBus,      // no session bus
    noWatcher,  // no org.kde.StatusNotifierWatcher on the bus
    refused,    // the watcher answered the registration with an error
    noHost,     // a watcher without any StatusNotifierHost: nobody would draw the item
};

} // namespace lumetra
