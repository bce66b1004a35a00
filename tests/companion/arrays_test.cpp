#include <gtest/gtest.h>

#include <tuple>

#include "companion/arrays.h"
#include "companion/byte_strings.h"
#include "companion/wide_strings.h"
#include "support/recording_handler.h"

namespace {

int g_destruidos = 0;
void destruye(void *elemento) {
    ++g_destruidos;
    *static_cast<int **>(elemento) = nullptr;
}
tqbool igual_int(const void *elemento, const void *clave) {
    return *static_cast<const int *>(elemento) == *static_cast<const int *>(clave) ? CIERTO : FALSO;
}
arr_puntero_t *of(std::initializer_list<int *> elementos) {
    arr_puntero_t *arr = arr_CreaPunteroConTipo(0);
    for (int *e : elementos)
        arr_AppendPunteroConTipo(arr, e);
    return arr;
}
std::vector<void *> elements(const arr_puntero_t *arr) {
    std::vector<void *> out;
    for (uint32_t i = 0; i < arr_NumElemsPuntero(arr); ++i)
        out.push_back(arr_GetPunteroConTipo(arr, i));
    return out;
}

} // namespace

// The array grows across many appends, created elements are null, it serves as a stack;
// removing destroys the element and keeps the order of the rest; bad indexes and handles are
// reported and change nothing; destroying the array destroys what is left and nulls it.
TEST(PointerArrays, GrowsRemovesInOrderAndTakesBadCallsHarmlessly) {
    static int datos[100000];
    arr_puntero_t *arr = arr_CreaPunteroConTipo(2);
    EXPECT_EQ(arr_GetPunteroConTipo(arr, 1), nullptr);
    for (int &d : datos)
        arr_AppendPunteroConTipo(arr, &d);
    ASSERT_EQ(arr_NumElemsPuntero(arr), 100002u);
    EXPECT_EQ(arr_GetPunteroConTipo(arr, 2), &datos[0]);
    EXPECT_EQ(arr_ExtraeUltimoPunteroConTipo(arr), &datos[99999]);
    EXPECT_EQ(arr_NumElemsPuntero(arr), 100001u);
    arr_SetPunteroConTipo(arr, 0, &datos[5]);
    EXPECT_EQ(arr_GetPunteroConTipo(arr, 0), &datos[5]);
    arr_DestruyeEstructurasConTipo(&arr, nullptr);

    arr = of({&datos[10], &datos[20], &datos[30]});
    g_destruidos = 0;
    arr_BorrarEstructuraConTipo(arr, 0, destruye);
    EXPECT_EQ(g_destruidos, 1);
    EXPECT_EQ(elements(arr), (std::vector<void *>{&datos[20], &datos[30]}));
    arr_BorrarEstructuraConTipo(arr, 1, destruye);
    RecordingHandler handler;
    EXPECT_EQ(arr_GetPunteroConTipo(arr, 1), nullptr);
    arr_SetPunteroConTipo(arr, 5, nullptr);
    arr_BorrarEstructuraConTipo(arr, 1, destruye);
    EXPECT_EQ(arr_NumElemsPuntero(nullptr), 0u);
    EXPECT_EQ(arr_BuscarEstructuraConTipo(arr, nullptr, nullptr), ARR_NO_ENCONTRADO);
    arr_puntero_t *nulo = nullptr;
    arr_DestruyeEstructurasConTipo(&nulo, nullptr);
    EXPECT_EQ(handler.conditions(),
              (Conditions{"indice < arr->a.num", "indice < arr->a.num", "indice < arr->a.num",
                          "(arr) != NULL", "(comparador) != NULL", "(*arr) != NULL"}));
    EXPECT_EQ(elements(arr), std::vector<void *>{&datos[20]});
    arr_DestruyeEstructurasConTipo(&arr, destruye);
    EXPECT_EQ(g_destruidos, 3);
    EXPECT_EQ(arr, nullptr);
}

// The unique search writes the index only for exactly one match (12345: untouched).
TEST(PointerArrays, SearchesFindTheFirstMatchAndUniquenessNeedsExactlyOne) {
    const auto unica = [](const arr_puntero_t *arr, int clave) {
        uint32_t indice = 12345;
        const tqbool hay = arr_ExisteUnicaEstructuraConTipo(arr, &clave, igual_int, &indice);
        return std::tuple(hay, indice);
    };
    int siete = 7, ocho = 8, otro_siete = 7, nueve = 9;
    arr_puntero_t *vacio = of({}), *arr = of({&siete, &ocho, &otro_siete, &nueve});
    EXPECT_EQ(arr_BuscarEstructuraConTipo(vacio, &siete, igual_int), ARR_NO_ENCONTRADO);
    EXPECT_EQ(unica(vacio, 7), std::tuple(FALSO, 12345u));
    EXPECT_EQ(arr_BuscarEstructuraConTipo(arr, &siete, igual_int), 0u);
    EXPECT_EQ(arr_BuscarSiguienteEstructuraConTipo(arr, 1, &siete, igual_int), 2u);
    EXPECT_EQ(arr_BuscarSiguienteEstructuraConTipo(arr, 3, &siete, igual_int), ARR_NO_ENCONTRADO);
    EXPECT_EQ(arr_BuscarSiguienteEstructuraConTipo(arr, 4, &siete, igual_int), ARR_NO_ENCONTRADO);
    EXPECT_EQ(unica(arr, 7), std::tuple(FALSO, 12345u));
    EXPECT_EQ(unica(arr, 9), std::tuple(CIERTO, 3u));
    EXPECT_EQ(unica(arr, 8), std::tuple(CIERTO, 1u));
    arr_DestruyeEstructurasConTipo(&vacio, nullptr);
    arr_DestruyeEstructurasConTipo(&arr, nullptr);
}

// An attachment that counts how often the array lets go of it.
struct Counted {
    arr_anexo_t anexo{[](arr_anexo_t *a) { ++reinterpret_cast<Counted *>(a)->released; }};
    int released = 0;
};

// Every change lets the attachment go once, reading keeps it; only one is put at a time, its
// owner may take it off, and an array made without room for one takes none.
TEST(PointerArrays, AttachmentsAreLetGoOnceOnEveryChange) {
    static int uno = 1, dos = 2;
    using Change = void (*)(arr_puntero_t **);
    const std::pair<const char *, Change> changes[] = {
        {"set", [](arr_puntero_t **a) { arr_SetPunteroConTipo(*a, 0, &dos); }},
        {"append", [](arr_puntero_t **a) { arr_AppendPunteroConTipo(*a, &dos); }},
        {"remove", [](arr_puntero_t **a) { arr_BorrarEstructuraConTipo(*a, 1, nullptr); }},
        {"take last", [](arr_puntero_t **a) { arr_ExtraeUltimoPunteroConTipo(*a); }},
        {"destroy", [](arr_puntero_t **a) { arr_DestruyeEstructurasConTipo(a, nullptr); }},
    };
    for (const auto &[label, change] : changes) {
        SCOPED_TRACE(label);
        void *const elementos[] = {&uno, &dos};
        arr_puntero_t *arr = arr_CreaPunteroConAnexo(elementos, 2);
        Counted counted;
        ASSERT_EQ(arr_PonAnexoPuntero(arr, &counted.anexo), &counted.anexo);
        arr_GetPunteroConTipo(arr, 1);
        EXPECT_EQ(arr_AnexoPuntero(arr), &counted.anexo);
        change(&arr);
        EXPECT_EQ(counted.released, 1);
        if (arr) {
            EXPECT_EQ(arr_AnexoPuntero(arr), nullptr);
            arr_DestruyeEstructurasConTipo(&arr, nullptr);
            EXPECT_EQ(counted.released, 1);
        }
    }
    arr_puntero_t *arr = arr_CreaPunteroConAnexo(nullptr, 0);
    Counted first, second;
    EXPECT_EQ(arr_PonAnexoPuntero(arr, &first.anexo), &first.anexo);
    EXPECT_EQ(arr_PonAnexoPuntero(arr, &second.anexo), &first.anexo);
    EXPECT_EQ(arr_QuitaAnexoPuntero(arr), &first.anexo);
    EXPECT_EQ(arr_QuitaAnexoPuntero(arr), nullptr);
    arr_AppendPunteroConTipo(arr, &first); // with none on, a change releases nothing
    EXPECT_EQ(arr_PonAnexoPuntero(arr, &second.anexo), &second.anexo);
    arr_DestruyeEstructurasConTipo(&arr, nullptr);
    EXPECT_EQ(std::tuple(first.released, second.released), std::tuple(0, 1));
    arr = arr_CreaPunteroConTipo(0);
    EXPECT_EQ(arr_PonAnexoPuntero(arr, &first.anexo), nullptr);
    EXPECT_EQ(arr_AnexoPuntero(arr), nullptr);
    arr_DestruyeEstructurasConTipo(&arr, nullptr);
}

// Plain arrays start zeroed and hold what is set; string arrays copy or take over (the very
// buffer, nulling the caller's pointer) and free what they replace.
TEST(PlainArrays, HoldWhatIsSetAndStringArraysOwnTheirStrings) {
    RecordingHandler handler;
    arr_bool_t *b = arr_CreaBOOL(3);
    arr_ulong_t *u = arr_CreaULong(2);
    arr_double_t *d = arr_CreaDouble(2);
    arr_cadena_t *c = arr_CreaCADENA(2);
    EXPECT_EQ(
        std::tuple(arr_GetBOOL(b, 2), arr_GetULong(u, 1), arr_GetDouble(d, 0), arr_GetCADENA(c, 0)),
        std::tuple(FALSO, 0u, 0.0, nullptr));
    arr_SetBOOL(b, 2, CIERTO);
    arr_SetULong(u, 1, 0xFFFFFFFFu);
    arr_SetDouble(d, 0, -2.5);
    EXPECT_EQ(std::tuple(arr_NumElemsBOOL(b), arr_NumElemsULong(u), arr_NumElemsDouble(d)),
              std::tuple(3u, 2u, 2u));
    EXPECT_EQ(std::tuple(arr_GetBOOL(b, 2), arr_GetULong(u, 1), arr_GetDouble(d, 0)),
              std::tuple(CIERTO, 0xFFFFFFFFu, -2.5));
    arr_DestruyeBOOL(&b);
    arr_DestruyeULong(&u);
    arr_DestruyeDouble(&d);
    EXPECT_TRUE(!b && !u && !d);

    char propia[] = "copiada";
    arr_SetCADENA(c, 0, propia);
    propia[0] = 'X';
    char *tomada = cad_copia_cadena("tomada");
    const char *direccion = tomada;
    arr_SetCADENAOriginal(c, 1, &tomada);
    EXPECT_EQ(tomada, nullptr);
    EXPECT_EQ(arr_GetCADENA(c, 1), direccion);
    arr_SetCADENA(c, 1, "otra");
    arr_AppendCADENA(c, "tercera");
    ASSERT_EQ(arr_NumElemsCADENA(c), 3u);
    EXPECT_EQ(std::tuple(std::string(arr_GetCADENA(c, 0)), std::string(arr_GetCADENA(c, 1)),
                         std::string(arr_GetCADENA(c, 2))),
              std::tuple("copiada", "otra", "tercera"));
    char *fuera = cad_copia_cadena("fuera");
    arr_SetCADENAOriginal(c, 9, &fuera); // refused, yet taken over and freed: nothing leaks
    EXPECT_EQ(fuera, nullptr);
    arr_DestruyeCADENA(&c);
    EXPECT_EQ(c, nullptr);
    EXPECT_EQ(handler.conditions(), Conditions{"indice < arr->a.num"});

    arr_cadena_u_t *w = arr_CreaCADENA_u(2);
    arr_SetCADENA_u(w, 0, u"ñandú");
    char16_t *ancha = widestr_nousar_copia(u"ancha", "test", __LINE__);
    arr_SetCADENAOriginal_u(w, 1, &ancha);
    EXPECT_EQ(ancha, nullptr);
    ASSERT_EQ(arr_NumElemsCADENA_u(w), 2u);
    EXPECT_EQ(
        std::tuple(std::u16string(arr_GetCADENA_u(w, 0)), std::u16string(arr_GetCADENA_u(w, 1))),
        std::tuple(u"ñandú", u"ancha"));
    arr_DestruyeCADENA_u(&w);
    EXPECT_EQ(w, nullptr);
}
