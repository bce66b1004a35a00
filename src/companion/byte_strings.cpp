// tqbase string component: byte strings.
#include "byte_strings.h"

#include <cstring>

#include "traspaso.h"
#include "verifica.h"

static const char *const i_MODULO = "tqbase: cadenas";

static char *i_nueva(size_t tam) {
    char *cadena = static_cast<char *>(marlspy_nousar_malloc(tam ? tam : 1));
    cadena[0] = '\0';
    return cadena;
}

char *creacadena(size_t tam) {
    return i_nueva(tam);
}

char *creacadena_con_caracter(size_t num, char caracter) {
    char *cadena = i_nueva(num + 1);
    std::memset(cadena, caracter, num);
    cadena[num] = '\0';
    return cadena;
}

char *cad_copia_cadena(const char *cadena) {
    if (!i_VERIFICA_NO_NULO(cadena))
        return i_nueva(1);
    const size_t tam = std::strlen(cadena) + 1;
    char *copia = static_cast<char *>(marlspy_nousar_malloc(tam));
    std::memcpy(copia, cadena, tam);
    return copia;
}

void cad_concatena(char **cadena, const char *sufijo) {
    if (!i_VERIFICA_NO_NULO(cadena) || !i_VERIFICA_NO_NULO(*cadena) || !i_VERIFICA_NO_NULO(sufijo))
        return;
    const size_t longitud = std::strlen(*cadena);
    const size_t tam_sufijo = std::strlen(sufijo) + 1;
    *cadena = static_cast<char *>(marlspy_nousar_realloc(*cadena, longitud + tam_sufijo));
    std::memcpy(*cadena + longitud, sufijo, tam_sufijo);
}

static char i_minuscula_ascii(char c) {
    return (c >= 'A' && c <= 'Z') ? char(c - 'A' + 'a') : c;
}

tqbool cad_cadenas_iguales_may_o_min(const char *cadena_1, const char *cadena_2) {
    if (!i_VERIFICA_NO_NULO(cadena_1) || !i_VERIFICA_NO_NULO(cadena_2))
        return FALSO;
    for (; *cadena_1 && *cadena_2; ++cadena_1, ++cadena_2)
        if (i_minuscula_ascii(*cadena_1) != i_minuscula_ascii(*cadena_2))
            return FALSO;
    return (*cadena_1 == *cadena_2) ? CIERTO : FALSO;
}

// Like free, a null string is accepted: there is nothing to release.
void marlstr_destruye(char **cadena) {
    if (i_VERIFICA_NO_NULO(cadena))
        marlspy_nousar_free_pp(cadena, 1);
}
