// tqbase trap frames. Each thread keeps its own chain of open frames; while any frame of the
// process is open, a fault handler is installed (SIGSEGV and SIGBUS on POSIX, a vectored
// exception handler on Windows) that hands a fault to the innermost catching frame of the
// faulting thread, or else to whatever would have had it without frames.
#include "trap_frames.h"

#include <cstdio>
#include <mutex>

#if defined(_WIN32)
#include <windows.h>
#else
#include <csignal>
#endif

#include "trap_catch.h"
#include "traspaso.h"
#include "verifica.h"

static const char *const i_MODULO = "tqbase: trapable";

struct trapable_marco {
    trapable_salto_t salto;
    trapable_excepcion_t excepcion;
    int32_t *estado;
    bool muestra_error;
    bool capturando;          // false once a failure was caught or ERROR was called
    trapable_marco *exterior; // the enclosing frame of the same thread
};

namespace {

thread_local trapable_marco *t_marco_interior = nullptr;
// Frames that a jump to an enclosing frame left behind: their guarded functions are gone, so
// they will never be closed by their owners. They are released at the next close, outside any
// fault handler.
thread_local trapable_marco *t_marcos_abandonados = nullptr;

std::mutex g_cerrojo;
int g_marcos_abiertos = 0; // over every thread; guarded by g_cerrojo

trapable_marco *i_marco_que_captura() {
    for (trapable_marco *m = t_marco_interior; m; m = m->exterior)
        if (m->capturando)
            return m;
    return nullptr;
}

// Makes `marco` the innermost frame again, the frames inside it abandoned, and records what it
// caught.
void i_prepara_salto(trapable_marco *marco, const trapable_excepcion_t &excepcion) {
    while (t_marco_interior != marco) {
        trapable_marco *abandonado = t_marco_interior;
        t_marco_interior = abandonado->exterior;
        abandonado->exterior = t_marcos_abandonados;
        t_marcos_abandonados = abandonado;
    }
    marco->excepcion = excepcion;
    marco->capturando = false;
}

[[noreturn]] void i_salta(trapable_marco *marco, const trapable_excepcion_t &excepcion) {
    i_prepara_salto(marco, excepcion);
    i_TRAPABLE_SALTA(marco->salto);
}

#if defined(_WIN32)

// Where a thread resumes after the exception handler took its fault: a plain function on the
// faulting stack, from which the jump leaves as from any other call.
thread_local trapable_marco *t_marco_destino = nullptr;
[[noreturn]] void i_reanuda_en_marco() {
    i_TRAPABLE_SALTA(t_marco_destino->salto);
}

PVOID g_manejador = nullptr; // guarded by g_cerrojo

// The system's dispatch of the exception is left to finish normally: the thread's context is
// pointed at i_reanuda_en_marco, on the stack below the fault, aligned as at a call.
LONG CALLBACK i_manejador_excepcion(EXCEPTION_POINTERS *info) {
    const EXCEPTION_RECORD *registro = info->ExceptionRecord;
    trapable_marco *marco = i_marco_que_captura();
    const void *direccion = registro->NumberParameters >= 2
                                ? reinterpret_cast<const void *>(registro->ExceptionInformation[1])
                                : nullptr;
    const trapable_excepcion_t excepcion{static_cast<int32_t>(registro->ExceptionCode), direccion};
    if (!marco || !trapable_nousar_ChequeaExcepcion(marco, &excepcion))
        return EXCEPTION_CONTINUE_SEARCH;
    i_prepara_salto(marco, excepcion);
    t_marco_destino = marco;
    CONTEXT *contexto = info->ContextRecord;
    contexto->Rsp = ((contexto->Rsp - 256) & ~DWORD64{15}) - 8;
    contexto->Rip = reinterpret_cast<DWORD64>(&i_reanuda_en_marco);
    return EXCEPTION_CONTINUE_EXECUTION;
}

// Called first while frames are open, so that an application's own handlers see only the
// faults that no frame takes.
void i_instala_guardia() {
    g_manejador = AddVectoredExceptionHandler(1, i_manejador_excepcion);
}

void i_retira_guardia() {
    if (g_manejador)
        RemoveVectoredExceptionHandler(g_manejador);
    g_manejador = nullptr;
}

#else

const int i_SENALES[] = {SIGSEGV, SIGBUS};
constexpr int i_NUM_SENALES = sizeof i_SENALES / sizeof i_SENALES[0];
struct sigaction g_anteriores[i_NUM_SENALES]; // guarded by g_cerrojo

// A fault no frame takes goes where it would have gone without frames: the previous handler,
// or the default action when the faulting instruction runs again.
void i_pasa_a_anterior(int senal, siginfo_t *info, void *contexto) {
    for (int i = 0; i < i_NUM_SENALES; ++i) {
        if (i_SENALES[i] != senal)
            continue;
        const struct sigaction &anterior = g_anteriores[i];
        if ((anterior.sa_flags & SA_SIGINFO) && anterior.sa_sigaction) {
            anterior.sa_sigaction(senal, info, contexto);
        } else if (anterior.sa_handler != SIG_DFL && anterior.sa_handler != SIG_IGN) {
            anterior.sa_handler(senal);
        } else {
            signal(senal, SIG_DFL);
        }
    }
}

void i_manejador_senal(int senal, siginfo_t *info, void *contexto) {
    trapable_marco *marco = i_marco_que_captura();
    const trapable_excepcion_t excepcion{senal, info ? info->si_addr : nullptr};
    if (marco && trapable_nousar_ChequeaExcepcion(marco, &excepcion))
        i_salta(marco, excepcion);
    i_pasa_a_anterior(senal, info, contexto);
}

void i_instala_guardia() {
    struct sigaction accion {};
    accion.sa_sigaction = i_manejador_senal;
    accion.sa_flags = SA_SIGINFO;
    sigemptyset(&accion.sa_mask);
    for (int i = 0; i < i_NUM_SENALES; ++i)
        sigaction(i_SENALES[i], &accion, &g_anteriores[i]);
}

void i_retira_guardia() {
    for (int i = 0; i < i_NUM_SENALES; ++i)
        sigaction(i_SENALES[i], &g_anteriores[i], nullptr);
}

#endif

void i_abre_marco_en_proceso() {
    std::lock_guard<std::mutex> cerrojo(g_cerrojo);
    if (g_marcos_abiertos++ == 0)
        i_instala_guardia();
}

void i_cierra_marco_en_proceso() {
    std::lock_guard<std::mutex> cerrojo(g_cerrojo);
    if (--g_marcos_abiertos == 0)
        i_retira_guardia();
}

void i_libera_abandonados() {
    while (trapable_marco *abandonado = t_marcos_abandonados) {
        t_marcos_abandonados = abandonado->exterior;
        i_libera(&abandonado);
        i_cierra_marco_en_proceso();
    }
}

} // namespace

void i_trapable_captura_error_interno() {
    if (trapable_marco *marco = i_marco_que_captura())
        i_salta(marco, trapable_excepcion_t{TRAPABLE_CODIGO_ERROR_INTERNO, nullptr});
}

trapable_marco_t *trapable_nousar_try_catch_INI(tqbool muestra_error, int32_t *estado) {
    trapable_marco *marco = i_nuevo<trapable_marco>();
    marco->excepcion = trapable_excepcion_t{0, nullptr};
    marco->estado = estado;
    marco->muestra_error = muestra_error == CIERTO;
    marco->capturando = true;
    marco->exterior = t_marco_interior;
    if (estado)
        *estado = TRAPABLE_ESTADO_SIN_ERROR;
    i_abre_marco_en_proceso();
    t_marco_interior = marco;
    return marco;
}

trapable_salto_t *trapable_nousar_salto(trapable_marco_t *marco) {
    return &marco->salto;
}

const trapable_excepcion_t *trapable_nousar_excepcion(const trapable_marco_t *marco) {
    return marco ? &marco->excepcion : nullptr;
}

tqbool trapable_nousar_ChequeaExcepcion(const trapable_marco_t *,
                                        const trapable_excepcion_t *excepcion) {
    if (!excepcion)
        return FALSO;
    const int32_t codigo = excepcion->codigo;
    return (codigo == TRAPABLE_CODIGO_ACCESO || codigo == TRAPABLE_CODIGO_PAGINA ||
            codigo == TRAPABLE_CODIGO_ERROR_INTERNO)
               ? CIERTO
               : FALSO;
}

void trapable_nousar_try_catch_ERROR(trapable_marco_t *marco) {
    if (!i_VERIFICA_NO_NULO(marco))
        return;
    marco->capturando = false;
    if (marco->estado)
        *marco->estado = TRAPABLE_ESTADO_ERROR;
}

void trapable_nousar_try_catch_END(trapable_marco_t **marco, tqbool muestra_error, int32_t estado) {
    if (!i_VERIFICA_NO_NULO(marco) || !i_VERIFICA_NO_NULO(*marco))
        return;
    i_libera_abandonados();
    trapable_marco *cerrado = *marco;
    // Frames close innermost first; a frame closed out of turn would leave a dangling jump
    // target behind, so it is refused.
    if (!i_VERIFICA(cerrado == t_marco_interior))
        return;
    if ((muestra_error == CIERTO || cerrado->muestra_error) && estado != TRAPABLE_ESTADO_SIN_ERROR)
        std::fprintf(stderr, "tqbase: a guarded call failed (code %d)\n",
                     cerrado->excepcion.codigo);
    t_marco_interior = cerrado->exterior;
    i_libera(marco);
    i_cierra_marco_en_proceso();
}
