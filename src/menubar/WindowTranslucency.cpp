#include "menubar/WindowTranslucency.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
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

xcb_atom_t atom(xcb_connection_t* connection, const char* name, bool onlyIfExists) {
    std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection,
                              xcb_intern_atom(connection, onlyIfExists,
                                              static_cast<uint16_t>(std::strlen(name)), name),
                              nullptr),
        &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

bool windowManagerSupports(xcb_connection_t* connection, xcb_window_t root, xcb_atom_t wanted) {
    const xcb_atom_t supported = atom(connection, "_NET_SUPPORTED", true);
    if (supported == XCB_ATOM_NONE || wanted == XCB_ATOM_NONE)
        return false;
    std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
        xcb_get_property_reply(
            connection, xcb_get_property(connection, 0, root, supported, XCB_ATOM_ATOM, 0, 4096),
            nullptr),
        &std::free);
    if (!reply || reply->format != 32)
        return false;
    const auto* atoms = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    const int count = xcb_get_property_value_length(reply.get()) / 4;
    return std::find(atoms, atoms + count, wanted) != atoms + count;
}

} // namespace

bool requestBlurBehind(unsigned long window) {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
    if (!connection || window == 0)
        return false;
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_atom_t blur = atom(connection, "_KDE_NET_WM_BLUR_BEHIND_REGION", true);
    if (!screen || !windowManagerSupports(connection, screen->root, blur))
        return false;
    // An empty region: blur behind the whole window.
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, xcb_window_t(window), blur,
                        XCB_ATOM_CARDINAL, 32, 0, nullptr);
    xcb_flush(connection);
    return true;
}

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
