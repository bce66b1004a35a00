// Building trees: appending members to objects and elements to arrays. Every append ends in
// one of the two core appends, which take the member or node over.
#include "report_texts.h"
#include "tree/guarded_text.h"
#include "tree/member_index.h"

void tqjson2_append_atributo_a_objeto(tqjson2_nodo_t *objeto, tqjson2_atributo_t **atributo) {
    // The object is judged before the member is taken over; a refused member is still taken and
    // destroyed, so that it is not leaked.
    const bool acepta =
        i_VERIFICA_NO_NULO(objeto) &&
        i_VERIFICA_TEXTO(objeto->tipo == TQJSON_TIPO_OBJETO, i_TEXTO_OBJETO_ES_OBJETO) &&
        i_VERIFICA_NO_NULO(objeto->atributos_objeto);
    tqjson2_atributo_t *propio = i_toma_no_null(atributo);
    if (!propio)
        return;
    if (acepta)
        i_agrega_atributo(objeto->atributos_objeto, propio);
    else
        i_destruye_atributo(&propio);
}

void tqjson2_append_elemento_a_array(tqjson2_nodo_t *nodo_array, tqjson2_nodo_t **nodo) {
    const bool acepta =
        i_VERIFICA_NO_NULO(nodo_array) &&
        i_VERIFICA_TEXTO(nodo_array->tipo == TQJSON_TIPO_ARRAY, i_TEXTO_NODO_ARRAY_ES_ARRAY) &&
        i_VERIFICA_NO_NULO(nodo_array->valores_array);
    tqjson2_nodo_t *propio = i_toma_no_null(nodo);
    if (!propio)
        return;
    if (acepta)
        arr_AppendPunteroConTipo(nodo_array->valores_array, propio);
    else
        tqjson2_destruye_nodo(&propio);
}

void tqjson2_append_nodo_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                  tqjson2_nodo_t **nodo) {
    tqjson2_atributo_t *atributo = tqjson2_crea_atributo(etiqueta, nodo);
    tqjson2_append_atributo_a_objeto(objeto, &atributo);
}

void tqjson2_append_puntero_nodo_const_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                                const tqjson2_nodo_t *nodo) {
    // The member only borrows the node: the tree never changes or destroys it.
    tqjson2_atributo_t *atributo =
        i_crea_atributo_const(etiqueta, const_cast<tqjson2_nodo_t *>(nodo));
    tqjson2_append_atributo_a_objeto(objeto, &atributo);
}

// Appends a new node under `etiqueta`, or as the last element when the container is an array:
// the one place where the value appends differ is the node they make.
static void i_append_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                              tqjson2_nodo_t *nodo) {
    tqjson2_append_nodo_a_objeto(objeto, etiqueta, &nodo);
}

static void i_append_a_array(tqjson2_nodo_t *nodo_array, tqjson2_nodo_t *nodo) {
    tqjson2_append_elemento_a_array(nodo_array, &nodo);
}

// A string node from a copy of the caller's wide text, in the escaped form.
static tqjson2_nodo_t *i_nodo_texto_unicode_copiado(const char16_t *texto) {
    char16_t *copia = widestr_nousar_copia(texto, i_MODULO, __LINE__);
    return tqjson2_crea_nodo_texto_unicode_a_utf8(&copia);
}

// A plain string node from ANSI text, converted to UTF-8 without escaping.
static tqjson2_nodo_t *i_nodo_texto_ansi(const char *texto_ansi) {
    char *utf8 = unicode_convierte_ANSI_a_UTF8(texto_ansi);
    return tqjson2_crea_nodo_texto_utf8(&utf8);
}

// A string node holding the decimal digits of a time.
static tqjson2_nodo_t *i_nodo_tiempo(const char16_t *formato, int64_t valor) {
    char16_t *digitos = copiaforu_nousar_formatea(formato, valor);
    return tqjson2_crea_nodo_texto_unicode_a_utf8(&digitos);
}

void tqjson2_append_long_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta, int32_t valor) {
    i_append_a_objeto(objeto, etiqueta, tqjson2_crea_nodo_entero(valor));
}

void tqjson2_append_long_a_array(tqjson2_nodo_t *nodo_array, int32_t valor) {
    i_append_a_array(nodo_array, tqjson2_crea_nodo_entero(valor));
}

void tqjson2_append_ulong_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                   uint32_t valor) {
    i_append_a_objeto(objeto, etiqueta,
                      tqjson2_crea_nodo_entero(cambtipo_unsigned_long_a_long(valor)));
}

void tqjson2_append_ulong_a_array(tqjson2_nodo_t *nodo_array, uint32_t valor) {
    i_append_a_array(nodo_array, tqjson2_crea_nodo_entero(cambtipo_unsigned_long_a_long(valor)));
}

void tqjson2_append_double_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                    double valor) {
    i_append_a_objeto(objeto, etiqueta, tqjson2_crea_nodo_double(valor));
}

void tqjson2_append_double_a_array(tqjson2_nodo_t *nodo_array, double valor) {
    i_append_a_array(nodo_array, tqjson2_crea_nodo_double(valor));
}

void tqjson2_append_tqbool_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                    tqbool valor) {
    i_append_a_objeto(objeto, etiqueta, tqjson2_crea_nodo_booleano(valor));
}

void tqjson2_append_bool_a_array(tqjson2_nodo_t *nodo_array, tqbool valor) {
    i_append_a_array(nodo_array, tqjson2_crea_nodo_booleano(valor));
}

void tqjson2_append_null_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta) {
    i_append_a_objeto(objeto, etiqueta, tqjson2_crea_nodo_null());
}

void tqjson2_append_cadena_unicode_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                            const char16_t *texto) {
    i_append_a_objeto(objeto, etiqueta, i_nodo_texto_unicode_copiado(texto));
}

void tqjson2_append_cadena_unicode_a_array(tqjson2_nodo_t *nodo_array, const char16_t *texto) {
    i_append_a_array(nodo_array, i_nodo_texto_unicode_copiado(texto));
}

void tqjson2_append_cadena_unicode_a_array_pp(tqjson2_nodo_t *nodo_array, char16_t **texto) {
    i_append_a_array(nodo_array, tqjson2_crea_nodo_texto_unicode_a_utf8(texto));
}

void tqjson2_append_cadena_utf8_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                         char **texto_utf8) {
    i_append_a_objeto(objeto, etiqueta, tqjson2_crea_nodo_texto_utf8(texto_utf8));
}

void tqjson2_append_cadena_utf8_a_array(tqjson2_nodo_t *nodo_array, char **texto_utf8) {
    i_append_a_array(nodo_array, tqjson2_crea_nodo_texto_utf8(texto_utf8));
}

void tqjson2_append_cadena_ansi_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                         const char *texto_ansi) {
    i_append_a_objeto(objeto, etiqueta, i_nodo_texto_ansi(texto_ansi));
}

void tqjson2_append_cadena_ansi_a_array(tqjson2_nodo_t *nodo_array, const char *texto_ansi) {
    i_append_a_array(nodo_array, i_nodo_texto_ansi(texto_ansi));
}

void tqjson2_append_time_t_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                    int64_t valor) {
    i_append_a_objeto(objeto, etiqueta, i_nodo_tiempo(u"%Id", valor));
}

void tqjson2_append_time64_t_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                      int64_t valor) {
    i_append_a_objeto(objeto, etiqueta, i_nodo_tiempo(u"%lld", valor));
}

// Only reading the caller's text can fault: it alone is copied under the guard, so that a
// failure caught there abandons nothing half-built, and the member is appended after it.
void tqjson2_append_cadena_unicode_a_objeto_seguro(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                                   const char16_t *texto) {
    char16_t *copia =
        i_texto_guardado([&] { return widestr_nousar_copia(texto, i_MODULO, __LINE__); },
                         u"<Writted uninitialized variable>");
    if (copia)
        i_append_a_objeto(objeto, etiqueta, tqjson2_crea_nodo_texto_unicode_a_utf8(&copia));
}
