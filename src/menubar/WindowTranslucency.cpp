#include "menubar/WindowTranslucency.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace lumetra {

namespace {

bool x11CompositorRunning(xcb_connection_t* connection, int screen) {
    const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(screen);
    const xcb_intern_atom_cookie_t atomCookie =
        xcb_intern_atom(connection, 1, static_cast<uint16_t>(name.size()), name.constData());
    std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection, atomCookie, nullptr), &std::free);
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom),
                                      nullptr),
        &std::free);
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

bool windowTranslucencyAvailable() {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11)
        return true;
    xcb_connection_t* connection = x11->connection();
    if (!connection)
        return true;
    return x11CompositorRunning(connection, 0);
}

} // namespace lumetra
