#pragma once
#include <gio/gio.h>

#include <functional>
#include <optional>

/// What the desktop's settings portal says of looks, where there is one.
/// Owner:   LinuxAppearance. Threads: main, in whose GLib context the answers come.
/// Fails:   silently; the values stay as they are.
class PortalSettings {
  public:
    /// changed: called after each change; for the first time when the portal has answered.
    explicit PortalSettings(std::function<void()> changed);
    ~PortalSettings();
    PortalSettings(const PortalSettings&) = delete;
    PortalSettings& operator=(const PortalSettings&) = delete;

    struct Values {
        std::optional<bool> prefersDark;
        // Desktops have several settings for the same, and no order in which they are told of.
        bool asksForContrast = false, asksForContrastTheme = false, hasContrastTheme = false;
        bool hasAnimations = true, hasAnimationTime = true;
        bool asksForLessMotion = false;
        double textScale = 1;
    };
    const Values& values() const { return values_; }
    bool wantsContrast() const {
        return values_.asksForContrast || values_.asksForContrastTheme || values_.hasContrastTheme;
    }
    bool wantsLessMotion() const {
        return values_.asksForLessMotion || !values_.hasAnimations || !values_.hasAnimationTime;
    }

  private:
    void readAll();
    /// Whether it is one of the settings that count here.
    bool take(const char* group, const char* key, GVariant* value);

    const std::function<void()> changed_;
    GDBusConnection* bus_ = nullptr;
    GCancellable* const cancellable_;
    unsigned subscription_ = 0;
    Values values_;
};
