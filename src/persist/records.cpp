// Records within records: the caller's callbacks fill and read object nodes that the library
// places under a label, alone or as the elements of a JSON array; and JSON texts carried
// through save streams.
#include "persist/persist.h"
#include "report_texts.h"

namespace {

// A new object node that `func_graba_item` has filled from `item`; the callback is tested by
// the caller.
tqjson2_nodo_t *i_objeto_de(void *item, tqjson2_func_graba_item_t func_graba_item) {
    tqjson2_nodo_t *objeto = tqjson2_crea_nodo_objeto();
    if (func_graba_item)
        func_graba_item(item, objeto);
    return objeto;
}

// The member `etiqueta` when `nodo` is an object and the member is one too, else null; with no
// report of its own, and none from the kind queries, which only meet non-null nodes here.
const tqjson2_nodo_t *i_objeto_miembro(const char16_t *etiqueta, const tqjson2_nodo_t *nodo) {
    tqjson2_nodo_t *nodo_dato = nullptr;
    const bool es_objeto_miembro =
        nodo && tqjson2_tipo_nodo(nodo) == TQJSON_TIPO_OBJETO &&
        tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta, &nodo_dato) == CIERTO &&
        nodo_dato && tqjson2_tipo_nodo(nodo_dato) == TQJSON_TIPO_OBJETO;
    return es_objeto_miembro ? nodo_dato : nullptr;
}

} // namespace

void tqjson2_nousar_graba_ST(const char16_t *etiqueta, void *item,
                             tqjson2_func_graba_item_t func_graba_item, tqjson2_nodo_t *nodo) {
    i_VERIFICA_NO_NULO(func_graba_item);
    tqjson2_nodo_t *objeto = i_objeto_de(item, func_graba_item); // joins the tree only afterwards
    tqjson2_append_nodo_a_objeto(nodo, etiqueta, &objeto);
}

void tqjson2_nousar_graba_ST_opcional(const char16_t *etiqueta, void *item,
                                      tqjson2_func_graba_item_t func_graba_item,
                                      tqjson2_nodo_t *nodo) {
    if (item)
        tqjson2_nousar_graba_ST(etiqueta, item, func_graba_item, nodo);
}

void tqjson2_nousar_graba_arr_punterosST(const char16_t *etiqueta, const arr_puntero_t *items,
                                         tqjson2_func_graba_item_t func_graba_item,
                                         tqjson2_nodo_t *nodo) {
    i_VERIFICA_NO_NULO(func_graba_item);
    tqjson2_nodo_t *array = tqjson2_crea_nodo_array();
    const uint32_t n = arr_NumElemsPuntero(items);
    for (uint32_t i = 0; i < n; ++i) {
        tqjson2_nodo_t *objeto = i_objeto_de(arr_GetPunteroConTipo(items, i), func_graba_item);
        tqjson2_append_elemento_a_array(array, &objeto);
    }
    tqjson2_append_nodo_a_objeto(nodo, etiqueta, &array);
}

void *tqjson2_nousar_lee_ST(const char16_t *etiqueta, tqjson2_func_lee_item_t func_lee_item,
                            const tqjson2_nodo_t *nodo) {
    // The three tests in one condition, as one report, stopping at the first that fails.
    tqjson2_nodo_t *nodo_dato = nullptr;
    if (!i_VERIFICA_TEXTO(tqjson2_tipo_nodo(nodo) == TQJSON_TIPO_OBJETO &&
                              tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta,
                                                                           &nodo_dato) == CIERTO &&
                              tqjson2_tipo_nodo(nodo_dato) == TQJSON_TIPO_OBJETO,
                          i_TEXTO_MIEMBRO_OBJETO))
        return nullptr;
    if (!i_VERIFICA_NO_NULO(func_lee_item))
        return nullptr;
    return func_lee_item(nodo_dato);
}

void *tqjson2_nousar_lee_ST_opcional(const char16_t *etiqueta,
                                     tqjson2_func_lee_item_t func_lee_item,
                                     const tqjson2_nodo_t *nodo) {
    const tqjson2_nodo_t *nodo_dato = i_objeto_miembro(etiqueta, nodo);
    if (!nodo_dato || !i_VERIFICA_NO_NULO(func_lee_item))
        return nullptr;
    return func_lee_item(nodo_dato);
}

arr_puntero_t *tqjson2_nousar_lee_arr_punterosST(const char16_t *etiqueta,
                                                 tqjson2_func_lee_item_t func_lee_item,
                                                 const tqjson2_nodo_t *nodo) {
    tqjson2_nodo_t *nodo_dato = nullptr;
    if (tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta, &nodo_dato) != CIERTO)
        return arr_CreaPunteroConTipo(0);
    const bool hay_funcion = i_VERIFICA_NO_NULO(func_lee_item);
    const arr_puntero_t *elementos = tqjson2_get_valores_array(nodo_dato);
    const uint32_t n = elementos ? arr_NumElemsPuntero(elementos) : 0;
    arr_puntero_t *resultado = arr_CreaPunteroConTipo(n);
    for (uint32_t i = 0; i < n && hay_funcion; ++i)
        arr_SetPunteroConTipo(resultado, i,
                              func_lee_item(static_cast<const tqjson2_nodo_t *>(
                                  arr_GetPunteroConTipo(elementos, i))));
    return resultado;
}

void tqjson2_graba_str_json_marlsave(const char *str_json, marlsave_t *stream) {
    marlsave_graba_cadena_como_buffer(str_json, stream);
}

void tqjson2_graba_str_json_marlsave_opcional(const char *str_json, marlsave_t *stream) {
    marlsave_graba_bool(str_json ? CIERTO : FALSO, stream);
    if (str_json)
        marlsave_graba_cadena_como_buffer(str_json, stream);
}

char *tqjson2_lee_str_json_marlsave(marlsave_t *stream) {
    return marlsave_lee_cadena_como_buffer(stream);
}

char *tqjson2_lee_str_json_marlsave_opcional(marlsave_t *stream) {
    return marlsave_lee_bool(stream) == CIERTO ? marlsave_lee_cadena_como_buffer(stream) : nullptr;
}
