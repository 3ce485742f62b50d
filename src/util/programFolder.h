#pragma once
#include "util/FileURL.h"

/// The folder that the running program is in, where the programs and modules that belong to it are
/// looked for. Empty: the kernel does not say. Threads: any.
FileURL programFolder();
