#include "platform/linux/LinuxApplications.h"

#include <gio/gio.h>

#include <cstring>
#include <memory>

#include "util/Unicode.h"

namespace {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
struct Free {
    void operator()(void* memory) const { g_free(memory); }
};
template <class T>
using Owned = std::unique_ptr<T, Unref>;
using Text = std::unique_ptr<char, Free>;

constexpr const char* kPlainText = "text/plain";

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

Owned<GAppInfo> defaultApplication(const char* type) {
    if (couldBeRun(type)) type = kPlainText;
    Owned<GAppInfo> application(g_app_info_get_default_for_type(type, FALSE));
    // A file of a type that nobody knows may still be read; a folder or a device may not.
    if (!application && std::strncmp(type, "inode/", 6) != 0)
        application.reset(g_app_info_get_default_for_type(kPlainText, FALSE));
    return application;
}

}  // namespace

Result<void> LinuxApplications::openInDefaultApplication(const FileURL& url) {
    const Owned<GFile> file(g_file_new_for_path(url.c_str()));
    GError* error = nullptr;
    const Owned<GFileInfo> info(g_file_query_info(file.get(),
                                                  G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE,
                                                  G_FILE_QUERY_INFO_NONE, nullptr, &error));
    const std::unique_ptr<GError, void (*)(GError*)> held(error, [](GError* e) {
        if (e) g_error_free(e);
    });
    if (!info) return failure(url, "Cannot open ", error);
    const char* type = g_file_info_get_content_type(info.get());
    const Owned<GAppInfo> application = defaultApplication(type ? type : kPlainText);
    if (!application) return failure(url, "Found no application to open ", nullptr);
    const Owned<GAppLaunchContext> context(g_app_launch_context_new());
    if (ownsPlatformChoice_) g_app_launch_context_unsetenv(context.get(), "QT_QPA_PLATFORM");
    GList files{file.get(), nullptr, nullptr};
    GError* launchError = nullptr;
    const bool launched = g_app_info_launch(application.get(), &files, context.get(), &launchError);
    if (launched) return {};
    const Error result = failure(url, "Cannot open ", launchError);
    g_clear_error(&launchError);
    return result;
}
