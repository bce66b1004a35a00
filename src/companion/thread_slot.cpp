#include "thread_slot.h"

#include <atomic>
#include <mutex>

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace {

std::once_flag g_preparado;
i_fin_de_hilo_t g_al_terminar = nullptr;
// Set when the library is unloaded or the process ends: from then on an ending thread calls
// nothing (at process exit other threads may have been stopped holding the component's locks).
std::atomic<bool> g_cerrado{false};
std::atomic<bool> g_armado{false};

void i_llama_al_terminar(void *valor) {
    if (valor && g_al_terminar && !g_cerrado.load())
        g_al_terminar(valor);
}

// Takes the end-of-thread call away from the system, the platform's way.
void i_desarma();

// The call goes with the library: a thread that ends after it is unloaded calls nothing.
struct i_cierre {
    ~i_cierre() {
        g_cerrado.store(true);
        if (g_armado.load())
            i_desarma();
    }
} g_cierre;

} // namespace

#if defined(_WIN32)

DWORD g_hilo_indice = TLS_OUT_OF_INDEXES;

namespace {

DWORD g_fibra_indice = FLS_OUT_OF_INDEXES;

void WINAPI i_al_terminar_fibra(void *valor) {
    TlsSetValue(g_hilo_indice, nullptr);
    i_llama_al_terminar(valor);
}

void i_desarma() {
    FlsFree(g_fibra_indice);
}

} // namespace

void i_hilo_prepara(i_fin_de_hilo_t al_terminar) {
    std::call_once(g_preparado, [&] {
        g_al_terminar = al_terminar;
        g_fibra_indice = FlsAlloc(i_al_terminar_fibra);
        g_hilo_indice = TlsAlloc();
        g_armado.store(g_fibra_indice != FLS_OUT_OF_INDEXES);
    });
}

void i_hilo_fija(void *valor) {
    TlsSetValue(g_hilo_indice, valor);
    FlsSetValue(g_fibra_indice, valor);
}

#else

constinit thread_local void *t_hilo_valor __attribute__((tls_model("initial-exec"))) = nullptr;

namespace {

pthread_key_t g_clave;

void i_al_terminar_hilo(void *valor) {
    t_hilo_valor = nullptr;
    i_llama_al_terminar(valor);
}

void i_desarma() {
    pthread_key_delete(g_clave);
}

} // namespace

void i_hilo_prepara(i_fin_de_hilo_t al_terminar) {
    std::call_once(g_preparado, [&] {
        g_al_terminar = al_terminar;
        g_armado.store(pthread_key_create(&g_clave, i_al_terminar_hilo) == 0);
    });
}

void i_hilo_fija(void *valor) {
    t_hilo_valor = valor;
    pthread_setspecific(g_clave, valor);
}

#endif
