#include <QApplication>
#include <QPainter>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

#include "views/RowPainter.h"
#include "views/Theme.h"

// How long a screenful of rows takes to paint, without a screen: twenty rows of a list that the
// user has just scrolled, at scales 1 and 2. Prints the median of many, in milliseconds.

namespace {

constexpr int kRows = 20, kRounds = 60, kWidth = 636, kHeight = 87;
constexpr const char* kIcons[] = {"folder", "image-png", "application-pdf", "text-plain",
                                  "audio-x-generic"};

RowContent row(int number) {
    RowContent content;
    content.iconName = kIcons[size_t(number) % std::size(kIcons)];
    content.name = "Annual report of the harbour lighthouse society, second edition " +
                   std::to_string(number) + ".pdf";
    content.nameHighlights = {{0, 2}, {7, 6}, {21, 7}};
    content.path = "/home/anna/Documents/Societies/Lighthouse/Accounts/Years/" +
                   std::to_string(1900 + number) + "/A folder with a long name/Reports";
    content.pathHighlights = {{11, 4}, {21, 3}};
    content.attributes = {
        {"✨ Nov 21, 2026, 11:06 PM ✏️ Nov 21, 2026, 11:06 PM 📎 Nov 21, 2026, "
         "11:06 PM 👁️ Nov 21, 2026, 11:06 PM",
         {{2, 22}}},
        {"⚖️ 1.5 MiB (1,572,864 Bytes) 👤 anna 👥 users 🔒 rw- r-- r-- 🔗 1", {}}};
    content.isLink = number % 4 == 0;
    content.isMarked = number % 3 == 0;
    return content;
}

/// Of this thread in milliseconds: what else the computer does counts for nothing.
double processorTime() {
    std::timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

double milliseconds(double scale) {
    const Theme theme = Theme::make(Theme::kOwnHue, false, QApplication::font());
    RowPainter painter(&theme);
    QImage image(QSize(int(kWidth * scale), int(kRows * (kHeight + 2) * scale)),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round) {
        std::vector<RowContent> rows;
        for (int i = 0; i < kRows; ++i) rows.push_back(row(round * kRows + i));
        QPainter on(&image);
        const double begin = processorTime();
        on.fillRect(image.rect(), theme.background);
        for (int i = 0; i < kRows; ++i)
            painter.draw(on, QRectF(0, i * (kHeight + 2), kWidth, kHeight), rows[size_t(i)],
                         i == 3 ? RowPainter::Look::selected : RowPainter::Look::plain);
        times.push_back(processorTime() - begin);
    }
    std::nth_element(times.begin(), times.begin() + kRounds / 2, times.end());
    return times[kRounds / 2];
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    std::printf("rows=%d paint_ms=%.2f paint_scale2_ms=%.2f\n", kRows, milliseconds(1),
                milliseconds(2));
    return 0;
}
