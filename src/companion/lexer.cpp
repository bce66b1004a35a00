// tqbase lexer component: the scanner. It runs over UTF-8 bytes where they stand and keeps
// only the current token's extent; values, wide literals and positions are worked out when
// asked for, so a token that is skipped costs no more than finding its end.
#include <charconv>
#include <cstring>
#include <limits>

#include "lexer_record.h"
#include "scanner.h"
#include "tqbase/cadenas.h"
#include "unicode.h"
#include "verifica.h"

static const char *const i_MODULO = "tqbase: anlex";

namespace {

anlex *i_crea(i_origen_lexico origen, anlex_palabras_reservadas_t **palabras,
              tqbool toma_palabras) {
    anlex *lex = new anlex{};
    lex->origen = origen;
    lex->longitud_buffer = 1u << 16;
    lex->texto = lex->fin = lex->pos = lex->inicio_token = lex->fin_token = "";
    if (i_VERIFICA_NO_NULO(palabras)) {
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

uint32_t i_siguiente(anlex *lex) {
    i_token_escaneado t{};
    const auto reservada = [lex](const char *p, size_t longitud, uint32_t *id) {
        if (lex->palabras)
            for (const auto &entrada : lex->palabras->entradas)
                if (entrada.palabra.size() == longitud &&
                    std::memcmp(entrada.palabra.data(), p, longitud) == 0) {
                    *id = entrada.id;
                    return true;
                }
        return false;
    };
    i_escanea_token(lex->pos, lex->fin, lex->criterio_json, reservada, t);
    lex->inicio_token = t.inicio;
    lex->literal_con_barras = t.token == ANLEX_LITERAL && t.barras;
    if (t.token == ANLEX_PALABRA_RESERVADA)
        lex->id_palabra = t.id_palabra;
    return i_token(lex, t.token, t.fin);
}

// The constant's value as a double, correctly rounded; beyond a double's range, as strtod
// gives it: an infinity above, zero below.
double i_valor(const char *p, const char *fin) {
    double valor = 0.0;
    if (i_valor_escaneado(i_escanea_numero(p, fin), &valor))
        return valor;
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
    if (!i_VERIFICA_NO_NULO(palabras) || !i_VERIFICA_NO_NULO(palabra))
        return;
    char *utf8 = unicode_convierte_UNICODE_a_UTF8(palabra);
    palabras->entradas.push_back({utf8, id});
    marlstr_destruye(&utf8);
}

void anlex_destruye_palabras_reservadas(anlex_palabras_reservadas_t **palabras) {
    if (!i_VERIFICA_NO_NULO(palabras))
        return;
    delete *palabras;
    *palabras = nullptr;
}

anlex_t *anlex_crea_analizando_fichero(const char16_t *nombre_fichero,
                                       anlex_palabras_reservadas_t **palabras,
                                       tqbool toma_palabras) {
    anlex *lex = i_crea(i_origen_lexico::fichero, palabras, toma_palabras);
    if (i_VERIFICA_NO_NULO(nombre_fichero))
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
    if (i_VERIFICA_NO_NULO(texto)) {
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
    if (i_VERIFICA_NO_NULO(texto)) {
        lex->texto = texto;
        lex->fin = texto + std::strlen(texto);
    }
    lex->cargado = true;
    return lex;
}

void anlex_set_longitud_buffer_lectura(anlex_t *lex, uint32_t longitud) {
    if (i_VERIFICA_NO_NULO(lex))
        lex->longitud_buffer = longitud;
}

void anlex_set_atributo_aplicar_criterio_json_para_analisis_literales(anlex_t *lex) {
    if (i_VERIFICA_NO_NULO(lex))
        lex->criterio_json = true;
}

void anlex_inicia(anlex_t *lex) {
    if (!i_VERIFICA_NO_NULO(lex))
        return;
    if (!lex->cargado) {
        i_carga_fichero(lex);
        lex->cargado = true;
    }
    lex->pos = lex->inicio_token = lex->fin_token = lex->texto;
    lex->token = ANLEX_FIN;
}

uint32_t anlex_lee_token(anlex_t *lex) {
    return i_VERIFICA_NO_NULO(lex) ? i_siguiente(lex) : ANLEX_FIN;
}

uint32_t anlex_get_token(const anlex_t *lex) {
    return i_VERIFICA_NO_NULO(lex) ? lex->token : ANLEX_FIN;
}

tqbool anlex_salta_hasta_token2_igual(anlex_t *lex, uint32_t token_1, uint32_t token_2,
                                      uint32_t maximo_tokens) {
    if (!i_VERIFICA_NO_NULO(lex))
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
    if (!i_VERIFICA_NO_NULO(lex) || !i_VERIFICA(lex->token == ANLEX_LITERAL))
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
    if (!i_VERIFICA_NO_NULO(lex) || !i_VERIFICA_NO_NULO(longitud) ||
        !i_VERIFICA_NO_NULO(con_barras) || !i_VERIFICA(lex->token == ANLEX_LITERAL)) {
        if (longitud)
            *longitud = 0;
        return "";
    }
    *longitud = static_cast<size_t>(lex->fin_token - lex->inicio_token) - 2;
    *con_barras = lex->literal_con_barras ? CIERTO : FALSO;
    return lex->inicio_token + 1;
}

const char *anlex_get_fin_token_utf8(const anlex_t *lex, const char **fin_texto) {
    if (!i_VERIFICA_NO_NULO(lex) || !i_VERIFICA_NO_NULO(fin_texto))
        return "";
    *fin_texto = lex->fin;
    return lex->fin_token;
}

double anlex_get_cte_entera_double(const anlex_t *lex) {
    if (!i_VERIFICA_NO_NULO(lex) || !i_VERIFICA(lex->token == ANLEX_CTE_ENTERA))
        return 0.0;
    return i_valor(lex->inicio_token, lex->fin_token);
}

double anlex_get_cte_real(const anlex_t *lex) {
    if (!i_VERIFICA_NO_NULO(lex) || !i_VERIFICA(lex->token == ANLEX_CTE_REAL))
        return 0.0;
    return i_valor(lex->inicio_token, lex->fin_token);
}

uint32_t anlex_get_id_palabra_reservada_ulong(const anlex_t *lex) {
    if (!i_VERIFICA_NO_NULO(lex) || !i_VERIFICA(lex->token == ANLEX_PALABRA_RESERVADA))
        return 0;
    return lex->id_palabra;
}

// Worked out when asked, which is once for a failed read: line feeds before the token, then
// the UTF-16 units from the last of them.
void anlex_linea_y_columna_actual(const anlex_t *lex, int32_t *linea, int32_t *columna) {
    if (!i_VERIFICA_NO_NULO(lex) || !i_VERIFICA_NO_NULO(linea) || !i_VERIFICA_NO_NULO(columna))
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

void anlex_situa_en_token(anlex_t *lex, const anlex_token_t *token) {
    if (!i_VERIFICA_NO_NULO(lex) || !i_VERIFICA_NO_NULO(token))
        return;
    lex->token = token->token;
    lex->inicio_token = token->inicio;
    lex->fin_token = token->inicio + token->longitud;
    lex->literal_con_barras = token->barras == CIERTO;
    lex->id_palabra = token->id_palabra;
}

double anlex_valor_constante(const anlex_token_t *token) {
    if (!i_VERIFICA_NO_NULO(token) ||
        !i_VERIFICA(token->token == ANLEX_CTE_ENTERA || token->token == ANLEX_CTE_REAL))
        return 0.0;
    return i_valor(token->inicio, token->inicio + token->longitud);
}

void anlex_destruye(anlex_t **lex) {
    if (!i_VERIFICA_NO_NULO(lex) || !i_VERIFICA_NO_NULO(*lex))
        return;
    if ((*lex)->palabras_propias)
        delete (*lex)->palabras;
    delete *lex;
    *lex = nullptr;
}
