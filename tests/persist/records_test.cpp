#include <memory>
#include <optional>

#include "persist/persist_test_support.h"

namespace {

// An application's records: an order with a customer, an optional delivery note, a list of
// lines, arrays and settings.
struct Line {
    std::u16string product;
    uint32_t quantity = 0;
    double price = 0;
    bool operator==(const Line &) const = default;
};
struct Customer {
    std::u16string name;
    std::string city; // ANSI
    int32_t id = 0;
    Line favourite; // a record within a record within a record
    bool operator==(const Customer &) const = default;
};
struct Order {
    int64_t created = 0;
    uint8_t version = 0;
    Customer customer;
    std::optional<std::u16string> note; // optional record, its one field
    std::vector<Line> lines;
    std::vector<uint32_t> codes;
    std::vector<std::u16string> tags;
    bool urgent = false, express = false;
    int32_t priority = 0;
    bool operator==(const Order &) const = default;
};

// A record a load callback made, freed.
template <class T> T taken(void *record) {
    return *std::unique_ptr<T>(static_cast<T *>(record));
}
// The records a load callback made for an array, each freed, and the array.
template <class T> std::vector<T> taken_all(arr_puntero_t *records) {
    std::vector<T> out;
    for (uint32_t i = 0; i < arr_NumElemsPuntero(records); ++i)
        out.push_back(taken<T>(arr_GetPunteroConTipo(records, i)));
    arr_DestruyeEstructurasConTipo(&records, nullptr);
    EXPECT_EQ(records, nullptr);
    return out;
}

// The callbacks; every call on a line is counted, with the order it came in.
std::vector<std::string> g_calls;

void save_line(void *item, tqjson2_nodo_t *nodo) {
    const auto *l = static_cast<const Line *>(item);
    g_calls.push_back("save " + std::to_string(l->quantity));
    tqjson2_graba_cadena_unicode(u"product", l->product.c_str(), nodo);
    tqjson2_graba_ulong(u"quantity", l->quantity, nodo);
    tqjson2_graba_double(u"price", l->price, nodo);
}
void *load_line(const tqjson2_nodo_t *nodo) {
    auto *l =
        new Line{take(tqjson2_lee_cadena_unicode(u"product", u"", nodo)),
                 tqjson2_lee_ulong(u"quantity", 0, nodo), tqjson2_lee_double(u"price", 0, nodo)};
    g_calls.push_back("load " + std::to_string(l->quantity));
    return l;
}
void save_customer(void *item, tqjson2_nodo_t *nodo) {
    auto *c = static_cast<Customer *>(item);
    tqjson2_graba_cadena_unicode(u"name", c->name.c_str(), nodo);
    tqjson2_graba_cadena_ansi(u"city", c->city.c_str(), nodo);
    tqjson2_graba_long(u"id", c->id, nodo);
    tqjson2_nousar_graba_ST(u"favourite", &c->favourite, save_line, nodo);
}
void *load_customer(const tqjson2_nodo_t *nodo) {
    return new Customer{take(tqjson2_lee_cadena_unicode(u"name", u"", nodo)),
                        take(tqjson2_lee_cadena_ansi(u"city", "", nodo)),
                        tqjson2_lee_long(u"id", 0, nodo),
                        taken<Line>(tqjson2_nousar_lee_ST(u"favourite", load_line, nodo))};
}
void save_note(void *item, tqjson2_nodo_t *nodo) {
    tqjson2_graba_cadena_unicode(u"text", static_cast<std::u16string *>(item)->c_str(), nodo);
}
void *load_note(const tqjson2_nodo_t *nodo) {
    return new std::u16string(take(tqjson2_lee_cadena_unicode(u"text", u"", nodo)));
}

tqjson2_nodo_t *save_order(Order &o) {
    tqjson2_nodo_t *raiz = tqjson2_crea_nodo_objeto();
    tqjson2_append_time64_t_a_objeto(raiz, u"created", o.created);
    tqjson2_graba_version(u"version", o.version, raiz);
    tqjson2_nousar_graba_ST(u"customer", &o.customer, save_customer, raiz);
    tqjson2_nousar_graba_ST_opcional(u"note", o.note ? &*o.note : nullptr, save_note, raiz);
    arr_puntero_t *lines = arr_CreaPunteroConTipo(0);
    for (Line &l : o.lines)
        arr_AppendPunteroConTipo(lines, &l);
    tqjson2_nousar_graba_arr_punterosST(u"lines", lines, save_line, raiz);
    arr_DestruyeEstructurasConTipo(&lines, nullptr);
    arr_ulong_t *codes = ulong_array(o.codes);
    tqjson2_graba_arr_ulong(u"codes", codes, raiz);
    arr_DestruyeULong(&codes);
    arr_cadena_u_t *tags = wide_array(o.tags);
    tqjson2_graba_arr_cadenas_unicode(u"tags", tags, raiz);
    arr_DestruyeCADENA_u(&tags);
    tqjsonlsn_set_valor_booleano(raiz, u"urgent", o.urgent ? CIERTO : FALSO);
    tqjsonlsn_set_valor_booleano(raiz, u"express", o.express ? CIERTO : FALSO);
    tqjsonlsn_set_valor_long(raiz, u"priority", o.priority);
    return raiz;
}

Order load_order(const tqjson2_nodo_t *raiz) {
    Order o;
    o.created = tqjson2_lee_time64_t(u"created", 0, raiz);
    o.version = tqjson2_lee_version_opcional(u"version", 0, raiz);
    o.customer = taken<Customer>(tqjson2_nousar_lee_ST(u"customer", load_customer, raiz));
    if (void *note = tqjson2_nousar_lee_ST_opcional(u"note", load_note, raiz))
        o.note = taken<std::u16string>(note);
    o.lines = taken_all<Line>(tqjson2_nousar_lee_arr_punterosST(u"lines", load_line, raiz));
    o.codes = ulongs(tqjson2_lee_arr_ulong(u"codes", raiz));
    o.tags = wide(tqjson2_lee_arr_cadenas_unicode(u"tags", raiz));
    o.urgent = tqjsonlsn_leer_valor_booleano_con_valor_defecto(raiz, u"urgent", FALSO) == CIERTO;
    o.express = tqjsonlsn_leer_valor_booleano_con_valor_defecto(raiz, u"express", CIERTO) == CIERTO;
    o.priority = tqjsonlsn_leer_valor_long_con_valor_defecto(raiz, u"priority", -1);
    return o;
}

Order sample(bool with_note) {
    const std::u16string note = u"leave at the door\\back";
    return {.created = 1764000000,
            .version = 3,
            .customer = {u"Zo\u00eb \"Q\" O'Brien", "M\xFCnchen", 4711, {u"tea\tpot", 1, 19.99}},
            .note = with_note ? std::optional(note) : std::nullopt,
            .lines = {{u"cup", 2, 4.5}, {u"saucer \U0001F375", 3, 2.25}, {u"spoon", 12, 0.8}},
            .codes = {7, 0, 2147483647},
            .tags = {u"gift", u"", u"fr\u00e4gile"},
            .urgent = true,
            .priority = -2};
}
} // namespace

// The record saved, written to a file, read back and loaded: every field equal; the callbacks
// run once a record, in index order.
TEST(Records, AnApplicationRecordGoesThroughAFileAndBack) {
    for (bool with_note : {true, false}) {
        SCOPED_TRACE(with_note);
        Order o = sample(with_note);
        g_calls.clear();
        Tree saved{save_order(o)};
        Tree read = through_file(saved.raiz);
        EXPECT_EQ(load_order(read.raiz), o);
        EXPECT_EQ(g_calls, (Conditions{"save 1", "save 2", "save 3", "save 12", "load 1", "load 2",
                                       "load 3", "load 12"}));
        EXPECT_EQ(tqjson2_existe_atributo_con_nombre_en_objeto(read.raiz, u"note", nullptr),
                  with_note ? CIERTO : FALSO);
    }
}

// The same record as JSON text in a save stream, behind other values, and back.
TEST(Records, AnApplicationRecordGoesThroughASaveStreamAndBack) {
    Order o = sample(true);
    Tree saved{save_order(o)};
    const std::string texto = minified(saved.raiz);
    marlsave_t *stream = marlsave_crea_en_memoria();
    tqjson2_graba_str_json_marlsave_opcional(nullptr, stream);
    tqjson2_graba_str_json_marlsave_opcional(texto.c_str(), stream);
    tqjson2_graba_str_json_marlsave(texto.c_str(), stream);
    marlsave_rebobina(stream);
    EXPECT_EQ(tqjson2_lee_str_json_marlsave_opcional(stream), nullptr);
    char *opcional = tqjson2_lee_str_json_marlsave_opcional(stream);
    ASSERT_NE(opcional, nullptr);
    EXPECT_EQ(take(opcional), texto);
    Tree read{nullptr};
    const std::string leido = take(tqjson2_lee_str_json_marlsave(stream));
    ASSERT_EQ(tqjson2_se_lee_texto_utf8(leido.c_str(), &read.raiz), CIERTO);
    EXPECT_EQ(load_order(read.raiz), o);
    marlsave_destruye(&stream);
    EXPECT_EQ(stream, nullptr);
}

TEST(Records, MissingAbsentAndMisshapenRecords) {
    const auto lee_arr = tqjson2_nousar_lee_arr_punterosST;
    RecordingHandler handler;
    g_calls.clear();
    Tree o{obj({{u"arr", arr({})}, {u"obj", obj({})}})};
    arr_puntero_t *vacia = arr_CreaPunteroConTipo(0);
    tqjson2_nousar_graba_arr_punterosST(u"vacia", vacia, save_line, o.raiz);
    tqjson2_nousar_graba_ST_opcional(u"nada", nullptr, nullptr, o.raiz);
    EXPECT_EQ(minified(o.raiz), "{\"arr\" : [],\"obj\" : {},\"vacia\" : []}");
    // Nothing to read: null or empty, no callback, no report (a null callback is not tested).
    EXPECT_EQ(tqjson2_nousar_lee_ST_opcional(u"nada", nullptr, o.raiz), nullptr);
    EXPECT_EQ(tqjson2_nousar_lee_ST_opcional(u"arr", load_line, o.raiz), nullptr);
    EXPECT_EQ(tqjson2_nousar_lee_ST_opcional(u"obj", load_line, nullptr), nullptr);
    EXPECT_TRUE(taken_all<Line>(lee_arr(u"nada", nullptr, o.raiz)).empty());
    EXPECT_TRUE(taken_all<Line>(lee_arr(u"vacia", load_line, o.raiz)).empty());
    EXPECT_TRUE(g_calls.empty());
    EXPECT_TRUE(handler.reports().empty());

    const std::string compuesta =
        "tqjson2_tipo_nodo(nodo) == TQJSON_TIPO_OBJETO && "
        "tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta, &nodo_dato) == CIERTO && "
        "tqjson2_tipo_nodo(nodo_dato) == TQJSON_TIPO_OBJETO";
    EXPECT_EQ(tqjson2_nousar_lee_ST(u"arr", load_line, o.raiz), nullptr);
    EXPECT_EQ(tqjson2_nousar_lee_ST(u"nada", load_line, o.raiz), nullptr);
    EXPECT_EQ(tqjson2_nousar_lee_ST(u"obj", nullptr, o.raiz), nullptr);
    EXPECT_EQ(tqjson2_nousar_lee_ST_opcional(u"obj", nullptr, o.raiz), nullptr);
    EXPECT_TRUE(taken_all<Line>(lee_arr(u"obj", nullptr, o.raiz)).empty());
    tqjson2_nousar_graba_ST(u"sin", nullptr, nullptr, o.raiz);
    tqjson2_nousar_graba_arr_punterosST(u"sin_arr", vacia, nullptr, o.raiz);
    EXPECT_EQ(
        handler.conditions(),
        (Conditions{compuesta, compuesta, "(func_lee_item) != NULL", "(func_lee_item) != NULL",
                    "(func_lee_item) != NULL", "nodo->tipo == TQJSON_TIPO_ARRAY",
                    "(func_graba_item) != NULL", "(func_graba_item) != NULL"}));
    // The object was made before the report and is still appended, empty.
    EXPECT_EQ(minified(o.raiz),
              "{\"arr\" : [],\"obj\" : {},\"vacia\" : [],\"sin\" : {},\"sin_arr\" : []}");
    arr_DestruyeEstructurasConTipo(&vacia, nullptr);
}
