// Storage shared by every array kind of the array component: a contiguous block that grows
// geometrically, so that n appends cost O(n) copies in all.
#pragma once

#include <cstdint>
#include <cstring>

#include "tqbase/arrays.h"
#include "tqbase/memoria.h"

// The largest count: what a capacity of 31 bits holds (the 32nd bit is the record's flag), and
// below ARR_NO_ENCONTRADO, which searches answer for "no match".
inline constexpr uint32_t i_MAX_ELEMENTOS = 0x7FFFFFFF;

// The word that a record may have right before it, for an attachment (pointer arrays).
inline constexpr size_t i_TAM_PREFIJO = sizeof(void *);

template <class T> struct i_almacen {
    T *datos;
    uint32_t num;
    uint32_t capacidad : 31;
    uint32_t con_prefijo : 1; // a word of i_TAM_PREFIJO bytes stands right before the record

    // `num` zero-filled elements (null pointers, FALSO, 0.0 as all-zero bits).
    void inicia(uint32_t cuantos) {
        datos = nullptr;
        num = 0;
        capacidad = 0;
        con_prefijo = 0;
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
// record's own block: one allocation for an array that is built once. With `con_prefijo` the
// block begins with a zero-filled word before the record (i_prefijo).
template <class A, class T>
A *i_crea_array_con(const T *elementos, uint32_t num, bool con_prefijo = false) {
    static_assert(sizeof(A) == sizeof(i_almacen<T>), "the storage is the record");
    const size_t prefijo = con_prefijo ? i_TAM_PREFIJO : 0;
    char *bloque =
        static_cast<char *>(marlspy_nousar_malloc(prefijo + sizeof(A) + sizeof(T) * num));
    if (con_prefijo)
        std::memset(bloque, 0, i_TAM_PREFIJO);
    A *arr = reinterpret_cast<A *>(bloque + prefijo);
    arr->a.datos = arr->a.datos_en_linea();
    arr->a.num = num;
    arr->a.capacidad = num;
    arr->a.con_prefijo = con_prefijo;
    if (num > 0)
        std::memcpy(static_cast<void *>(arr->a.datos), elementos, sizeof(T) * num);
    return arr;
}

// The word before a record created with one.
template <class A> void *i_prefijo(const A *arr) {
    return const_cast<char *>(reinterpret_cast<const char *>(arr)) - i_TAM_PREFIJO;
}

// Frees an array record whose elements need no release of their own, and nulls the handle.
template <class A> void i_destruye_array(A **arr) {
    (*arr)->a.libera();
    if ((*arr)->a.con_prefijo) {
        void *bloque = i_prefijo(*arr);
        marlspy_nousar_free_pp(&bloque, 1);
        *arr = nullptr;
    } else {
        marlspy_nousar_free_pp(arr, sizeof(A));
    }
}

// As i_destruye_array, but the blocks it would free (the record's block, and the element storage
// when it is a block of its own) go to `bloques` for the caller to free; returns how many.
template <class A> uint32_t i_desmonta_array(A **arr, void **bloques) {
    uint32_t num = 0;
    if (!(*arr)->a.en_linea() && (*arr)->a.datos)
        bloques[num++] = (*arr)->a.datos;
    bloques[num++] = (*arr)->a.con_prefijo ? i_prefijo(*arr) : static_cast<void *>(*arr);
    *arr = nullptr;
    return num;
}
