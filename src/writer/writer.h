// The writer: a tree walked depth first into lines of UTF-8 JSON, delivered to a file or
// joined in memory. Each line is built in place in the destination's byte buffer, so that no
// piece of text takes an allocation of its own.
#pragma once

#include <cstring>

#include "tree/nodes.h"

// The configuration in force when the caller gives none: " : " and the indented layout.
extern const tqjson2_conf_escritura_t i_conf_escritura_defecto;

// Spaces per unit of depth; the depth grows by 2 a level, so a level indents four spaces.
inline constexpr uint32_t i_NUM_ESPACIOS_POR_NIVEL = 2;

inline constexpr uint32_t i_DESTINO_FICHERO = 0; // lines go to an open file
inline constexpr uint32_t i_DESTINO_LINEAS = 1;  // lines are joined into one text in memory

// A growable block of bytes, without a terminator until it is handed over.
struct i_salida_t {
    char *datos;
    size_t longitud;
    size_t capacidad;
};

// One generation's destination: a local of the entry point, owning only its buffer.
struct i_destino_gltf_t {
    uint32_t tipo_destino;
    lc_fichero_t *fichero;                // i_DESTINO_FICHERO only
    i_salida_t texto;                     // the whole text, or the lines not yet in the file
    size_t inicio_linea;                  // where the line being built starts in `texto`
    const tqjson2_conf_escritura_t *conf; // never null while a walk runs
};

void i_amplia_salida(i_salida_t *salida, size_t minimo);

// Room for `num` more bytes; the pointer where they go. The length is the caller's to advance.
inline char *i_reserva_salida(i_salida_t *salida, size_t num) {
    if (salida->capacidad - salida->longitud < num) [[unlikely]]
        i_amplia_salida(salida, salida->longitud + num);
    return salida->datos + salida->longitud;
}

inline void i_anade_bytes(i_salida_t *salida, const char *bytes, size_t num) {
    std::memcpy(i_reserva_salida(salida, num), bytes, num);
    salida->longitud += num;
}

inline void i_anade_byte(i_salida_t *salida, char byte) {
    *i_reserva_salida(salida, 1) = byte;
    ++salida->longitud;
}

// A destination of either kind with an empty buffer; the caller opens and closes the file.
i_destino_gltf_t i_crea_destino(uint32_t tipo_destino, lc_fichero_t *fichero,
                                const tqjson2_conf_escritura_t *conf);
// Starts a line: in the indented layout, `profundidad` x i_NUM_ESPACIOS_POR_NIVEL spaces.
inline void i_abre_linea(i_destino_gltf_t *destino_gltf, uint32_t profundidad, tqbool indentado) {
    destino_gltf->inicio_linea = destino_gltf->texto.longitud;
    const size_t espacios = uint64_t{profundidad} * i_NUM_ESPACIOS_POR_NIVEL;
    if (indentado != CIERTO || espacios == 0)
        return;
    // Blocks of 32 spaces, each one move of fixed size, over-running into reserved room that
    // the next bytes overwrite.
    constexpr size_t i_BLOQUE = 32;
    char *destino = i_reserva_salida(&destino_gltf->texto, espacios + i_BLOQUE);
    for (size_t i = 0; i < espacios; i += i_BLOQUE)
        std::memset(destino + i, ' ', i_BLOQUE);
    destino_gltf->texto.longitud += espacios;
}

// Delivers a finished line to a destination other than the in-memory text: a file receives
// its pending lines once enough of them have gathered; an impossible kind drops the line.
void i_entrega_linea(i_destino_gltf_t *destino_gltf);

// Ends the line built since i_abre_linea with its comma and line feed and delivers it.
inline void i_emite_linea(i_destino_gltf_t *destino_gltf, tqbool con_coma, tqbool indentado) {
    i_salida_t *texto = &destino_gltf->texto;
    char *fin = i_reserva_salida(texto, 2);
    if (con_coma == CIERTO)
        *fin++ = ',';
    if (indentado == CIERTO)
        *fin++ = '\n';
    texto->longitud = static_cast<size_t>(fin - texto->datos);
    if (destino_gltf->tipo_destino != i_DESTINO_LINEAS) [[unlikely]]
        i_entrega_linea(destino_gltf);
}

// Hands a file destination's pending lines to the file; nothing for other kinds.
void i_vuelca_destino(i_destino_gltf_t *destino_gltf);
// The text joined in memory, zero-terminated, in a buffer of up to twice its size that becomes the
// caller's, to free with marlstr_destruye.
char *i_entrega_texto(i_destino_gltf_t *destino_gltf);
// Frees the buffer of a destination whose text is not handed over.
void i_libera_destino(i_destino_gltf_t *destino_gltf);

// The longest double text: sign, 15 digits, point, "E+308" and room to spare.
inline constexpr size_t i_TAM_TEXTO_DOUBLE = 32;
// The JSON text of a double, without terminator, in `texto`; its length.
size_t i_texto_double(double numero, char texto[i_TAM_TEXTO_DOUBLE]);

// A stored string value's text as it goes between quotation marks: the UTF-8 it reads as,
// with a backslash before every quotation mark.
void i_escribe_texto_cadena_json(i_salida_t *salida, const char *texto_utf8);

// Writes `nodo` and everything under it, under `nombre`, its first line at `profundidad`.
void i_escribe_nodo(const tqjson2_nodo_t *nodo, const char16_t *nombre, uint32_t profundidad,
                    tqbool con_coma, tqbool indentado, i_destino_gltf_t *destino_gltf);
