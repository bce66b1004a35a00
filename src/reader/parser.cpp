// The parser: JSON's grammar with the library's leniencies (text before the root is skipped,
// text after it ignored, commas between values optional). Once the lexer has found the root's
// opening token, the parser scans the rest itself with the lexer's own steps and builds as it
// scans: no token is kept beyond the current one, and a number's value is gathered while its
// digits are passed. Where it stops, it hands its current token back to the lexer, which then
// tells the position as if it had read every token itself.
//
// Containers being read wait on a stack of the parser's own, so nesting costs no C stack; each
// keeps its collected children and the flag that judges its commas.
#include <cstring>
#include <string>
#include <vector>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

#include "codec/codec.h"
#include "companion/scanner.h"
#include "reader/reader.h"
#include "report_texts.h"
#include "tree/reserved_words.h"

namespace {

// An object or array whose opening token has been read. Its members or nodes wait, in text
// order, at the top of the read's one stack of children, from `primer_hijo` on; the finished
// node takes them over in an array of exact size. An object's member is made as soon as its
// name is read, and receives its value when the value is whole.
struct i_contenedor_leido {
    bool es_objeto;
    bool coma; // a comma came last
    size_t primer_hijo;
};

// The children of the containers being read, innermost last. It grows by reallocation, a
// quarter at a time once large (the system moves a large block's pages rather than copying
// them, and a small step keeps the spare room small), and is cut to its size before a large
// container's array is made: so a read's peak stays near the tree it makes even when one array
// holds most of the document.
class i_pila_hijos {
  public:
    i_pila_hijos() = default;
    i_pila_hijos(const i_pila_hijos &) = delete;
    i_pila_hijos &operator=(const i_pila_hijos &) = delete;
    ~i_pila_hijos() { marlspy_nousar_free_pp(&datos_, 1); }

    size_t size() const { return num_; }
    void **data() { return datos_; }
    void *&operator[](size_t i) { return datos_[i]; }
    void *&back() { return datos_[num_ - 1]; }
    void push_back(void *hijo) {
        if (num_ == capacidad_) [[unlikely]]
            reserva(capacidad_ < 65536 ? 2 * capacidad_ + 64 : capacidad_ + capacidad_ / 4);
        datos_[num_++] = hijo;
    }
    void resize(size_t num) { num_ = num; } // never more than it holds
    void ajusta() { reserva(num_); }

  private:
    void reserva(size_t capacidad) {
        datos_ = static_cast<void **>(marlspy_nousar_realloc(datos_, capacidad * sizeof(void *)));
        capacidad_ = capacidad;
    }
    void **datos_ = nullptr;
    size_t num_ = 0;
    size_t capacidad_ = 0;
};

// A container with more children than this has its array made after the stack is cut to size.
constexpr size_t i_HIJOS_CONTENEDOR_GRANDE = 65536;

// Small records (nodes, members with short names, short texts) are taken from the memory
// component in batches, a store for each size class of 8 bytes up to 64: one call for many
// records, which the read then places in the order it makes them. What is left goes back when
// the read ends.
class i_reserva_bloques {
  public:
    i_reserva_bloques() {
        for (uint32_t &siguiente : siguiente_)
            siguiente = i_LOTE;
    }
    i_reserva_bloques(const i_reserva_bloques &) = delete;
    i_reserva_bloques &operator=(const i_reserva_bloques &) = delete;
    ~i_reserva_bloques() {
        for (size_t clase = 0; clase < i_CLASES; ++clase)
            marlspy_nousar_free_lote(bloques_[clase] + siguiente_[clase],
                                     i_LOTE - siguiente_[clase]);
    }
    // A block of `tam` bytes (at least 1), as marlspy_nousar_malloc gives it.
    void *toma(size_t tam) {
        if (tam > i_CLASES * 8)
            return marlspy_nousar_malloc(tam);
        const size_t clase = (tam - 1) / 8;
        if (siguiente_[clase] == i_LOTE) [[unlikely]] {
            marlspy_nousar_malloc_lote((clase + 1) * 8, bloques_[clase], i_LOTE);
            siguiente_[clase] = 0;
        }
        return bloques_[clase][siguiente_[clase]++];
    }

  private:
    static constexpr size_t i_CLASES = 8;
    static constexpr uint32_t i_LOTE = 32;
    void *bloques_[i_CLASES][i_LOTE]; // from `siguiente_` on, not yet handed out
    uint32_t siguiente_[i_CLASES];
};

struct i_lectura {
    anlex_t *lex;
    tqbool decodifica;
    const char *fin; // the end of the input, where a zero byte stands
    i_token_escaneado actual;
    std::vector<i_contenedor_leido> pila;
    i_pila_hijos hijos;
    std::u16string ancho; // names outside ASCII, widened before they are copied
    bool demasiado_profundo;
    i_reserva_bloques bloques;
};

[[gnu::always_inline]] inline tqjson2_nodo_t *i_nodo(i_lectura &lectura, int32_t tipo,
                                                     arr_puntero_t *hijos, char *cadena,
                                                     tqbool texto_decodificado, int32_t entero,
                                                     double valor_double, tqbool booleano) {
    auto *nodo = static_cast<tqjson2_nodo_t *>(lectura.bloques.toma(sizeof(tqjson2_nodo_t)));
    i_inicia_nodo(nodo, tipo, hijos, hijos, cadena, texto_decodificado, entero, valor_double,
                  booleano);
    return nodo;
}
tqjson2_nodo_t *i_nodo_entero(i_lectura &lectura, int32_t entero) {
    return i_nodo(lectura, TQJSON_TIPO_ENTERO, nullptr, nullptr, FALSO, entero, i_DOUBLE_RELLENO,
                  FALSO);
}
tqjson2_nodo_t *i_nodo_double(i_lectura &lectura, double valor) {
    return i_nodo(lectura, TQJSON_TIPO_DOUBLE, nullptr, nullptr, FALSO, i_ENTERO_RELLENO, valor,
                  FALSO);
}
// Booleans, null, and containers (which take their children over).
tqjson2_nodo_t *i_nodo_sin_numero(i_lectura &lectura, int32_t tipo, arr_puntero_t *hijos,
                                  tqbool booleano) {
    return i_nodo(lectura, tipo, hijos, nullptr, FALSO, i_ENTERO_RELLENO, i_DOUBLE_RELLENO,
                  booleano);
}

bool i_palabra_json(const char *p, size_t longitud, uint32_t *id) {
    for (const i_palabra_reservada &reservada : i_PALABRAS_RESERVADAS)
        if (reservada.longitud == longitud && std::memcmp(reservada.texto_utf8, p, longitud) == 0) {
            *id = reservada.palabra;
            return true;
        }
    return false;
}

[[gnu::always_inline]] inline uint32_t i_lee_token(i_lectura &lectura) {
    i_escanea_token(lectura.actual.fin, lectura.fin, true, i_palabra_json, lectura.actual);
    return lectura.actual.token;
}

// The current token as the lexer keeps it, for the operations that read the current token.
anlex_token_t i_registro_token(const i_token_escaneado &t) {
    return {t.inicio, static_cast<uint32_t>(t.fin - t.inicio), static_cast<uint16_t>(t.token),
            static_cast<tqbool>(t.barras ? CIERTO : FALSO), t.id_palabra};
}

void i_situa_lexer(i_lectura &lectura) {
    const anlex_token_t registro = i_registro_token(lectura.actual);
    anlex_situa_en_token(lectura.lex, &registro);
}

// The current literal's bytes between its quotation marks.
const char *i_bytes_literal(const i_lectura &lectura, size_t *longitud) {
    *longitud = static_cast<size_t>(lectura.actual.fin - lectura.actual.inicio) - 2;
    return lectura.actual.inicio + 1;
}

// The current literal as the lexer gives it in wide text (escaped quotation marks bare).
const char16_t *i_literal_ancho(i_lectura &lectura) {
    i_situa_lexer(lectura);
    return anlex_get_literal(lectura.lex);
}

// The current constant's value: from its scan where that is exact, else from the lexer, which
// converts its text the slow way.
[[gnu::always_inline]] inline double i_valor_constante(const i_lectura &lectura) {
    double valor = 0.0;
    if (i_valor_escaneado(lectura.actual.numero, &valor))
        return valor;
    const anlex_token_t registro = i_registro_token(lectura.actual);
    return anlex_valor_constante(&registro);
}

size_t i_num_hijos(const i_lectura &lectura, const i_contenedor_leido &contenedor) {
    return lectura.hijos.size() - contenedor.primer_hijo;
}

// How a value began: made whole, opened as a container, or failed at the current token.
enum class i_valor { leido, abierto, fallido };
// What the innermost container does next: go on, or end with its result.
enum class i_paso { sigue, termina_bien, termina_mal };

void i_abre(i_lectura &lectura, bool es_objeto) {
    lectura.pila.push_back({es_objeto, false, lectura.hijos.size()});
}

// Destroys what a failed container gathered (a member still waiting for its value has none).
void i_descarta(i_lectura &lectura, i_contenedor_leido &contenedor) {
    for (size_t i = contenedor.primer_hijo; i < lectura.hijos.size(); ++i) {
        if (contenedor.es_objeto)
            i_destruye_atributo_elemento(&lectura.hijos[i]);
        else
            i_destruye_nodo_elemento(&lectura.hijos[i]);
    }
    lectura.hijos.resize(contenedor.primer_hijo);
}

tqjson2_nodo_t *i_crea_contenedor(i_lectura &lectura, const i_contenedor_leido &contenedor) {
    const auto num = static_cast<uint32_t>(i_num_hijos(lectura, contenedor));
    if (num > i_HIJOS_CONTENEDOR_GRANDE)
        lectura.hijos.ajusta();
    void *const *primero = lectura.hijos.data() + contenedor.primer_hijo;
    // A member array has room for the index of its names.
    arr_puntero_t *hijos = contenedor.es_objeto ? arr_CreaPunteroConAnexo(primero, num)
                                                : arr_CreaPunteroConTipoCon(primero, num);
    lectura.hijos.resize(contenedor.primer_hijo);
    return i_nodo_sin_numero(lectura, contenedor.es_objeto ? TQJSON_TIPO_OBJETO : TQJSON_TIPO_ARRAY,
                             hijos, FALSO);
}

// Widens ASCII: sixteen, eight or four bytes a step, the last step ending at the last byte
// (overlapping the one before it), so that a short name takes one or two steps and nothing is
// read or written beyond the name.
void i_ensancha_ascii(const char *bytes, size_t longitud, char16_t *destino) {
#if defined(__SSE2__) || defined(_M_X64)
    const __m128i cero = _mm_setzero_si128();
    const auto ocho = [&](size_t i) { // bytes [i, i + 8)
        uint64_t v;
        std::memcpy(&v, bytes + i, sizeof v);
        const __m128i x = _mm_cvtsi64_si128(static_cast<long long>(v));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(destino + i), _mm_unpacklo_epi8(x, cero));
    };
    if (longitud >= 8) {
        for (size_t i = 0; i + 8 <= longitud; i += 8)
            ocho(i);
        ocho(longitud - 8);
        return;
    }
    if (longitud >= 4) {
        const auto cuatro = [&](size_t i) { // bytes [i, i + 4)
            uint32_t v;
            std::memcpy(&v, bytes + i, sizeof v);
            const __m128i x = _mm_cvtsi32_si128(static_cast<int>(v));
            _mm_storel_epi64(reinterpret_cast<__m128i *>(destino + i), _mm_unpacklo_epi8(x, cero));
        };
        cuatro(0);
        cuatro(longitud - 4);
        return;
    }
#endif
    for (size_t i = 0; i < longitud; ++i)
        destino[i] = static_cast<char16_t>(bytes[i]);
}

tqjson2_atributo_t *i_atributo_nuevo(i_lectura &lectura, size_t unidades) {
    return i_inicia_atributo_en_linea(lectura.bloques.toma(i_tam_atributo_en_linea(unidades)),
                                      unidades);
}

tqjson2_atributo_t *i_crea_atributo_copiando(i_lectura &lectura, const char16_t *nombre,
                                             size_t unidades) {
    tqjson2_atributo_t *atributo = i_atributo_nuevo(lectura, unidades);
    std::memcpy(atributo->nombre, nombre, unidades * sizeof(char16_t));
    return atributo;
}

// The member of the current literal, its name the literal as the lexer gives it, never
// decoded. An ASCII name, the usual one, is widened straight into the member's block.
tqjson2_atributo_t *i_crea_atributo_del_nombre(i_lectura &lectura) {
    if (lectura.actual.barras) {
        const char16_t *nombre = i_literal_ancho(lectura);
        return i_crea_atributo_copiando(lectura, nombre,
                                        std::char_traits<char16_t>::length(nombre));
    }
    size_t longitud = 0;
    const char *bytes = i_bytes_literal(lectura, &longitud);
    if (!lectura.actual.fuera_ascii) {
        tqjson2_atributo_t *atributo = i_atributo_nuevo(lectura, longitud);
        i_ensancha_ascii(bytes, longitud, atributo->nombre);
        return atributo;
    }
    std::u16string &ancho = lectura.ancho;
    ancho.resize(longitud); // never more units than bytes
    const char16_t *fin = unicode_escribe_UTF8_a_UNICODE(bytes, longitud, ancho.data());
    return i_crea_atributo_copiando(lectura, ancho.data(), static_cast<size_t>(fin - ancho.data()));
}

// A string value. UTF-8 that reads back unchanged is decoded in place of its bytes (without
// backslashes, decoding changes nothing); anything else takes the way through wide text,
// which settles how ill-formed bytes read.
tqjson2_nodo_t *i_crea_nodo_literal(i_lectura &lectura) {
    size_t longitud = 0;
    const char *bytes = i_bytes_literal(lectura, &longitud);
    if (!lectura.actual.fuera_ascii || unicode_es_UTF8_estable_n(bytes, longitud) == CIERTO) {
        char *texto = nullptr;
        if (lectura.actual.barras) {
            texto = i_literal_json_utf8(bytes, longitud, lectura.decodifica);
        } else {
            texto = static_cast<char *>(lectura.bloques.toma(longitud + 1));
            std::memcpy(texto, bytes, longitud);
            texto[longitud] = '\0';
        }
        return i_nodo(lectura, TQJSON_TIPO_CADENA, nullptr, texto, lectura.decodifica,
                      i_ENTERO_RELLENO, i_DOUBLE_RELLENO, FALSO);
    }
    const char16_t *literal = i_literal_ancho(lectura);
    char16_t *texto = lectura.decodifica == CIERTO
                          ? i_decodifica_secuencias_escape(literal)
                          : widestr_nousar_copia(literal, i_MODULO, __LINE__);
    return i_crea_nodo_texto_unicode(FALSO, &texto, lectura.decodifica);
}

// Up to 9 digits always fit a 32-bit integer and are taken from the scan (an integer constant
// has no leading zero); longer constants take the range-checked conversion.
bool i_entero_corto(const i_token_escaneado &token, int32_t *valor) {
    if (token.fin - token.inicio > 9)
        return false;
    *valor = static_cast<int32_t>(token.numero.significando);
    return true;
}

// The value of a minus sign whose next token is current.
[[gnu::always_inline]] inline i_valor i_negativo_del_actual(i_lectura &lectura,
                                                            tqjson2_nodo_t **nodo) {
    const uint32_t token = lectura.actual.token;
    if (token == ANLEX_CTE_ENTERA) {
        int32_t corto = 0;
        if (i_entero_corto(lectura.actual, &corto)) {
            *nodo = i_nodo_entero(lectura, -corto);
            return i_valor::leido;
        }
        const double cte_double = i_valor_constante(lectura);
        i_VERIFICA_TEXTO(cambtipo_se_puede_double_a_long(cte_double) == CIERTO,
                         i_TEXTO_NEGATIVO_CABE);
        *nodo = i_nodo_entero(lectura, -cambtipo_double_a_long(cte_double));
        return i_valor::leido;
    }
    if (token != ANLEX_CTE_REAL)
        return i_valor::fallido;
    i_VERIFICA_TEXTO(token == ANLEX_CTE_REAL, i_TEXTO_NEGATIVO_ES_REAL);
    *nodo = i_nodo_double(lectura, -i_valor_constante(lectura));
    return i_valor::leido;
}

[[gnu::always_inline]] inline i_valor i_lee_negativo(i_lectura &lectura, tqjson2_nodo_t **nodo) {
    i_lee_token(lectura);
    return i_negativo_del_actual(lectura, nodo);
}

[[gnu::always_inline]] inline tqjson2_nodo_t *i_crea_nodo_entero(i_lectura &lectura) {
    int32_t corto = 0;
    if (i_entero_corto(lectura.actual, &corto))
        return i_nodo_entero(lectura, corto);
    return i_nodo_entero(lectura, cambtipo_double_a_long(i_valor_constante(lectura)));
}

tqjson2_nodo_t *i_crea_nodo_palabra(i_lectura &lectura) {
    switch (lectura.actual.id_palabra) {
        case i_PALABRA_RESERVADA_TRUE:
            return i_nodo_sin_numero(lectura, TQJSON_TIPO_BOOLEANO, nullptr, CIERTO);
        case i_PALABRA_RESERVADA_FALSE:
            return i_nodo_sin_numero(lectura, TQJSON_TIPO_BOOLEANO, nullptr, FALSO);
        default: {
            anlex_t *lex = lectura.lex;
            i_situa_lexer(lectura);
            i_VERIFICA_TEXTO(anlex_get_palabra_reservada_enum(lex, i_palabra_reservada_t) ==
                                 i_PALABRA_RESERVADA_NULL,
                             i_TEXTO_PALABRA_ES_NULL);
            return i_nodo_sin_numero(lectura, TQJSON_TIPO_NULL, nullptr, FALSO);
        }
    }
}

// Reads the next token as the start of a value. A failed value leaves its token current.
[[gnu::always_inline]] inline i_valor i_empieza_valor(i_lectura &lectura, tqjson2_nodo_t **nodo) {
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
            *nodo = i_crea_nodo_entero(lectura);
            return i_valor::leido;
        case ANLEX_MENOS:
            return i_lee_negativo(lectura, nodo);
        case ANLEX_CTE_REAL:
            *nodo = i_nodo_double(lectura, i_valor_constante(lectura));
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

// A number whose first digit, or the minus sign right before it, stands at `p`: the tokens the
// general scan would find there, scanned directly.
[[gnu::always_inline]] inline i_valor i_lee_numero(i_lectura &lectura, const char *p,
                                                   tqjson2_nodo_t **nodo) {
    const bool negativo = *p == '-';
    i_token_escaneado &t = lectura.actual;
    t.inicio = p + (negativo ? 1 : 0);
    t.numero = i_escanea_numero(t.inicio, lectura.fin);
    t.fin = t.numero.fin;
    t.token = t.numero.real ? ANLEX_CTE_REAL : ANLEX_CTE_ENTERA;
    if (negativo)
        return i_negativo_del_actual(lectura, nodo);
    *nodo = t.numero.real ? i_nodo_double(lectura, i_valor_constante(lectura))
                          : i_crea_nodo_entero(lectura);
    return i_valor::leido;
}

// Where a value may begin: a number, the most frequent, is taken at once; anything else through
// the general scan. `p` is the first byte that is no blank.
[[gnu::always_inline]] inline i_valor i_empieza_valor_en(i_lectura &lectura, const char *p,
                                                         tqjson2_nodo_t **nodo) {
    if (i_es(*p, i_DIGITO) || (*p == '-' && i_es(p[1], i_DIGITO)))
        return i_lee_numero(lectura, p, nodo);
    return i_empieza_valor(lectura, nodo);
}

// Makes the one-byte punctuation mark at `p` the current token.
void i_puntuacion_en(i_lectura &lectura, const char *p, uint32_t token) {
    lectura.actual.token = token;
    lectura.actual.inicio = p;
    lectura.actual.fin = p + 1;
}

// The comma rule of both kinds of container: a comma is taken only after a child and not right
// after another comma.
i_paso i_juzga_coma(const i_lectura &lectura, i_contenedor_leido &contenedor) {
    if (contenedor.coma || i_num_hijos(lectura, contenedor) == 0)
        return i_paso::termina_mal;
    contenedor.coma = true;
    return i_paso::sigue;
}

// A closing mark ends its container, which fails when a comma came last.
i_paso i_juzga_cierre(const i_contenedor_leido &contenedor) {
    return contenedor.coma ? i_paso::termina_mal : i_paso::termina_bien;
}

// An array judges the token at which a value failed: its closing bracket ends it, a comma
// that the comma rule accepts lets it go on, anything else fails it.
i_paso i_juzga_array(i_lectura &lectura) {
    i_contenedor_leido &array = lectura.pila.back();
    switch (lectura.actual.token) {
        case ANLEX_CORCH_CER:
            return i_juzga_cierre(array);
        case ANLEX_COMA:
            return i_juzga_coma(lectura, array);
        default:
            return i_paso::termina_mal;
    }
}

// The innermost container receives the value it was reading, or learns that it failed. An
// object's value goes to the member made for it, the last of its children.
[[gnu::always_inline]] inline i_paso i_recibe(i_lectura &lectura, i_valor valor,
                                              tqjson2_nodo_t *nodo) {
    i_contenedor_leido &contenedor = lectura.pila.back();
    if (valor == i_valor::abierto)
        return i_paso::sigue;
    if (valor == i_valor::fallido)
        return contenedor.es_objeto ? i_paso::termina_mal : i_juzga_array(lectura);
    if (contenedor.es_objeto)
        static_cast<tqjson2_atributo_t *>(lectura.hijos.back())->valor = nodo;
    else
        lectura.hijos.push_back(nodo);
    contenedor.coma = false;
    return i_paso::sigue;
}

[[gnu::always_inline]] inline i_paso i_paso_objeto(i_lectura &lectura) {
    i_contenedor_leido &objeto = lectura.pila.back();
    switch (i_lee_token(lectura)) {
        case ANLEX_COMA:
            return i_juzga_coma(lectura, objeto);
        case ANLEX_LLAVE_CER:
            return i_juzga_cierre(objeto);
        case ANLEX_LITERAL: {
            lectura.hijos.push_back(i_crea_atributo_del_nombre(lectura));
            const char *p = i_salta_blancos(lectura.actual.fin, lectura.fin);
            if (*p == ':')
                i_puntuacion_en(lectura, p, ANLEX_DOS_PUNTOS);
            else if (i_lee_token(lectura) != ANLEX_DOS_PUNTOS)
                return i_paso::termina_mal;
            tqjson2_nodo_t *nodo = nullptr;
            p = i_salta_blancos(lectura.actual.fin, lectura.fin);
            const i_valor valor = i_empieza_valor_en(lectura, p, &nodo); // may grow the stack
            return i_recibe(lectura, valor, nodo);
        }
        default:
            return i_paso::termina_mal;
    }
}

// The punctuation that follows an array's values is judged at once; values begin as above.
[[gnu::always_inline]] inline i_paso i_paso_array(i_lectura &lectura) {
    const char *p = i_salta_blancos(lectura.actual.fin, lectura.fin);
    if (*p == ',' || *p == ']') {
        i_puntuacion_en(lectura, p, *p == ',' ? ANLEX_COMA : ANLEX_CORCH_CER);
        return i_juzga_array(lectura);
    }
    tqjson2_nodo_t *nodo = nullptr;
    const i_valor valor = i_empieza_valor_en(lectura, p, &nodo);
    return i_recibe(lectura, valor, nodo);
}

// Reads from the root's opening token to the end of the root.
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
            // The container is finished where it stands on the stack, field by field: a copy
            // of the whole record would wait for the narrower writes that made it.
            tqjson2_nodo_t *hecho = nullptr;
            if (paso == i_paso::termina_mal)
                i_descarta(lectura, lectura.pila.back());
            else
                hecho = i_crea_contenedor(lectura, lectura.pila.back());
            lectura.pila.pop_back();
            if (lectura.pila.empty()) {
                *nodo = hecho;
                return paso == i_paso::termina_bien ? CIERTO : FALSO;
            }
            paso = i_recibe(lectura, hecho ? i_valor::leido : i_valor::fallido, hecho);
        }
    }
}

tqbool i_lee_nodo_raiz(i_lectura &lectura, tqjson2_nodo_t **nodo) {
    if (!i_VERIFICA_NO_NULO(nodo))
        return FALSO;
    *nodo = nullptr;
    anlex_t *lex = lectura.lex;
    if (anlex_salta_hasta_token2_igual(lex, ANLEX_LLAVE_ABR, ANLEX_CORCH_ABR, 0) != CIERTO)
        return FALSO;
    const uint32_t token = anlex_get_token(lex);
    if (token != ANLEX_LLAVE_ABR)
        i_VERIFICA_TEXTO(token == ANLEX_CORCH_ABR, i_TEXTO_RAIZ_ABRE_CONTENEDOR);
    // The scan goes on from the end of the root's opening token.
    lectura.actual.fin = anlex_get_fin_token_utf8(lex, &lectura.fin);
    i_abre(lectura, token == ANLEX_LLAVE_ABR);
    const tqbool resultado = i_lee_contenedores(lectura, nodo);
    i_situa_lexer(lectura);
    return resultado;
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
    i_lectura lectura{};
    lectura.lex = lex;
    lectura.decodifica = decodifica_secuencias_escape;
    return i_lee_nodo_raiz(lectura, nodo);
}
