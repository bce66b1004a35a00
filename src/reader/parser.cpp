// The parser: JSON's grammar with the library's leniencies (text before the root is skipped,
// text after it ignored, commas between values optional). Containers being read wait on a
// stack of the parser's own, so nesting costs no C stack; each keeps its collected children
// and the flags that judge its commas.
#include <cstring>
#include <vector>

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
    tqbool coma;      // a comma came last
    char16_t *nombre; // objects: the name of the member whose value is being read
};

struct i_lectura {
    anlex_t *lex;
    tqbool decodifica;
    std::vector<i_contenedor_leido> pila;
    std::vector<void *> hijos;
    bool demasiado_profundo;
};

size_t i_num_hijos(const i_lectura &lectura, const i_contenedor_leido &contenedor) {
    return lectura.hijos.size() - contenedor.primer_hijo;
}

// How a value began: made whole, opened as a container, or failed at the current token.
enum class i_valor { leido, abierto, fallido };
// What the innermost container does next: go on, or end with its result.
enum class i_paso { sigue, termina_bien, termina_mal };

void i_abre(i_lectura &lectura, bool es_objeto) {
    lectura.pila.push_back({es_objeto, lectura.hijos.size(), FALSO, nullptr});
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
    widestr_nousar_destruye_opcional(&contenedor.nombre, i_MODULO, __LINE__);
}

tqjson2_nodo_t *i_crea_contenedor(i_lectura &lectura, const i_contenedor_leido &contenedor) {
    const auto num = static_cast<uint32_t>(i_num_hijos(lectura, contenedor));
    arr_puntero_t *hijos =
        arr_CreaPunteroConTipoCon(lectura.hijos.data() + contenedor.primer_hijo, num);
    lectura.hijos.resize(contenedor.primer_hijo);
    return contenedor.es_objeto ? i_crea_nodo_objeto_con_atributos(&hijos)
                                : i_crea_nodo_array_con_valores(&hijos);
}

// The member name: the literal as the lexer gives it, never decoded.
char16_t *i_nombre_literal(anlex_t *lex) {
    size_t longitud = 0;
    tqbool con_barras = FALSO;
    const char *bytes = anlex_get_literal_utf8(lex, &longitud, &con_barras);
    if (con_barras == CIERTO)
        return widestr_nousar_copia(anlex_get_literal(lex), i_MODULO, __LINE__);
    char16_t *nombre = widestr_nousar_creacadena(longitud + 1);
    *unicode_escribe_UTF8_a_UNICODE(bytes, longitud, nombre) = u'\0';
    return nombre;
}

// A string value. Without backslashes, decoding changes nothing, and UTF-8 that reads back
// unchanged is stored as its own bytes; anything else takes the way through wide text.
tqjson2_nodo_t *i_crea_nodo_literal(const i_lectura &lectura) {
    size_t longitud = 0;
    tqbool con_barras = FALSO;
    const char *bytes = anlex_get_literal_utf8(lectura.lex, &longitud, &con_barras);
    if (con_barras == FALSO && unicode_es_UTF8_estable_n(bytes, longitud) == CIERTO) {
        char *texto = creacadena(longitud + 1);
        std::memcpy(texto, bytes, longitud);
        texto[longitud] = '\0';
        return i_crea_nodo_cadena(&texto, lectura.decodifica);
    }
    const char16_t *literal = anlex_get_literal(lectura.lex);
    char16_t *texto = lectura.decodifica == CIERTO
                          ? i_decodifica_secuencias_escape(literal)
                          : widestr_nousar_copia(literal, i_MODULO, __LINE__);
    return i_crea_nodo_texto_unicode(FALSO, &texto, lectura.decodifica);
}

i_valor i_lee_negativo(anlex_t *lex, tqjson2_nodo_t **nodo) {
    const uint32_t token = anlex_lee_token(lex);
    if (token == ANLEX_CTE_ENTERA) {
        const double cte_double = anlex_get_cte_entera_double(lex);
        i_VERIFICA(cambtipo_se_puede_double_a_long(cte_double) == CIERTO);
        *nodo = tqjson2_crea_nodo_entero(-cambtipo_double_a_long(cte_double));
        return i_valor::leido;
    }
    if (token != ANLEX_CTE_REAL)
        return i_valor::fallido;
    i_VERIFICA(token == ANLEX_CTE_REAL);
    *nodo = tqjson2_crea_nodo_double(-anlex_get_cte_real(lex));
    return i_valor::leido;
}

tqjson2_nodo_t *i_crea_nodo_palabra(anlex_t *lex) {
    switch (anlex_get_id_palabra_reservada_ulong(lex)) {
        case i_PALABRA_RESERVADA_TRUE:
            return tqjson2_crea_nodo_booleano(CIERTO);
        case i_PALABRA_RESERVADA_FALSE:
            return tqjson2_crea_nodo_booleano(FALSO);
        default:
            i_VERIFICA(anlex_get_palabra_reservada_enum(lex, i_palabra_reservada_t) ==
                       i_PALABRA_RESERVADA_NULL);
            return tqjson2_crea_nodo_null();
    }
}

// Reads the next token as the start of a value. A failed value leaves its token current.
i_valor i_empieza_valor(i_lectura &lectura, tqjson2_nodo_t **nodo) {
    anlex_t *lex = lectura.lex;
    *nodo = nullptr;
    switch (const uint32_t token = anlex_lee_token(lex)) {
        case ANLEX_LLAVE_ABR:
        case ANLEX_CORCH_ABR:
            if (lectura.pila.size() == i_PROFUNDIDAD_MAXIMA) {
                lectura.demasiado_profundo = true;
                return i_valor::fallido;
            }
            i_abre(lectura, token == ANLEX_LLAVE_ABR);
            return i_valor::abierto;
        case ANLEX_CTE_ENTERA:
            *nodo =
                tqjson2_crea_nodo_entero(cambtipo_double_a_long(anlex_get_cte_entera_double(lex)));
            return i_valor::leido;
        case ANLEX_MENOS:
            return i_lee_negativo(lex, nodo);
        case ANLEX_CTE_REAL:
            *nodo = tqjson2_crea_nodo_double(anlex_get_cte_real(lex));
            return i_valor::leido;
        case ANLEX_LITERAL:
            *nodo = i_crea_nodo_literal(lectura);
            return i_valor::leido;
        case ANLEX_PALABRA_RESERVADA:
            *nodo = i_crea_nodo_palabra(lex);
            return i_valor::leido;
        default:
            return i_valor::fallido;
    }
}

// An array judges the token at which a value failed: its closing bracket ends it, a comma
// that the comma rule accepts lets it go on, anything else fails it.
i_paso i_juzga_array(i_lectura &lectura) {
    i_contenedor_leido &array = lectura.pila.back();
    switch (anlex_get_token(lectura.lex)) {
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
    if (valor == i_valor::fallido) {
        widestr_nousar_destruye(&contenedor.nombre, i_MODULO, __LINE__);
        return i_paso::termina_mal;
    }
    lectura.hijos.push_back(i_crea_atributo_propietario(&contenedor.nombre, &nodo));
    contenedor.coma = FALSO;
    return i_paso::sigue;
}

i_paso i_paso_objeto(i_lectura &lectura) {
    i_contenedor_leido &objeto = lectura.pila.back();
    switch (anlex_lee_token(lectura.lex)) {
        case ANLEX_COMA:
            if (objeto.coma == CIERTO || i_num_hijos(lectura, objeto) == 0)
                return i_paso::termina_mal;
            objeto.coma = CIERTO;
            return i_paso::sigue;
        case ANLEX_LLAVE_CER:
            return objeto.coma == CIERTO ? i_paso::termina_mal : i_paso::termina_bien;
        case ANLEX_LITERAL: {
            objeto.nombre = i_nombre_literal(lectura.lex);
            if (anlex_lee_token(lectura.lex) != ANLEX_DOS_PUNTOS) {
                widestr_nousar_destruye(&objeto.nombre, i_MODULO, __LINE__);
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
    return i_lee_contenedores(lectura, nodo);
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
    i_lectura lectura = {lex, decodifica_secuencias_escape, {}, {}, false};
    return i_lee_nodo_raiz(lectura, nodo);
}
