// A recording internal-error handler: while one is alive, every report is kept instead of
// printed, so a test can check that a report was made with its exact condition text, or that
// none was.
#pragma once

#include <string>
#include <vector>

struct Report {
    std::string condicion;
    std::string modulo;
    int linea;
};

class RecordingHandler {
  public:
    RecordingHandler();
    ~RecordingHandler();
    RecordingHandler(const RecordingHandler &) = delete;
    RecordingHandler &operator=(const RecordingHandler &) = delete;

    const std::vector<Report> &reports() const;
    // The condition texts, in the order the reports were made.
    std::vector<std::string> conditions() const;
    void clear();
};
