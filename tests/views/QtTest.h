#pragma once
#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>
#include <vector>

/// A test with an application of its own, on no screen.
class QtTest : public testing::Test {
  protected:
    explicit QtTest(const QByteArray& platform = "offscreen")
        : application_(arguments(platform), values_) {}

  private:
    static int& arguments(const QByteArray& platform) {
        qputenv("QT_QPA_PLATFORM", platform);
        static int count = 1;
        return count;
    }
    char name_[5] = "test";
    char* values_[2] = {name_, nullptr};
    QApplication application_;
};

/// The widgets of a class below another one, in the order in which they were made.
template <class T>
std::vector<T*> childrenOf(const QWidget& parent) {
    std::vector<T*> found;
    for (QWidget* child : parent.findChildren<QWidget*>())
        if (auto* const wanted = dynamic_cast<T*>(child)) found.push_back(wanted);
    return found;
}
