// The reading exports: a file, or UTF-8 text in memory, to a tree.
#include "reader/reader.h"

namespace {

const char *i_salta_bom_utf8(const char *texto) {
    const auto *bytes = reinterpret_cast<const unsigned char *>(texto);
    // One byte at a time, so that a shorter text is never read past its terminator.
    if (bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF)
        return texto + 3;
    return texto;
}

tqjson2_error_t *i_crea_error(int32_t linea, int32_t columna) {
    auto *error = static_cast<tqjson2_error_t *>(marlspy_nousar_malloc(sizeof(tqjson2_error_t)));
    error->linea = linea;
    error->columna = columna;
    return error;
}

// The text is scanned as UTF-8 where it stands: the lexer gives the tokens of its UTF-16
// form without the text being converted as a whole.
tqbool i_se_lee_texto_utf8(const char *texto, tqbool decodifica_secuencias_escape,
                           tqjson2_nodo_t **nodo) {
    if (!i_VERIFICA_NO_NULO(texto)) {
        if (nodo)
            *nodo = nullptr;
        return FALSO;
    }
    anlex_palabras_reservadas_t *palabras = i_crea_palabras_reservadas();
    anlex_t *lex = anlex_crea_analizando_memoria_utf8(i_salta_bom_utf8(texto), &palabras, CIERTO);
    const tqbool resultado = i_lee_json(lex, decodifica_secuencias_escape, nodo);
    anlex_destruye(&lex);
    return resultado;
}

} // namespace

tqbool tqjson2_se_lee_fichero(const char16_t *nombre_fichero, tqjson2_nodo_t **nodo) {
    return tqjson2_se_lee_fichero_ex(nombre_fichero, CIERTO, FALSO, nodo, nullptr);
}

tqbool tqjson2_se_lee_fichero_ex(const char16_t *nombre_fichero,
                                 tqbool decodifica_secuencias_escape, tqbool lectura_con_fread,
                                 tqjson2_nodo_t **nodo, tqjson2_error_t **error) {
    if (cdir_existe_fichero_UNICODE(nombre_fichero) != CIERTO)
        return FALSO;
    anlex_palabras_reservadas_t *palabras = i_crea_palabras_reservadas();
    anlex_t *lex =
        lectura_con_fread == CIERTO
            ? anlex_crea_analizando_fichero_lectura_con_fread(nombre_fichero, &palabras, CIERTO)
            : anlex_crea_analizando_fichero(nombre_fichero, &palabras, CIERTO);
    const tqbool resultado = i_lee_json(lex, decodifica_secuencias_escape, nodo);
    if (error) {
        *error = nullptr;
        if (resultado != CIERTO) {
            int32_t linea = 0, columna = 0;
            anlex_linea_y_columna_actual(lex, &linea, &columna);
            *error = i_crea_error(linea, columna);
        }
    }
    anlex_destruye(&lex);
    return resultado;
}

tqbool tqjson2_se_lee_texto_utf8(const char *texto, tqjson2_nodo_t **nodo) {
    return i_se_lee_texto_utf8(texto, CIERTO, nodo);
}

tqbool tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(const char *texto,
                                                                 tqjson2_nodo_t **nodo) {
    return i_se_lee_texto_utf8(texto, FALSO, nodo);
}

void tqjson2_error_destruye(tqjson2_error_t **error) {
    if (i_VERIFICA_NO_NULO(error))
        marlspy_nousar_free_pp(error, sizeof(tqjson2_error_t));
}
