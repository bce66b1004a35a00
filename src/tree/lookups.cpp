// Member lookup by name, exactly or ignoring letter case, and extraction of a member's value.
// A small object is searched member by member, over the elements that the array component lends,
// with the comparators below; a large one through its index (member_index.h), which gives the same
// answers.
#include "report_texts.h"
#include "tree/member_index.h"

namespace {

tqbool i_atributo_tiene_nombre(const void *elemento, const void *clave) {
    const auto *atributo = static_cast<const tqjson2_atributo_t *>(elemento);
    if (!i_VERIFICA_NO_NULO(atributo))
        return FALSO;
    return widestr_nousar_cadenas_iguales(atributo->nombre, static_cast<const char16_t *>(clave),
                                          i_MODULO, __LINE__);
}

tqbool i_atributo_tiene_nombre_may_o_min(const void *elemento, const void *clave) {
    const auto *atributo = static_cast<const tqjson2_atributo_t *>(elemento);
    if (!i_VERIFICA_NO_NULO(atributo))
        return FALSO;
    return widestr_nousar_cadenas_iguales_may_o_min(
        atributo->nombre, static_cast<const char16_t *>(clave), i_MODULO, __LINE__);
}

bool i_es_objeto(const tqjson2_nodo_t *nodo_objeto) {
    return i_VERIFICA_NO_NULO(nodo_objeto) &&
           i_VERIFICA_TEXTO(nodo_objeto->tipo == TQJSON_TIPO_OBJETO, i_TEXTO_NODO_OBJETO_ES_OBJETO);
}

// An object's members as the array component lends them: valid until the object changes.
struct i_miembros {
    const arr_puntero_t *arr;
    void *const *datos;
    uint32_t num;

    explicit i_miembros(const tqjson2_nodo_t *nodo_objeto)
        : arr(nodo_objeto->atributos_objeto), datos(nullptr), num(0) {
        datos = arr_DatosPunteroConTipo(arr, &num);
    }
    const tqjson2_atributo_t *en(uint32_t posicion) const {
        return static_cast<const tqjson2_atributo_t *>(datos[posicion]);
    }
    // Through the index of a large object: false when it cannot answer.
    bool en_indice(const char16_t *etiqueta, i_coincidencia coincidencia,
                   uint32_t *posicion) const {
        return num >= i_UMBRAL_INDICE &&
               i_busca_en_indice(arr, datos, num, etiqueta, coincidencia, posicion);
    }
    // The first member at or after `desde` that `coincide` accepts, or ARR_NO_ENCONTRADO.
    template <tqbool (*coincide)(const void *, const void *)>
    uint32_t busca(uint32_t desde, const char16_t *etiqueta) const {
        void *const *const elementos = datos;
        for (uint32_t i = desde, n = num; i < n; ++i)
            if (coincide(elementos[i], etiqueta) == CIERTO)
                return i;
        return ARR_NO_ENCONTRADO;
    }
    // The position of the only member named exactly `etiqueta`: the first match, and none after
    // it; ARR_NO_ENCONTRADO when there is none or a second.
    uint32_t unica(const char16_t *etiqueta) const {
        uint32_t posicion = ARR_NO_ENCONTRADO;
        if (en_indice(etiqueta, i_EXACTA, &posicion))
            return posicion;
        posicion = busca<i_atributo_tiene_nombre>(0, etiqueta);
        if (posicion == ARR_NO_ENCONTRADO ||
            busca<i_atributo_tiene_nombre>(posicion + 1, etiqueta) == ARR_NO_ENCONTRADO)
            return posicion;
        return ARR_NO_ENCONTRADO;
    }
};

} // namespace

tqbool tqjson2_existe_atributo_con_nombre_en_objeto(const tqjson2_nodo_t *nodo_objeto,
                                                    const char16_t *etiqueta,
                                                    tqjson2_nodo_t **valor) {
    uint32_t posicion = ARR_NO_ENCONTRADO;
    const tqjson2_atributo_t *atributo = nullptr;
    if (i_es_objeto(nodo_objeto)) {
        const i_miembros miembros(nodo_objeto);
        posicion = miembros.unica(etiqueta);
        if (posicion != ARR_NO_ENCONTRADO)
            atributo = miembros.en(posicion);
    }
    if (valor)
        *valor = atributo ? atributo->valor : nullptr;
    return posicion != ARR_NO_ENCONTRADO ? CIERTO : FALSO;
}

tqbool tqjson2_existe_atributo_con_nombre_en_objeto2(const tqjson2_nodo_t *nodo_objeto,
                                                     const char16_t *etiqueta,
                                                     tqjson2_nodo_t **valor) {
    return tqjson2_existe_atributo_con_nombre_en_objeto(nodo_objeto, etiqueta, valor);
}

tqbool tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(const tqjson2_nodo_t *nodo_objeto,
                                                              const char16_t *etiqueta,
                                                              tqjson2_nodo_t **valor) {
    if (!i_es_objeto(nodo_objeto))
        return FALSO;
    const i_miembros miembros(nodo_objeto);
    uint32_t posicion = 0;
    if (miembros.en_indice(etiqueta, i_MAY_O_MIN, &posicion)) {
        if (posicion == ARR_NO_ENCONTRADO)
            return FALSO;
        if (valor)
            *valor = miembros.en(posicion)->valor;
        return CIERTO;
    }
    // A member holding null gives way to a later member of the same name that holds a value.
    bool con_valor = false, con_null = false;
    posicion = miembros.busca<i_atributo_tiene_nombre_may_o_min>(0, etiqueta);
    while (posicion != ARR_NO_ENCONTRADO) {
        const tqjson2_atributo_t *atributo_en_pos = miembros.en(posicion);
        if (!i_VERIFICA_NO_NULO(atributo_en_pos) || !i_VERIFICA_NO_NULO(atributo_en_pos->valor))
            break;
        if (valor)
            *valor = atributo_en_pos->valor;
        if (atributo_en_pos->valor->tipo != TQJSON_TIPO_NULL) {
            con_valor = true;
            break;
        }
        con_null = true;
        posicion = miembros.busca<i_atributo_tiene_nombre_may_o_min>(posicion + 1, etiqueta);
    }
    return (con_valor || con_null) ? CIERTO : FALSO;
}

tqbool tqjson2_se_extrae_atributo_con_nombre_de_objeto(tqjson2_nodo_t *nodo_objeto,
                                                       const char16_t *etiqueta,
                                                       tqjson2_nodo_t **valor) {
    uint32_t posicion = ARR_NO_ENCONTRADO;
    tqjson2_atributo_t *atributo = nullptr;
    if (i_es_objeto(nodo_objeto)) {
        const i_miembros miembros(nodo_objeto);
        posicion = miembros.unica(etiqueta);
        if (posicion != ARR_NO_ENCONTRADO)
            atributo = static_cast<tqjson2_atributo_t *>(miembros.datos[posicion]);
    }
    if (!atributo) {
        if (valor)
            *valor = nullptr;
        return FALSO;
    }
    if (!i_VERIFICA_NO_NULO(valor))
        return FALSO;
    // The member gives its value up before it goes, so removing it frees the name and the
    // record but never the value, owned or borrowed.
    *valor = i_toma_no_null(&atributo->valor);
    i_borra_atributo(nodo_objeto->atributos_objeto, posicion);
    return CIERTO;
}
