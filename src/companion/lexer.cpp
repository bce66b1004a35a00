// tqbase lexer component: the scanner. It runs over UTF-8 bytes where they stand and keeps
// only the current token's extent; values, wide literals and positions are worked out when
// asked for, so a token that is skipped costs no more than finding its end.
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

#include "lexer_record.h"
#include "tqbase/cadenas.h"
#include "unicode.h"
#include "verifica.h"

static const char *const i_MODULO = "tqbase: anlex";

namespace {

enum i_clase : uint8_t {
    i_BLANCO = 1,
    i_DIGITO = 2,
    i_INICIO_PALABRA = 4,
    i_PALABRA = 8,
    i_FIN_LITERAL_JSON = 16, // what a JSON literal's scan stops at: " \ line feed, zero
};

constexpr std::array<uint8_t, 256> i_crea_clases() {
    std::array<uint8_t, 256> clases{};
    for (const char c : {' ', '\t', '\n', '\r', '\v', '\f'})
        clases[static_cast<unsigned char>(c)] |= i_BLANCO;
    for (int c = '0'; c <= '9'; ++c)
        clases[c] |= i_DIGITO | i_PALABRA;
    for (int c = 'a'; c <= 'z'; ++c)
        clases[c] |= i_INICIO_PALABRA | i_PALABRA;
    for (int c = 'A'; c <= 'Z'; ++c)
        clases[c] |= i_INICIO_PALABRA | i_PALABRA;
    clases['_'] |= i_INICIO_PALABRA | i_PALABRA;
    for (const char c : {'"', '\\', '\n', '\0'})
        clases[static_cast<unsigned char>(c)] |= i_FIN_LITERAL_JSON;
    return clases;
}
constexpr std::array<uint8_t, 256> i_CLASES = i_crea_clases();

// The token of each one-character punctuation mark; 0 for every other byte.
constexpr std::array<uint8_t, 256> i_crea_puntuacion() {
    std::array<uint8_t, 256> tokens{};
    tokens['{'] = ANLEX_LLAVE_ABR;
    tokens['}'] = ANLEX_LLAVE_CER;
    tokens['['] = ANLEX_CORCH_ABR;
    tokens[']'] = ANLEX_CORCH_CER;
    tokens[','] = ANLEX_COMA;
    tokens[':'] = ANLEX_DOS_PUNTOS;
    tokens['-'] = ANLEX_MENOS;
    return tokens;
}
constexpr std::array<uint8_t, 256> i_PUNTUACION = i_crea_puntuacion();

inline bool i_es(char c, i_clase clase) {
    return (i_CLASES[static_cast<unsigned char>(c)] & clase) != 0;
}

anlex *i_crea(i_origen_lexico origen, anlex_palabras_reservadas_t **palabras,
              tqbool toma_palabras) {
    anlex *lex = new anlex{};
    lex->origen = origen;
    lex->longitud_buffer = 1u << 16;
    lex->texto = lex->fin = lex->pos = lex->inicio_token = lex->fin_token = "";
    if (i_VERIFICA((palabras) != NULL)) {
        lex->palabras = *palabras;
        lex->palabras_propias = toma_palabras == CIERTO;
        if (lex->palabras_propias)
            *palabras = nullptr;
    }
    return lex;
}

uint32_t i_token(anlex *lex, uint32_t token, const char *fin_token) {
    lex->token = token;
    lex->fin_token = fin_token;
    lex->pos = fin_token;
    return token;
}

// Passes the bytes of a JSON literal that need no look: it stops at a quotation mark, a
// backslash, a line feed or a zero byte, sixteen bytes a step where the processor has SSE2
// (every x86-64 does), else eight at a time up to the word that holds one.
const char *i_salta_texto_literal(const char *p, const char *fin) {
#if defined(__SSE2__) || defined(_M_X64)
    const __m128i comilla = _mm_set1_epi8('"'), barra = _mm_set1_epi8('\\'),
                  salto = _mm_set1_epi8('\n'), cero = _mm_setzero_si128();
    while (fin - p >= 16) {
        const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
        const __m128i especial =
            _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(x, comilla), _mm_cmpeq_epi8(x, barra)),
                         _mm_or_si128(_mm_cmpeq_epi8(x, salto), _mm_cmpeq_epi8(x, cero)));
        if (const int mascara = _mm_movemask_epi8(especial))
            return p + std::countr_zero(static_cast<unsigned>(mascara));
        p += 16;
    }
#endif
    constexpr uint64_t i_UNOS = 0x0101010101010101u, i_ALTOS = 0x8080808080808080u;
    const auto tiene_cero = [](uint64_t v) { return (v - i_UNOS) & ~v & i_ALTOS; };
    while (fin - p >= 8) {
        uint64_t ocho;
        std::memcpy(&ocho, p, sizeof ocho);
        if (tiene_cero(ocho ^ (i_UNOS * '"')) | tiene_cero(ocho ^ (i_UNOS * '\\')) |
            tiene_cero(ocho ^ (i_UNOS * '\n')) | tiene_cero(ocho))
            break;
        p += 8;
    }
    return p;
}

uint32_t i_literal(anlex *lex, const char *p) {
    const char *q = p + 1;
    lex->literal_con_barras = false;
    if (!lex->criterio_json) {
        const void *comilla = std::memchr(q, '"', static_cast<size_t>(lex->fin - q));
        const char *fin_token = comilla ? static_cast<const char *>(comilla) + 1 : lex->fin;
        return i_token(lex, comilla ? ANLEX_LITERAL : ANLEX_ERROR, fin_token);
    }
    for (;;) {
        q = i_salta_texto_literal(q, lex->fin);
        while (!i_es(*q, i_FIN_LITERAL_JSON))
            ++q;
        if (*q == '"')
            return i_token(lex, ANLEX_LITERAL, q + 1);
        if (*q != '\\' || q[1] == '\n' || q + 1 == lex->fin) // a raw line feed or the end
            return i_token(lex, ANLEX_ERROR, *q == '\\' ? q + 1 : q);
        lex->literal_con_barras = true;
        q += 2;
    }
}

// JSON's number without its sign: an integer, then an optional fraction and exponent, each
// taken only when digits follow.
uint32_t i_numero(anlex *lex, const char *p) {
    const char *q = p + 1;
    if (*p != '0')
        while (i_es(*q, i_DIGITO))
            ++q;
    bool real = false;
    if (*q == '.' && i_es(q[1], i_DIGITO)) {
        real = true;
        q += 2;
        while (i_es(*q, i_DIGITO))
            ++q;
    }
    if (*q == 'e' || *q == 'E') {
        const char *r = q + 1;
        if (*r == '+' || *r == '-')
            ++r;
        if (i_es(*r, i_DIGITO)) {
            real = true;
            q = r + 1;
            while (i_es(*q, i_DIGITO))
                ++q;
        }
    }
    return i_token(lex, real ? ANLEX_CTE_REAL : ANLEX_CTE_ENTERA, q);
}

uint32_t i_palabra(anlex *lex, const char *p) {
    const char *q = p + 1;
    while (i_es(*q, i_PALABRA))
        ++q;
    const size_t longitud = static_cast<size_t>(q - p);
    if (lex->palabras)
        for (const auto &entrada : lex->palabras->entradas)
            if (entrada.palabra.size() == longitud &&
                std::memcmp(entrada.palabra.data(), p, longitud) == 0) {
                lex->id_palabra = entrada.id;
                return i_token(lex, ANLEX_PALABRA_RESERVADA, q);
            }
    return i_token(lex, ANLEX_IDENTIFICADOR, q);
}

// Indented text puts long runs of spaces after each line feed: they are passed eight at a time.
const char *i_salta_sangria(const char *p, const char *fin) {
    constexpr uint64_t i_OCHO_ESPACIOS = 0x2020202020202020u;
    while (fin - p >= 8) {
        uint64_t ocho;
        std::memcpy(&ocho, p, sizeof ocho);
        if (ocho != i_OCHO_ESPACIOS)
            break;
        p += 8;
    }
    return p;
}

uint32_t i_siguiente(anlex *lex) {
    const char *p = lex->pos;
    while (i_es(*p, i_BLANCO))
        if (*p++ == '\n')
            p = i_salta_sangria(p, lex->fin);
    lex->inicio_token = p;
    if (p == lex->fin)
        return i_token(lex, ANLEX_FIN, p);
    if (const uint8_t puntuacion = i_PUNTUACION[static_cast<unsigned char>(*p)])
        return i_token(lex, puntuacion, p + 1);
    if (*p == '"')
        return i_literal(lex, p);
    if (i_es(*p, i_DIGITO))
        return i_numero(lex, p);
    if (i_es(*p, i_INICIO_PALABRA))
        return i_palabra(lex, p);
    return i_token(lex, ANLEX_ERROR, p + unicode_longitud_caracter_UTF8(p));
}

// The constant's value as a double, correctly rounded; beyond a double's range, as strtod
// gives it: an infinity above, zero below.
double i_valor(uint32_t token, const char *p, const char *fin) {
    if (token == ANLEX_CTE_ENTERA && fin - p <= 19) {
        uint64_t valor = 0;
        for (; p != fin; ++p)
            valor = valor * 10 + static_cast<uint64_t>(*p - '0');
        return static_cast<double>(valor);
    }
    double valor = 0.0;
    const std::from_chars_result leido = std::from_chars(p, fin, valor);
    if (leido.ec == std::errc::result_out_of_range) {
        // Underflow only comes with a negative exponent; everything else overflowed.
        const char *exponente = p;
        while (exponente != fin && *exponente != 'e' && *exponente != 'E')
            ++exponente;
        const bool diminuto = exponente != fin && exponente[1] == '-';
        valor = diminuto ? 0.0 : std::numeric_limits<double>::infinity();
    }
    return valor;
}

} // namespace

anlex_palabras_reservadas_t *anlex_crea_palabras_reservadas_vacio(void) {
    return new anlex_palabras_reservadas_t{};
}

void anlex_append_palabra_reservada_ulong_u(anlex_palabras_reservadas_t *palabras, uint32_t id,
                                            const char16_t *palabra) {
    if (!i_VERIFICA((palabras) != NULL) || !i_VERIFICA((palabra) != NULL))
        return;
    char *utf8 = unicode_convierte_UNICODE_a_UTF8(palabra);
    palabras->entradas.push_back({utf8, id});
    marlstr_destruye(&utf8);
}

void anlex_destruye_palabras_reservadas(anlex_palabras_reservadas_t **palabras) {
    if (!i_VERIFICA((palabras) != NULL))
        return;
    delete *palabras;
    *palabras = nullptr;
}

anlex_t *anlex_crea_analizando_fichero(const char16_t *nombre_fichero,
                                       anlex_palabras_reservadas_t **palabras,
                                       tqbool toma_palabras) {
    anlex *lex = i_crea(i_origen_lexico::fichero, palabras, toma_palabras);
    if (i_VERIFICA((nombre_fichero) != NULL))
        lex->nombre_fichero = nombre_fichero;
    return lex;
}

anlex_t *anlex_crea_analizando_fichero_lectura_con_fread(const char16_t *nombre_fichero,
                                                         anlex_palabras_reservadas_t **palabras,
                                                         tqbool toma_palabras) {
    anlex *lex = anlex_crea_analizando_fichero(nombre_fichero, palabras, toma_palabras);
    lex->origen = i_origen_lexico::fichero_fread;
    return lex;
}

anlex_t *anlex_crea_analizando_memoria(const char16_t *texto,
                                       anlex_palabras_reservadas_t **palabras,
                                       tqbool toma_palabras) {
    anlex *lex = i_crea(i_origen_lexico::memoria, palabras, toma_palabras);
    if (i_VERIFICA((texto) != NULL)) {
        lex->propio.resize(unicode_longitud_UNICODE_a_UTF8(texto));
        unicode_escribe_UNICODE_a_UTF8(texto, lex->propio.data());
    }
    i_usa_texto_propio(lex);
    lex->cargado = true;
    return lex;
}

anlex_t *anlex_crea_analizando_memoria_utf8(const char *texto,
                                            anlex_palabras_reservadas_t **palabras,
                                            tqbool toma_palabras) {
    anlex *lex = i_crea(i_origen_lexico::memoria, palabras, toma_palabras);
    if (i_VERIFICA((texto) != NULL)) {
        lex->texto = texto;
        lex->fin = texto + std::strlen(texto);
    }
    lex->cargado = true;
    return lex;
}

void anlex_set_longitud_buffer_lectura(anlex_t *lex, uint32_t longitud) {
    if (i_VERIFICA((lex) != NULL))
        lex->longitud_buffer = longitud;
}

void anlex_set_atributo_aplicar_criterio_json_para_analisis_literales(anlex_t *lex) {
    if (i_VERIFICA((lex) != NULL))
        lex->criterio_json = true;
}

void anlex_inicia(anlex_t *lex) {
    if (!i_VERIFICA((lex) != NULL))
        return;
    if (!lex->cargado) {
        i_carga_fichero(lex);
        lex->cargado = true;
    }
    lex->pos = lex->inicio_token = lex->fin_token = lex->texto;
    lex->token = ANLEX_FIN;
}

uint32_t anlex_lee_token(anlex_t *lex) {
    return i_VERIFICA((lex) != NULL) ? i_siguiente(lex) : ANLEX_FIN;
}

uint32_t anlex_get_token(const anlex_t *lex) {
    return i_VERIFICA((lex) != NULL) ? lex->token : ANLEX_FIN;
}

tqbool anlex_salta_hasta_token2_igual(anlex_t *lex, uint32_t token_1, uint32_t token_2,
                                      uint32_t maximo_tokens) {
    if (!i_VERIFICA((lex) != NULL))
        return FALSO;
    for (uint32_t leidos = 0; maximo_tokens == 0 || leidos < maximo_tokens; ++leidos) {
        const uint32_t token = i_siguiente(lex);
        if (token == token_1 || token == token_2)
            return CIERTO;
        if (token == ANLEX_FIN)
            return FALSO;
    }
    return FALSO;
}

const char16_t *anlex_get_literal(anlex_t *lex) {
    if (!i_VERIFICA((lex) != NULL) || !i_VERIFICA(lex->token == ANLEX_LITERAL))
        return u"";
    size_t longitud = 0;
    tqbool con_barras = FALSO;
    const char *bytes = anlex_get_literal_utf8(lex, &longitud, &con_barras);
    std::u16string &ancho = lex->literal_ancho;
    ancho.resize(longitud);
    ancho.resize(static_cast<size_t>(unicode_escribe_UTF8_a_UNICODE(bytes, longitud, ancho.data()) -
                                     ancho.data()));
    if (con_barras == CIERTO && lex->criterio_json) {
        // An escaped quotation mark stands bare; every other pair stays as written.
        size_t escritos = 0;
        for (size_t i = 0; i < ancho.size(); ++i) {
            if (ancho[i] == u'\\' && i + 1 < ancho.size()) {
                if (ancho[i + 1] != u'"')
                    ancho[escritos++] = ancho[i];
                ++i;
            }
            ancho[escritos++] = ancho[i];
        }
        ancho.resize(escritos);
    }
    return ancho.c_str();
}

const char *anlex_get_literal_utf8(const anlex_t *lex, size_t *longitud, tqbool *con_barras) {
    if (!i_VERIFICA((lex) != NULL) || !i_VERIFICA((longitud) != NULL) ||
        !i_VERIFICA((con_barras) != NULL) || !i_VERIFICA(lex->token == ANLEX_LITERAL)) {
        if (longitud)
            *longitud = 0;
        return "";
    }
    *longitud = static_cast<size_t>(lex->fin_token - lex->inicio_token) - 2;
    *con_barras = lex->literal_con_barras ? CIERTO : FALSO;
    return lex->inicio_token + 1;
}

double anlex_get_cte_entera_double(const anlex_t *lex) {
    if (!i_VERIFICA((lex) != NULL) || !i_VERIFICA(lex->token == ANLEX_CTE_ENTERA))
        return 0.0;
    return i_valor(lex->token, lex->inicio_token, lex->fin_token);
}

double anlex_get_cte_real(const anlex_t *lex) {
    if (!i_VERIFICA((lex) != NULL) || !i_VERIFICA(lex->token == ANLEX_CTE_REAL))
        return 0.0;
    return i_valor(lex->token, lex->inicio_token, lex->fin_token);
}

uint32_t anlex_get_id_palabra_reservada_ulong(const anlex_t *lex) {
    if (!i_VERIFICA((lex) != NULL) || !i_VERIFICA(lex->token == ANLEX_PALABRA_RESERVADA))
        return 0;
    return lex->id_palabra;
}

// Worked out when asked, which is once for a failed read: line feeds before the token, then
// the UTF-16 units from the last of them.
void anlex_linea_y_columna_actual(const anlex_t *lex, int32_t *linea, int32_t *columna) {
    if (!i_VERIFICA((lex) != NULL) || !i_VERIFICA((linea) != NULL) ||
        !i_VERIFICA((columna) != NULL))
        return;
    uint32_t lineas = 1;
    const char *inicio_linea = lex->texto;
    for (const char *p = lex->texto; p != lex->inicio_token; ++p)
        if (*p == '\n') {
            ++lineas;
            inicio_linea = p + 1;
        }
    const size_t unidades =
        unicode_unidades_UTF8(inicio_linea, static_cast<size_t>(lex->inicio_token - inicio_linea));
    *linea = static_cast<int32_t>(lineas);
    *columna = static_cast<int32_t>(unidades + 1);
}

uint32_t anlex_lee_tokens(anlex_t *lex, anlex_token_t *tokens, uint32_t max) {
    if (!i_VERIFICA((lex) != NULL) || !i_VERIFICA((tokens) != NULL))
        return 0;
    uint32_t leidos = 0;
    while (leidos < max) {
        const uint32_t token = i_siguiente(lex);
        anlex_token_t &destino = tokens[leidos++];
        destino.inicio = lex->inicio_token;
        destino.longitud = static_cast<uint32_t>(lex->fin_token - lex->inicio_token);
        destino.token = static_cast<uint16_t>(token);
        destino.barras = lex->literal_con_barras && token == ANLEX_LITERAL ? CIERTO : FALSO;
        destino.id_palabra = token == ANLEX_PALABRA_RESERVADA ? lex->id_palabra : 0;
        if (token == ANLEX_FIN)
            break;
    }
    return leidos;
}

void anlex_situa_en_token(anlex_t *lex, const anlex_token_t *token) {
    if (!i_VERIFICA((lex) != NULL) || !i_VERIFICA((token) != NULL))
        return;
    lex->token = token->token;
    lex->inicio_token = token->inicio;
    lex->fin_token = token->inicio + token->longitud;
    lex->literal_con_barras = token->barras == CIERTO;
    lex->id_palabra = token->id_palabra;
}

double anlex_valor_constante(const anlex_token_t *token) {
    if (!i_VERIFICA((token) != NULL) ||
        !i_VERIFICA(token->token == ANLEX_CTE_ENTERA || token->token == ANLEX_CTE_REAL))
        return 0.0;
    return i_valor(token->token, token->inicio, token->inicio + token->longitud);
}

void anlex_destruye(anlex_t **lex) {
    if (!i_VERIFICA((lex) != NULL) || !i_VERIFICA((*lex) != NULL))
        return;
    if ((*lex)->palabras_propias)
        delete (*lex)->palabras;
    delete *lex;
    *lex = nullptr;
}
