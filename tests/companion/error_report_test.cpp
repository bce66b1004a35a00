#include <gtest/gtest.h>

#include "support/recording_handler.h"
#include "tqbase/error_interno.h"

namespace {
int g_llamadas = 0;
void cuenta(const char *, const char *, int) {
    ++g_llamadas;
}
} // namespace

// Tests run under a handler of their own (support/recording_handler.cpp), so this one starts
// from the default.
TEST(ErrorReport, SetHandlerReturnsThePreviousOneAndNullRestoresTheDefault) {
    error_interno_set_manejador(nullptr);
    EXPECT_EQ(error_interno_set_manejador(cuenta), nullptr);
    error_interno("x", "m", 1, 0);
    EXPECT_EQ(g_llamadas, 1);
    EXPECT_EQ(error_interno_set_manejador(nullptr), cuenta);
    testing::internal::CaptureStderr(); // the default writes one line and returns
    error_interno("(nodo) != NULL", "tqjson2: tqjson2", 42, 0);
    error_interno_default_error(nullptr, 0, "tqbase: arrays", 7, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "tqjson2: tqjson2:42: internal error: (nodo) != NULL\n"
              "tqbase: arrays:7: internal error: default\n");
    EXPECT_EQ(g_llamadas, 1);
}

TEST(ErrorReport, TheHandlerReceivesConditionModuleAndLine) {
    RecordingHandler handler;
    error_interno("objeto->tipo == TQJSON_TIPO_OBJETO", "tqjson2: tqjson2", 310, 0);
    error_interno_default_error(nullptr, 0, "tqjson2: tqjsonbase64", 12, 0);
    EXPECT_EQ(handler.reports(),
              (std::vector<Report>{{"objeto->tipo == TQJSON_TIPO_OBJETO", "tqjson2: tqjson2", 310},
                                   {"default", "tqjson2: tqjsonbase64", 12}}));
}
