// The library's internal-error reports, counted instead of printed one line each, so that a
// document with many out-of-range integers gives one warning.
#pragma once

#include <string_view>

namespace tqjson {

struct ReportCounts {
    int integers_beyond_32_bits = 0;
    int others = 0;
};

// Routes every report of the process to the counts.
void install_report_counter();

// The counts since the previous call, which start again from zero.
ReportCounts take_reports();

// One warning line for the reports other than integers beyond 32 bits (which the strict
// reading tells with their places) made while reading the input `name`; nothing when there
// were none.
void warn_about_reports(std::string_view name, const ReportCounts &counts);

} // namespace tqjson
