// The parser: JSON's grammar with the library's leniencies (text before the root is skipped,
// text after it ignored, commas between values optional). Containers being read wait on a
// stack of the parser's own, so nesting costs no C stack; each keeps its collected children
// and the flags that judge its commas.
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

#include "codec/codec.h"
#include "reader/reader.h"
#include "tree/reserved_words.h"

namespace {

// An object or array whose opening token has been read. Its members or nodes wait, in text
// order, at the top of the read's one stack of children, from `primer_hijo` on; the finished
// node takes them over in an array of exact size.
struct i_contenedor_leido {
    bool es_objeto;
    size_t primer_hijo;
    tqbool coma;          // a comma came last
    size_t inicio_nombre; // objects: where the pending member's name begins in `nombres`
};

// Tokens are taken from the lexer in bulk; the parser's current token is the one it reached in
// the batch, and it is handed back to the lexer when the parser stops, so that the lexer's
// position is where the read stopped.
constexpr uint32_t i_TOKENS_POR_LOTE = 256;

struct i_lectura {
    anlex_t *lex;
    tqbool decodifica;
    std::vector<i_contenedor_leido> pila;
    std::vector<void *> hijos;
    // The names of the members whose values are being read, innermost last: each member
    // copies its own into its block when it is made.
    std::u16string nombres;
    bool demasiado_profundo;
    anlex_token_t lote[i_TOKENS_POR_LOTE];
    uint32_t num_lote;
    uint32_t siguiente;
    const anlex_token_t *actual = nullptr; // in `lote`, until the next batch is read
};

uint32_t i_lee_token(i_lectura &lectura) {
    if (lectura.siguiente == lectura.num_lote) {
        lectura.num_lote = anlex_lee_tokens(lectura.lex, lectura.lote, i_TOKENS_POR_LOTE);
        lectura.siguiente = 0;
    }
    lectura.actual = &lectura.lote[lectura.siguiente++];
    return lectura.actual->token;
}

// The current literal's bytes between its quotation marks.
const char *i_bytes_literal(const i_lectura &lectura, size_t *longitud) {
    *longitud = lectura.actual->longitud - 2;
    return lectura.actual->inicio + 1;
}

// The current literal as the lexer gives it in wide text (escaped quotation marks bare).
const char16_t *i_literal_ancho(i_lectura &lectura) {
    anlex_situa_en_token(lectura.lex, lectura.actual);
    return anlex_get_literal(lectura.lex);
}

size_t i_num_hijos(const i_lectura &lectura, const i_contenedor_leido &contenedor) {
    return lectura.hijos.size() - contenedor.primer_hijo;
}

// How a value began: made whole, opened as a container, or failed at the current token.
enum class i_valor { leido, abierto, fallido };
// What the innermost container does next: go on, or end with its result.
enum class i_paso { sigue, termina_bien, termina_mal };

void i_abre(i_lectura &lectura, bool es_objeto) {
    lectura.pila.push_back({es_objeto, lectura.hijos.size(), FALSO, lectura.nombres.size()});
}

// Destroys what a failed container gathered.
void i_descarta(i_lectura &lectura, i_contenedor_leido &contenedor) {
    for (size_t i = contenedor.primer_hijo; i < lectura.hijos.size(); ++i) {
        if (contenedor.es_objeto)
            i_destruye_atributo_elemento(&lectura.hijos[i]);
        else
            i_destruye_nodo_elemento(&lectura.hijos[i]);
    }
    lectura.hijos.resize(contenedor.primer_hijo);
    lectura.nombres.resize(contenedor.inicio_nombre);
}

tqjson2_nodo_t *i_crea_contenedor(i_lectura &lectura, const i_contenedor_leido &contenedor) {
    const auto num = static_cast<uint32_t>(i_num_hijos(lectura, contenedor));
    arr_puntero_t *hijos =
        arr_CreaPunteroConTipoCon(lectura.hijos.data() + contenedor.primer_hijo, num);
    lectura.hijos.resize(contenedor.primer_hijo);
    return contenedor.es_objeto ? i_crea_nodo_objeto_con_atributos(&hijos)
                                : i_crea_nodo_array_con_valores(&hijos);
}

// Widens ASCII sixteen bytes a step, as far as whole steps of ASCII go; how many bytes it did.
size_t i_ensancha_ascii(const char *bytes, size_t longitud, char16_t *destino) {
    size_t i = 0;
#if defined(__SSE2__) || defined(_M_X64)
    for (; longitud - i >= 16; i += 16) {
        const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes + i));
        if (_mm_movemask_epi8(x) != 0)
            break;
        const __m128i cero = _mm_setzero_si128();
        _mm_storeu_si128(reinterpret_cast<__m128i *>(destino + i), _mm_unpacklo_epi8(x, cero));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(destino + i + 8), _mm_unpackhi_epi8(x, cero));
    }
#endif
    return i;
}

// The member name goes on the names buffer: the literal as the lexer gives it, never decoded.
// ASCII, the usual name, widens in place, sixteen bytes a step and then byte by byte.
void i_lee_nombre(i_lectura &lectura) {
    std::u16string &nombres = lectura.nombres;
    if (lectura.actual->barras == CIERTO) {
        nombres += i_literal_ancho(lectura);
        return;
    }
    size_t longitud = 0;
    const char *bytes = i_bytes_literal(lectura, &longitud);
    const size_t inicio = nombres.size();
    nombres.resize(inicio + longitud); // never more units than bytes
    char16_t *destino = nombres.data() + inicio;
    size_t i = i_ensancha_ascii(bytes, longitud, destino);
    for (; i < longitud && static_cast<unsigned char>(bytes[i]) < 0x80; ++i)
        destino[i] = static_cast<char16_t>(bytes[i]);
    if (i == longitud) // all ASCII: already in place, at its exact length
        return;
    char16_t *fin = unicode_escribe_UTF8_a_UNICODE(bytes + i, longitud - i, destino + i);
    nombres.resize(static_cast<size_t>(fin - nombres.data()));
}

// A string value. UTF-8 that reads back unchanged is decoded in place of its bytes (without
// backslashes, decoding changes nothing); anything else takes the way through wide text,
// which settles how ill-formed bytes read.
tqjson2_nodo_t *i_crea_nodo_literal(i_lectura &lectura) {
    size_t longitud = 0;
    const char *bytes = i_bytes_literal(lectura, &longitud);
    if (unicode_es_UTF8_estable_n(bytes, longitud) == CIERTO) {
        char *texto = nullptr;
        if (lectura.actual->barras == CIERTO) {
            texto = i_literal_json_utf8(bytes, longitud, lectura.decodifica);
        } else {
            texto = creacadena(longitud + 1);
            std::memcpy(texto, bytes, longitud);
            texto[longitud] = '\0';
        }
        return i_crea_nodo_cadena(&texto, lectura.decodifica);
    }
    const char16_t *literal = i_literal_ancho(lectura);
    char16_t *texto = lectura.decodifica == CIERTO
                          ? i_decodifica_secuencias_escape(literal)
                          : widestr_nousar_copia(literal, i_MODULO, __LINE__);
    return i_crea_nodo_texto_unicode(FALSO, &texto, lectura.decodifica);
}

// Up to 9 digits always fit a 32-bit integer and are read here; longer constants take the
// lexer's value and the range-checked conversion.
bool i_entero_corto(const anlex_token_t &token, int32_t *valor) {
    if (token.longitud > 9)
        return false;
    int32_t acumulado = 0;
    for (uint32_t i = 0; i < token.longitud; ++i)
        acumulado = acumulado * 10 + (token.inicio[i] - '0');
    *valor = acumulado;
    return true;
}

i_valor i_lee_negativo(i_lectura &lectura, tqjson2_nodo_t **nodo) {
    const uint32_t token = i_lee_token(lectura);
    if (token == ANLEX_CTE_ENTERA) {
        int32_t corto = 0;
        if (i_entero_corto(*lectura.actual, &corto)) {
            *nodo = tqjson2_crea_nodo_entero(-corto);
            return i_valor::leido;
        }
        const double cte_double = anlex_valor_constante(lectura.actual);
        i_VERIFICA(cambtipo_se_puede_double_a_long(cte_double) == CIERTO);
        *nodo = tqjson2_crea_nodo_entero(-cambtipo_double_a_long(cte_double));
        return i_valor::leido;
    }
    if (token != ANLEX_CTE_REAL)
        return i_valor::fallido;
    i_VERIFICA(token == ANLEX_CTE_REAL);
    *nodo = tqjson2_crea_nodo_double(-anlex_valor_constante(lectura.actual));
    return i_valor::leido;
}

tqjson2_nodo_t *i_crea_nodo_entero(const anlex_token_t &token) {
    int32_t corto = 0;
    if (i_entero_corto(token, &corto))
        return tqjson2_crea_nodo_entero(corto);
    return tqjson2_crea_nodo_entero(cambtipo_double_a_long(anlex_valor_constante(&token)));
}

tqjson2_nodo_t *i_crea_nodo_palabra(i_lectura &lectura) {
    switch (lectura.actual->id_palabra) {
        case i_PALABRA_RESERVADA_TRUE:
            return tqjson2_crea_nodo_booleano(CIERTO);
        case i_PALABRA_RESERVADA_FALSE:
            return tqjson2_crea_nodo_booleano(FALSO);
        default: {
            anlex_t *lex = lectura.lex;
            anlex_situa_en_token(lex, lectura.actual);
            i_VERIFICA(anlex_get_palabra_reservada_enum(lex, i_palabra_reservada_t) ==
                       i_PALABRA_RESERVADA_NULL);
            return tqjson2_crea_nodo_null();
        }
    }
}

// Reads the next token as the start of a value. A failed value leaves its token current.
i_valor i_empieza_valor(i_lectura &lectura, tqjson2_nodo_t **nodo) {
    *nodo = nullptr;
    switch (const uint32_t token = i_lee_token(lectura)) {
        case ANLEX_LLAVE_ABR:
        case ANLEX_CORCH_ABR:
            if (lectura.pila.size() == i_PROFUNDIDAD_MAXIMA) {
                lectura.demasiado_profundo = true;
                return i_valor::fallido;
            }
            i_abre(lectura, token == ANLEX_LLAVE_ABR);
            return i_valor::abierto;
        case ANLEX_CTE_ENTERA:
            *nodo = i_crea_nodo_entero(*lectura.actual);
            return i_valor::leido;
        case ANLEX_MENOS:
            return i_lee_negativo(lectura, nodo);
        case ANLEX_CTE_REAL:
            *nodo = tqjson2_crea_nodo_double(anlex_valor_constante(lectura.actual));
            return i_valor::leido;
        case ANLEX_LITERAL:
            *nodo = i_crea_nodo_literal(lectura);
            return i_valor::leido;
        case ANLEX_PALABRA_RESERVADA:
            *nodo = i_crea_nodo_palabra(lectura);
            return i_valor::leido;
        default:
            return i_valor::fallido;
    }
}

// An array judges the token at which a value failed: its closing bracket ends it, a comma
// that the comma rule accepts lets it go on, anything else fails it.
i_paso i_juzga_array(i_lectura &lectura) {
    i_contenedor_leido &array = lectura.pila.back();
    switch (lectura.actual->token) {
        case ANLEX_CORCH_CER:
            return array.coma == CIERTO ? i_paso::termina_mal : i_paso::termina_bien;
        case ANLEX_COMA:
            if (array.coma == CIERTO || i_num_hijos(lectura, array) == 0)
                return i_paso::termina_mal;
            array.coma = CIERTO;
            return i_paso::sigue;
        default:
            return i_paso::termina_mal;
    }
}

// The innermost container receives the value it was reading, or learns that it failed.
i_paso i_recibe(i_lectura &lectura, i_valor valor, tqjson2_nodo_t *nodo) {
    i_contenedor_leido &contenedor = lectura.pila.back();
    if (valor == i_valor::abierto)
        return i_paso::sigue;
    if (!contenedor.es_objeto) {
        if (valor == i_valor::fallido)
            return i_juzga_array(lectura);
        lectura.hijos.push_back(nodo);
        contenedor.coma = FALSO;
        return i_paso::sigue;
    }
    const size_t inicio = contenedor.inicio_nombre;
    if (valor == i_valor::fallido) {
        lectura.nombres.resize(inicio);
        return i_paso::termina_mal;
    }
    lectura.hijos.push_back(i_crea_atributo_propietario_con_nombre(
        lectura.nombres.data() + inicio, lectura.nombres.size() - inicio, &nodo));
    lectura.nombres.resize(inicio);
    contenedor.coma = FALSO;
    return i_paso::sigue;
}

i_paso i_paso_objeto(i_lectura &lectura) {
    i_contenedor_leido &objeto = lectura.pila.back();
    switch (i_lee_token(lectura)) {
        case ANLEX_COMA:
            if (objeto.coma == CIERTO || i_num_hijos(lectura, objeto) == 0)
                return i_paso::termina_mal;
            objeto.coma = CIERTO;
            return i_paso::sigue;
        case ANLEX_LLAVE_CER:
            return objeto.coma == CIERTO ? i_paso::termina_mal : i_paso::termina_bien;
        case ANLEX_LITERAL: {
            objeto.inicio_nombre = lectura.nombres.size();
            i_lee_nombre(lectura);
            if (i_lee_token(lectura) != ANLEX_DOS_PUNTOS) {
                lectura.nombres.resize(objeto.inicio_nombre);
                return i_paso::termina_mal;
            }
            tqjson2_nodo_t *nodo = nullptr;
            const i_valor valor = i_empieza_valor(lectura, &nodo); // may grow the stack
            return i_recibe(lectura, valor, nodo);
        }
        default:
            return i_paso::termina_mal;
    }
}

i_paso i_paso_array(i_lectura &lectura) {
    tqjson2_nodo_t *nodo = nullptr;
    const i_valor valor = i_empieza_valor(lectura, &nodo);
    return i_recibe(lectura, valor, nodo);
}

// Reads from the root's opening token to the end of the root.
tqbool i_lee_contenedores(i_lectura &lectura, tqjson2_nodo_t **nodo);

// Reads the root's contents and leaves the lexer at the parser's current token.
tqbool i_lee_desde_la_raiz(i_lectura &lectura, tqjson2_nodo_t **nodo) {
    const tqbool resultado = i_lee_contenedores(lectura, nodo);
    anlex_situa_en_token(lectura.lex, lectura.actual);
    return resultado;
}

tqbool i_lee_contenedores(i_lectura &lectura, tqjson2_nodo_t **nodo) {
    for (;;) {
        i_paso paso =
            lectura.pila.back().es_objeto ? i_paso_objeto(lectura) : i_paso_array(lectura);
        if (lectura.demasiado_profundo) {
            while (!lectura.pila.empty()) { // innermost first: each owns the top children
                i_descarta(lectura, lectura.pila.back());
                lectura.pila.pop_back();
            }
            return FALSO;
        }
        while (paso != i_paso::sigue) {
            i_contenedor_leido terminado = lectura.pila.back();
            lectura.pila.pop_back();
            tqjson2_nodo_t *hecho = nullptr;
            if (paso == i_paso::termina_mal)
                i_descarta(lectura, terminado);
            else
                hecho = i_crea_contenedor(lectura, terminado);
            if (lectura.pila.empty()) {
                *nodo = hecho;
                return paso == i_paso::termina_bien ? CIERTO : FALSO;
            }
            paso = i_recibe(lectura, hecho ? i_valor::leido : i_valor::fallido, hecho);
        }
    }
}

tqbool i_lee_nodo_raiz(i_lectura &lectura, tqjson2_nodo_t **nodo) {
    if (!i_VERIFICA((nodo) != NULL))
        return FALSO;
    *nodo = nullptr;
    anlex_t *lex = lectura.lex;
    if (anlex_salta_hasta_token2_igual(lex, ANLEX_LLAVE_ABR, ANLEX_CORCH_ABR, 0) != CIERTO)
        return FALSO;
    const uint32_t token = anlex_get_token(lex);
    if (token != ANLEX_LLAVE_ABR)
        i_VERIFICA(token == ANLEX_CORCH_ABR);
    i_abre(lectura, token == ANLEX_LLAVE_ABR);
    return i_lee_desde_la_raiz(lectura, nodo);
}

} // namespace

anlex_palabras_reservadas_t *i_crea_palabras_reservadas() {
    anlex_palabras_reservadas_t *palabras = anlex_crea_palabras_reservadas_vacio();
    for (const i_palabra_reservada &reservada : i_PALABRAS_RESERVADAS)
        anlex_append_palabra_reservada_ulong_u(palabras, reservada.palabra, reservada.texto);
    return palabras;
}

tqbool i_lee_json(anlex_t *lex, tqbool decodifica_secuencias_escape, tqjson2_nodo_t **nodo) {
    anlex_set_longitud_buffer_lectura(lex, i_LONGITUD_BUFFER_LECTURA);
    anlex_set_atributo_aplicar_criterio_json_para_analisis_literales(lex);
    anlex_inicia(lex);
    // Large enough (some 6 KB of tokens) to live off the stack.
    auto lectura = std::make_unique<i_lectura>();
    lectura->lex = lex;
    lectura->decodifica = decodifica_secuencias_escape;
    return i_lee_nodo_raiz(*lectura, nodo);
}
