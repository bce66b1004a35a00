// Decoding the escaped form back into plain wide text, and the process-wide tolerance counter
// that decides what a "\u00" sequence with bad digits becomes.
#include <atomic>

#include "codec/codec.h"
#include "tqjson2.h"
#include "tqjson2_modulo.h"

namespace {

// Non-zero: a "\u00" sequence whose digits do not decode becomes '?' without a report. Relaxed
// atomics give the unsynchronised counter the interface promises, without a data race.
std::atomic<int32_t> g_tolerancia{0};

constexpr char16_t i_PREFIJO_SIN_DECODIFICAR[] = u"data:application/octet-stream";
constexpr char16_t i_CARACTER_REEMPLAZO = u'?';

// The unit after the backslash, and what the pair decodes to, in search order.
struct i_reemplazo {
    char16_t escapado, decodificado;
};
constexpr i_reemplazo i_REEMPLAZOS[] = {
    {u'"', u'"'},  {u'\\', u'\\'}, {u'b', u'\b'}, {u't', u'\t'},
    {u'n', u'\n'}, {u'f', u'\f'},  {u'r', u'\r'}, {u'/', u'/'},
};
constexpr uint32_t num_caracters_reemplazo = sizeof i_REEMPLAZOS / sizeof i_REEMPLAZOS[0];

// The unit that "\u00" and the digits at `digitos` stand for. A digit place holding the
// terminator fails like a non-hexadecimal digit, and nothing beyond the terminator is read.
// Bad digits are reported, or counted in `*sin_informar` when the caller reports them itself.
char16_t i_decodifica_u00(const char16_t *digitos, uint32_t *sin_informar) {
    char16_t caracter = i_CARACTER_REEMPLAZO;
    const bool completa = digitos[0] != u'\0' && digitos[1] != u'\0';
    const tqbool se_decodifica =
        completa ? marlstrhex_decodifica_caracter_u(digitos[0], digitos[1], &caracter) : FALSO;
    if (se_decodifica != CIERTO) {
        caracter = i_CARACTER_REEMPLAZO;
        if (g_tolerancia.load(std::memory_order_relaxed) != 0)
            return caracter;
        if (sin_informar)
            ++*sin_informar;
        else
            i_VERIFICA(se_decodifica == CIERTO);
    }
    return caracter;
}

bool i_empieza_u00(const char16_t *tras_barra) {
    return tras_barra[0] == u'u' && tras_barra[1] == u'0' && tras_barra[2] == u'0';
}

} // namespace

void tqjson2_apila_desapila_ignorar_assert_se_decodifica(tqbool apila) {
    g_tolerancia.fetch_add(apila == CIERTO ? 1 : -1, std::memory_order_relaxed);
}

void i_append_caracter_cadena_decodificada(char16_t caracter, char16_t **cadena_decodificada,
                                           uint32_t *longitud_cadena_decodificada,
                                           uint32_t *pos_cadena_decodificada) {
    if (!i_VERIFICA((cadena_decodificada) != NULL) ||
        !i_VERIFICA((longitud_cadena_decodificada) != NULL) ||
        !i_VERIFICA((pos_cadena_decodificada) != NULL) ||
        !i_VERIFICA(*pos_cadena_decodificada <= *longitud_cadena_decodificada))
        return;
    (*cadena_decodificada)[(*pos_cadena_decodificada)++] = caracter;
}

void i_informa_secuencia_u00_erronea() {
    const tqbool se_decodifica = FALSO;
    i_VERIFICA(se_decodifica == CIERTO);
}

char16_t *i_decodifica_secuencias_escape(const char16_t *texto, uint32_t *sin_informar) {
    if (widestr_nousar_es_subcadena_inicial(texto, i_PREFIJO_SIN_DECODIFICAR, i_MODULO, __LINE__) ==
        CIERTO)
        return widestr_nousar_copia(texto, i_MODULO, __LINE__);
    uint32_t longitud_cadena_decodificada = widestr_nousar_longitud(texto, i_MODULO, __LINE__);
    const uint32_t n = longitud_cadena_decodificada;
    // Decoding never lengthens a text, so the input's length is room enough.
    char16_t *cadena_decodificada = widestr_nousar_creacadena(size_t{n} + 1);
    uint32_t pos_cadena_decodificada = 0;
    auto agrega = [&](char16_t c) {
        i_append_caracter_cadena_decodificada(
            c, &cadena_decodificada, &longitud_cadena_decodificada, &pos_cadena_decodificada);
    };
    for (uint32_t i = 0; i < n; ++i) {
        const char16_t c = texto[i];
        if (c != u'\\' || i + 1 == n) {
            agrega(c);
        } else if (i_empieza_u00(texto + i + 1)) {
            agrega(i_decodifica_u00(texto + i + 4, sin_informar));
            i += 5;
        } else {
            uint32_t fila = 0;
            while (fila < num_caracters_reemplazo && i_REEMPLAZOS[fila].escapado != texto[i + 1])
                ++fila;
            if (fila < num_caracters_reemplazo) {
                agrega(i_REEMPLAZOS[fila].decodificado);
                ++i;
            } else {
                agrega(c); // a backslash that escapes nothing stands as itself
            }
        }
    }
    agrega(u'\0');
    return cadena_decodificada;
}
