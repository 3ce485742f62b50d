#pragma once
#include <gtest/gtest.h>
#include <xcb/xcb.h>
#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

/// A test with an application on a real X server with a window manager; skipped without one.
class DisplayTest : public testing::Test {
  protected:
    void SetUp() override {
        const char* platform = std::getenv("QT_QPA_PLATFORM");
        if (!std::getenv("DISPLAY") || !platform || std::strcmp(platform, "xcb") != 0)
            GTEST_SKIP() << "needs tools/headless";
        application_ = std::make_unique<QApplication>(count_, values_);
        QApplication::setQuitOnLastWindowClosed(false);
    }
    /// Runs the event loop until it holds.
    static bool within(int milliseconds, const std::function<bool()>& holds) {
        QElapsedTimer timer;
        timer.start();
        while (!holds() && timer.elapsed() < milliseconds)
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents,
                                            10);
        return holds();
    }
    static bool soon(const std::function<bool()>& holds) { return within(10000, holds); }
    /// What the user does on keyboard and mouse.
    static void user(const QStringList& arguments) {
        ASSERT_EQ(QProcess::execute(QStringLiteral("xdotool"), arguments), 0);
    }
    static void pass(int milliseconds) {
        within(milliseconds, [] { return false; });
    }

  private:
    int count_ = 1;
    char name_[5] = "test";
    char* values_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
};

/// Another program on the same X server.
class OtherProgram {
  public:
    OtherProgram() : x(xcb_connect(nullptr, nullptr)) {
        root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    }
    ~OtherProgram() { xcb_disconnect(x); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    xcb_atom_t atom(const char* name) {
        auto* reply = xcb_intern_atom_reply(
            x, xcb_intern_atom(x, 0, uint16_t(std::strlen(name)), name), nullptr);
        const xcb_atom_t atom = reply->atom;
        std::free(reply);
        return atom;
    }
    /// names: instance and class, each with a zero behind it.
    xcb_window_t showWindow(const std::string& names, const std::string& gtkId = {}) {
        const xcb_window_t window = xcb_generate_id(x);
        xcb_create_window(x, XCB_COPY_FROM_PARENT, window, root, 0, 0, 200, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        setText(window, XCB_ATOM_WM_CLASS, names);
        if (!gtkId.empty()) setText(window, atom("_GTK_APPLICATION_ID"), gtkId);
        xcb_map_window(x, window);
        xcb_flush(x);
        return window;
    }
    void setText(xcb_window_t window, xcb_atom_t property, const std::string& text) {
        xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
                            uint32_t(text.size()), text.data());
    }
    xcb_window_t activeWindow() {
        auto* reply = xcb_get_property_reply(
            x, xcb_get_property(x, 0, root, atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 0, 1),
            nullptr);
        xcb_window_t window = 0;
        if (reply && xcb_get_property_value_length(reply) == 4)
            std::memcpy(&window, xcb_get_property_value(reply), 4);
        std::free(reply);
        return window;
    }
    void destroy(xcb_window_t window) {
        xcb_destroy_window(x, window);
        xcb_flush(x);
    }

    xcb_connection_t* const x;
    xcb_window_t root;
};
