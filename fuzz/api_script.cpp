// The input as a script of calls on a few live trees: nodes of every kind created or read, the
// append family, members made and appended, borrowed values, the setters, lookups, extraction,
// the getters and value tests, the named-value families, writing and destruction. Wrong kinds
// and null pointers are fair calls: they must be reported and leave the trees sound. At the end
// every root is written and everything is destroyed, so that the leak check sees any ownership
// slip.
//
// The harness keeps the ownership rules of the interface: root slots own their trees, shared
// nodes live to the end and are only ever borrowed, pending members own their values. A node
// deeper in a tree is reached afresh from a root by a path each time, so the harness never
// holds a pointer the library may have freed.
#include <array>

#include "fuzz_support.h"

namespace {

constexpr uint32_t kRoots = 4;
constexpr uint32_t kShared = 2;
constexpr uint32_t kMembers = 2;
constexpr int kMaxCalls = 512;

// Names that recur, so that lookups meet: letter case, blanks, a quotation mark, a backslash,
// letters beyond ASCII and a surrogate pair.
constexpr const char16_t *kNames[] = {u"a",      u"A",      u"b",    u"",   u" \t",
                                      u"\u00e9", u"\u00c9", u"a\"b", u"\\", u"\U0001F600"};
constexpr uint32_t kNumNames = sizeof kNames / sizeof kNames[0];

struct State {
    std::array<tqjson2_nodo_t *, kRoots> roots{};
    std::array<tqjson2_nodo_t *, kShared> shared{};
    std::array<tqjson2_atributo_t *, kMembers> members{};

    bool is_shared(const tqjson2_nodo_t *nodo) const {
        for (const tqjson2_nodo_t *s : shared)
            if (s && s == nodo)
                return true;
        return false;
    }
};

// A node reached from a root slot or a shared node, and the root slot whose tree owns it (none
// when a shared node's does): that slot must not be appended under it.
struct Target {
    tqjson2_nodo_t *nodo = nullptr;
    int64_t dueno = -1;
};

Target pick_target(fuzz::Script &s, State &st) {
    Target t;
    const uint32_t inicio = s.below(kRoots + kShared);
    if (inicio < kRoots) {
        t.nodo = st.roots[inicio];
        t.dueno = inicio;
    } else {
        t.nodo = st.shared[inicio - kRoots];
    }
    for (uint32_t nivel = s.below(4); nivel > 0 && t.nodo; --nivel) {
        const int32_t tipo = tqjson2_tipo_nodo(t.nodo);
        if (tipo == TQJSON_TIPO_OBJETO) {
            const std::vector<void *> atributos =
                fuzz::children(tqjson2_get_atributos_objeto(t.nodo));
            if (atributos.empty())
                break;
            const auto *atributo =
                static_cast<tqjson2_atributo_t *>(atributos[s.byte() % atributos.size()]);
            t.nodo = tqjson2_get_valor_atributo(atributo);
            if (st.is_shared(t.nodo))
                t.dueno = -1;
        } else if (tipo == TQJSON_TIPO_ARRAY) {
            const std::vector<void *> elementos = fuzz::children(tqjson2_get_valores_array(t.nodo));
            if (elementos.empty())
                break;
            t.nodo = static_cast<tqjson2_nodo_t *>(elementos[s.byte() % elementos.size()]);
        } else {
            break;
        }
    }
    return t;
}

std::u16string pick_name(fuzz::Script &s) {
    const uint32_t n = s.below(kNumNames + 2);
    return n < kNumNames ? std::u16string(kNames[n]) : s.wide(6);
}

// A root slot that may be taken over under `t`, or none.
tqjson2_nodo_t **pick_root_for(fuzz::Script &s, State &st, const Target &t) {
    const uint32_t slot = s.below(kRoots);
    return static_cast<int64_t>(slot) == t.dueno ? nullptr : &st.roots[slot];
}

void check_taken(const void *puntero, const char *funcion) {
    if (puntero)
        fuzz::finding(funcion);
}

tqjson2_nodo_t *new_node(fuzz::Script &s) {
    switch (s.below(9)) {
        case 0:
            return tqjson2_crea_nodo_objeto();
        case 1:
            return tqjson2_crea_nodo_array();
        case 2: {
            char *texto = fuzz::copy_utf8(s.bytes(16));
            tqjson2_nodo_t *nodo = tqjson2_crea_nodo_texto_utf8(&texto);
            check_taken(texto, "tqjson2_crea_nodo_texto_utf8 left the text pointer set");
            return nodo;
        }
        case 3: {
            char16_t *texto = fuzz::copy_wide(s.wide(8));
            tqjson2_nodo_t *nodo = tqjson2_crea_nodo_texto_unicode_a_utf8(&texto);
            check_taken(texto, "tqjson2_crea_nodo_texto_unicode_a_utf8 left the text pointer set");
            return nodo;
        }
        case 4:
            return tqjson2_crea_nodo_entero(static_cast<int32_t>(s.u32()));
        case 5:
            return tqjson2_crea_nodo_double(s.f64());
        case 6:
            return tqjson2_crea_nodo_booleano(static_cast<tqbool>(s.below(3)));
        case 7:
            return tqjson2_crea_nodo_null();
        default: {
            const bool decodifica = s.below(2);
            const std::string texto = s.bytes(64);
            tqjson2_nodo_t *nodo = nullptr;
            const tqbool leido = decodifica
                                     ? tqjson2_se_lee_texto_utf8(texto.c_str(), &nodo)
                                     : tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(
                                           texto.c_str(), &nodo);
            if ((leido == CIERTO) != (nodo != nullptr))
                fuzz::finding("a read's result and its tree disagree");
            return nodo;
        }
    }
}

// The members of an object named exactly `nombre`, by the getters.
std::vector<tqjson2_nodo_t *> members_named(const tqjson2_nodo_t *objeto,
                                            const std::u16string &nombre) {
    std::vector<tqjson2_nodo_t *> valores;
    if (!objeto || tqjson2_tipo_nodo(objeto) != TQJSON_TIPO_OBJETO)
        return valores;
    for (void *a : fuzz::children(tqjson2_get_atributos_objeto(objeto))) {
        const auto *atributo = static_cast<const tqjson2_atributo_t *>(a);
        if (nombre == tqjson2_get_nombre_atributo(atributo))
            valores.push_back(tqjson2_get_valor_atributo(atributo));
    }
    return valores;
}

void append_scalar_to_object(fuzz::Script &s, tqjson2_nodo_t *objeto) {
    const std::u16string nombre = pick_name(s);
    const char16_t *n = nombre.c_str();
    switch (s.below(13)) {
        case 0:
            tqjson2_append_long_a_objeto(objeto, n, static_cast<int32_t>(s.u32()));
            break;
        case 1:
            tqjson2_append_ulong_a_objeto(objeto, n, s.u32());
            break;
        case 2:
            tqjson2_append_double_a_objeto(objeto, n, s.f64());
            break;
        case 3:
            tqjson2_append_tqbool_a_objeto(objeto, n, static_cast<tqbool>(s.below(3)));
            break;
        case 4:
            tqjson2_append_null_a_objeto(objeto, n);
            break;
        case 5:
            tqjson2_append_cadena_unicode_a_objeto(objeto, n, s.wide(8).c_str());
            break;
        case 6: {
            char *texto = fuzz::copy_utf8(s.bytes(16));
            tqjson2_append_cadena_utf8_a_objeto(objeto, n, &texto);
            check_taken(texto, "tqjson2_append_cadena_utf8_a_objeto left the text pointer set");
            break;
        }
        case 7:
            tqjson2_append_cadena_ansi_a_objeto(objeto, n, s.bytes(16).c_str());
            break;
        case 8:
            tqjson2_append_time_t_a_objeto(objeto, n, static_cast<int32_t>(s.u32()));
            break;
        case 9: {
            const uint64_t alto = s.u32();
            tqjson2_append_time64_t_a_objeto(objeto, n, static_cast<int64_t>(alto << 32 | s.u32()));
            break;
        }
        case 10:
            tqjson2_append_cadena_unicode_a_objeto_seguro(objeto, n, s.wide(8).c_str());
            break;
        default: {
            tqjson2_nodo_t *nodo = new_node(s);
            tqjson2_append_nodo_a_objeto(objeto, n, &nodo);
            check_taken(nodo, "tqjson2_append_nodo_a_objeto left the node pointer set");
            break;
        }
    }
}

void append_scalar_to_array(fuzz::Script &s, tqjson2_nodo_t *array) {
    switch (s.below(10)) {
        case 0:
            tqjson2_append_long_a_array(array, static_cast<int32_t>(s.u32()));
            break;
        case 1:
            tqjson2_append_ulong_a_array(array, s.u32());
            break;
        case 2:
            tqjson2_append_double_a_array(array, s.f64());
            break;
        case 3:
            tqjson2_append_bool_a_array(array, static_cast<tqbool>(s.below(3)));
            break;
        case 4:
            tqjson2_append_cadena_unicode_a_array(array, s.wide(8).c_str());
            break;
        case 5: {
            char16_t *texto = fuzz::copy_wide(s.wide(8));
            tqjson2_append_cadena_unicode_a_array_pp(array, &texto);
            check_taken(texto,
                        "tqjson2_append_cadena_unicode_a_array_pp left the text pointer set");
            break;
        }
        case 6: {
            char *texto = fuzz::copy_utf8(s.bytes(16));
            tqjson2_append_cadena_utf8_a_array(array, &texto);
            check_taken(texto, "tqjson2_append_cadena_utf8_a_array left the text pointer set");
            break;
        }
        case 7:
            tqjson2_append_cadena_ansi_a_array(array, s.bytes(16).c_str());
            break;
        default: {
            tqjson2_nodo_t *nodo = new_node(s);
            tqjson2_append_elemento_a_array(array, &nodo);
            check_taken(nodo, "tqjson2_append_elemento_a_array left the node pointer set");
            break;
        }
    }
}

void set_value(fuzz::Script &s, tqjson2_nodo_t *nodo) {
    switch (s.below(4)) {
        case 0:
            tqjson2_set_nodo_entero(nodo, static_cast<int32_t>(s.u32()));
            break;
        case 1:
            tqjson2_set_nodo_double(nodo, s.f64());
            break;
        case 2:
            tqjson2_set_nodo_booleano(nodo, static_cast<tqbool>(s.below(3)));
            break;
        default: {
            char16_t *texto = fuzz::copy_wide(s.wide(8));
            tqjson2_set_nodo_texto_unicode_a_utf8(nodo, &texto);
            check_taken(texto, "tqjson2_set_nodo_texto_unicode_a_utf8 left the text pointer set");
            break;
        }
    }
}

// Every getter and value test, whatever the node's kind; what they hand out is freed.
void query(const tqjson2_nodo_t *nodo) {
    tqjson2_tipo_nodo(nodo);
    tqjson2_get_valor_entero(nodo);
    tqjson2_get_valor_double(nodo);
    tqjson2_get_valor_cadena_utf8(nodo);
    tqjson2_get_valor_null(nodo);
    tqjson2_get_atributos_objeto(nodo);
    tqjson2_get_valores_array(nodo);
    fuzz::take(tqjson2_get_valor_cadena_u(nodo));
    fuzz::take(tqjson2_get_valor_cadena_unicode(nodo));
    fuzz::take(tqjson2_get_valor_cadena_decodificada_ANSI(nodo));
    int32_t entero = 0;
    tqjson2_es_valor_entero(nodo, &entero);
    double real = 0;
    tqjson2_es_valor_double(nodo, &real);
    tqbool booleano = FALSO;
    tqjson2_es_valor_booleano(nodo, &booleano);
    char *utf8 = nullptr;
    tqjson2_es_valor_cadena_utf8(nodo, &utf8);
    fuzz::take(utf8);
    char16_t *ancho = nullptr;
    tqjson2_es_valor_cadena_unicode(nodo, &ancho);
    fuzz::take(ancho);
    char *ansi = nullptr;
    tqjson2_es_valor_cadena_ansi(nodo, &ansi);
    fuzz::take(ansi);
}

// The exact lookups answer for the only member of the name; the lookup ignoring letter case
// finds at least what the exact name finds, and leaves `*valor` alone when it finds nothing.
void look_up(fuzz::Script &s, const tqjson2_nodo_t *objeto) {
    const std::u16string nombre = pick_name(s);
    const std::vector<tqjson2_nodo_t *> valores = members_named(objeto, nombre);
    const bool unico = valores.size() == 1;
    static char marca; // never dereferenced: only told apart from every node
    tqjson2_nodo_t *const kIntacto = reinterpret_cast<tqjson2_nodo_t *>(&marca);

    tqjson2_nodo_t *valor = kIntacto;
    const tqbool existe =
        s.below(2) ? tqjson2_existe_atributo_con_nombre_en_objeto(objeto, nombre.c_str(), &valor)
                   : tqjson2_existe_atributo_con_nombre_en_objeto2(objeto, nombre.c_str(), &valor);
    if ((existe == CIERTO) != unico || valor != (unico ? valores[0] : nullptr))
        fuzz::finding("the exact lookup does not answer for the only member of the name");
    tqjson2_existe_atributo_con_nombre_en_objeto(objeto, nombre.c_str(), nullptr);

    // A member made from a null node holds no value (creating it hands the node over as it
    // is); this lookup reports such a match and its answer is then left open, so only the
    // answers given without a report are held to the rules below.
    valor = kIntacto;
    const uint64_t informes = fuzz::reports();
    const tqbool existe_may_o_min = tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(
        objeto, nombre.c_str(), s.below(2) ? &valor : nullptr);
    if (fuzz::reports() != informes)
        return;
    if (!valores.empty() && existe_may_o_min != CIERTO)
        fuzz::finding("the lookup ignoring letter case misses an exact name");
    if (existe_may_o_min != CIERTO && valor != kIntacto)
        fuzz::finding("the lookup ignoring letter case wrote a value while finding nothing");
}

void extract(fuzz::Script &s, State &st, tqjson2_nodo_t *objeto) {
    const std::u16string nombre = pick_name(s);
    const std::vector<tqjson2_nodo_t *> antes = members_named(objeto, nombre);
    tqjson2_nodo_t *valor = nullptr;
    const tqbool extraido =
        tqjson2_se_extrae_atributo_con_nombre_de_objeto(objeto, nombre.c_str(), &valor);
    if ((extraido == CIERTO) != (antes.size() == 1) ||
        valor != (antes.size() == 1 ? antes[0] : nullptr))
        fuzz::finding("extraction does not answer for the only member of the name");
    if (extraido != CIERTO)
        return;
    if (!members_named(objeto, nombre).empty())
        fuzz::finding("an extracted member is still there");
    if (st.is_shared(valor)) // a borrowed value comes back to its owner: nothing to do
        return;
    for (tqjson2_nodo_t *&raiz : st.roots) {
        if (!raiz) {
            raiz = valor;
            return;
        }
    }
    tqjson2_destruye_nodo(&valor);
}

void replace_elements(fuzz::Script &s, State &st, const Target &t) {
    arr_puntero_t *valores = arr_CreaPunteroConTipo(0);
    for (uint32_t n = s.below(4); n > 0; --n) {
        tqjson2_nodo_t **raiz = pick_root_for(s, st, t);
        if (raiz && *raiz) {
            arr_AppendPunteroConTipo(valores, *raiz);
            *raiz = nullptr;
        }
    }
    tqjson2_set_nodo_valores_array(t.nodo, &valores);
    check_taken(valores, "tqjson2_set_nodo_valores_array left the array pointer set");
}

void write(const tqjson2_nodo_t *nodo) {
    fuzz::minified(nodo);
    fuzz::indented(nodo);
}

// The named-value families on whatever node is picked: writers add members (records through a
// callback that writes a field of its own), readers hand out texts, arrays and records that are
// freed here, setters change members in place or append them.
int g_registro; // the record every read callback returns: never freed, only compared
void graba_registro(void *item, tqjson2_nodo_t *nodo) {
    tqjson2_graba_long(u"r", item == &g_registro ? 1 : 0, nodo);
}
void *lee_registro(const tqjson2_nodo_t *nodo) {
    tqjson2_lee_long(u"r", 0, nodo);
    return &g_registro;
}
tqbool enum_valido(int32_t valor) {
    return valor < 3 ? CIERTO : FALSO;
}
const char16_t *enum_texto(int32_t valor) {
    return kNames[valor];
}

void persist(fuzz::Script &s, State &st) {
    const Target t = pick_target(s, st);
    tqjson2_nodo_t *nodo = t.nodo;
    const std::u16string nombre = pick_name(s);
    const char16_t *n = nombre.c_str();
    switch (s.below(24)) {
        case 0:
            tqjson2_graba_long(n, static_cast<int32_t>(s.u32()), nodo);
            break;
        case 1:
            tqjson2_graba_ulong(n, s.u32(), nodo);
            break;
        case 2:
            tqjson2_graba_version(n, s.byte(), nodo);
            break;
        case 3:
            tqjson2_graba_double(n, s.f64(), nodo);
            break;
        case 4:
            tqjson2_graba_cadena_unicode(n, s.wide(8).c_str(), nodo);
            break;
        case 5:
            tqjson2_graba_cadena_ansi(n, s.bytes(8).c_str(), nodo);
            break;
        case 6: {
            tqjson2_lee_long(n, 0, nodo);
            tqjson2_lee_ulong(n, 0, nodo);
            tqjson2_lee_double(n, 0, nodo);
            tqjson2_lee_tqbool(n, FALSO, nodo);
            tqjson2_lee_version_opcional(n, 0, nodo);
            tqjson2_lee_time_t(n, 0, nodo);
            tqjson2_lee_time64_t(n, 0, nodo);
            break;
        }
        case 7:
            fuzz::take(tqjson2_lee_cadena_ansi(n, "d", nodo));
            fuzz::take(tqjson2_lee_cadena_ansi_opcional(n, nodo));
            break;
        case 8:
            fuzz::take(tqjson2_lee_cadena_unicode(n, u"d", nodo));
            fuzz::take(tqjson2_lee_cadena_unicode_opcional(n, nodo));
            fuzz::take(tqjson2_lee_cadena_unicode_seguro(n, u"d", nodo));
            break;
        case 9: {
            arr_bool_t *b = arr_CreaBOOL(s.below(4));
            tqjson2_graba_arr_bool(n, b, nodo);
            arr_DestruyeBOOL(&b);
            arr_ulong_t *u = arr_CreaULong(1);
            arr_SetULong(u, 0, s.u32());
            tqjson2_graba_arr_ulong_en_array(u, nodo);
            arr_DestruyeULong(&u);
            break;
        }
        case 10: {
            arr_cadena_u_t *w = arr_CreaCADENA_u(0);
            tqjson2_graba_arr_cadenas_unicode(n, w, nodo);
            arr_DestruyeCADENA_u(&w);
            arr_cadena_t *c = arr_CreaCADENA(1);
            arr_SetCADENA(c, 0, s.bytes(8).c_str());
            tqjson2_graba_arr_cadenas_en_array(c, nodo);
            arr_DestruyeCADENA(&c);
            break;
        }
        case 11: {
            arr_bool_t *b =
                s.below(2) ? tqjson2_lee_arr_bool(n, nodo) : tqjson2_lee_arr_bool_en_array(nodo);
            arr_DestruyeBOOL(&b);
            arr_ulong_t *u =
                s.below(2) ? tqjson2_lee_arr_ulong(n, nodo) : tqjson2_lee_arr_ulong_en_array(nodo);
            arr_DestruyeULong(&u);
            arr_double_t *d = s.below(2) ? tqjson2_lee_arr_double(n, nodo)
                                         : tqjson2_lee_arr_double_en_array(nodo);
            arr_DestruyeDouble(&d);
            break;
        }
        case 12: {
            arr_cadena_t *c = s.below(2) ? tqjson2_lee_arr_cadenas(n, nodo)
                                         : tqjson2_lee_arr_cadenas_en_array(nodo);
            arr_DestruyeCADENA(&c);
            arr_cadena_u_t *w = s.below(2) ? tqjson2_lee_arr_cadenas_unicode(n, nodo)
                                           : tqjson2_lee_arr_cadenas_unicode_en_array(nodo);
            arr_DestruyeCADENA_u(&w);
            break;
        }
        case 13:
            if (s.below(2))
                tqjson2_nousar_graba_ST(n, &g_registro, graba_registro, nodo);
            else
                tqjson2_nousar_graba_ST_opcional(n, s.below(2) ? &g_registro : nullptr,
                                                 graba_registro, nodo);
            break;
        case 14: {
            arr_puntero_t *lista = arr_CreaPunteroConTipo(s.below(3));
            tqjson2_nousar_graba_arr_punterosST(n, lista, graba_registro, nodo);
            arr_DestruyeEstructurasConTipo(&lista, nullptr);
            break;
        }
        case 15: {
            void *r1 = tqjson2_nousar_lee_ST(n, lee_registro, nodo);
            void *r2 = tqjson2_nousar_lee_ST_opcional(n, lee_registro, nodo);
            if ((r1 && r1 != &g_registro) || (r2 && r2 != &g_registro))
                fuzz::finding("a record reader returned what no callback made");
            arr_puntero_t *lista = tqjson2_nousar_lee_arr_punterosST(n, lee_registro, nodo);
            for (void *r : fuzz::children(lista))
                if (r != &g_registro)
                    fuzz::finding("a list of records holds what no callback made");
            arr_DestruyeEstructurasConTipo(&lista, nullptr);
            break;
        }
        case 16: {
            tqjsonlsn_leer_valor_booleano_con_valor_defecto(nodo, n, FALSO);
            tqjsonlsn_leer_valor_double_con_valor_defecto(nodo, n, 0);
            tqjsonlsn_leer_valor_long_con_valor_defecto(nodo, n, 0);
            tqjsonlsn_leer_valor_ulong_con_valor_defecto(nodo, n, 0);
            tqjsonlsn_leer_valor_ushort_con_valor_defecto(nodo, n, 0);
            double valor = 0;
            tqjsonlsn_es_posible_leer_double(n, nodo, &valor);
            char16_t *cadena = nullptr;
            tqjsonlsn_es_posible_leer_cadena_unicode(n, nodo, &cadena);
            if (cadena)
                fuzz::take(cadena);
            int32_t valor_enum = 0;
            tqjsonlsn_nousar_es_posible_leer_enum(n, enum_valido, enum_texto, nodo, &valor_enum);
            break;
        }
        case 17:
            tqjsonlsn_set_valor_booleano(nodo, n, static_cast<tqbool>(s.below(2)));
            break;
        case 18:
            tqjsonlsn_set_valor_double(nodo, n, s.f64());
            break;
        case 19:
            tqjsonlsn_set_valor_ulong(nodo, n, s.u32());
            break;
        case 20:
            tqjsonlsn_set_valor_ushort(nodo, n, static_cast<uint16_t>(s.u32()));
            break;
        case 21:
            tqjsonlsn_set_valor_cadena_unicode(nodo, n, s.wide(8).c_str());
            break;
        case 22: { // roots handed over as the member's elements
            arr_puntero_t *valores = arr_CreaPunteroConTipo(0);
            if (tqjson2_nodo_t **raiz = pick_root_for(s, st, t); raiz && *raiz) {
                arr_AppendPunteroConTipo(valores, *raiz);
                *raiz = nullptr;
            }
            tqjsonlsn_set_nodos_array(nodo, n, &valores);
            check_taken(valores, "tqjsonlsn_set_nodos_array left the array pointer set");
            break;
        }
        default: { // JSON text through a save stream and back
            const std::string texto = s.bytes(32);
            marlsave_t *stream = marlsave_crea_en_memoria();
            tqjson2_graba_str_json_marlsave_opcional(s.below(2) ? texto.c_str() : nullptr, stream);
            tqjson2_graba_str_json_marlsave(texto.c_str(), stream);
            marlsave_rebobina(stream);
            char *opcional = tqjson2_lee_str_json_marlsave_opcional(stream);
            if (opcional && texto != fuzz::take(opcional))
                fuzz::finding("a text came back changed from a save stream");
            if (texto != fuzz::take(tqjson2_lee_str_json_marlsave(stream)))
                fuzz::finding("a text came back changed from a save stream");
            marlsave_destruye(&stream);
            break;
        }
    }
}

void step(fuzz::Script &s, State &st) {
    switch (s.below(17)) {
        case 0: { // a new root, in place of the slot's old one
            tqjson2_nodo_t *&raiz = st.roots[s.below(kRoots)];
            if (raiz)
                tqjson2_destruye_nodo(&raiz);
            raiz = new_node(s);
            break;
        }
        case 1: { // destroying an empty slot is a null pointer, reported
            tqjson2_nodo_t *&raiz = st.roots[s.below(kRoots)];
            tqjson2_destruye_nodo(&raiz);
            check_taken(raiz, "tqjson2_destruye_nodo left the node pointer set");
            break;
        }
        case 2: {
            const Target t = pick_target(s, st);
            if (tqjson2_nodo_t **raiz = pick_root_for(s, st, t)) {
                tqjson2_append_elemento_a_array(t.nodo, raiz);
                check_taken(*raiz, "tqjson2_append_elemento_a_array left the node pointer set");
            }
            break;
        }
        case 3: {
            const Target t = pick_target(s, st);
            const std::u16string nombre = pick_name(s);
            if (tqjson2_nodo_t **raiz = pick_root_for(s, st, t)) {
                tqjson2_append_nodo_a_objeto(t.nodo, nombre.c_str(), raiz);
                check_taken(*raiz, "tqjson2_append_nodo_a_objeto left the node pointer set");
            }
            break;
        }
        case 4: { // a pending member takes a root over; an earlier one goes into a new object
            tqjson2_atributo_t *&miembro = st.members[s.below(kMembers)];
            tqjson2_nodo_t *&raiz = st.roots[s.below(kRoots)];
            const std::u16string nombre = pick_name(s);
            if (!raiz)
                break;
            if (miembro) {
                tqjson2_nodo_t *objeto = tqjson2_crea_nodo_objeto();
                tqjson2_append_atributo_a_objeto(objeto, &miembro);
                write(objeto);
                tqjson2_destruye_nodo(&objeto);
            }
            miembro = tqjson2_crea_atributo(nombre.c_str(), &raiz);
            check_taken(raiz, "tqjson2_crea_atributo left the node pointer set");
            break;
        }
        case 5: {
            const Target t = pick_target(s, st);
            tqjson2_atributo_t *&miembro = st.members[s.below(kMembers)];
            tqjson2_append_atributo_a_objeto(t.nodo, &miembro);
            check_taken(miembro, "tqjson2_append_atributo_a_objeto left the member pointer set");
            break;
        }
        case 6: {
            const Target t = pick_target(s, st);
            const std::u16string nombre = pick_name(s);
            if (const tqjson2_nodo_t *compartido = st.shared[s.below(kShared)])
                tqjson2_append_puntero_nodo_const_a_objeto(t.nodo, nombre.c_str(), compartido);
            break;
        }
        case 7:
            append_scalar_to_object(s, pick_target(s, st).nodo);
            break;
        case 8:
            append_scalar_to_array(s, pick_target(s, st).nodo);
            break;
        case 9:
            set_value(s, pick_target(s, st).nodo);
            break;
        case 10: {
            const Target t = pick_target(s, st);
            replace_elements(s, st, t);
            break;
        }
        case 11:
            look_up(s, pick_target(s, st).nodo);
            break;
        case 12:
            extract(s, st, pick_target(s, st).nodo);
            break;
        case 13:
            query(pick_target(s, st).nodo);
            break;
        case 14:
            write(pick_target(s, st).nodo);
            break;
        case 15:
            persist(s, st);
            break;
        default: { // a shared node, made once and kept to the end
            tqjson2_nodo_t *&compartido = st.shared[s.below(kShared)];
            if (!compartido)
                compartido = new_node(s);
            break;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    fuzz::install_counting_handler();
    fuzz::Script s(data, size);
    State st;
    for (int llamadas = 0; llamadas < kMaxCalls && !s.done(); ++llamadas)
        step(s, st);

    // Pending members go into one object; then every root is written and destroyed, and the
    // shared nodes last, after every member that borrows them.
    tqjson2_nodo_t *pendientes = tqjson2_crea_nodo_objeto();
    for (tqjson2_atributo_t *&miembro : st.members)
        if (miembro)
            tqjson2_append_atributo_a_objeto(pendientes, &miembro);
    write(pendientes);
    tqjson2_destruye_nodo(&pendientes);
    for (tqjson2_nodo_t *&raiz : st.roots) {
        if (raiz) {
            write(raiz);
            tqjson2_destruye_nodo(&raiz);
        }
    }
    for (const tqjson2_nodo_t *compartido : st.shared)
        if (compartido)
            write(compartido); // before any is destroyed: each may borrow the other
    for (tqjson2_nodo_t *&compartido : st.shared)
        if (compartido)
            tqjson2_destruye_nodo(&compartido);
    return 0;
}
