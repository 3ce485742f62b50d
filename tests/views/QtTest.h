#pragma once
#include <gtest/gtest.h>

#include <QApplication>

/// A test with an application of its own, on no screen.
class QtTest : public testing::Test {
  private:
    static int& arguments() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int count = 1;
        return count;
    }
    char name_[5] = "test";
    char* values_[2] = {name_, nullptr};
    QApplication application_{arguments(), values_};
};
