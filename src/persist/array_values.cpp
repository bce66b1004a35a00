// Named arrays: a caller's typed array saved as a member holding a JSON array, and loaded back
// into a new typed array. The _en_array forms work on an array node the caller already has.
#include "persist/persist.h"
#include "report_texts.h"

namespace {

// A new array node filled by `llena`, appended under `etiqueta`. No presence test: a label
// already there gets a second member behind the first.
template <class Arr>
void i_graba_arr(const char16_t *etiqueta, const Arr *valores, tqjson2_nodo_t *nodo,
                 void (*llena)(const Arr *, tqjson2_nodo_t *)) {
    tqjson2_nodo_t *nuevo = tqjson2_crea_nodo_array();
    llena(valores, nuevo);
    tqjson2_append_nodo_a_objeto(nodo, etiqueta, &nuevo);
}

// Appends every element of the typed array, in order, with the append of its kind; the array
// stays the caller's.
template <class Arr, class T, class U>
void i_graba_elementos(const Arr *valores, tqjson2_nodo_t *nodo_array, uint32_t (*num)(const Arr *),
                       T (*get)(const Arr *, uint32_t), void (*agrega)(tqjson2_nodo_t *, U)) {
    const uint32_t n = num(valores);
    for (uint32_t i = 0; i < n; ++i)
        agrega(nodo_array, get(valores, i));
}

// The array made by `lee_en_array` from the member `etiqueta`, or the empty one `crea` makes.
template <class Arr>
Arr *i_lee_arr(const char16_t *etiqueta, const tqjson2_nodo_t *nodo,
               Arr *(*lee_en_array)(const tqjson2_nodo_t *), Arr *(*crea)(uint32_t)) {
    tqjson2_nodo_t *nodo_dato = nullptr;
    return tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta, &nodo_dato) == CIERTO
               ? lee_en_array(nodo_dato)
               : crea(0);
}

// A new array of as many elements as the array node holds, each stored by `guarda(result,
// index, element)` in the order of the JSON array. A node that is not an array is reported by
// the element getter and gives an empty array.
template <class Arr, class Guarda>
Arr *i_lee_elementos(const tqjson2_nodo_t *nodo_array, Arr *(*crea)(uint32_t), Guarda guarda) {
    const arr_puntero_t *lista = tqjson2_get_valores_array(nodo_array);
    const uint32_t n = lista ? arr_NumElemsPuntero(lista) : 0;
    Arr *resultado = crea(n);
    for (uint32_t i = 0; i < n; ++i)
        guarda(resultado, i, static_cast<const tqjson2_nodo_t *>(arr_GetPunteroConTipo(lista, i)));
    return resultado;
}

} // namespace

void tqjson2_graba_arr_bool_en_array(const arr_bool_t *valores, tqjson2_nodo_t *nodo_array) {
    i_graba_elementos(valores, nodo_array, arr_NumElemsBOOL, arr_GetBOOL,
                      tqjson2_append_bool_a_array);
}

void tqjson2_graba_arr_cadenas_en_array(const arr_cadena_t *valores, tqjson2_nodo_t *nodo_array) {
    i_graba_elementos(valores, nodo_array, arr_NumElemsCADENA, arr_GetCADENA,
                      tqjson2_append_cadena_ansi_a_array);
}

void tqjson2_graba_arr_cadenas_unicode_en_array(const arr_cadena_u_t *valores,
                                                tqjson2_nodo_t *nodo_array) {
    i_graba_elementos(valores, nodo_array, arr_NumElemsCADENA_u, arr_GetCADENA_u,
                      tqjson2_append_cadena_unicode_a_array);
}

void tqjson2_graba_arr_ulong_en_array(const arr_ulong_t *valores, tqjson2_nodo_t *nodo_array) {
    i_graba_elementos(valores, nodo_array, arr_NumElemsULong, arr_GetULong,
                      tqjson2_append_ulong_a_array);
}

void tqjson2_graba_arr_bool(const char16_t *etiqueta, const arr_bool_t *valores,
                            tqjson2_nodo_t *nodo) {
    i_graba_arr(etiqueta, valores, nodo, tqjson2_graba_arr_bool_en_array);
}

void tqjson2_graba_arr_cadenas(const char16_t *etiqueta, const arr_cadena_t *valores,
                               tqjson2_nodo_t *nodo) {
    i_graba_arr(etiqueta, valores, nodo, tqjson2_graba_arr_cadenas_en_array);
}

void tqjson2_graba_arr_cadenas_unicode(const char16_t *etiqueta, const arr_cadena_u_t *valores,
                                       tqjson2_nodo_t *nodo) {
    i_graba_arr(etiqueta, valores, nodo, tqjson2_graba_arr_cadenas_unicode_en_array);
}

void tqjson2_graba_arr_ulong(const char16_t *etiqueta, const arr_ulong_t *valores,
                             tqjson2_nodo_t *nodo) {
    i_graba_arr(etiqueta, valores, nodo, tqjson2_graba_arr_ulong_en_array);
}

arr_bool_t *tqjson2_lee_arr_bool_en_array(const tqjson2_nodo_t *nodo_array) {
    return i_lee_elementos(nodo_array, arr_CreaBOOL,
                           [](arr_bool_t *resultado, uint32_t i, const tqjson2_nodo_t *elemento) {
                               tqbool valor = FALSO;
                               const tqbool es_valor_bool =
                                   tqjson2_es_valor_booleano(elemento, &valor);
                               i_VERIFICA_TEXTO(es_valor_bool == CIERTO, i_TEXTO_ELEMENTO_BOOLEANO);
                               arr_SetBOOL(resultado, i, valor);
                           });
}

arr_cadena_t *tqjson2_lee_arr_cadenas_en_array(const tqjson2_nodo_t *nodo_array) {
    return i_lee_elementos(nodo_array, arr_CreaCADENA,
                           [](arr_cadena_t *resultado, uint32_t i, const tqjson2_nodo_t *elemento) {
                               char *texto = tqjson2_get_valor_cadena_decodificada_ANSI(elemento);
                               arr_SetCADENAOriginal(resultado, i, &texto);
                           });
}

arr_cadena_u_t *tqjson2_lee_arr_cadenas_unicode_en_array(const tqjson2_nodo_t *nodo_array) {
    return i_lee_elementos(
        nodo_array, arr_CreaCADENA_u,
        [](arr_cadena_u_t *resultado, uint32_t i, const tqjson2_nodo_t *elemento) {
            char16_t *texto = tqjson2_get_valor_cadena_unicode(elemento);
            arr_SetCADENAOriginal_u(resultado, i, &texto);
        });
}

arr_double_t *tqjson2_lee_arr_double_en_array(const tqjson2_nodo_t *nodo_array) {
    return i_lee_elementos(
        nodo_array, arr_CreaDouble,
        [](arr_double_t *resultado, uint32_t i, const tqjson2_nodo_t *elemento) {
            double valor = 0;
            if (tqjson2_es_valor_double(elemento, &valor) != CIERTO) {
                int32_t entero = 0;
                const tqbool es_valor_entero = tqjson2_es_valor_entero(elemento, &entero);
                i_VERIFICA_TEXTO(es_valor_entero == CIERTO, i_TEXTO_ELEMENTO_NUMERO);
                valor = es_valor_entero == CIERTO ? entero : 0.0;
            }
            arr_SetDouble(resultado, i, valor);
        });
}

arr_ulong_t *tqjson2_lee_arr_ulong_en_array(const tqjson2_nodo_t *nodo_array) {
    return i_lee_elementos(nodo_array, arr_CreaULong,
                           [](arr_ulong_t *resultado, uint32_t i, const tqjson2_nodo_t *elemento) {
                               const int32_t entero = tqjson2_get_valor_entero(elemento);
                               // A reported element reads as 0, not as the getter's fill value.
                               arr_SetULong(resultado, i,
                                            elemento && elemento->tipo == TQJSON_TIPO_ENTERO
                                                ? cambtipo_long_a_unsigned_long(entero)
                                                : 0);
                           });
}

arr_bool_t *tqjson2_lee_arr_bool(const char16_t *etiqueta, const tqjson2_nodo_t *nodo) {
    return i_lee_arr(etiqueta, nodo, tqjson2_lee_arr_bool_en_array, arr_CreaBOOL);
}

arr_cadena_t *tqjson2_lee_arr_cadenas(const char16_t *etiqueta, const tqjson2_nodo_t *nodo) {
    return i_lee_arr(etiqueta, nodo, tqjson2_lee_arr_cadenas_en_array, arr_CreaCADENA);
}

arr_cadena_u_t *tqjson2_lee_arr_cadenas_unicode(const char16_t *etiqueta,
                                                const tqjson2_nodo_t *nodo) {
    return i_lee_arr(etiqueta, nodo, tqjson2_lee_arr_cadenas_unicode_en_array, arr_CreaCADENA_u);
}

arr_double_t *tqjson2_lee_arr_double(const char16_t *etiqueta, const tqjson2_nodo_t *nodo) {
    return i_lee_arr(etiqueta, nodo, tqjson2_lee_arr_double_en_array, arr_CreaDouble);
}

arr_ulong_t *tqjson2_lee_arr_ulong(const char16_t *etiqueta, const tqjson2_nodo_t *nodo) {
    return i_lee_arr(etiqueta, nodo, tqjson2_lee_arr_ulong_en_array, arr_CreaULong);
}
