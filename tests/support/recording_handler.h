// Internal-error reports in tests. Every test fails on a report made while no RecordingHandler
// is alive (recording_handler.cpp); while one is, each report is kept instead, so a test can
// check that a report was made with its exact condition text.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "tqbase/error_interno.h"

// Condition texts of reports, in the order they were made.
using Conditions = std::vector<std::string>;

struct Report {
    std::string condicion, modulo;
    int linea;
    bool operator==(const Report &) const = default;
};
inline std::ostream &operator<<(std::ostream &out, const Report &r) {
    return out << r.condicion << " (" << r.modulo << ":" << r.linea << ")";
}

class RecordingHandler {
  public:
    RecordingHandler() : previous_(error_interno_set_manejador(record)) { kept().clear(); }
    ~RecordingHandler() { error_interno_set_manejador(previous_); }
    RecordingHandler(const RecordingHandler &) = delete;
    RecordingHandler &operator=(const RecordingHandler &) = delete;

    const std::vector<Report> &reports() const { return kept(); }
    // The condition texts, in the order the reports were made.
    std::vector<std::string> conditions() const {
        std::vector<std::string> out;
        for (const Report &r : kept())
            out.push_back(r.condicion);
        return out;
    }
    void clear() { kept().clear(); }

  private:
    static std::vector<Report> &kept() {
        static std::vector<Report> reports;
        return reports;
    }
    static void record(const char *condicion, const char *modulo, int linea) {
        kept().push_back({condicion, modulo, linea});
    }
    error_interno_manejador_t previous_;
};
