// Objects large enough to be indexed answer every lookup as the member-by-member search does,
// reports included, through appends, writers, setters, extraction and changes made through the
// array component; checked against a plain list of the members after every change.
#include <random>

#include "tree/member_index.h"
#include "tree/tree_test_support.h"

namespace {

// Letter case as the names of these tests use it: ASCII letters and Ñ.
bool same_ignoring_case(const std::u16string &a, const std::u16string &b) {
    const auto fold = [](char16_t c) {
        return (c >= u'A' && c <= u'Z') ? char16_t(c + 32) : c == u'Ñ' ? u'ñ' : c;
    };
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [&](auto x, auto y) { return fold(x) == fold(y); });
}

const auto exacta = tqjson2_existe_atributo_con_nombre_en_objeto;
const auto may_o_min = tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto;

// A lookup's result, the value it wrote (kUntouched: none) and its reports.
using Answer = std::tuple<tqbool, tqjson2_nodo_t *, Conditions>;

// The members as a list of names and value nodes, and what searching it member by member gives.
struct Model {
    std::vector<std::pair<std::u16string, tqjson2_nodo_t *>> miembros;

    std::vector<size_t> exact(const std::u16string &nombre) const {
        std::vector<size_t> at;
        for (size_t i = 0; i < miembros.size(); ++i)
            if (miembros[i].first == nombre)
                at.push_back(i);
        return at;
    }
    Answer exact_answer(const std::u16string &nombre) const {
        const auto at = exact(nombre);
        return at.size() == 1 ? Answer{CIERTO, miembros[at[0]].second, {}}
                              : Answer{FALSO, nullptr, {}};
    }
    // The first match holding a value other than null, else the last; a member without a value
    // node ends the search with a report.
    Answer any_case_answer(const std::u16string &nombre) const {
        Answer a{FALSO, kUntouched, {}};
        for (const auto &[otro, valor] : miembros) {
            if (!same_ignoring_case(otro, nombre))
                continue;
            if (!valor) {
                std::get<2>(a).push_back("(atributo_en_pos->valor) != NULL");
                break;
            }
            a = {CIERTO, valor, {}};
            if (valor->tipo != TQJSON_TIPO_NULL)
                break;
        }
        return a;
    }
};

template <class Lookup>
Answer ask(RecordingHandler &handler, Lookup lookup, tqjson2_nodo_t *objeto,
           const std::u16string &nombre) {
    handler.clear();
    tqjson2_nodo_t *valor = kUntouched;
    const tqbool hay = lookup(objeto, nombre.c_str(), &valor);
    return {hay, valor, handler.conditions()};
}

void expect_as_model(RecordingHandler &handler, tqjson2_nodo_t *objeto, const Model &model,
                     const std::vector<std::u16string> &probes) {
    ASSERT_EQ(arr_NumElemsPuntero(tqjson2_get_atributos_objeto(objeto)), model.miembros.size());
    for (uint32_t i = 0; i < model.miembros.size(); ++i) // the members, in their order
        ASSERT_EQ(member_at(objeto, i)->nombre, model.miembros[i].first);
    for (const std::u16string &probe : probes) {
        SCOPED_TRACE(std::string(probe.begin(), probe.end()));
        ASSERT_EQ(ask(handler, exacta, objeto, probe), model.exact_answer(probe));
        ASSERT_EQ(ask(handler, may_o_min, objeto, probe), model.any_case_answer(probe));
    }
}

std::u16string label(const std::string &texto) {
    return std::u16string(texto.begin(), texto.end());
}

// Names that collide: exactly, ignoring case, and beyond ASCII.
const std::u16string kShared[] = {u"id", u"ID", u"Id", u"ñu", u"Ñu", u"ÑU", u"x", u"X"};

} // namespace

TEST(MemberIndex, AnswersAsTheMemberByMemberSearchThroughEveryChange) {
    RecordingHandler handler;
    std::mt19937 azar(24);
    const auto below = [&](size_t n) { return size_t(azar() % n); };
    Tree o{tqjson2_crea_nodo_objeto()};
    Model model;
    int unicos = 0;
    // A shared name, one of the members' names, or a name of its own.
    const auto any_name = [&]() -> std::u16string {
        const size_t cual = below(10);
        if (cual < 1)
            return kShared[below(std::size(kShared))];
        if (cual < 7 && !model.miembros.empty())
            return model.miembros[below(model.miembros.size())].first;
        return label("u" + std::to_string(unicos++));
    };
    const auto new_member = [&](const std::u16string &nombre, tqjson2_nodo_t *valor) {
        model.miembros.emplace_back(nombre, valor);
        return tqjson2_crea_atributo(nombre.c_str(), &valor);
    };
    arr_puntero_t *atributos = tqjson2_get_atributos_objeto(o.raiz);
    for (int paso = 0; paso < 1400; ++paso) {
        SCOPED_TRACE(paso);
        // Growing for 800 steps, to some 300 members, then shrinking below the threshold.
        const size_t cambio = paso < 800 ? below(12) : 8 + below(4);
        const std::u16string nombre = any_name();
        const auto at = model.exact(nombre);
        handler.clear();
        if (cambio <= 4) { // a writer reports a member present once, and appends all the same
            if (cambio == 4)
                tqjson2_graba_long(nombre.c_str(), paso, o.raiz);
            else if (cambio == 3)
                tqjson2_append_null_a_objeto(o.raiz, nombre.c_str());
            else
                tqjson2_append_long_a_objeto(o.raiz, nombre.c_str(), paso);
            // The second report needs a value node to find.
            const Conditions informes{"existe == FALSO", "nodo_dato == NULL"};
            const size_t cuantos =
                cambio == 4 && at.size() == 1 ? (model.miembros[at[0]].second ? 2 : 1) : 0;
            EXPECT_EQ(handler.conditions(),
                      Conditions(informes.begin(), informes.begin() + cuantos));
            model.miembros.emplace_back(nombre, member_at(o.raiz, model.miembros.size())->valor);
        } else if (cambio == 5 && !at.empty() &&
                   (at.size() > 1 || (model.miembros[at[0]].second &&
                                      model.miembros[at[0]].second->tipo == TQJSON_TIPO_ENTERO))) {
            tqjsonlsn_set_valor_long(o.raiz, nombre.c_str(), -paso); // in place, or appended
            if (at.size() > 1)
                model.miembros.emplace_back(nombre,
                                            member_at(o.raiz, model.miembros.size())->valor);
        } else if (cambio == 6 && !model.miembros.empty()) { // through the array component
            const uint32_t i = uint32_t(below(model.miembros.size()));
            auto *viejo = static_cast<tqjson2_atributo_t *>(arr_GetPunteroConTipo(atributos, i));
            tqjson2_atributo_t *nuevo = new_member(nombre, integer(paso));
            model.miembros[i] = model.miembros.back();
            model.miembros.pop_back();
            arr_SetPunteroConTipo(atributos, i, nuevo);
            i_destruye_atributo(&viejo);
        } else if (cambio == 7) {
            arr_AppendPunteroConTipo(atributos,
                                     new_member(nombre, below(3) ? integer(paso) : nullptr));
        } else if (cambio == 8 && !model.miembros.empty()) {
            const uint32_t i = uint32_t(below(model.miembros.size()));
            arr_BorrarEstructuraConTipo(atributos, i, i_destruye_atributo_elemento);
            model.miembros.erase(model.miembros.begin() + i);
        } else if (cambio == 9 && !model.miembros.empty()) {
            auto *ultimo =
                static_cast<tqjson2_atributo_t *>(arr_ExtraeUltimoPunteroConTipo(atributos));
            i_destruye_atributo(&ultimo);
            model.miembros.pop_back();
        } else if (cambio >= 10 && (at.size() != 1 || model.miembros[at[0]].second)) {
            Tree extraido{kUntouched};
            EXPECT_EQ(tqjson2_se_extrae_atributo_con_nombre_de_objeto(o.raiz, nombre.c_str(),
                                                                      &extraido.raiz),
                      std::get<0>(model.exact_answer(nombre)));
            EXPECT_EQ(extraido.raiz, std::get<1>(model.exact_answer(nombre)));
            if (at.size() == 1)
                model.miembros.erase(model.miembros.begin() + at[0]);
        }
        std::vector<std::u16string> probes(std::begin(kShared), std::end(kShared));
        probes.push_back(nombre);
        probes.push_back(label("u" + std::to_string(below(10))));
        expect_as_model(handler, o.raiz, model, probes);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

// Ignoring case, the members that share a name answer in turn as each other one leaves. A null
// slot is reported by the comparator wherever the search meets it, as it always was.
TEST(MemberIndex, ExtractionHandsTheAnswerOnWithinANameSharedAndNullSlotsAreReported) {
    RecordingHandler handler;
    Tree o{tqjson2_crea_nodo_objeto()};
    Model model;
    const std::pair<std::u16string, tqjson2_nodo_t *> miembros[] = {
        {u"id", null_node()}, {u"ID", integer(1)}, {u"Id", integer(2)},
        {u"iD", null_node()}, {u"ñu", integer(3)}, {u"ÑU", null_node()}};
    for (int i = 0; i < 30; ++i)
        tqjson2_append_long_a_objeto(o.raiz, label("f" + std::to_string(i)).c_str(), i);
    for (auto [nombre, valor] : miembros)
        tqjson2_append_nodo_a_objeto(o.raiz, nombre.c_str(), &valor);
    for (uint32_t i = 0; i < 36; ++i)
        model.miembros.emplace_back(member_at(o.raiz, i)->nombre, member_at(o.raiz, i)->valor);
    const std::vector<std::u16string> probes = {u"id", u"ID", u"Id", u"iD", u"ÑU", u"f7"};
    expect_as_model(handler, o.raiz, model, probes);
    arr_puntero_t *atributos = tqjson2_get_atributos_objeto(o.raiz);
    void *quinto = arr_GetPunteroConTipo(atributos, 5);
    arr_SetPunteroConTipo(atributos, 5, nullptr);
    const Answer found{CIERTO, member_at(o.raiz, 9)->valor, {"(atributo) != NULL"}};
    EXPECT_EQ(ask(handler, exacta, o.raiz, u"f9"), found);
    EXPECT_EQ(ask(handler, may_o_min, o.raiz, u"F9"), found);
    EXPECT_EQ(ask(handler, exacta, o.raiz, u"f2"),
              (Answer{CIERTO, member_at(o.raiz, 2)->valor, {"(atributo) != NULL"}}));
    arr_SetPunteroConTipo(atributos, 5, quinto);
    EXPECT_EQ(ask(handler, exacta, o.raiz, u"f9"),
              (Answer{CIERTO, member_at(o.raiz, 9)->valor, {}}));
    for (const char16_t *sale : {u"ID", u"f3", u"Id", u"iD", u"ÑU", u"id", u"ñu"}) {
        const auto at = model.exact(sale);
        ASSERT_EQ(at.size(), 1u);
        Tree extraido{nullptr};
        ASSERT_EQ(tqjson2_se_extrae_atributo_con_nombre_de_objeto(o.raiz, sale, &extraido.raiz),
                  CIERTO);
        EXPECT_EQ(extraido.raiz, model.miembros[at[0]].second);
        model.miembros.erase(model.miembros.begin() + at[0]);
        expect_as_model(handler, o.raiz, model, probes);
    }
    // Below the threshold the index goes: a small object holds none.
    for (int i = 10; arr_NumElemsPuntero(atributos) >= i_UMBRAL_INDICE; ++i) {
        EXPECT_NE(arr_AnexoPuntero(atributos), nullptr);
        Tree extraido{nullptr};
        tqjson2_se_extrae_atributo_con_nombre_de_objeto(
            o.raiz, label("f" + std::to_string(i)).c_str(), &extraido.raiz);
    }
    EXPECT_EQ(arr_AnexoPuntero(atributos), nullptr);
}

#if !defined(TQ_SIN_BLOQUES_PEQUENOS)

namespace {
size_t in_use() {
    size_t en_uso = 0, pico = 0;
    marlspy_nousar_uso_bloques_pequenos(&en_uso, &pico);
    return en_uso;
}
} // namespace

// The pool counts every block of up to 4 KiB, and tables of up to some 700 members fit in one.
// Beyond, each table is one block of the system's of 16 bytes and 4 a slot, rounded up by no one.
TEST(MemberIndex, IndexesAndReadTreesTakeTheirBoundedShareOfThePool) {
    for (uint32_t n = i_UMBRAL_INDICE; n <= 720; n += 7) {
        SCOPED_TRACE(n);
        Tree o{tqjson2_crea_nodo_objeto()};
        for (uint32_t i = 0; i < n; ++i) {
            tqjson2_graba_long(label("campo" + std::to_string(i)).c_str(), 1, o.raiz);
            if (i + 1 == i_UMBRAL_INDICE) // both tables from here on
                may_o_min(o.raiz, u"x", nullptr);
        }
        arr_puntero_t *atributos = tqjson2_get_atributos_objeto(o.raiz);
        ASSERT_NE(arr_AnexoPuntero(atributos), nullptr);
        const size_t con_indice = in_use();
        arr_SetPunteroConTipo(atributos, 0, arr_GetPunteroConTipo(atributos, 0)); // lets it go
        EXPECT_EQ(arr_AnexoPuntero(atributos), nullptr);
        EXPECT_LE(con_indice - in_use(), 16 * size_t{n});
    }
    // Destroyed with its index, an object gives every block back.
    const size_t antes = in_use();
    {
        Tree o{tqjson2_crea_nodo_objeto()};
        for (uint32_t i = 0; i < 2 * i_UMBRAL_INDICE; ++i)
            tqjson2_graba_long(label("campo" + std::to_string(i)).c_str(), 1, o.raiz);
        may_o_min(o.raiz, u"x", nullptr);
        ASSERT_NE(arr_AnexoPuntero(tqjson2_get_atributos_objeto(o.raiz)), nullptr);
    }
    EXPECT_EQ(in_use(), antes);

    // A read tree holds eight bytes a member array, and its small objects no index.
    size_t bytes[2];
    for (const char *vacio : {"{}", "[]"}) {
        std::string texto = "[";
        for (int i = 0; i < 1000; ++i)
            texto += (i ? "," : "") + std::string(vacio);
        const size_t antes_de_leer = in_use();
        Tree tree{nullptr};
        EXPECT_EQ(tqjson2_se_lee_texto_utf8((texto + "]").c_str(), &tree.raiz), CIERTO);
        bytes[*vacio == '['] = in_use() - antes_de_leer;
    }
    EXPECT_LE(bytes[0] - bytes[1], 8 * 1000u);
    Tree tree{nullptr};
    ASSERT_EQ(tqjson2_se_lee_texto_utf8(records_document(3).c_str(), &tree.raiz), CIERTO);
    const size_t leido = in_use();
    tqjson2_nodo_t *items = nullptr;
    ASSERT_EQ(exacta(tree.raiz, u"items", &items), CIERTO);
    for (uint32_t i = 0; i < arr_NumElemsPuntero(tqjson2_get_valores_array(items)); ++i) {
        tqjson2_nodo_t *item = element_at(items, i);
        EXPECT_EQ(may_o_min(item, u"NAME", nullptr), CIERTO);
        EXPECT_EQ(exacta(item, u"id", nullptr), CIERTO);
    }
    EXPECT_EQ(in_use(), leido);
}

#endif
