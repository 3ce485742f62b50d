#include "modes/framework/modeLook.h"

namespace {

constexpr double kFileSize = 17, kPathSize = 14;
using Weight = TextAttributes::Weight;
using Elide = TextAttributes::Elide;

TextAttributes normal(Colour colour, double size, Elide elide) {
    return {.colour = colour, .weight = Weight::thin, .size = size, .elide = elide};
}

TextAttributes hilite(Colour colour, double size, Elide elide) {
    return {.colour = colour,
            .weight = Weight::regular,
            .size = size,
            .elide = elide,
            .underline = true};
}

}  // namespace

void setupTextAttrs(ModeLook& look, double h, double selectedHue) {
    const bool dark = look.isDark;
    look.normalFile = normal(dark ? Colour{h, 0.1, 1.0, 1.0} : Colour{h, 0.1, 0.1, 0.8}, kFileSize,
                             Elide::middle);
    look.hiliteFile = hilite(dark ? Colour{h, 0.2, 0.9, 1.0} : Colour{h, 0.3, 0.2, 0.8}, kFileSize,
                             Elide::middle);
    look.normalPath =
        normal(dark ? Colour{h, 0.2, 0.5, 1.0} : Colour{h, 0.1, 0.5, 1.0}, kPathSize, Elide::start);
    look.hilitePath =
        hilite(dark ? Colour{h, 0.3, 0.4, 1.0} : Colour{h, 0.3, 0.1, 1.0}, kPathSize, Elide::start);
    look.selectedText = dark ? Colour{selectedHue, 0.1, 1.0, 1.0} : Colour{0, 0, 1.0, 1.0};
}
