#include "reports.h"

#include <string>

#include "tool.h"

namespace tqjson {

namespace {

ReportCounts counts;

// The reader stores an integer beyond 32 bits as the nearest bound, reporting it through the
// range check of the number conversion; a negative one is also reported by the reader's own
// check on the same number, which must not count it twice.
constexpr std::string_view integer_out_of_range = "valor <= INT32_MAX";
constexpr std::string_view negative_integer_out_of_range =
    "cambtipo_se_puede_double_a_long(cte_double) == CIERTO";

void count_report(const char *condition, const char *, int) {
    const std::string_view text = condition ? condition : "";
    if (text == integer_out_of_range)
        ++counts.integers_beyond_32_bits;
    else if (text != negative_integer_out_of_range)
        ++counts.others;
}

std::string counted(int count, std::string_view singular, std::string_view plural) {
    return std::to_string(count) + " " + std::string(count == 1 ? singular : plural);
}

} // namespace

void install_report_counter() {
    error_interno_set_manejador(count_report);
}

ReportCounts take_reports() {
    const ReportCounts taken = counts;
    counts = {};
    return taken;
}

void warn_about_reports(std::string_view name, const ReportCounts &reported) {
    if (reported.others > 0)
        print_warning(std::string(name) + ": " +
                      counted(reported.others, "other value was", "other values were") +
                      " reported while reading");
}

} // namespace tqjson
