// tqbase array component: the plain arrays of booleans, unsigned 32-bit integers, doubles,
// byte strings and wide strings. String arrays own their strings.
#include <type_traits>

#include "array_storage.h"
#include "byte_strings.h"
#include "traspaso.h"
#include "verifica.h"
#include "wide_strings.h"

static const char *const i_MODULO = "tqbase: arrays";

struct arr_bool {
    i_almacen<tqbool> a;
};
struct arr_ulong {
    i_almacen<uint32_t> a;
};
struct arr_double {
    i_almacen<double> a;
};
struct arr_cadena {
    i_almacen<char *> a;
};
struct arr_cadena_u {
    i_almacen<char16_t *> a;
};

namespace {

template <class A> bool i_array_valido(const A *arr) {
    return i_VERIFICA_NO_NULO(arr);
}

template <class A> bool i_indice_valido(const A *arr, uint32_t indice) {
    return i_array_valido(arr) && i_VERIFICA(indice < arr->a.num);
}

template <class A> uint32_t i_num(const A *arr) {
    return i_array_valido(arr) ? arr->a.num : 0;
}

template <class A> auto i_get(const A *arr, uint32_t indice) {
    using T = std::remove_cvref_t<decltype(arr->a.datos[0])>;
    return i_indice_valido(arr, indice) ? arr->a.datos[indice] : T{};
}

template <class A, class T> void i_set(A *arr, uint32_t indice, T valor) {
    if (i_indice_valido(arr, indice))
        arr->a.datos[indice] = valor;
}

template <class A> void i_destruye(A **arr) {
    if (i_VERIFICA_NO_NULO(arr) && i_VERIFICA_NO_NULO(*arr))
        i_destruye_array(arr);
}

void i_libera_cadena(char **cadena) {
    marlspy_nousar_free_pp(cadena, 1);
}
void i_libera_cadena(char16_t **cadena) {
    marlspy_nousar_free_pp(cadena, 1);
}

// Puts `cadena` (already the array's) at `indice`, freeing the string it replaces.
template <class A, class C> void i_pon_cadena(A *arr, uint32_t indice, C *cadena) {
    if (!i_indice_valido(arr, indice)) {
        i_libera_cadena(&cadena);
        return;
    }
    i_libera_cadena(&arr->a.datos[indice]);
    arr->a.datos[indice] = cadena;
}

template <class A> void i_destruye_cadenas(A **arr) {
    if (!i_VERIFICA_NO_NULO(arr) || !i_VERIFICA_NO_NULO(*arr))
        return;
    for (uint32_t i = 0; i < (*arr)->a.num; ++i)
        i_libera_cadena(&(*arr)->a.datos[i]);
    i_destruye_array(arr);
}

} // namespace

arr_bool_t *arr_CreaBOOL(uint32_t num) {
    return i_crea_array<arr_bool>(num);
}
uint32_t arr_NumElemsBOOL(const arr_bool_t *arr) {
    return i_num(arr);
}
tqbool arr_GetBOOL(const arr_bool_t *arr, uint32_t indice) {
    return i_get(arr, indice);
}
void arr_SetBOOL(arr_bool_t *arr, uint32_t indice, tqbool valor) {
    i_set(arr, indice, valor);
}
void arr_DestruyeBOOL(arr_bool_t **arr) {
    i_destruye(arr);
}

arr_ulong_t *arr_CreaULong(uint32_t num) {
    return i_crea_array<arr_ulong>(num);
}
uint32_t arr_NumElemsULong(const arr_ulong_t *arr) {
    return i_num(arr);
}
uint32_t arr_GetULong(const arr_ulong_t *arr, uint32_t indice) {
    return i_get(arr, indice);
}
void arr_SetULong(arr_ulong_t *arr, uint32_t indice, uint32_t valor) {
    i_set(arr, indice, valor);
}
void arr_DestruyeULong(arr_ulong_t **arr) {
    i_destruye(arr);
}

arr_double_t *arr_CreaDouble(uint32_t num) {
    return i_crea_array<arr_double>(num);
}
uint32_t arr_NumElemsDouble(const arr_double_t *arr) {
    return i_num(arr);
}
double arr_GetDouble(const arr_double_t *arr, uint32_t indice) {
    return i_get(arr, indice);
}
void arr_SetDouble(arr_double_t *arr, uint32_t indice, double valor) {
    i_set(arr, indice, valor);
}
void arr_DestruyeDouble(arr_double_t **arr) {
    i_destruye(arr);
}

arr_cadena_t *arr_CreaCADENA(uint32_t num) {
    return i_crea_array<arr_cadena>(num);
}
uint32_t arr_NumElemsCADENA(const arr_cadena_t *arr) {
    return i_num(arr);
}
const char *arr_GetCADENA(const arr_cadena_t *arr, uint32_t indice) {
    return i_get(arr, indice);
}

void arr_SetCADENA(arr_cadena_t *arr, uint32_t indice, const char *cadena) {
    if (i_indice_valido(arr, indice))
        i_pon_cadena(arr, indice, cad_copia_cadena(cadena));
}

void arr_SetCADENAOriginal(arr_cadena_t *arr, uint32_t indice, char **cadena) {
    i_pon_cadena(arr, indice, i_toma(cadena));
}

void arr_AppendCADENA(arr_cadena_t *arr, const char *cadena) {
    if (!i_array_valido(arr))
        return;
    char *copia = cad_copia_cadena(cadena);
    if (!i_VERIFICA(arr->a.agrega(copia)))
        i_libera_cadena(&copia);
}

void arr_DestruyeCADENA(arr_cadena_t **arr) {
    i_destruye_cadenas(arr);
}

arr_cadena_u_t *arr_CreaCADENA_u(uint32_t num) {
    return i_crea_array<arr_cadena_u>(num);
}
uint32_t arr_NumElemsCADENA_u(const arr_cadena_u_t *arr) {
    return i_num(arr);
}
const char16_t *arr_GetCADENA_u(const arr_cadena_u_t *arr, uint32_t indice) {
    return i_get(arr, indice);
}

void arr_SetCADENA_u(arr_cadena_u_t *arr, uint32_t indice, const char16_t *cadena) {
    if (i_indice_valido(arr, indice))
        i_pon_cadena(arr, indice, widestr_nousar_copia(cadena, i_MODULO, __LINE__));
}

void arr_SetCADENAOriginal_u(arr_cadena_u_t *arr, uint32_t indice, char16_t **cadena) {
    i_pon_cadena(arr, indice, i_toma(cadena));
}

void arr_DestruyeCADENA_u(arr_cadena_u_t **arr) {
    i_destruye_cadenas(arr);
}
