#include "util/Observable.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <thread>

TEST(Observable, TellsOldAndNewBeforeSetReturns) {
    Observable<int> value(1);
    std::string seen;
    Subscription first = value.observe([&](int old, int now) {
        seen += std::to_string(old) + ">" + std::to_string(now) + " ";
        EXPECT_EQ(value.value(), now);
    });
    value.set(2);
    value.set(2);
    {
        Subscription second = value.observe([&](int, int) { seen += "second "; });
        value.set(3);
    }
    first.cancel();
    value.set(4);
    EXPECT_EQ(seen, "1>2 2>2 2>3 second ");
}

TEST(Observable, AnObserverThatHasGoneIsNotCalledAnyMore) {
    Signal<int> signal;
    std::string seen;
    std::optional<Subscription> later;
    Subscription added;
    Subscription first = signal.observe([&](int) {
        seen += '1';
        later.reset();  // its owner may be gone with it
        added = signal.observe([&](int) { seen += 'n'; });
    });
    later = signal.observe([&](int) { seen += '2'; });
    Subscription third = signal.observe([&](int) { seen += '3'; });
    signal.emit(0);
    EXPECT_EQ(seen, "13") << "a new one begins with the next";
    first.cancel();
    signal.emit(0);
    EXPECT_EQ(seen, "133n");
}

TEST(Observable, ASubscriptionMovesAndOutlives) {
    int calls = 0;
    Subscription kept;
    {
        Signal<> signal;
        Subscription moved = signal.observe([&] { calls++; });
        kept = std::move(moved);
        signal.emit();
        kept = signal.observe([&] { calls += 10; });  // the old one ends
        signal.emit();
    }
    EXPECT_EQ(calls, 11);
    kept.cancel();  // its signal is gone
}

TEST(Observable, ObserversComeAndGoOnAnyThread) {
    Signal<int> signal;
    std::thread other([&] {
        for (int i = 0; i < 2000; i++) Subscription s = signal.observe([](int) {});
    });
    for (int i = 0; i < 2000; i++) signal.emit(i);
    other.join();
}
