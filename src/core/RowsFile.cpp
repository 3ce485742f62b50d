#include "core/RowsFile.h"

#include <fstream>

#include "core/ResultTableController.h"
#include "util/log.h"

void RowsFile::write(const ResultTableController& table) {
    constexpr size_t kMostRows = 100;
    std::string text;
    const size_t rows = std::min(table.numberOfRows(), kMostRows);
    for (size_t row = 0; row < rows; row++) {
        const RowContent content = table.row(row);
        text += content.name + "\t" + content.path + "\n";
    }
    if (text == written_ || failed_) return;
    written_ = text;
    std::ofstream file(path_, std::ios::trunc | std::ios::binary);
    if (!(file << text).flush()) {
        failed_ = true;
        logError("Failed to write the rows to %s", path_.c_str());
    }
}
