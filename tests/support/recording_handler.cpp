#include "support/recording_handler.h"

#include "tqbase/error_interno.h"

namespace {
std::vector<Report> g_reports;
error_interno_manejador_t g_previous = nullptr;

void record(const char *condicion, const char *modulo, int linea) {
    g_reports.push_back({condicion ? condicion : "", modulo ? modulo : "", linea});
}
} // namespace

RecordingHandler::RecordingHandler() {
    g_reports.clear();
    g_previous = error_interno_set_manejador(record);
}

RecordingHandler::~RecordingHandler() {
    error_interno_set_manejador(g_previous);
}

const std::vector<Report> &RecordingHandler::reports() const {
    return g_reports;
}

std::vector<std::string> RecordingHandler::conditions() const {
    std::vector<std::string> out;
    for (const Report &r : g_reports)
        out.push_back(r.condicion);
    return out;
}

void RecordingHandler::clear() {
    g_reports.clear();
}
