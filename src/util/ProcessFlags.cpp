#include "util/ProcessFlags.h"

constinit ProcessFlags processFlags;
