// What the named-value suites share: a tree written to a file and read back, typed arrays
// made from vectors and read back into them (the array destroyed), and the report texts.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/recording_handler.h"
#include "support/temp_file.h"
#include "support/tree_builder.h"

using Bools = std::vector<tqbool>;
using Doubles = std::vector<double>;
using Texts = std::vector<std::string>;

// The tree written to a file and read back from it.
inline Tree through_file(const tqjson2_nodo_t *raiz) {
    TempFile f;
    tqjson2_escribe_fichero(raiz, f.wide());
    Tree leido{nullptr};
    EXPECT_EQ(tqjson2_se_lee_fichero(f.wide(), &leido.raiz), CIERTO);
    return leido;
}

// The elements as a vector; the array is destroyed and its pointer checked nulled.
template <class Arr, class T, class Get>
std::vector<T> drain(Arr *arr, uint32_t (*num)(const Arr *), Get get, void (*destruye)(Arr **)) {
    EXPECT_NE(arr, nullptr);
    std::vector<T> out;
    for (uint32_t i = 0; i < num(arr); ++i)
        out.push_back(T(get(arr, i)));
    destruye(&arr);
    EXPECT_EQ(arr, nullptr);
    return out;
}
inline std::vector<tqbool> bools(arr_bool_t *a) {
    return drain<arr_bool_t, tqbool>(a, arr_NumElemsBOOL, arr_GetBOOL, arr_DestruyeBOOL);
}
inline std::vector<uint32_t> ulongs(arr_ulong_t *a) {
    return drain<arr_ulong_t, uint32_t>(a, arr_NumElemsULong, arr_GetULong, arr_DestruyeULong);
}
inline std::vector<double> doubles(arr_double_t *a) {
    return drain<arr_double_t, double>(a, arr_NumElemsDouble, arr_GetDouble, arr_DestruyeDouble);
}
inline std::vector<std::string> ansi(arr_cadena_t *a) {
    return drain<arr_cadena_t, std::string>(a, arr_NumElemsCADENA, arr_GetCADENA,
                                            arr_DestruyeCADENA);
}
inline std::vector<std::u16string> wide(arr_cadena_u_t *a) {
    return drain<arr_cadena_u_t, std::u16string>(a, arr_NumElemsCADENA_u, arr_GetCADENA_u,
                                                 arr_DestruyeCADENA_u);
}

// New typed arrays holding the values, as the writers take them; the caller destroys them.
inline arr_ulong_t *ulong_array(const std::vector<uint32_t> &valores) {
    arr_ulong_t *a = arr_CreaULong(static_cast<uint32_t>(valores.size()));
    for (uint32_t i = 0; i < valores.size(); ++i)
        arr_SetULong(a, i, valores[i]);
    return a;
}
inline arr_cadena_u_t *wide_array(const std::vector<std::u16string> &valores) {
    arr_cadena_u_t *a = arr_CreaCADENA_u(static_cast<uint32_t>(valores.size()));
    for (uint32_t i = 0; i < valores.size(); ++i)
        arr_SetCADENA_u(a, i, valores[i].c_str());
    return a;
}
