// tqbase save-stream component: a growable byte buffer in memory with a read position. Values
// are laid in little-endian order, so a stream reads the same on every platform.
#include <cstring>

#include "byte_strings.h"
#include "tqbase.h"
#include "verifica.h"

static const char *const i_MODULO = "tqbase: marlsave";

struct marlsave {
    char *datos;
    size_t longitud, capacidad, posicion;
};

namespace {

void i_agrega(marlsave_t *stream, const void *bytes, size_t n) {
    if (stream->longitud + n > stream->capacidad) {
        size_t capacidad = stream->capacidad ? stream->capacidad : 64;
        while (capacidad < stream->longitud + n)
            capacidad *= 2;
        stream->datos = static_cast<char *>(marlspy_nousar_realloc(stream->datos, capacidad));
        stream->capacidad = capacidad;
    }
    if (n)
        std::memcpy(stream->datos + stream->longitud, bytes, n);
    stream->longitud += n;
}

// The next `n` bytes, or null (reported) when fewer remain.
const unsigned char *i_toma(marlsave_t *stream, size_t n) {
    const size_t quedan = stream->longitud - stream->posicion;
    if (!i_VERIFICA(n <= quedan))
        return nullptr;
    const auto *bytes = reinterpret_cast<const unsigned char *>(stream->datos + stream->posicion);
    stream->posicion += n;
    return bytes;
}

} // namespace

marlsave_t *marlsave_crea_en_memoria(void) {
    auto *stream = static_cast<marlsave_t *>(marlspy_nousar_malloc(sizeof(marlsave_t)));
    *stream = marlsave_t{nullptr, 0, 0, 0};
    return stream;
}

void marlsave_rebobina(marlsave_t *stream) {
    if (i_VERIFICA_NO_NULO(stream))
        stream->posicion = 0;
}

void marlsave_destruye(marlsave_t **stream) {
    if (!i_VERIFICA_NO_NULO(stream) || !i_VERIFICA_NO_NULO(*stream))
        return;
    if ((*stream)->datos)
        marlspy_nousar_free_pp(reinterpret_cast<void **>(&(*stream)->datos), 1);
    marlspy_nousar_free_pp(reinterpret_cast<void **>(stream), sizeof(marlsave_t));
}

void marlsave_graba_bool(tqbool valor, marlsave_t *stream) {
    if (!i_VERIFICA_NO_NULO(stream))
        return;
    const unsigned char byte = valor == CIERTO ? 1 : 0;
    i_agrega(stream, &byte, 1);
}

tqbool marlsave_lee_bool(marlsave_t *stream) {
    if (!i_VERIFICA_NO_NULO(stream))
        return FALSO;
    const unsigned char *byte = i_toma(stream, 1);
    return byte && *byte ? CIERTO : FALSO;
}

void marlsave_graba_cadena_como_buffer(const char *cadena, marlsave_t *stream) {
    if (!i_VERIFICA_NO_NULO(stream) || !i_VERIFICA_NO_NULO(cadena))
        return;
    const size_t n = std::strlen(cadena);
    if (!i_VERIFICA(n <= UINT32_MAX))
        return;
    const unsigned char longitud[4] = {
        static_cast<unsigned char>(n), static_cast<unsigned char>(n >> 8),
        static_cast<unsigned char>(n >> 16), static_cast<unsigned char>(n >> 24)};
    i_agrega(stream, longitud, 4);
    i_agrega(stream, cadena, n);
}

char *marlsave_lee_cadena_como_buffer(marlsave_t *stream) {
    if (!i_VERIFICA_NO_NULO(stream))
        return creacadena(1);
    const size_t inicio = stream->posicion;
    const unsigned char *l = i_toma(stream, 4);
    if (!l)
        return creacadena(1);
    const uint32_t n = l[0] | uint32_t{l[1]} << 8 | uint32_t{l[2]} << 16 | uint32_t{l[3]} << 24;
    const unsigned char *bytes = i_toma(stream, n);
    if (!bytes) { // a cut text is not half read: the stream stays where the text began
        stream->posicion = inicio;
        return creacadena(1);
    }
    char *cadena = creacadena(size_t{n} + 1);
    std::memcpy(cadena, bytes, n);
    cadena[n] = '\0';
    return cadena;
}
