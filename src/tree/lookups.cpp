// Member lookup by name, exactly or ignoring letter case, and extraction of a member's value.
// Each lookup is one pass over the members through the array component.
#include "tree/nodes.h"

namespace {

tqbool i_atributo_tiene_nombre(const void *elemento, const void *clave) {
    const auto *atributo = static_cast<const tqjson2_atributo_t *>(elemento);
    if (!i_VERIFICA((atributo) != NULL))
        return FALSO;
    return widestr_nousar_cadenas_iguales(atributo->nombre, static_cast<const char16_t *>(clave),
                                          i_MODULO, __LINE__);
}

tqbool i_atributo_tiene_nombre_may_o_min(const void *elemento, const void *clave) {
    const auto *atributo = static_cast<const tqjson2_atributo_t *>(elemento);
    if (!i_VERIFICA((atributo) != NULL))
        return FALSO;
    return widestr_nousar_cadenas_iguales_may_o_min(
        atributo->nombre, static_cast<const char16_t *>(clave), i_MODULO, __LINE__);
}

bool i_es_objeto(const tqjson2_nodo_t *nodo_objeto) {
    return i_VERIFICA((nodo_objeto) != NULL) && i_VERIFICA(nodo_objeto->tipo == TQJSON_TIPO_OBJETO);
}

// The position of the only member named exactly `etiqueta`.
bool i_posicion_unica(const tqjson2_nodo_t *nodo_objeto, const char16_t *etiqueta,
                      uint32_t *posicion) {
    return arr_ExisteUnicaEstructuraConTipo(nodo_objeto->atributos_objeto, etiqueta,
                                            i_atributo_tiene_nombre, posicion) == CIERTO;
}

tqjson2_atributo_t *i_atributo_en(const tqjson2_nodo_t *nodo_objeto, uint32_t posicion) {
    return static_cast<tqjson2_atributo_t *>(
        arr_GetPunteroConTipo(nodo_objeto->atributos_objeto, posicion));
}

} // namespace

tqbool tqjson2_existe_atributo_con_nombre_en_objeto(const tqjson2_nodo_t *nodo_objeto,
                                                    const char16_t *etiqueta,
                                                    tqjson2_nodo_t **valor) {
    uint32_t posicion = 0;
    const bool existe =
        i_es_objeto(nodo_objeto) && i_posicion_unica(nodo_objeto, etiqueta, &posicion);
    if (valor) {
        const tqjson2_atributo_t *atributo =
            existe ? i_atributo_en(nodo_objeto, posicion) : nullptr;
        *valor = atributo ? atributo->valor : nullptr;
    }
    return existe ? CIERTO : FALSO;
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
    // A member holding null gives way to a later member of the same name that holds a value.
    bool con_valor = false, con_null = false;
    const arr_puntero_t *atributos = nodo_objeto->atributos_objeto;
    uint32_t posicion =
        arr_BuscarEstructuraConTipo(atributos, etiqueta, i_atributo_tiene_nombre_may_o_min);
    while (posicion != ARR_NO_ENCONTRADO) {
        const tqjson2_atributo_t *atributo_en_pos = i_atributo_en(nodo_objeto, posicion);
        if (!i_VERIFICA((atributo_en_pos) != NULL) || !i_VERIFICA((atributo_en_pos->valor) != NULL))
            break;
        if (valor)
            *valor = atributo_en_pos->valor;
        if (atributo_en_pos->valor->tipo != TQJSON_TIPO_NULL) {
            con_valor = true;
            break;
        }
        con_null = true;
        posicion = arr_BuscarSiguienteEstructuraConTipo(atributos, posicion + 1, etiqueta,
                                                        i_atributo_tiene_nombre_may_o_min);
    }
    return (con_valor || con_null) ? CIERTO : FALSO;
}

tqbool tqjson2_se_extrae_atributo_con_nombre_de_objeto(tqjson2_nodo_t *nodo_objeto,
                                                       const char16_t *etiqueta,
                                                       tqjson2_nodo_t **valor) {
    uint32_t posicion = 0;
    if (!i_es_objeto(nodo_objeto) || !i_posicion_unica(nodo_objeto, etiqueta, &posicion)) {
        if (valor)
            *valor = nullptr;
        return FALSO;
    }
    tqjson2_atributo_t *atributo = i_atributo_en(nodo_objeto, posicion);
    if (!i_VERIFICA((atributo) != NULL) || !i_VERIFICA((valor) != NULL))
        return FALSO;
    // The member gives its value up before it goes, so removing it frees the name and the
    // record but never the value, owned or borrowed.
    *valor = i_toma_no_null(&atributo->valor);
    arr_BorrarEstructuraConTipo(nodo_objeto->atributos_objeto, posicion,
                                i_destruye_atributo_elemento);
    return CIERTO;
}
