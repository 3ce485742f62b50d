#include <gio/gio.h>

#include <memory>

#include "platform/linux/LinuxApplications.h"
#include "util/log.h"

// The file manager as others may call it: org.freedesktop.FileManager1.

namespace {

constexpr const char* kName = "org.freedesktop.FileManager1";
constexpr const char* kPath = "/org/freedesktop/FileManager1";

/// What is left where no file manager serves the calls: the folder itself, by the default
/// application.
struct Fallback {
    LinuxApplications& applications;
    FileURL folder;
};

void answered(GObject* bus, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Fallback> fallback(static_cast<Fallback*>(data));
    GError* error = nullptr;
    GVariant* const reply = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error);
    if (reply) {
        g_variant_unref(reply);
        return;
    }
    logWarning("The file manager does not show items: %s", error ? error->message : "");
    g_clear_error(&error);
    if (const auto manager = fallback->applications.fileManager({}))
        (void)fallback->applications.openWithApplication({fallback->folder}, *manager);
}

}  // namespace

Result<void> LinuxApplications::callFileManager(const char* method,
                                                const std::vector<FileURL>& urls) {
    if (urls.empty()) return {};
    GError* error = nullptr;
    GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (!bus) {
        const Error result{.domain = "application",
                           .code = error ? error->code : 0,
                           .description = "There is no file manager",
                           .failureReason = error ? error->message : ""};
        g_clear_error(&error);
        return result;
    }
    GVariantBuilder uris;
    g_variant_builder_init(&uris, G_VARIANT_TYPE("as"));
    for (const FileURL& url : urls)
        if (char* const uri = g_filename_to_uri(url.c_str(), nullptr, nullptr))
            g_variant_builder_add_value(&uris, g_variant_new_take_string(uri));
    constexpr int kUsualTimeout = -1;
    g_dbus_connection_call(bus, kName, kPath, kName, method, g_variant_new("(ass)", &uris, ""),
                           nullptr, G_DBUS_CALL_FLAGS_NONE, kUsualTimeout, nullptr, answered,
                           new Fallback{*this, urls.front().deletingLastPathComponent()});
    g_object_unref(bus);
    return {};
}

Result<void> LinuxApplications::reveal(const std::vector<FileURL>& urls) {
    return callFileManager("ShowItems", urls);
}

Result<void> LinuxApplications::showInfo(const std::vector<FileURL>& urls) {
    return callFileManager("ShowItemProperties", urls);
}
