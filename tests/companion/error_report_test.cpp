#include <gtest/gtest.h>

#include <thread>

#if defined(_WIN32)
#include <setjmp.h>
#include <windows.h>
#else
#include <csignal>
#endif

#include "companion/trap_frames.h"
#include "support/recording_handler.h"
#include "tqbase/error_interno.h"

namespace {

int g_llamadas = 0;
void cuenta(const char *, const char *, int) {
    ++g_llamadas;
}

// An address no process maps, kept where the compiler cannot see it: reading it faults.
volatile uintptr_t g_unreadable = 0x10;
void read_unreadable() {
    (void)*reinterpret_cast<const volatile char16_t *>(g_unreadable);
}

enum class Outcome { Completed, Caught };

// Runs `guarded` in a frame; the fallback records that the frame caught a failure.
template <class F> Outcome guard(F guarded, int32_t *codigo = nullptr) {
    volatile Outcome outcome = Outcome::Completed;
    int32_t estado = -1;
    trapable_marco_t *marco = trapable_nousar_try_catch_INI(FALSO, &estado);
    EXPECT_EQ(estado, TRAPABLE_ESTADO_SIN_ERROR);
    if (TRAPABLE_GUARDA(marco)) {
        guarded();
    } else if (trapable_nousar_ChequeaExcepcion(marco, trapable_nousar_excepcion(marco)) ==
               CIERTO) {
        trapable_nousar_try_catch_ERROR(marco);
        EXPECT_EQ(estado, TRAPABLE_ESTADO_ERROR);
        if (codigo)
            *codigo = trapable_nousar_excepcion(marco)->codigo;
        outcome = Outcome::Caught;
    }
    trapable_nousar_try_catch_END(&marco, FALSO, estado);
    EXPECT_EQ(marco, nullptr);
    return outcome;
}

} // namespace

// Tests run under a handler of their own (support/recording_handler.cpp), so the second half
// starts from the default.
TEST(ErrorReport, TheHandlerGetsConditionModuleAndLineAndNullRestoresTheDefault) {
    {
        RecordingHandler handler;
        error_interno("objeto->tipo == TQJSON_TIPO_OBJETO", "tqjson2: tqjson2", 310, 0);
        error_interno_default_error(nullptr, 0, "tqjson2: tqjsonbase64", 12, 0);
        EXPECT_EQ(
            handler.reports(),
            (std::vector<Report>{{"objeto->tipo == TQJSON_TIPO_OBJETO", "tqjson2: tqjson2", 310},
                                 {"default", "tqjson2: tqjsonbase64", 12}}));
    }
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

// A report is seen by the handler first; outside any frame it returns. Frames nest, and a
// failure in a fallback goes to the enclosing frame.
TEST(TrapFrames, AnAccessFaultOrAReportInsideAFrameIsCaughtAndTheProcessGoesOn) {
    int32_t codigo = 0;
    EXPECT_EQ(guard([] { read_unreadable(); }, &codigo), Outcome::Caught);
    EXPECT_EQ(codigo, TRAPABLE_CODIGO_ACCESO);
    EXPECT_EQ(guard([] {}), Outcome::Completed);
    RecordingHandler handler;
    volatile bool after_report = false;
    EXPECT_EQ(guard(
                  [&] {
                      error_interno("(texto) != NULL", "m", 3, 0);
                      after_report = true;
                  },
                  &codigo),
              Outcome::Caught);
    EXPECT_FALSE(after_report);
    EXPECT_EQ(codigo, TRAPABLE_CODIGO_ERROR_INTERNO);
    EXPECT_EQ(handler.conditions(), Conditions{"(texto) != NULL"});
    error_interno("outside", "m", 4, 0);
    EXPECT_EQ(handler.reports().size(), 2u);
    handler.clear();
    volatile int inner_caught = 0;
    const Outcome outer = guard([&] {
        if (guard([] { read_unreadable(); }) == Outcome::Caught)
            inner_caught = inner_caught + 1;
        EXPECT_EQ(guard([] {}), Outcome::Completed);
        read_unreadable(); // the outer frame takes this one
    });
    EXPECT_EQ(outer, Outcome::Caught);
    EXPECT_EQ(inner_caught, 1);
    // The fallback of an inner frame no longer catches: its fault reaches the outer frame,
    // which also releases the inner frame that the jump left unclosed.
    volatile int fallbacks = 0;
    const Outcome outer2 = guard([&] {
        int32_t estado;
        trapable_marco_t *marco = trapable_nousar_try_catch_INI(FALSO, &estado);
        if (TRAPABLE_GUARDA(marco)) {
            error_interno("first", "m", 1, 0);
        } else {
            fallbacks = fallbacks + 1;
            trapable_nousar_try_catch_ERROR(marco);
            read_unreadable();
        }
        ADD_FAILURE() << "not reached";
    });
    EXPECT_EQ(outer2, Outcome::Caught);
    EXPECT_EQ(fallbacks, 1);
    EXPECT_EQ(guard([] { read_unreadable(); }), Outcome::Caught); // the chain is sound again
    EXPECT_EQ(handler.conditions(), Conditions{"first"});
}

#if defined(_WIN32)
// The application's own handler, as an application would write one: it counts the access
// faults it sees and resumes the thread at its own jump point.
jmp_buf g_app_jump;
volatile int g_app_faults = 0;
[[noreturn]] void app_resume() {
    longjmp(g_app_jump, 1);
}
LONG CALLBACK app_handler(EXCEPTION_POINTERS *info) {
    if (info->ExceptionRecord->ExceptionCode != EXCEPTION_ACCESS_VIOLATION)
        return EXCEPTION_CONTINUE_SEARCH;
    g_app_faults = g_app_faults + 1;
    info->ContextRecord->Rsp = ((info->ContextRecord->Rsp - 256) & ~DWORD64{15}) - 8;
    info->ContextRecord->Rip = reinterpret_cast<DWORD64>(&app_resume);
    return EXCEPTION_CONTINUE_EXECUTION;
}
__attribute__((noinline)) int faults_the_application_took() {
    const int before = g_app_faults;
    if (_setjmp(g_app_jump, nullptr) == 0)
        read_unreadable();
    return g_app_faults - before;
}

// A frame is asked before the application's own handlers, installed earlier or not; a fault that
// no frame of its thread takes goes on to them, while frames are open elsewhere and after.
TEST(TrapFrames, FaultsNoFrameTakesGoToTheApplicationsOwnHandler) {
    PVOID mine = AddVectoredExceptionHandler(1, app_handler);
    ASSERT_NE(mine, nullptr);
    EXPECT_EQ(faults_the_application_took(), 1);
    guard([&] {
        EXPECT_EQ(guard([] { read_unreadable(); }), Outcome::Caught);
        int other_thread = 0;
        std::thread([&] { other_thread = faults_the_application_took(); }).join();
        EXPECT_EQ(other_thread, 1);
    });
    EXPECT_EQ(faults_the_application_took(), 1);
    RemoveVectoredExceptionHandler(mine);
}
#else
TEST(TrapFrames, ThePreviousSignalDispositionsComeBackWhenTheOutermostFrameCloses) {
    void (*const mi_manejador)(int) = [](int) {};
    const auto mine_on = [&](int senal) {
        struct sigaction actual = {};
        sigaction(senal, nullptr, &actual);
        return actual.sa_handler == mi_manejador;
    };
    struct sigaction mine = {}, previous_segv = {}, previous_bus = {};
    mine.sa_handler = mi_manejador;
    sigemptyset(&mine.sa_mask);
    ASSERT_EQ(sigaction(SIGSEGV, &mine, &previous_segv), 0);
    ASSERT_EQ(sigaction(SIGBUS, &mine, &previous_bus), 0);
    guard([&] {
        // The frames hold both dispositions meanwhile, and an inner frame closing keeps them.
        EXPECT_TRUE(!mine_on(SIGSEGV) && !mine_on(SIGBUS));
        guard([] { read_unreadable(); });
        EXPECT_TRUE(!mine_on(SIGSEGV) && !mine_on(SIGBUS));
    });
    EXPECT_TRUE(mine_on(SIGSEGV) && mine_on(SIGBUS));
    sigaction(SIGSEGV, &previous_segv, nullptr);
    sigaction(SIGBUS, &previous_bus, nullptr);
}
#endif
