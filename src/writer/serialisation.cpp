// The walk: every node depth first, members and elements in stored order, one line per scalar
// and an opening and a closing line per container. Open containers wait on a work stack of
// the walk's own, so a tree's depth never costs C stack.
#include <unordered_set>
#include <vector>

#include "companion/decimal_digits.h"
#include "tree/reserved_words.h"
#include "writer.h"

namespace {

// An object or array whose opening line is written and whose children are being written.
struct i_contenedor_abierto {
    const tqjson2_nodo_t *nodo;
    void *const *hijos; // members of an object, elements of an array
    uint32_t num_hijos;
    uint32_t siguiente;
    uint32_t profundidad; // of its brackets; its children go two deeper
    bool con_coma;        // after its closing bracket
    bool es_objeto;
};

// The layout flag keeps the caller's tqbool as given: only CIERTO indents.
struct i_recorrido {
    tqbool indentado;
    i_destino_gltf_t *destino_gltf;
    std::vector<i_contenedor_abierto> pila;
    // A borrowed value is the one way a tree can hold one of its own ancestors, which would be
    // written without end. Once the walk meets one, it keeps the open containers in a set.
    bool vigila_ciclos = false;
    std::unordered_set<const tqjson2_nodo_t *> abiertos;
};

void i_anade_palabra(i_salida_t *salida, i_palabra_reservada_t palabra) {
    const i_palabra_reservada &reservada = i_PALABRAS_RESERVADAS[palabra];
    i_anade_bytes(salida, reservada.texto_utf8, reservada.longitud);
}

// Empty or only blanks: the value is written alone, as an array element is. A name that begins
// with anything above a space, nearly every name, is settled at its first unit.
bool i_es_nombre_en_blanco(const char16_t *nombre) {
    if (nombre[0] > u' ')
        return false;
    return nombre[0] == u'\0' ||
           widestr_nousar_es_cadena_en_blanco(nombre, i_MODULO, __LINE__) == CIERTO;
}

// The UTF-8 form of a name. ASCII, nearly every name, is copied in one pass, in steps whose room
// is reserved once; from its first other unit on, the name goes through the Unicode component.
void i_anade_nombre_utf8(i_salida_t *salida, const char16_t *nombre) {
    constexpr size_t i_TRAMO = 64;
    const char16_t *p = nombre;
    for (;;) {
        char *destino = i_reserva_salida(salida, i_TRAMO);
        size_t i = 0;
        // One comparison a unit: the terminator wraps round to the top with the non-ASCII.
        while (i < i_TRAMO && static_cast<char16_t>(p[i] - 1) < 0x7F) {
            destino[i] = static_cast<char>(p[i]);
            ++i;
        }
        salida->longitud += i;
        p += i;
        if (i < i_TRAMO)
            break;
    }
    if (*p == u'\0')
        return;
    size_t unidades = 0;
    while (p[unidades])
        ++unidades;
    char *destino = i_reserva_salida(salida, 3 * unidades); // no unit takes more than 3 bytes
    salida->longitud =
        static_cast<size_t>(unicode_escribe_UNICODE_a_UTF8(p, destino) - salida->datos);
}

// Starts a node's line: indentation, then the quoted name and its separator unless blank.
void i_abre_linea_de_nodo(i_recorrido &recorrido, const char16_t *nombre, uint32_t profundidad) {
    i_destino_gltf_t *destino_gltf = recorrido.destino_gltf;
    i_abre_linea(destino_gltf, profundidad, recorrido.indentado);
    if (i_es_nombre_en_blanco(nombre))
        return;
    const bool espaciado = !i_VERIFICA_NO_NULO(destino_gltf->conf) ||
                           destino_gltf->conf->espacio_antes_dos_puntos == CIERTO;
    i_salida_t *texto = &destino_gltf->texto;
    i_anade_byte(texto, '"');
    i_anade_nombre_utf8(texto, nombre);
    if (espaciado)
        i_anade_bytes(texto, "\" : ", 4);
    else
        i_anade_bytes(texto, "\": ", 3);
}

void i_escribe_escalar(i_salida_t *texto, const tqjson2_nodo_t *nodo) {
    switch (nodo->tipo) {
        case TQJSON_TIPO_CADENA:
            i_anade_byte(texto, '"');
            i_escribe_texto_cadena_json(texto, nodo->cadena_utf8);
            i_anade_byte(texto, '"');
            break;
        case TQJSON_TIPO_ENTERO: {
            char *destino = i_reserva_salida(texto, 11); // "-2147483648"
            texto->longitud +=
                static_cast<size_t>(i_escribe_decimal(destino, nodo->entero) - destino);
            break;
        }
        case TQJSON_TIPO_DOUBLE:
            texto->longitud +=
                i_texto_double(nodo->valor_double, i_reserva_salida(texto, i_TAM_TEXTO_DOUBLE));
            break;
        case TQJSON_TIPO_BOOLEANO:
            i_anade_palabra(texto, nodo->booleano == CIERTO ? i_PALABRA_RESERVADA_TRUE
                                                            : i_PALABRA_RESERVADA_FALSE);
            break;
        default: // TQJSON_TIPO_NULL
            i_anade_palabra(texto, i_PALABRA_RESERVADA_NULL);
            break;
    }
}

void i_vigila_ciclos(i_recorrido &recorrido) {
    recorrido.vigila_ciclos = true;
    for (const i_contenedor_abierto &abierto : recorrido.pila)
        recorrido.abiertos.insert(abierto.nodo);
}

// Writes the opening line of an object or array and leaves it open on the stack.
void i_abre_contenedor(i_recorrido &recorrido, const tqjson2_nodo_t *nodo, const char16_t *nombre,
                       uint32_t profundidad, tqbool con_coma, bool prestado) {
    if (prestado && !recorrido.vigila_ciclos)
        i_vigila_ciclos(recorrido);
    if (recorrido.vigila_ciclos) {
        const bool no_es_ancestro = recorrido.abiertos.insert(nodo).second;
        if (!i_VERIFICA(no_es_ancestro))
            return;
    }
    const bool es_objeto = nodo->tipo == TQJSON_TIPO_OBJETO;
    const arr_puntero_t *hijos = es_objeto ? nodo->atributos_objeto : nodo->valores_array;
    uint32_t num_hijos = 0;
    void *const *datos = hijos ? arr_DatosPunteroConTipo(hijos, &num_hijos) : nullptr;
    const bool coma = con_coma == CIERTO;
    recorrido.pila.push_back({nodo, datos, num_hijos, 0, profundidad, coma, es_objeto});

    i_abre_linea_de_nodo(recorrido, nombre, profundidad);
    i_anade_byte(&recorrido.destino_gltf->texto, es_objeto ? '{' : '[');
    i_emite_linea(recorrido.destino_gltf, FALSO, recorrido.indentado);
}

void i_cierra_contenedor(i_recorrido &recorrido) {
    const i_contenedor_abierto abierto = recorrido.pila.back();
    recorrido.pila.pop_back();
    if (recorrido.vigila_ciclos)
        recorrido.abiertos.erase(abierto.nodo);
    i_abre_linea(recorrido.destino_gltf, abierto.profundidad, recorrido.indentado);
    i_anade_byte(&recorrido.destino_gltf->texto, abierto.es_objeto ? '}' : ']');
    i_emite_linea(recorrido.destino_gltf, abierto.con_coma ? CIERTO : FALSO, recorrido.indentado);
}

// Writes a scalar whole, or opens a container; `prestado` when it hangs from a member that
// does not own it.
void i_escribe_valor(i_recorrido &recorrido, const tqjson2_nodo_t *nodo, const char16_t *nombre,
                     uint32_t profundidad, tqbool con_coma, bool prestado) {
    if (!i_VERIFICA_NO_NULO(nodo))
        return;
    switch (nodo->tipo) {
        case TQJSON_TIPO_OBJETO:
        case TQJSON_TIPO_ARRAY:
            i_abre_contenedor(recorrido, nodo, nombre, profundidad, con_coma, prestado);
            break;
        case TQJSON_TIPO_CADENA:
        case TQJSON_TIPO_ENTERO:
        case TQJSON_TIPO_DOUBLE:
        case TQJSON_TIPO_BOOLEANO:
        case TQJSON_TIPO_NULL:
            i_abre_linea_de_nodo(recorrido, nombre, profundidad);
            i_escribe_escalar(&recorrido.destino_gltf->texto, nodo);
            i_emite_linea(recorrido.destino_gltf, con_coma, recorrido.indentado);
            break;
        default: // not a node kind: nothing is written for it
            i_ERROR_DEFAULT();
            break;
    }
}

// Writes the next child of the innermost open container, or closes it after its last.
void i_avanza(i_recorrido &recorrido) {
    i_contenedor_abierto &abierto = recorrido.pila.back();
    if (abierto.siguiente == abierto.num_hijos) {
        i_cierra_contenedor(recorrido);
        return;
    }
    const uint32_t indice = abierto.siguiente++;
    const tqbool con_coma = indice + 1 < abierto.num_hijos ? CIERTO : FALSO;
    const uint32_t profundidad = abierto.profundidad + 2;
    if (!abierto.es_objeto) {
        i_escribe_valor(recorrido, static_cast<const tqjson2_nodo_t *>(abierto.hijos[indice]), u"",
                        profundidad, con_coma, false);
        return;
    }
    const auto *atributo = static_cast<const tqjson2_atributo_t *>(abierto.hijos[indice]);
    if (!i_VERIFICA_NO_NULO(atributo))
        return;
    i_escribe_valor(recorrido, atributo->valor, atributo->nombre, profundidad, con_coma,
                    atributo->es_propietario != CIERTO);
}

} // namespace

void i_escribe_nodo(const tqjson2_nodo_t *nodo, const char16_t *nombre, uint32_t profundidad,
                    tqbool con_coma, tqbool indentado, i_destino_gltf_t *destino_gltf) {
    if (!i_VERIFICA_NO_NULO(destino_gltf))
        return;
    i_recorrido recorrido = {indentado, destino_gltf, {}, false, {}};
    i_escribe_valor(recorrido, nodo, nombre, profundidad, con_coma, false);
    while (!recorrido.pila.empty())
        i_avanza(recorrido);
}
