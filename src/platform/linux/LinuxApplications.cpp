#include "platform/linux/LinuxApplications.h"

#include <gio/gio.h>

#include <memory>

#include "util/Unicode.h"

namespace {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using Owned = std::unique_ptr<T, Unref>;

constexpr const char* kPlainText = "text/plain";
constexpr const char* kFolder = "inode/directory";

Error failure(const FileURL& url, const char* what, const GError* error) {
    const int code = error ? error->code : 0;
    return Error{.domain = "application",
                 .code = code,
                 .description = what + displayText(url.lastPathComponent()),
                 .failureReason = error && error->message ? error->message : ""};
}

/// Whether an application for the type might run the file instead of showing it.
bool couldBeRun(const char* type) {
    for (const char* runnable : {"application/x-executable", "application/x-sharedlib",
                                 "application/x-desktop", "application/vnd.appimage"})
        if (g_content_type_is_a(type, runnable)) return true;
    return false;
}

std::optional<std::string> contentType(const FileURL& url) {
    const Owned<GFile> file(g_file_new_for_path(url.c_str()));
    const Owned<GFileInfo> info(g_file_query_info(file.get(),
                                                  G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE,
                                                  G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    if (!info) return std::nullopt;
    const char* type = g_file_info_get_content_type(info.get());
    return type ? type : kPlainText;
}

std::optional<std::string> defaultApplication(const char* type) {
    const Owned<GAppInfo> application(g_app_info_get_default_for_type(type, FALSE));
    const char* id = application ? g_app_info_get_id(application.get()) : nullptr;
    return id ? std::optional<std::string>(id) : std::nullopt;
}

/// With or without the suffix of desktop files.
Owned<GAppInfo> applicationWithIdentifier(const std::string& identifier) {
    Owned<GAppInfo> found;
    if (identifier.empty()) return found;
    GList* const all = g_app_info_get_all();
    for (const GList* at = all; at; at = at->next) {
        auto* const application = static_cast<GAppInfo*>(at->data);
        const char* const id = g_app_info_get_id(application);
        if (found || !id || (identifier != id && identifier + ".desktop" != id)) continue;
        found.reset(static_cast<GAppInfo*>(g_object_ref(application)));
    }
    g_list_free_full(all, g_object_unref);
    return found;
}

std::optional<std::string> configuredOrDefault(const std::string& configured, const char* type) {
    const auto application = applicationWithIdentifier(configured);
    return application ? std::optional<std::string>(g_app_info_get_id(application.get()))
                       : defaultApplication(type);
}

}  // namespace

std::optional<std::string> LinuxApplications::defaultApplicationForItem(const FileURL& url) {
    const auto type = contentType(url);
    if (!type) return std::nullopt;
    return defaultApplication(couldBeRun(type->c_str()) ? kPlainText : type->c_str());
}

std::optional<std::string> LinuxApplications::defaultApplicationForDataOf(const FileURL& url) {
    const auto type = contentType(url);
    // A file of a type that nobody knows may still be read; a folder or a device may not.
    if (!type || type->starts_with("inode/")) return std::nullopt;
    return defaultApplication(kPlainText);
}

std::optional<std::string> LinuxApplications::fileManager(const std::string& configured) {
    return configuredOrDefault(configured, kFolder);
}

std::optional<std::string> LinuxApplications::textEditor(const std::string& configured) {
    return configuredOrDefault(configured, kPlainText);
}

Result<void> LinuxApplications::openWithApplication(const std::vector<FileURL>& urls,
                                                    const std::string& application) {
    if (urls.empty()) return {};
    const Owned<GAppInfo> info = applicationWithIdentifier(application);
    if (!info) return failure(urls.front(), "Found no application to open ", nullptr);
    const Owned<GAppLaunchContext> context(g_app_launch_context_new());
    if (ownsPlatformChoice_) g_app_launch_context_unsetenv(context.get(), "QT_QPA_PLATFORM");
    GList* files = nullptr;
    for (const FileURL& url : urls) files = g_list_append(files, g_file_new_for_path(url.c_str()));
    GError* error = nullptr;
    const bool launched = g_app_info_launch(info.get(), files, context.get(), &error);
    g_list_free_full(files, g_object_unref);
    if (launched) return {};
    const Error result = failure(urls.front(), "Cannot open ", error);
    g_clear_error(&error);
    return result;
}
