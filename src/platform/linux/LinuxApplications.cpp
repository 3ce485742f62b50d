#include "platform/linux/LinuxApplications.h"

#include <gio/gio.h>

#include <algorithm>
#include <memory>
#include <set>

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

/// The type by which an item is opened: what could be run counts as text.
std::optional<std::string> openedType(const FileURL& url) {
    auto type = contentType(url);
    if (type && couldBeRun(type->c_str())) type = kPlainText;
    return type;
}

std::string iconNameOf(GAppInfo* application) {
    GIcon* const icon = g_app_info_get_icon(application);
    if (G_IS_THEMED_ICON(icon)) {
        const char* const* const names = g_themed_icon_get_names(G_THEMED_ICON(icon));
        return names && names[0] ? names[0] : "";
    }
    if (!G_IS_FILE_ICON(icon)) return {};
    char* const path = g_file_get_path(g_file_icon_get_file(G_FILE_ICON(icon)));
    std::string text = path ? path : "";
    g_free(path);
    return text;
}

Applications::Opener openerFrom(GAppInfo* application) {
    const char* const id = g_app_info_get_id(application);
    return {.identifier = id ? id : "",
            .name = g_app_info_get_name(application),
            .iconName = iconNameOf(application)};
}

/// Where the name tells nothing, or not all, the item is looked at.
std::optional<std::string> openedTypeByName(const FileURL& url) {
    gboolean isUncertain = FALSE;
    char* const guess = g_content_type_guess(std::string(url.lastPathComponent()).c_str(), nullptr,
                                             0, &isUncertain);
    const std::string type = guess ? guess : "";
    g_free(guess);
    if (isUncertain || type.empty() || g_content_type_is_unknown(type.c_str()))
        return openedType(url);
    return couldBeRun(type.c_str()) ? kPlainText : type;
}

std::vector<Applications::Opener> openersOf(const std::string& type) {
    std::vector<Applications::Opener> openers;
    const auto ofDefault = defaultApplication(type.c_str());
    GList* const all = g_app_info_get_all_for_type(type.c_str());
    for (const GList* at = all; at; at = at->next) {
        auto* const application = static_cast<GAppInfo*>(at->data);
        const char* const id = g_app_info_get_id(application);
        const bool opensFiles =
            g_app_info_supports_files(application) || g_app_info_supports_uris(application);
        if (!id || !opensFiles) continue;
        openers.push_back(openerFrom(application));
        openers.back().isDefault = id == ofDefault;
    }
    g_list_free_full(all, g_object_unref);
    std::stable_partition(openers.begin(), openers.end(),
                          [](const auto& opener) { return opener.isDefault; });
    return openers;
}

}  // namespace

std::optional<std::string> LinuxApplications::defaultApplicationForItem(const FileURL& url) {
    const auto type = openedType(url);
    return type ? defaultApplication(type->c_str()) : std::nullopt;
}

std::optional<Applications::Opener> LinuxApplications::defaultOpenerOf(const FileURL& url) const {
    const auto type = openedTypeByName(url);
    if (!type) return std::nullopt;
    Owned<GAppInfo> application(g_app_info_get_default_for_type(type->c_str(), FALSE));
    if (!application && !type->starts_with("inode/"))
        application.reset(g_app_info_get_default_for_type(kPlainText, FALSE));
    if (!application) return std::nullopt;
    Opener opener = openerFrom(application.get());
    opener.isDefault = true;
    return opener;
}

std::vector<Applications::Opener> LinuxApplications::applicationsForItems(
    const std::vector<FileURL>& urls) const {
    std::set<std::string> types;
    for (const FileURL& url : urls) {
        auto type = openedType(url);
        if (!type) return {};
        types.insert(std::move(*type));
    }
    std::optional<std::vector<Opener>> common;
    for (const std::string& type : types) {
        const std::vector<Opener> openers = openersOf(type);
        if (!common) {
            common = openers;
            continue;
        }
        std::erase_if(*common, [&](Opener& one) {
            const auto same = std::find_if(
                openers.begin(), openers.end(),
                [&](const Opener& other) { return other.identifier == one.identifier; });
            if (same == openers.end()) return true;
            one.isDefault = one.isDefault && same->isDefault;
            return false;
        });
    }
    return common.value_or(std::vector<Opener>());
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
