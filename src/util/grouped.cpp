#include "util/grouped.h"

std::string grouped(int64_t number) {
    std::string text = std::to_string(number);
    const size_t sign = number < 0 ? 1 : 0;
    for (size_t place = text.size(); place > sign + 3; place -= 3) text.insert(place - 3, 1, ',');
    return text;
}
