#include <memory>
#include <optional>

#include "persist/persist_test_support.h"

namespace {

// An application's records: an order with a customer, an optional gift line and a list of
// lines. Its scalars and typed arrays are the other suites'.
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
    Customer customer;
    std::optional<Line> gift;
    std::vector<Line> lines;
    bool operator==(const Order &) const = default;
};

// A record a load callback made, freed.
template <class T> T taken(void *record) {
    return *std::unique_ptr<T>(static_cast<T *>(record));
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

// The records a load callback made for an array, each freed, and the array.
std::vector<Line> lines_of(arr_puntero_t *records) {
    std::vector<Line> out;
    for (uint32_t i = 0; i < arr_NumElemsPuntero(records); ++i)
        out.push_back(taken<Line>(arr_GetPunteroConTipo(records, i)));
    arr_DestruyeEstructurasConTipo(&records, nullptr);
    EXPECT_EQ(records, nullptr);
    return out;
}

tqjson2_nodo_t *save_order(Order &o) {
    tqjson2_nodo_t *raiz = tqjson2_crea_nodo_objeto();
    tqjson2_nousar_graba_ST(u"customer", &o.customer, save_customer, raiz);
    tqjson2_nousar_graba_ST_opcional(u"gift", o.gift ? &*o.gift : nullptr, save_line, raiz);
    arr_puntero_t *lines = arr_CreaPunteroConTipo(0);
    for (Line &l : o.lines)
        arr_AppendPunteroConTipo(lines, &l);
    tqjson2_nousar_graba_arr_punterosST(u"lines", lines, save_line, raiz);
    arr_DestruyeEstructurasConTipo(&lines, nullptr);
    return raiz;
}

Order load_order(const tqjson2_nodo_t *raiz) {
    Order o{taken<Customer>(tqjson2_nousar_lee_ST(u"customer", load_customer, raiz)), {}, {}};
    if (void *gift = tqjson2_nousar_lee_ST_opcional(u"gift", load_line, raiz))
        o.gift = taken<Line>(gift);
    o.lines = lines_of(tqjson2_nousar_lee_arr_punterosST(u"lines", load_line, raiz));
    return o;
}
} // namespace

// The record saved, written to a file, read back and loaded: every field equal; the callbacks
// run once a record, in index order.
TEST(Records, AnApplicationRecordGoesThroughAFileAndBack) {
    for (bool with_gift : {true, false}) {
        SCOPED_TRACE(with_gift);
        Order o{{u"Zo\u00eb \"Q\" O'Brien", "M\xFCnchen", 4711, {u"tea\tpot", 1, 19.99}},
                with_gift ? std::optional(Line{u"bow\\tie", 5, 0.5}) : std::nullopt,
                {{u"cup", 2, 4.5}, {u"saucer \U0001F375", 3, 2.25}, {u"spoon", 12, 0.8}}};
        g_calls.clear();
        Tree saved{save_order(o)};
        Tree read = through_file(saved.raiz);
        EXPECT_EQ(load_order(read.raiz), o);
        Conditions calls{"save 1", "save 5", "save 2", "save 3", "save 12",
                         "load 1", "load 5", "load 2", "load 3", "load 12"};
        if (!with_gift)
            std::erase_if(calls, [](const std::string &c) { return c.ends_with(" 5"); });
        EXPECT_EQ(g_calls, calls);
        EXPECT_EQ(tqjson2_existe_atributo_con_nombre_en_objeto(read.raiz, u"gift", nullptr),
                  with_gift ? CIERTO : FALSO);
    }
}

// JSON texts in a save stream, behind other values, and back.
TEST(Records, JsonTextsGoThroughASaveStream) {
    const char texto[] = "{\"a\" : [1,\"\xC3\xA9\\n\"]}";
    marlsave_t *stream = marlsave_crea_en_memoria();
    tqjson2_graba_str_json_marlsave_opcional(nullptr, stream);
    tqjson2_graba_str_json_marlsave_opcional(texto, stream);
    tqjson2_graba_str_json_marlsave(texto, stream);
    marlsave_rebobina(stream);
    EXPECT_EQ(tqjson2_lee_str_json_marlsave_opcional(stream), nullptr);
    char *opcional = tqjson2_lee_str_json_marlsave_opcional(stream);
    ASSERT_NE(opcional, nullptr);
    EXPECT_EQ(take(opcional), texto);
    EXPECT_EQ(take(tqjson2_lee_str_json_marlsave(stream)), texto);
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
    EXPECT_TRUE(lines_of(lee_arr(u"nada", nullptr, o.raiz)).empty());
    EXPECT_TRUE(lines_of(lee_arr(u"vacia", load_line, o.raiz)).empty());
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
    EXPECT_TRUE(lines_of(lee_arr(u"obj", nullptr, o.raiz)).empty());
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
