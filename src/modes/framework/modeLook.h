#pragma once
#include "screen/ModeLook.h"

/// Names and paths of rows in one hue, on a dark or a light ground. Fills the texts of look;
/// selectedHue is that of the mode's background. Pure.
void setupTextAttrs(ModeLook& look, double hue, double selectedHue);
