#pragma once
#include <QIcon>

/// The program's own icon, drawn: a magnifying glass in the colour of its Search mode. Main thread.
QIcon applicationIcon();
