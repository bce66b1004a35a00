// The document tree's records and the internal operations that build, change and destroy
// nodes and members. Every node is made through i_crea_nodo.
#pragma once

#include <cfloat>
#include <cstddef>

#include "companion/companion.h"
#include "tqjson2.h"
#include "tqjson2_modulo.h"

// What the fields of a node hold when its kind does not use them.
inline constexpr int32_t i_ENTERO_RELLENO = 2147483647;
inline constexpr double i_DOUBLE_RELLENO = DBL_MAX; // bit pattern 0x7FEFFFFFFFFFFFFF

// A node holds one value, in the member of the union that its kind uses: 16 bytes a node.
// The value fields that its kind does not use read as their fill values (the i_..._de
// accessors), as if each kind stored every field.
struct tqjson2_nodo {
    int32_t tipo;              // TQJSON_TIPO_*
    tqbool texto_decodificado; // strings: CIERTO for plain text, FALSO for the escaped form
    tqbool booleano;           // booleans; FALSO elsewhere
    union {
        arr_puntero_t *atributos_objeto; // objects: members (tqjson2_atributo_t *)
        arr_puntero_t *valores_array;    // arrays: elements (tqjson2_nodo_t *)
        char *cadena_utf8;               // strings
        int32_t entero;                  // integers
        double valor_double;             // doubles
    };
};
static_assert(sizeof(tqjson2_nodo) == 16);

inline arr_puntero_t *i_atributos_de(const tqjson2_nodo_t *nodo) {
    return nodo->tipo == TQJSON_TIPO_OBJETO ? nodo->atributos_objeto : nullptr;
}
inline arr_puntero_t *i_valores_de(const tqjson2_nodo_t *nodo) {
    return nodo->tipo == TQJSON_TIPO_ARRAY ? nodo->valores_array : nullptr;
}
inline char *i_cadena_de(const tqjson2_nodo_t *nodo) {
    return nodo->tipo == TQJSON_TIPO_CADENA ? nodo->cadena_utf8 : nullptr;
}
inline int32_t i_entero_de(const tqjson2_nodo_t *nodo) {
    return nodo->tipo == TQJSON_TIPO_ENTERO ? nodo->entero : i_ENTERO_RELLENO;
}
inline double i_double_de(const tqjson2_nodo_t *nodo) {
    return nodo->tipo == TQJSON_TIPO_DOUBLE ? nodo->valor_double : i_DOUBLE_RELLENO;
}

// Stores the value of the node's kind in the union; what another kind would hold is not kept.
inline void i_guarda_valor(tqjson2_nodo_t *nodo, arr_puntero_t *atributos_objeto,
                           arr_puntero_t *valores_array, char *cadena_utf8, int32_t entero,
                           double valor_double) {
    nodo->cadena_utf8 = nullptr;
    switch (nodo->tipo) {
        case TQJSON_TIPO_OBJETO:
            nodo->atributos_objeto = atributos_objeto;
            break;
        case TQJSON_TIPO_ARRAY:
            nodo->valores_array = valores_array;
            break;
        case TQJSON_TIPO_CADENA:
            nodo->cadena_utf8 = cadena_utf8;
            break;
        case TQJSON_TIPO_ENTERO:
            nodo->entero = entero;
            break;
        case TQJSON_TIPO_DOUBLE:
            nodo->valor_double = valor_double;
            break;
        default:
            break;
    }
}

// Fills a new node's fields in order, storing the value of its kind (i_guarda_valor).
inline void i_inicia_nodo(tqjson2_nodo_t *nodo, int32_t tipo, arr_puntero_t *atributos_objeto,
                          arr_puntero_t *valores_array, char *cadena_utf8,
                          tqbool texto_decodificado, int32_t entero, double valor_double,
                          tqbool booleano) {
    nodo->tipo = tipo;
    nodo->texto_decodificado = texto_decodificado;
    nodo->booleano = booleano;
    i_guarda_valor(nodo, atributos_objeto, valores_array, cadena_utf8, entero, valor_double);
}

// A member's name is a block of its own, or stands in the member's block right after its
// fields (i_inicia_atributo_en_linea): one allocation for the members a read makes.
struct tqjson2_atributo {
    char16_t *nombre; // never null
    tqjson2_nodo_t *valor;
    tqbool es_propietario; // CIERTO: the member destroys its value with itself
};

// Where a name stored in the member's own block begins.
inline char16_t *i_nombre_en_linea(tqjson2_atributo_t *atributo) {
    return reinterpret_cast<char16_t *>(reinterpret_cast<char *>(atributo) +
                                        offsetof(tqjson2_atributo, es_propietario) +
                                        sizeof(tqbool));
}

// The bytes of a member's block with a name of `unidades` units in it, terminator included.
inline size_t i_tam_atributo_en_linea(size_t unidades) {
    return offsetof(tqjson2_atributo, es_propietario) + sizeof(tqbool) +
           (unidades + 1) * sizeof(char16_t);
}

// Makes `bloque` (i_tam_atributo_en_linea bytes of the memory component) an owning member with
// no value yet and a terminated name of `unidades` units in it: the reader writes the name
// straight into `nombre` and sets the value when it has read it.
inline tqjson2_atributo_t *i_inicia_atributo_en_linea(void *bloque, size_t unidades) {
    auto *atributo = static_cast<tqjson2_atributo_t *>(bloque);
    atributo->nombre = i_nombre_en_linea(atributo);
    atributo->nombre[unidades] = u'\0';
    atributo->valor = nullptr;
    atributo->es_propietario = CIERTO;
    return atributo;
}

// Allocates a node and fills its fields in order (i_inicia_nodo). The three pointers are taken over
// through their addresses; a null address gives a null field.
tqjson2_nodo_t *i_crea_nodo(int32_t tipo, arr_puntero_t **atributos_objeto,
                            arr_puntero_t **valores_array, char **cadena_utf8,
                            tqbool texto_decodificado, int32_t entero, double valor_double,
                            tqbool booleano);
tqjson2_nodo_t *i_crea_nodo_objeto_con_atributos(arr_puntero_t **atributos_objeto);
tqjson2_nodo_t *i_crea_nodo_array_con_valores(arr_puntero_t **valores_array);
// A string node that takes the UTF-8 text over as it is.
tqjson2_nodo_t *i_crea_nodo_cadena(char **cadena_utf8, tqbool texto_decodificado);
// A string node from wide text, escaped when `codifica` is CIERTO; the text is destroyed.
tqjson2_nodo_t *i_crea_nodo_texto_unicode(tqbool codifica, char16_t **texto_unicode,
                                          tqbool texto_decodificado);

// A member that takes the name over (a null name is refused) and stores the value as given.
tqjson2_atributo_t *i_crea_atributo(char16_t **nombre, tqbool es_propietario,
                                    tqjson2_nodo_t *valor);
tqjson2_atributo_t *i_crea_atributo_propietario(char16_t **nombre, tqjson2_nodo_t **nodo);

// A member with a copy of the name that borrows `valor`: the tree never destroys it.
tqjson2_atributo_t *i_crea_atributo_const(const char16_t *nombre, tqjson2_nodo_t *valor);
void i_destruye_atributo(tqjson2_atributo_t **atributo);

// The destructors in the array component's form, for member and element arrays.
void i_destruye_atributo_elemento(void *atributo);
void i_destruye_nodo_elemento(void *nodo);

// CIERTO for string, integer, double and boolean.
tqbool i_es_tipo_basico(int32_t tipo);
// Changes a node of a basic kind to another basic kind and value in place, taking the text
// over; texto_decodificado is left to the caller.
void i_set_valor_basico(tqjson2_nodo_t *nodo, int32_t tipo, char **cadena_utf8, int32_t entero,
                        double valor_double, tqbool booleano);
