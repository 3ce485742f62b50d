#pragma once
#include <string>

class ResultTableController;

/// Writes the rows on show into a file each time they change, for scripts that watch the program:
/// a line a row, name and folder with a tab between.
/// Owner:   AppDelegate, if TROVAST_ROWS_TO names a file. Threads: main.
/// Fails:   with one line in the log.
class RowsFile {
  public:
    explicit RowsFile(std::string path) : path_(std::move(path)) {}
    void write(const ResultTableController& table);

  private:
    const std::string path_;
    std::string written_;
    bool failed_ = false;
};
