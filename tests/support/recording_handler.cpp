// Installs a handler around every test that fails it on any report no RecordingHandler keeps.
#include <gtest/gtest.h>

#include "support/recording_handler.h"

namespace {
void unexpected(const char *condicion, const char *modulo, int linea) {
    ADD_FAILURE() << "unexpected report: " << Report{condicion, modulo, linea};
}

class StrictReports : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo &) override {
        error_interno_set_manejador(unexpected);
    }
    void OnTestEnd(const testing::TestInfo &) override { error_interno_set_manejador(nullptr); }
};
const bool g_strict =
    (testing::UnitTest::GetInstance()->listeners().Append(new StrictReports), true);
} // namespace
