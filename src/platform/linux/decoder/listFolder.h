#pragma once
#include "platform/Previews.h"

/// The names in a folder, folders first and hidden ones last, and how many there are.
/// Threads: the decoder's.
void listFolder(int handle, Preview& preview);
