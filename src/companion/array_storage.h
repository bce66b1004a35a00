// Storage shared by every array kind of the array component: a contiguous block that grows
// geometrically, so that n appends cost O(n) copies in all.
#pragma once

#include <cstdint>
#include <cstring>

#include "tqbase/arrays.h"
#include "tqbase/memoria.h"

// The largest count: one below ARR_NO_ENCONTRADO, which searches answer for "no match".
inline constexpr uint32_t i_MAX_ELEMENTOS = ARR_NO_ENCONTRADO - 1;

template <class T> struct i_almacen {
    T *datos;
    uint32_t num;
    uint32_t capacidad;

    // `num` zero-filled elements (null pointers, FALSO, 0.0 as all-zero bits).
    void inicia(uint32_t cuantos) {
        datos = nullptr;
        num = 0;
        capacidad = 0;
        if (cuantos > 0) {
            reserva(cuantos);
            std::memset(static_cast<void *>(datos), 0, sizeof(T) * cuantos);
            num = cuantos;
        }
    }

    // Elements may stand in the record's own block, right after it (i_crea_array_con): they
    // are then moved out, not resized, when the array grows, and freed with the record.
    T *datos_en_linea() {
        return reinterpret_cast<T *>(reinterpret_cast<char *>(this) + sizeof *this);
    }
    bool en_linea() { return datos == datos_en_linea(); }

    void reserva(uint32_t minimo) {
        if (minimo <= capacidad)
            return;
        uint64_t nueva = capacidad < 4 ? 4 : uint64_t{capacidad} * 2;
        if (nueva < minimo)
            nueva = minimo;
        if (nueva > i_MAX_ELEMENTOS)
            nueva = i_MAX_ELEMENTOS;
        if (en_linea()) {
            T *fuera = static_cast<T *>(marlspy_nousar_malloc(sizeof(T) * nueva));
            std::memcpy(static_cast<void *>(fuera), datos, sizeof(T) * num);
            datos = fuera;
        } else {
            datos = static_cast<T *>(marlspy_nousar_realloc(datos, sizeof(T) * nueva));
        }
        capacidad = static_cast<uint32_t>(nueva);
    }

    // False when the array is already at its largest count.
    bool agrega(T valor) {
        if (num == i_MAX_ELEMENTOS)
            return false;
        if (num == capacidad)
            reserva(num + 1);
        datos[num++] = valor;
        return true;
    }

    // Removes the element at `indice`, keeping the order of the later ones.
    void quita(uint32_t indice) {
        std::memmove(static_cast<void *>(datos + indice), datos + indice + 1,
                     sizeof(T) * (num - indice - 1));
        --num;
    }

    void libera() {
        if (en_linea())
            datos = nullptr;
        else
            marlspy_nousar_free_pp(&datos, 1);
    }
};

// Creates an array record of kind A (which holds an `i_almacen` named `a`) with `num` elements.
template <class A> A *i_crea_array(uint32_t num) {
    A *arr = static_cast<A *>(marlspy_nousar_malloc(sizeof(A)));
    arr->a.inicia(num);
    return arr;
}

// Creates an array record of kind A holding a copy of `num` elements, which stand in the
// record's own block: one allocation for an array that is built once.
template <class A, class T> A *i_crea_array_con(const T *elementos, uint32_t num) {
    static_assert(sizeof(A) == sizeof(i_almacen<T>), "the storage is the record");
    A *arr = static_cast<A *>(marlspy_nousar_malloc(sizeof(A) + sizeof(T) * num));
    arr->a.datos = arr->a.datos_en_linea();
    arr->a.num = num;
    arr->a.capacidad = num;
    if (num > 0)
        std::memcpy(static_cast<void *>(arr->a.datos), elementos, sizeof(T) * num);
    return arr;
}

// Frees an array record whose elements need no release of their own, and nulls the handle.
template <class A> void i_destruye_array(A **arr) {
    (*arr)->a.libera();
    marlspy_nousar_free_pp(arr, sizeof(A));
}

// As i_destruye_array, but the blocks it would free (the record, and the element storage when
// it is a block of its own) go to `bloques` for the caller to free; returns how many.
template <class A> uint32_t i_desmonta_array(A **arr, void **bloques) {
    uint32_t num = 0;
    if (!(*arr)->a.en_linea() && (*arr)->a.datos)
        bloques[num++] = (*arr)->a.datos;
    bloques[num++] = *arr;
    *arr = nullptr;
    return num;
}
