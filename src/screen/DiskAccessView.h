#pragma once
#include <functional>

/// The window that asks for the desktop's consent to read all files. Main thread.
class DiskAccessView {
  public:
    struct Buttons {
        std::function<void()> later;
        std::function<void()> openSecurityAndPrivacy;
    };
    virtual ~DiskAccessView() = default;
    virtual void show(Buttons buttons) = 0;
    virtual void hide() = 0;
};
