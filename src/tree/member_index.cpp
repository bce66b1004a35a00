// The index of a large object's members (member_index.h).
//
// An index holds up to two tables, one a kind of lookup, each made by the first lookup of its
// kind. A table has an entry per distinct name (exact) or per group of names equal ignoring letter
// case, so that members that share a name never lengthen a search: the entry keeps the position
// that answers the lookup and flags that say how many members share it. Tables are open
// addressing with linear probing over any number of slots, filled to at most 87 percent.
//
// Lookups may run side by side on one tree, and any of them may make a table: each publishes what
// it made with one compare-and-swap and takes the other's when it lost, so a table once seen never
// changes until a change to the tree, which no lookup overlaps.
#include "tree/member_index.h"

#include <array>
#include <atomic>
#include <bit>
#include <chrono>
#include <cstring>
#include <random>

namespace {

// A slot is one 32-bit word: 0 when empty; otherwise, from the low bits up, the position plus one
// in `bits_posicion` bits (0 there marks an entry removed, which searches pass over), two flags,
// and in the bits left the hash's high bits, which spare most comparisons of names.
constexpr uint32_t i_VARIOS = 1;    // several members bear the name (or fall in the group)
constexpr uint32_t i_SIN_VALOR = 2; // ignoring case: a member of the group holds no value node
constexpr uint32_t i_BITS_BANDERAS = 2;
// Positions of at most 30 bits: objects of more members than that (some 500 million, half of
// what 30 bits hold, so that appends find room) are searched member by member.
constexpr uint32_t i_MAX_BITS_POSICION = 30;

// Slots per entry: at most 87 percent full before a table grows, 72 percent full when it is
// made, so that a table grows by about a fifth at a time and takes at most 4 / 0.72 bytes an
// entry (plus what rounding a block up to the memory component's sizes adds).
constexpr uint64_t i_LLENO_MAX = 87, i_LLENO_NUEVA = 72;
constexpr uint32_t i_MIN_CASILLAS = 8;

struct i_tabla {
    uint32_t capacidad;     // slots
    uint32_t ocupadas;      // slots not empty: entries, and entries removed
    uint32_t vivas;         // entries
    uint32_t bits_posicion; // positions stored plus one stay below 1 << bits_posicion

    uint32_t *casillas() { return reinterpret_cast<uint32_t *>(this + 1); }
    const uint32_t *casillas() const { return reinterpret_cast<const uint32_t *>(this + 1); }

    uint32_t mascara() const { return (uint32_t{1} << bits_posicion) - 1; }
    // The stored position plus one (0: removed), the flags and the hash's mark of a slot.
    uint32_t posicion_mas_uno(uint32_t casilla) const { return casilla & mascara(); }
    uint32_t banderas(uint32_t casilla) const {
        return (casilla >> bits_posicion) & ((1u << i_BITS_BANDERAS) - 1);
    }
    uint32_t marca(uint64_t resumen) const {
        const uint32_t bits_marca = 32 - bits_posicion - i_BITS_BANDERAS;
        return bits_marca ? static_cast<uint32_t>(resumen >> (64 - bits_marca)) : 0;
    }
    uint32_t casilla(uint32_t posicion, uint32_t banderas, uint32_t marca) const {
        return (marca << (bits_posicion + i_BITS_BANDERAS)) | (banderas << bits_posicion) |
               (posicion + 1);
    }
    uint32_t marca_de(uint32_t casilla) const {
        return casilla >> (bits_posicion + i_BITS_BANDERAS);
    }
    // Where the search for a hash begins: the low half scaled to the number of slots.
    uint32_t inicio(uint64_t resumen) const {
        return static_cast<uint32_t>((uint64_t{static_cast<uint32_t>(resumen)} * capacidad) >> 32);
    }
    uint32_t siguiente(uint32_t i) const { return i + 1 == capacidad ? 0 : i + 1; }
};

struct i_indice {
    arr_anexo_t anexo;                // first: the array component hands this back
    std::atomic<i_tabla *> tablas[2]; // by i_coincidencia, null until a lookup of that kind
};

uint64_t i_mezcla(uint64_t x) {
    x += 0x9e3779b97f4a7c15ull;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ull;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebull;
    return x ^ (x >> 31);
}

// The system's random source, and where the process lies in memory and when it asks, so that a
// platform whose random device gives little or nothing still has a key of its own.
std::array<uint64_t, 2> i_clave_nueva() {
    uint64_t semilla =
        static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count()) ^
        reinterpret_cast<uintptr_t>(&semilla) ^
        (uint64_t{reinterpret_cast<uintptr_t>(&i_mezcla)} << 16);
    try {
        std::random_device azar;
        for (int i = 0; i < 4; ++i)
            semilla = i_mezcla(semilla ^ azar());
    } catch (...) { // no random device: the rest must do
    }
    const uint64_t primera = i_mezcla(semilla);
    return {primera, i_mezcla(primera ^ semilla)};
}

// The key of every hash of member names in the process, chosen when it is first needed: names
// made to collide under one key do not under another.
const uint64_t *i_clave() {
    static const std::array<uint64_t, 2> clave = i_clave_nueva();
    return clave.data();
}

uint64_t i_resumen(const char16_t *nombre, i_coincidencia coincidencia) {
    return coincidencia == i_EXACTA ? widestr_nousar_resumen(nombre, i_clave())
                                    : widestr_nousar_resumen_may_o_min(nombre, i_clave());
}

// Both names are non-null here, so the comparison has nothing to report.
bool i_iguales(const char16_t *a, const char16_t *b, i_coincidencia coincidencia) {
    const auto iguales = coincidencia == i_MAY_O_MIN ? widestr_nousar_cadenas_iguales_may_o_min
                                                     : widestr_nousar_cadenas_iguales;
    return iguales(a, b, i_MODULO, __LINE__) == CIERTO;
}

const tqjson2_atributo_t *i_miembro(void *const *datos, uint32_t posicion) {
    return static_cast<const tqjson2_atributo_t *>(datos[posicion]);
}

bool i_vale_null(const tqjson2_atributo_t *atributo) {
    return atributo->valor && atributo->valor->tipo == TQJSON_TIPO_NULL;
}

// The slot of the entry for `nombre`, or null when the table has none.
uint32_t *i_busca_casilla(const i_tabla *tabla, void *const *datos, const char16_t *nombre,
                          uint64_t resumen, i_coincidencia coincidencia) {
    const uint32_t marca = tabla->marca(resumen);
    const uint32_t *casillas = tabla->casillas();
    for (uint32_t i = tabla->inicio(resumen);; i = tabla->siguiente(i)) {
        const uint32_t casilla = casillas[i];
        if (casilla == 0)
            return nullptr;
        const uint32_t mas_uno = tabla->posicion_mas_uno(casilla);
        if (mas_uno != 0 && tabla->marca_de(casilla) == marca &&
            i_iguales(i_miembro(datos, mas_uno - 1)->nombre, nombre, coincidencia))
            return const_cast<uint32_t *>(&casillas[i]);
    }
}

// The entry of the first member of its name, at `posicion`.
uint32_t i_entrada(const i_tabla *tabla, void *const *datos, uint32_t posicion, uint32_t marca,
                   i_coincidencia coincidencia) {
    const bool sin_valor = coincidencia == i_MAY_O_MIN && !i_miembro(datos, posicion)->valor;
    return tabla->casilla(posicion, sin_valor ? i_SIN_VALOR : 0, marca);
}

// The entry with one member more, at `posicion`, after those it has. Ignoring case, a group
// answers with its first member holding a value other than null, or else its last member: the
// new member takes over from one that holds null.
uint32_t i_con_miembro_mas(const i_tabla *tabla, void *const *datos, uint32_t casilla,
                           uint32_t posicion, i_coincidencia coincidencia) {
    uint32_t banderas = tabla->banderas(casilla) | i_VARIOS;
    uint32_t respuesta = tabla->posicion_mas_uno(casilla) - 1;
    if (coincidencia == i_MAY_O_MIN) {
        if (!i_miembro(datos, posicion)->valor)
            banderas |= i_SIN_VALOR;
        if (i_vale_null(i_miembro(datos, respuesta)))
            respuesta = posicion;
    }
    return tabla->casilla(respuesta, banderas, tabla->marca_de(casilla));
}

// Enters the member at `posicion`; the table has room for one more entry.
void i_inserta(i_tabla *tabla, void *const *datos, uint32_t posicion, i_coincidencia coincidencia) {
    const tqjson2_atributo_t *atributo = i_miembro(datos, posicion);
    const uint64_t resumen = i_resumen(atributo->nombre, coincidencia);
    if (uint32_t *casilla =
            i_busca_casilla(tabla, datos, atributo->nombre, resumen, coincidencia)) {
        *casilla = i_con_miembro_mas(tabla, datos, *casilla, posicion, coincidencia);
        return;
    }
    uint32_t *casillas = tabla->casillas();
    uint32_t i = tabla->inicio(resumen);
    while (casillas[i] != 0)
        i = tabla->siguiente(i);
    casillas[i] = i_entrada(tabla, datos, posicion, tabla->marca(resumen), coincidencia);
    ++tabla->ocupadas;
    ++tabla->vivas;
}

void i_libera_tabla(i_tabla *tabla) {
    marlspy_nousar_free_pp(&tabla, 1);
}

// A table of the `num` members `datos`, with room for `entradas` entries; null when a member is
// null or the object is too large to index.
i_tabla *i_construye(void *const *datos, uint32_t num, uint32_t entradas,
                     i_coincidencia coincidencia) {
    const auto bits_posicion =
        static_cast<uint32_t>(std::bit_width(uint64_t{num} * 2 + 1)); // room to double
    if (bits_posicion > i_MAX_BITS_POSICION)
        return nullptr;
    for (uint32_t i = 0; i < num; ++i)
        if (!datos[i])
            return nullptr;
    const uint64_t capacidad =
        std::max<uint64_t>(i_MIN_CASILLAS, uint64_t{entradas} * 100 / i_LLENO_NUEVA + 1);
    const size_t bytes = sizeof(i_tabla) + sizeof(uint32_t) * capacidad;
    auto *tabla = static_cast<i_tabla *>(marlspy_nousar_malloc(bytes));
    std::memset(static_cast<void *>(tabla), 0, bytes);
    tabla->capacidad = static_cast<uint32_t>(capacidad);
    tabla->bits_posicion = bits_posicion;
    for (uint32_t i = 0; i < num; ++i)
        i_inserta(tabla, datos, i, coincidencia);
    return tabla;
}

i_indice *i_indice_de(arr_anexo_t *anexo) {
    return reinterpret_cast<i_indice *>(anexo);
}

void i_suelta_indice(arr_anexo_t *anexo) {
    i_indice *indice = i_indice_de(anexo);
    for (auto &tabla : indice->tablas)
        if (i_tabla *propia = tabla.load(std::memory_order_relaxed))
            i_libera_tabla(propia);
    marlspy_nousar_free_pp(&indice, sizeof(i_indice));
}

// The table of the given kind, made and published now when the array has none.
const i_tabla *i_tabla_de(const arr_puntero_t *atributos, void *const *datos, uint32_t num,
                          i_coincidencia coincidencia) {
    i_indice *indice = i_indice_de(arr_AnexoPuntero(atributos));
    if (indice)
        if (const i_tabla *tabla = indice->tablas[coincidencia].load(std::memory_order_acquire))
            return tabla;
    i_tabla *nueva = i_construye(datos, num, num, coincidencia);
    if (!nueva)
        return nullptr;
    if (!indice) {
        auto *propio = static_cast<i_indice *>(marlspy_nousar_malloc(sizeof(i_indice)));
        propio->anexo.suelta = i_suelta_indice;
        for (auto &tabla : propio->tablas)
            tabla.store(nullptr, std::memory_order_relaxed);
        indice = i_indice_de(arr_PonAnexoPuntero(atributos, &propio->anexo));
        if (indice != propio) // another lookup's came first, or the array holds no index
            marlspy_nousar_free_pp(&propio, sizeof(i_indice));
        if (!indice) {
            i_libera_tabla(nueva);
            return nullptr;
        }
    }
    i_tabla *anterior = nullptr;
    if (indice->tablas[coincidencia].compare_exchange_strong(
            anterior, nueva, std::memory_order_acq_rel, std::memory_order_acquire))
        return nueva;
    i_libera_tabla(nueva);
    return anterior;
}

// After the member at `posicion` was appended: enters it, or makes the table again, larger, when
// it is full or the position needs more bits. Null when the object can no longer be indexed.
i_tabla *i_extiende(i_tabla *tabla, void *const *datos, uint32_t posicion,
                    i_coincidencia coincidencia) {
    if ((uint64_t{tabla->ocupadas} + 1) * 100 <= uint64_t{tabla->capacidad} * i_LLENO_MAX &&
        posicion + 1 < (uint32_t{1} << tabla->bits_posicion)) {
        i_inserta(tabla, datos, posicion, coincidencia);
        return tabla;
    }
    i_tabla *nueva = i_construye(datos, posicion + 1, tabla->vivas + 1, coincidencia);
    i_libera_tabla(tabla);
    return nueva;
}

// A removed entry keeps its slot occupied, so that searches that passed over it still do; its
// position is 0 and nothing else of it is read.
void i_borra_entrada(i_tabla *tabla, uint32_t *casilla) {
    *casilla = uint32_t{1} << tabla->bits_posicion;
    --tabla->vivas;
}

// Before the member at `posicion` leaves: its entry goes, or, when others share it, answers for
// them as if the member had never been there. Positions stay as they were until i_corre.
void i_quita(i_tabla *tabla, void *const *datos, uint32_t num, uint32_t posicion,
             i_coincidencia coincidencia) {
    const char16_t *nombre = i_miembro(datos, posicion)->nombre;
    uint32_t *casilla =
        i_busca_casilla(tabla, datos, nombre, i_resumen(nombre, coincidencia), coincidencia);
    if (!casilla)
        return;
    if (!(tabla->banderas(*casilla) & i_VARIOS)) {
        i_borra_entrada(tabla, casilla);
        return;
    }
    // Shared: the others answer as the table would have been made without this member.
    uint32_t nueva = 0;
    for (uint32_t i = 0; i < num; ++i) {
        if (i == posicion || !i_iguales(i_miembro(datos, i)->nombre, nombre, coincidencia))
            continue;
        nueva = nueva == 0 ? i_entrada(tabla, datos, i, tabla->marca_de(*casilla), coincidencia)
                           : i_con_miembro_mas(tabla, datos, nueva, i, coincidencia);
    }
    if (nueva == 0) // the others were gone already
        i_borra_entrada(tabla, casilla);
    else
        *casilla = nueva;
}

// After the member at `posicion` left: later members stand one place forward.
void i_corre(i_tabla *tabla, uint32_t posicion) {
    uint32_t *casillas = tabla->casillas();
    for (uint32_t i = 0; i < tabla->capacidad; ++i) {
        if (tabla->posicion_mas_uno(casillas[i]) > posicion + 1)
            --casillas[i];
    }
}

} // namespace

bool i_busca_en_indice(const arr_puntero_t *atributos, void *const *datos, uint32_t num,
                       const char16_t *etiqueta, i_coincidencia coincidencia, uint32_t *posicion) {
    if (!etiqueta)
        return false;
    const i_tabla *tabla = i_tabla_de(atributos, datos, num, coincidencia);
    if (!tabla)
        return false;
    const uint32_t *casilla =
        i_busca_casilla(tabla, datos, etiqueta, i_resumen(etiqueta, coincidencia), coincidencia);
    if (!casilla) {
        *posicion = ARR_NO_ENCONTRADO;
        return true;
    }
    const uint32_t banderas = tabla->banderas(*casilla);
    if (banderas & i_SIN_VALOR)
        return false;
    const bool unica = coincidencia == i_MAY_O_MIN || !(banderas & i_VARIOS);
    *posicion = unica ? tabla->posicion_mas_uno(*casilla) - 1 : ARR_NO_ENCONTRADO;
    return true;
}

void i_agrega_atributo(arr_puntero_t *atributos, tqjson2_atributo_t *atributo) {
    arr_anexo_t *anexo = arr_QuitaAnexoPuntero(atributos);
    arr_AppendPunteroConTipo(atributos, atributo);
    if (!anexo)
        return;
    uint32_t num = 0;
    void *const *datos = arr_DatosPunteroConTipo(atributos, &num);
    if (num > 0 && datos[num - 1] == atributo) { // else the array was full and is unchanged
        for (i_coincidencia coincidencia : {i_EXACTA, i_MAY_O_MIN}) {
            std::atomic<i_tabla *> &tabla = i_indice_de(anexo)->tablas[coincidencia];
            if (i_tabla *propia = tabla.load(std::memory_order_relaxed))
                tabla.store(i_extiende(propia, datos, num - 1, coincidencia),
                            std::memory_order_relaxed);
        }
    }
    arr_PonAnexoPuntero(atributos, anexo);
}

void i_borra_atributo(arr_puntero_t *atributos, uint32_t posicion) {
    arr_anexo_t *anexo = arr_QuitaAnexoPuntero(atributos);
    uint32_t num = 0;
    void *const *datos = anexo ? arr_DatosPunteroConTipo(atributos, &num) : nullptr;
    const bool quita = anexo && posicion < num; // else the removal below is refused
    for (i_coincidencia coincidencia : {i_EXACTA, i_MAY_O_MIN})
        if (i_tabla *tabla =
                quita ? i_indice_de(anexo)->tablas[coincidencia].load(std::memory_order_relaxed)
                      : nullptr)
            i_quita(tabla, datos, num, posicion, coincidencia);
    arr_BorrarEstructuraConTipo(atributos, posicion, i_destruye_atributo_elemento);
    if (!anexo)
        return;
    datos = arr_DatosPunteroConTipo(atributos, &num);
    if (num < i_UMBRAL_INDICE) { // searched member by member from now on
        i_suelta_indice(anexo);
        return;
    }
    for (i_coincidencia coincidencia : {i_EXACTA, i_MAY_O_MIN}) {
        std::atomic<i_tabla *> &tabla = i_indice_de(anexo)->tablas[coincidencia];
        i_tabla *propia = quita ? tabla.load(std::memory_order_relaxed) : nullptr;
        if (!propia)
            continue;
        i_corre(propia, posicion);
        // A table that removals left mostly empty is made again to its members' measure.
        if (uint64_t{propia->capacidad} * 4 > uint64_t{num} * 7 &&
            propia->capacidad > i_MIN_CASILLAS) {
            tabla.store(i_construye(datos, num, propia->vivas, coincidencia),
                        std::memory_order_relaxed);
            i_libera_tabla(propia);
        }
    }
    arr_PonAnexoPuntero(atributos, anexo);
}
