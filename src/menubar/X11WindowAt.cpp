#include "menubar/X11WindowAt.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <vector>

namespace lumetra {

namespace {

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

} // namespace

std::optional<QRect> x11WindowAt(const QPoint& device, const QList<unsigned long>& exclude) {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return std::nullopt;
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    if (!screen)
        return std::nullopt;
    Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, screen->root), nullptr),
        &std::free);
    if (!tree)
        return std::nullopt;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    const int count = xcb_query_tree_children_length(tree.get());
    // All requests first, then the replies: one round trip for the lot.
    std::vector<xcb_get_window_attributes_cookie_t> attributes;
    std::vector<xcb_get_geometry_cookie_t> geometries;
    attributes.reserve(std::size_t(count));
    geometries.reserve(std::size_t(count));
    for (int i = 0; i < count; ++i) {
        attributes.push_back(xcb_get_window_attributes(connection, children[i]));
        geometries.push_back(xcb_get_geometry(connection, children[i]));
    }
    std::optional<QRect> found;
    // Children come bottom to top: the last match is the topmost.
    for (int i = 0; i < count; ++i) {
        Reply<xcb_get_window_attributes_reply_t> attribute(
            xcb_get_window_attributes_reply(connection, attributes[std::size_t(i)], nullptr),
            &std::free);
        Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection, geometries[std::size_t(i)], nullptr), &std::free);
        if (!attribute || !geometry || attribute->map_state != XCB_MAP_STATE_VIEWABLE ||
            attribute->_class == XCB_WINDOW_CLASS_INPUT_ONLY || exclude.contains(children[i]))
            continue;
        const QRect rect(geometry->x, geometry->y, geometry->width, geometry->height);
        if (rect.contains(device))
            found = rect;
    }
    return found;
}

} // namespace lumetra
