#pragma once

/// Chooses between X11 and Wayland before QApplication is made; Qt itself ends the program when the
/// display that it tries does not answer.
/// X11 wins where both answer: a Wayland session lets no window stand where it wants nor say who
/// was in front, X clients in it may. A choice that the user has made (QT_QPA_PLATFORM) is
/// respected; ours stands in the same variable, which programs that we start must not inherit.
/// Threads: main, once, before there is another. Fails: none, with one line on standard error.
enum class DisplayChoice { none, users, ours };
DisplayChoice chooseDisplay();
