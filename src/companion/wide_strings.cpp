// tqbase string component: wide strings. Reports are made against the caller's module string
// and line, which every operation but creacadena receives.
#include "wide_strings.h"

#include <cstring>

#include "letter_case.h"
#include "number_conversion.h"
#include "tqbase/memoria.h"
#include "verifica.h"

namespace {

size_t i_longitud(const char16_t *cadena) {
    const char16_t *p = cadena;
    while (*p)
        ++p;
    return static_cast<size_t>(p - cadena);
}

char16_t *i_nueva(size_t tam) {
    char16_t *cadena =
        static_cast<char16_t *>(marlspy_nousar_malloc(sizeof(char16_t) * (tam ? tam : 1)));
    cadena[0] = u'\0';
    return cadena;
}

char16_t *i_copia(const char16_t *cadena, size_t longitud) {
    char16_t *copia =
        static_cast<char16_t *>(marlspy_nousar_malloc(sizeof(char16_t) * (longitud + 1)));
    std::memcpy(copia, cadena, sizeof(char16_t) * longitud);
    copia[longitud] = u'\0';
    return copia;
}

bool i_es_blanco(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\v' || c == u'\f';
}

} // namespace

char16_t *widestr_nousar_creacadena(size_t tam) {
    return i_nueva(tam);
}

char16_t *widestr_nousar_copia(const char16_t *cadena, const char *modulo, int linea) {
    if (!i_VERIFICA_NO_NULO_EN(modulo, linea, cadena))
        return i_nueva(1);
    return i_copia(cadena, i_longitud(cadena));
}

uint32_t widestr_nousar_longitud(const char16_t *cadena, const char *modulo, int linea) {
    if (!i_VERIFICA_NO_NULO_EN(modulo, linea, cadena))
        return 0;
    return cambtipo_size_t_a_unsigned_long(i_longitud(cadena));
}

void widestr_nousar_cad_concatena(char16_t **cadena, const char16_t *sufijo, const char *modulo,
                                  int linea) {
    if (!i_VERIFICA_NO_NULO_EN(modulo, linea, cadena) ||
        !i_VERIFICA_NO_NULO_EN(modulo, linea, *cadena) ||
        !i_VERIFICA_NO_NULO_EN(modulo, linea, sufijo))
        return;
    const size_t longitud = i_longitud(*cadena);
    const size_t tam_sufijo = i_longitud(sufijo) + 1;
    *cadena = static_cast<char16_t *>(
        marlspy_nousar_realloc(*cadena, sizeof(char16_t) * (longitud + tam_sufijo)));
    std::memcpy(*cadena + longitud, sufijo, sizeof(char16_t) * tam_sufijo);
}

void widestr_nousar_sustituye(char16_t **cadena, const char16_t *nueva, const char *modulo,
                              int linea) {
    if (!i_VERIFICA_NO_NULO_EN(modulo, linea, cadena) ||
        !i_VERIFICA_NO_NULO_EN(modulo, linea, nueva))
        return;
    // Copied before the old string goes, so that replacing a string by itself is safe.
    char16_t *copia = i_copia(nueva, i_longitud(nueva));
    marlspy_nousar_free_pp(cadena, 1);
    *cadena = copia;
}

tqbool widestr_nousar_cadenas_iguales(const char16_t *cadena_1, const char16_t *cadena_2,
                                      const char *modulo, int linea) {
    if (!i_VERIFICA_NO_NULO_EN(modulo, linea, cadena_1) ||
        !i_VERIFICA_NO_NULO_EN(modulo, linea, cadena_2))
        return FALSO;
    while (*cadena_1 && *cadena_1 == *cadena_2)
        ++cadena_1, ++cadena_2;
    return (*cadena_1 == *cadena_2) ? CIERTO : FALSO;
}

tqbool widestr_nousar_cadenas_iguales_may_o_min(const char16_t *cadena_1, const char16_t *cadena_2,
                                                const char *modulo, int linea) {
    if (!i_VERIFICA_NO_NULO_EN(modulo, linea, cadena_1) ||
        !i_VERIFICA_NO_NULO_EN(modulo, linea, cadena_2))
        return FALSO;
    for (; *cadena_1 && *cadena_2; ++cadena_1, ++cadena_2)
        if (*cadena_1 != *cadena_2 &&
            i_pliega_may_o_min(*cadena_1) != i_pliega_may_o_min(*cadena_2))
            return FALSO;
    return (*cadena_1 == *cadena_2) ? CIERTO : FALSO;
}

tqbool widestr_nousar_es_subcadena_inicial(const char16_t *cadena, const char16_t *prefijo,
                                           const char *modulo, int linea) {
    if (!i_VERIFICA_NO_NULO_EN(modulo, linea, cadena) ||
        !i_VERIFICA_NO_NULO_EN(modulo, linea, prefijo))
        return FALSO;
    for (; *prefijo; ++prefijo, ++cadena)
        if (*cadena != *prefijo)
            return FALSO;
    return CIERTO;
}

tqbool widestr_nousar_es_cadena_en_blanco(const char16_t *cadena, const char *modulo, int linea) {
    if (!i_VERIFICA_NO_NULO_EN(modulo, linea, cadena))
        return FALSO;
    for (; *cadena; ++cadena)
        if (!i_es_blanco(*cadena))
            return FALSO;
    return CIERTO;
}

const char16_t *widestr_nousar_strchr(const char16_t *cadena, char16_t caracter, const char *modulo,
                                      int linea) {
    if (!i_VERIFICA_NO_NULO_EN(modulo, linea, cadena))
        return nullptr;
    for (;; ++cadena) {
        if (*cadena == caracter)
            return cadena;
        if (!*cadena)
            return nullptr;
    }
}

void widestr_nousar_destruye(char16_t **cadena, const char *modulo, int linea) {
    if (i_VERIFICA_NO_NULO_EN(modulo, linea, cadena) &&
        i_VERIFICA_NO_NULO_EN(modulo, linea, *cadena))
        marlspy_nousar_free_pp(cadena, 1);
}

void widestr_nousar_destruye_opcional(char16_t **cadena, const char *modulo, int linea) {
    if (i_VERIFICA_NO_NULO_EN(modulo, linea, cadena) && *cadena)
        marlspy_nousar_free_pp(cadena, 1);
}
