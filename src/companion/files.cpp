// tqbase file component: saves that never destroy what a file held before. What each step asks
// of the system, each platform's way, is in system_files.cpp.
#include "files.h"

#include <atomic>
#include <cerrno>
#include <new>

#include "file_handle.h"
#include "tqbase/memoria.h"
#include "verifica.h"

namespace {

// Large enough that a writer handing over whole lines rarely waits on the system.
constexpr size_t i_TAM_BUFFER_FICHERO = size_t{1} << 16;

// The failure seam: one load per step when it is off.
std::atomic<int> g_paso_fallido{i_PASO_NINGUNO};
std::atomic<unsigned> g_escritura_fallida{0};

bool i_fallo_simulado(i_paso_fichero_t paso, unsigned escritura = 0) {
    return g_paso_fallido.load(std::memory_order_relaxed) == paso &&
           (paso != i_PASO_ESCRITURA ||
            g_escritura_fallida.load(std::memory_order_relaxed) == escritura);
}

// Only a mode that empties the file and writes alone makes a save; the others open in place.
bool i_es_guardado(const char16_t *modo) {
    if (modo[0] != u'w')
        return false;
    for (const char16_t *m = modo; *m; ++m)
        if (*m == u'+' || *m == u'x')
            return false;
    return true;
}

bool i_es_texto(const char16_t *modo) {
    for (const char16_t *m = modo; *m; ++m)
        if (*m == u'b')
            return false;
    return true;
}

// errno after a failed call; EIO when the call set none.
int i_errno() {
    return errno != 0 ? errno : EIO;
}

void i_libera(lc_fichero_t *fichero) {
    fichero->~lc_fichero();
    marlspy_nousar_free_pp(&fichero, sizeof(lc_fichero_t));
}

} // namespace

void i_ficheros_simula_fallo(i_paso_fichero_t paso, unsigned escritura) {
    g_escritura_fallida.store(escritura, std::memory_order_relaxed);
    g_paso_fallido.store(paso, std::memory_order_relaxed);
}

bool i_fichero_empieza_escritura(lc_fichero_t *fichero) {
    if (!fichero || fichero->fallo_escritura != 0)
        return false;
    if (i_fallo_simulado(i_PASO_ESCRITURA, ++fichero->escrituras)) [[unlikely]] {
        fichero->fallo_escritura = EIO;
        return false;
    }
    return true;
}

void i_fichero_anota_fallo(lc_fichero_t *fichero) {
    fichero->fallo_escritura = i_errno();
}

lc_fichero_t *f_lc_fopen_u(const char16_t *nombre, const char16_t *modo, const char *modulo,
                           int linea) {
    if (!i_VERIFICA_NO_NULO_EN(modulo, linea, nombre) ||
        !i_VERIFICA_NO_NULO_EN(modulo, linea, modo))
        return nullptr;
    const i_ruta_t ruta = i_ruta_sistema(nombre);
    i_al_lado_t al_lado = i_es_guardado(modo) ? i_sistema_crea_al_lado(ruta, i_es_texto(modo))
                                              : i_al_lado_t{nullptr, {}, {}, 0};
    std::FILE *abierto = al_lado.flujo;
    if (!abierto && al_lado.fallo == 0)
        abierto = i_sistema_abre(ruta, modo);
    else if (!abierto)
        errno = al_lado.fallo;
    if (!abierto) {
        const int motivo = errno;
        i_VERIFICA_NO_NULO_EN(modulo, linea, abierto);
        errno = motivo;
        return nullptr;
    }
    std::setvbuf(abierto, nullptr, _IOFBF, i_TAM_BUFFER_FICHERO);
    return new (marlspy_nousar_malloc(sizeof(lc_fichero_t))) lc_fichero_t{
        abierto, 0, 0, modulo, linea, std::move(al_lado.destino), std::move(al_lado.nuevo)};
}

tqbool lc_fwrite(lc_fichero_t *fichero, const void *datos, size_t num) {
    if (!i_fichero_empieza_escritura(fichero))
        return FALSO;
    if (num > 0 && std::fwrite(datos, 1, num, fichero->flujo) != num) {
        i_fichero_anota_fallo(fichero);
        return FALSO;
    }
    return CIERTO;
}

// Each step is taken only when every earlier one succeeded, so at most one fails; the file is
// closed in any case, and a failed save's new file removed. The report comes last, when nothing
// is left to undo: a trap frame may catch it.
int lc_fclose(lc_fichero_t *fichero) {
    if (!fichero)
        return EBADF;
    const bool al_lado = !fichero->nuevo.empty();
    int fallo_escritura = fichero->fallo_escritura, fallo_volcado = 0, fallo_cierre = 0,
        fallo_sustitucion = 0;
    if (fallo_escritura == 0 && std::fflush(fichero->flujo) != 0)
        fallo_escritura = i_errno();
    if (fallo_escritura == 0 && al_lado)
        fallo_volcado = i_fallo_simulado(i_PASO_VOLCADO) ? EIO : i_sistema_vuelca(fichero->flujo);
    const int error_cierre = std::fclose(fichero->flujo) == 0 ? 0 : i_errno();
    if (fallo_escritura == 0 && fallo_volcado == 0)
        fallo_cierre = error_cierre;
    if (fallo_escritura == 0 && fallo_volcado == 0 && fallo_cierre == 0 && al_lado)
        fallo_sustitucion = i_fallo_simulado(i_PASO_SUSTITUCION)
                                ? EIO
                                : i_sistema_sustituye(fichero->nuevo, fichero->destino);
    const bool fallido = (fallo_escritura | fallo_volcado | fallo_cierre | fallo_sustitucion) != 0;
    if (fallido && al_lado)
        i_sistema_borra(fichero->nuevo);
    const char *modulo = fichero->modulo;
    const int linea = fichero->linea;
    i_libera(fichero);
    int fallo = 0;
    if (!i_verifica(fallo_escritura == 0, i_TEXTO_FALLO_ESCRITURA, modulo, linea))
        fallo = fallo_escritura;
    else if (!i_verifica(fallo_volcado == 0, i_TEXTO_FALLO_VOLCADO, modulo, linea))
        fallo = fallo_volcado;
    else if (!i_verifica(fallo_cierre == 0, i_TEXTO_FALLO_CIERRE, modulo, linea))
        fallo = fallo_cierre;
    else if (!i_verifica(fallo_sustitucion == 0, i_TEXTO_FALLO_SUSTITUCION, modulo, linea))
        fallo = fallo_sustitucion;
    if (fallo != 0)
        errno = fallo;
    return fallo;
}

void lc_fdescarta(lc_fichero_t *fichero) {
    if (!fichero)
        return;
    std::fclose(fichero->flujo);
    if (!fichero->nuevo.empty())
        i_sistema_borra(fichero->nuevo);
    i_libera(fichero);
}
