#include <libvue/platform/backend/qt/QtWindowHints.h>

#include <QImage>
#include <QSize>

#include <libvue/platform/backend/qt/QtApplication.h>

#if LIBVUE_HAVE_XCB

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <QGuiApplication>

namespace libvue::backend::x11 {

namespace {

constexpr std::uint32_t allDesktops = 0xFFFFFFFF, sourceApplication = 1;

struct Free {
    void operator()(void* p) const { std::free(p); }
};
template <class T> using Reply = std::unique_ptr<T, Free>;

/// Null under the other platforms, which answer with an interface all the same.
xcb_connection_t* connection() {
    if (!runsOnX11()) return nullptr;
    static xcb_connection_t* const known = [] {
        auto* native = qApp->nativeInterface<QNativeInterface::QX11Application>();
        return native ? native->connection() : nullptr;
    }();
    return known;
}

xcb_window_t root(xcb_connection_t* c) { return xcb_setup_roots_iterator(xcb_get_setup(c)).data->root; }

xcb_atom_t atom(xcb_connection_t* c, std::string_view name) {
    static std::map<std::string, xcb_atom_t, std::less<>> known;
    if (const auto found = known.find(name); found != known.end()) return found->second;
    const auto cookie = xcb_intern_atom(c, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(c, cookie, nullptr));
    return known.emplace(name, reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE}).first->second;
}

void askWindowManager(xcb_connection_t* c, xcb_window_t window, std::string_view message,
                      const std::uint32_t (&data)[5]) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(c, message);
    std::copy(std::begin(data), std::end(data), event.data.data32);
    xcb_send_event(c, 0, root(c), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
}

} // namespace

bool hasCompositor() {
    xcb_connection_t* c = connection();
    if (!c) return false;
    const auto cookie = xcb_get_selection_owner(c, atom(c, "_NET_WM_CM_S0"));
    const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(c, cookie, nullptr));
    return reply && reply->owner != XCB_NONE;
}

void flush() {
    if (xcb_connection_t* c = connection()) xcb_flush(c);
}

void bell() {
    if (xcb_connection_t* c = connection()) {
        xcb_bell(c, 0);
        xcb_flush(c);
    }
}

void setTransientFor(WId window, WId parent) {
    xcb_connection_t* c = connection();
    if (!c) return;
    const auto w = static_cast<xcb_window_t>(window);
    const auto p = static_cast<xcb_window_t>(parent);
    if (p == XCB_NONE) {
        xcb_delete_property(c, w, XCB_ATOM_WM_TRANSIENT_FOR);
    } else {
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, w, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, 32, 1, &p);
    }
}

void setMouseTransparent(WId window, bool transparent) {
    xcb_connection_t* c = connection();
    if (!c) return;
    const auto w = static_cast<xcb_window_t>(window);
    if (transparent) {
        xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, w, 0, 0, 0, nullptr);
    } else {
        xcb_shape_mask(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, w, 0, 0, XCB_NONE);
    }
}

void setOnAllDesktops(WId window, bool all, bool mapped) {
    xcb_connection_t* c = connection();
    if (!c) return;
    const auto w = static_cast<xcb_window_t>(window);
    const xcb_atom_t state = atom(c, "_NET_WM_STATE");
    const xcb_atom_t sticky = atom(c, "_NET_WM_STATE_STICKY");
    if (mapped) {
        std::uint32_t desktop = allDesktops;
        if (!all) {
            const auto cookie =
                xcb_get_property(c, 0, root(c), atom(c, "_NET_CURRENT_DESKTOP"), XCB_ATOM_CARDINAL, 0, 1);
            const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(c, cookie, nullptr));
            desktop = reply && xcb_get_property_value_length(reply.get()) == 4
                          ? *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()))
                          : 0;
        }
        askWindowManager(c, w, "_NET_WM_DESKTOP", {desktop, sourceApplication, 0, 0, 0});
        askWindowManager(c, w, "_NET_WM_STATE", {all ? 1u : 0u, sticky, 0, sourceApplication, 0});
    } else if (all) {
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, w, atom(c, "_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, 32, 1,
                            &allDesktops);
        xcb_change_property(c, XCB_PROP_MODE_APPEND, w, state, XCB_ATOM_ATOM, 32, 1, &sticky);
    } else {
        xcb_delete_property(c, w, atom(c, "_NET_WM_DESKTOP"));
    }
}

void allowEverySize(WId window) {
    xcb_connection_t* c = connection();
    if (!c) return;
    constexpr std::uint32_t hintCount = 18, hasSteps = 1u << 6;
    const auto w = static_cast<xcb_window_t>(window);
    const auto cookie = xcb_get_property(c, 0, w, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 0, hintCount);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(c, cookie, nullptr));
    if (!reply || reply->format != 32 || reply->value_len != hintCount) return;
    auto* hints = static_cast<std::uint32_t*>(xcb_get_property_value(reply.get()));
    if (!(hints[0] & hasSteps)) return;
    hints[0] &= ~hasSteps;
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, w, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32, hintCount,
                        hints);
}

bool isActive(WId window) {
    xcb_connection_t* c = connection();
    if (!c) return false;
    const auto cookie = xcb_get_property(c, 0, root(c), atom(c, "_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 0, 1);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(c, cookie, nullptr));
    return reply && xcb_get_property_value_length(reply.get()) == 4 &&
           *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get())) == window;
}

bool tellsActiveWindow(const void* event) {
    xcb_connection_t* c = connection();
    if (!c || (static_cast<const xcb_generic_event_t*>(event)->response_type & 0x7F) != XCB_PROPERTY_NOTIFY) {
        return false;
    }
    const auto* change = static_cast<const xcb_property_notify_event_t*>(event);
    return change->window == root(c) && change->atom == atom(c, "_NET_ACTIVE_WINDOW");
}

QImage contents(WId window, QSize pixels) {
    xcb_connection_t* c = connection();
    if (!c) return {};
    const auto cookie =
        xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, static_cast<xcb_drawable_t>(window), 0, 0,
                      static_cast<std::uint16_t>(pixels.width()), static_cast<std::uint16_t>(pixels.height()), ~0u);
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(c, cookie, nullptr));
    if (!reply || (reply->depth != 24 && reply->depth != 32)) return {};
    const qsizetype line = static_cast<qsizetype>(pixels.width()) * 4;
    if (xcb_get_image_data_length(reply.get()) < line * pixels.height()) return {};
    const QImage::Format format = reply->depth == 32 ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    return QImage(xcb_get_image_data(reply.get()), pixels.width(), pixels.height(), line, format).copy();
}

} // namespace libvue::backend::x11

#else

namespace libvue::backend::x11 {

bool hasCompositor() { return false; }
void flush() {}
void bell() {}
void setTransientFor(WId, WId) {}
void setMouseTransparent(WId, bool) {}
void setOnAllDesktops(WId, bool, bool) {}
void allowEverySize(WId) {}
bool isActive(WId) { return false; }
bool tellsActiveWindow(const void*) { return false; }
QImage contents(WId, QSize) { return {}; }

} // namespace libvue::backend::x11

#endif
