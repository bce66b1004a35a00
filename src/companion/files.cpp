// tqbase file component. Each platform difference (wide names, text mode) stays in this file.
#include "files.h"

#include <cstdlib>

#include "file_handle.h"
#include "tqbase/cadenas.h"
#include "tqbase/memoria.h"
#include "unicode.h"
#include "verifica.h"

namespace {

// Large enough that a writer handing over whole lines rarely waits on the system.
constexpr size_t i_TAM_BUFFER_FICHERO = size_t{1} << 16;

std::FILE *i_abre(const char16_t *nombre, const char16_t *modo) {
#if defined(_WIN32)
    return _wfopen(reinterpret_cast<const wchar_t *>(nombre),
                   reinterpret_cast<const wchar_t *>(modo));
#else
    // Names are UTF-8 on POSIX, and text mode is binary mode: 't' is dropped.
    char *nombre_utf8 = unicode_convierte_UNICODE_a_UTF8(nombre);
    char modo_c[8];
    size_t longitud = 0;
    for (const char16_t *m = modo; *m && longitud + 1 < sizeof modo_c; ++m)
        if (*m != u't')
            modo_c[longitud++] = static_cast<char>(*m);
    modo_c[longitud] = '\0';
    std::FILE *flujo = std::fopen(nombre_utf8, modo_c);
    marlstr_destruye(&nombre_utf8);
    return flujo;
#endif
}

} // namespace

lc_fichero_t *f_lc_fopen_u(const char16_t *nombre, const char16_t *modo, const char *modulo,
                           int linea) {
    if (!i_VERIFICA_EN(modulo, linea, (nombre) != NULL) ||
        !i_VERIFICA_EN(modulo, linea, (modo) != NULL))
        return nullptr;
    std::FILE *abierto = i_abre(nombre, modo);
    if (!i_VERIFICA_EN(modulo, linea, (abierto) != NULL))
        return nullptr;
    std::setvbuf(abierto, nullptr, _IOFBF, i_TAM_BUFFER_FICHERO);
    auto *fichero = static_cast<lc_fichero_t *>(marlspy_nousar_malloc(sizeof(lc_fichero_t)));
    fichero->flujo = abierto;
    return fichero;
}

int lc_fclose(lc_fichero_t *fichero) {
    if (!fichero)
        return EOF;
    const int resultado = std::fclose(fichero->flujo);
    marlspy_nousar_free_pp(&fichero, sizeof(lc_fichero_t));
    return resultado;
}
