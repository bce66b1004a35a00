// One pointer per thread for the memory component, read on every allocation, and a call when a
// thread that set it ends. Each platform's way in one place: an initial-exec thread_local of one
// pointer with a key whose destructor makes the call (POSIX: one instruction to read, and eight
// bytes of static TLS, which the C library keeps spare for libraries loaded at run time), or a
// TLS index read through TlsGetValue with a fiber-local slot whose callback makes the call
// (Windows, where the compiler's thread_local is emulated and costs a call into the runtime on
// every use).
#pragma once

#if defined(_WIN32)
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif

// Called with the pointer that a thread set, when that thread ends.
using i_fin_de_hilo_t = void (*)(void *valor);

// Arms the slot once per process with the call to make at the end of each thread; before it, the
// slot reads null.
void i_hilo_prepara(i_fin_de_hilo_t al_terminar);
// Sets the calling thread's pointer; a non-null pointer arms the call at its end.
void i_hilo_fija(void *valor);

#if defined(_WIN32)
extern DWORD g_hilo_indice;
inline void *i_hilo_lee() {
    return g_hilo_indice == TLS_OUT_OF_INDEXES ? nullptr : TlsGetValue(g_hilo_indice);
}
#else
extern constinit thread_local void *t_hilo_valor __attribute__((tls_model("initial-exec")));
inline void *i_hilo_lee() {
    return t_hilo_valor;
}
#endif
