#include <QApplication>
#include <QPainter>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

#include "views/RowPainter.h"
#include "views/Theme.h"

// How long a screenful of rows takes to paint, without a screen: rows with metadata, marks and
// names that are too long, none of which was seen before, and then the same ones again. Prints
// medians, in milliseconds of processor.

namespace {

constexpr int kRounds = 60, kWidth = 636, kHeight = 87;
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

struct Times {
    double first, again;
};

double median(std::vector<double> times) {
    const auto middle = times.begin() + ptrdiff_t(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

Times milliseconds(int rowsOnScreen, double scale) {
    const Theme theme = Theme::make(Theme::kOwnHue, false, QApplication::font());
    IconCache icons;
    RowPainter painter(&theme, icons);
    QImage image(QSize(int(kWidth * scale), int(rowsOnScreen * (kHeight + 2) * scale)),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    std::vector<double> first, again;
    for (int round = 0; round < kRounds; ++round) {
        std::vector<RowContent> rows;
        for (int i = 0; i < rowsOnScreen; ++i) rows.push_back(row(round * rowsOnScreen + i));
        QPainter on(&image);
        for (std::vector<double>* times : {&first, &again}) {
            const double begin = processorTime();
            on.fillRect(image.rect(), theme.background);
            for (int i = 0; i < rowsOnScreen; ++i)
                painter.draw(on, QRectF(0, i * (kHeight + 2), kWidth, kHeight), rows[size_t(i)],
                             i == 3 ? RowPainter::Look::selected : RowPainter::Look::plain);
            times->push_back(processorTime() - begin);
        }
    }
    return {median(first), median(again)};
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    for (const double scale : {1.0, 2.0})
        for (const int rows : {10, 20}) {
            const Times times = milliseconds(rows, scale);
            std::printf("rows%d_scale%g_ms=%.2f rows%d_scale%g_again_ms=%.2f ", rows, scale,
                        times.first, rows, scale, times.again);
        }
    std::printf("\n");
    return 0;
}
