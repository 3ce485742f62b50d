#include "platform/linux/PortalSettings.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr const char* kName = "org.freedesktop.portal.Desktop";
constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kInterface = "org.freedesktop.portal.Settings";
constexpr std::string_view kAppearance = "org.freedesktop.appearance";
constexpr std::string_view kGnome = "org.gnome.desktop.interface";
constexpr std::string_view kGnomeAccess = "org.gnome.desktop.a11y.interface";
constexpr std::string_view kKde = "org.kde.kdeglobals.KDE";
constexpr double kLeastScale = 0.75, kMostScale = 2.5;

unsigned number(GVariant* value) {
    return g_variant_is_of_type(value, G_VARIANT_TYPE_UINT32) ? g_variant_get_uint32(value) : 0;
}

bool truth(GVariant* value, bool otherwise) {
    return g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) ? g_variant_get_boolean(value)
                                                               : otherwise;
}

std::string_view text(GVariant* value) {
    if (!g_variant_is_of_type(value, G_VARIANT_TYPE_STRING)) return {};
    return g_variant_get_string(value, nullptr);
}

double scale(GVariant* value) {
    if (!g_variant_is_of_type(value, G_VARIANT_TYPE_DOUBLE)) return 1;
    return std::clamp(g_variant_get_double(value), kLeastScale, kMostScale);
}

}  // namespace

PortalSettings::PortalSettings(std::function<void()> changed)
    : changed_(std::move(changed)), cancellable_(g_cancellable_new()) {
    bus_ = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (!bus_) return;
    const auto settingChanged = [](GDBusConnection*, const char*, const char*, const char*,
                                   const char*, GVariant* parameters, void* self) {
        if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssv)"))) return;
        const char *group = nullptr, *key = nullptr;
        GVariant* value = nullptr;
        g_variant_get(parameters, "(&s&sv)", &group, &key, &value);
        auto* const settings = static_cast<PortalSettings*>(self);
        if (settings->take(group, key, value)) settings->changed_();
        g_variant_unref(value);
    };
    subscription_ = g_dbus_connection_signal_subscribe(bus_, kName, kInterface, "SettingChanged",
                                                       kPath, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
                                                       settingChanged, this, nullptr);
    readAll();
}

PortalSettings::~PortalSettings() {
    g_cancellable_cancel(cancellable_);
    if (bus_) {
        g_dbus_connection_signal_unsubscribe(bus_, subscription_);
        g_object_unref(bus_);
    }
    g_object_unref(cancellable_);
}

void PortalSettings::readAll() {
    const auto answered = [](GObject* bus, GAsyncResult* result, void* self) {
        GError* error = nullptr;
        GVariant* const reply =
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error);
        if (!reply) {  // no portal, or the object is gone
            g_error_free(error);
            return;
        }
        auto* const settings = static_cast<PortalSettings*>(self);
        GVariantIter *groups = nullptr, *keys = nullptr;
        const char *group = nullptr, *key = nullptr;
        GVariant* value = nullptr;
        g_variant_get(reply, "(a{sa{sv}})", &groups);
        while (g_variant_iter_loop(groups, "{&sa{sv}}", &group, &keys))
            while (g_variant_iter_loop(keys, "{&sv}", &key, &value))
                settings->take(group, key, value);
        g_variant_iter_free(groups);
        g_variant_unref(reply);
        settings->changed_();
    };
    const char* const groups[] = {kAppearance.data(), kGnome.data(), kGnomeAccess.data(),
                                  kKde.data(), nullptr};
    g_dbus_connection_call(bus_, kName, kPath, kInterface, "ReadAll",
                           g_variant_new("(^as)", groups), G_VARIANT_TYPE("(a{sa{sv}})"),
                           G_DBUS_CALL_FLAGS_NONE, -1, cancellable_, answered, this);
}

bool PortalSettings::take(const char* group, const char* key, GVariant* value) {
    const std::string_view in = group, what = key;
    if (in == kAppearance && what == "color-scheme") {
        constexpr unsigned kDark = 1, kLight = 2;
        const unsigned wanted = number(value);
        values_.prefersDark.reset();
        if (wanted == kDark || wanted == kLight) values_.prefersDark = wanted == kDark;
    } else if (in == kAppearance && what == "contrast") {
        values_.asksForContrast = number(value) == 1;
    } else if (in == kAppearance && what == "reduced-motion") {
        values_.asksForLessMotion = number(value) == 1;
    } else if (in == kGnome && what == "gtk-theme") {
        values_.hasContrastTheme = text(value).substr(0, 12) == "HighContrast";
    } else if (in == kGnomeAccess && what == "high-contrast") {
        values_.asksForContrastTheme = truth(value, false);
    } else if (in == kGnome && what == "enable-animations") {
        values_.hasAnimations = truth(value, true);
    } else if (in == kGnome && what == "text-scaling-factor") {
        values_.textScale = scale(value);
    } else if (in == kKde && what == "AnimationDurationFactor") {
        values_.hasAnimationTime = text(value) != "0";
    } else {
        return false;
    }
    return true;
}
