#pragma once
#include <QtGui/qguiapplication_platform.h>
#include <xcb/xcb.h>
#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <string_view>

/// What each use of the X server needs. Threads: main, after QApplication is made.
namespace x11 {

template <class T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

/// Qt's own connection; null under other platforms.
inline xcb_connection_t* connection() {
    const auto* x = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x ? x->connection() : nullptr;
}

/// Waits for the server. XCB_ATOM_NONE when it does not answer.
inline xcb_atom_t atom(xcb_connection_t* x, std::string_view name) {
    const auto cookie = xcb_intern_atom(x, 0, uint16_t(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x, cookie, nullptr),
                                               &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

}  // namespace x11
