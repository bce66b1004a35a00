// Member lookups on large and small objects.
//
// large/<n>: one pass of the three phases on a new object of n members: n distinct labels saved
// with tqjson2_graba_long (each one looked up first, as the writer does), then each looked up
// exactly, then each looked up ignoring letter case (spelled in capitals). The counters give each
// phase's seconds and their sum for one pass.
//
// small_exact/<m>, small_any_case/<m>: lookups of every member of objects of m members, and of
// one name that is missing, over 512 objects, again and again, in lookups per second. Sizes from 1
// to 16 show the small objects most documents hold.
//
// first_exact/<m>, first_any_case/<m>: the same lookups once each on new objects, the time of
// making an index included: where an index starts to pay, which sets the size from which objects
// are indexed.
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <vector>

#include "tqjson2.h"

namespace {

using reloj = std::chrono::steady_clock;

std::u16string i_ascii(const std::string &texto) {
    return std::u16string(texto.begin(), texto.end());
}

std::vector<std::u16string> i_etiquetas(int n, const char *prefijo) {
    std::vector<std::u16string> etiquetas;
    for (int i = 0; i < n; ++i)
        etiquetas.push_back(i_ascii(prefijo + std::to_string(i)));
    return etiquetas;
}

double i_segundos(reloj::time_point desde) {
    return std::chrono::duration<double>(reloj::now() - desde).count();
}

// Each label must name the member whose integer is its position.
template <class F>
bool i_busca_todas(F busca, tqjson2_nodo_t *objeto, const std::vector<std::u16string> &etiquetas) {
    for (size_t i = 0; i < etiquetas.size(); ++i) {
        tqjson2_nodo_t *valor = nullptr;
        int32_t entero = -1;
        if (busca(objeto, etiquetas[i].c_str(), &valor) != CIERTO ||
            tqjson2_es_valor_entero(valor, &entero) != CIERTO || entero != int32_t(i))
            return false;
    }
    return true;
}

void BM_large(benchmark::State &state) {
    const int n = int(state.range(0));
    const auto etiquetas = i_etiquetas(n, "field");
    const auto mayusculas = i_etiquetas(n, "FIELD");
    double graba = 0, exacta = 0, may_o_min = 0;
    for (auto _ : state) {
        const auto inicio = reloj::now();
        tqjson2_nodo_t *objeto = tqjson2_crea_nodo_objeto();
        for (int i = 0; i < n; ++i)
            tqjson2_graba_long(etiquetas[size_t(i)].c_str(), i, objeto);
        const double t_graba = i_segundos(inicio);
        const auto inicio_exacta = reloj::now();
        const bool bien_exacta =
            i_busca_todas(tqjson2_existe_atributo_con_nombre_en_objeto, objeto, etiquetas);
        const double t_exacta = i_segundos(inicio_exacta);
        const auto inicio_may_o_min = reloj::now();
        const bool bien_may_o_min = i_busca_todas(
            tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto, objeto, mayusculas);
        const double t_may_o_min = i_segundos(inicio_may_o_min);
        tqjson2_destruye_nodo(&objeto);
        if (!bien_exacta || !bien_may_o_min) {
            state.SkipWithError("a lookup gave a wrong answer");
            return;
        }
        state.SetIterationTime(t_graba + t_exacta + t_may_o_min);
        graba += t_graba, exacta += t_exacta, may_o_min += t_may_o_min;
    }
    const double pasadas = double(state.iterations());
    state.counters["graba_s"] = graba / pasadas;
    state.counters["exact_s"] = exacta / pasadas;
    state.counters["any_case_s"] = may_o_min / pasadas;
    state.counters["total_s"] = (graba + exacta + may_o_min) / pasadas;
}

// Member names of the kind most documents have.
const char *const kNombres[] = {"id",    "name",  "type", "value",   "created_at", "user",
                                "text",  "url",   "lang", "count",   "width",      "height",
                                "title", "items", "tags", "location"};

// `kObjetos` new objects of m members with the names above and further ones.
std::vector<tqjson2_nodo_t *> i_objetos(const std::vector<std::u16string> &etiquetas) {
    constexpr int kObjetos = 512;
    std::vector<tqjson2_nodo_t *> objetos;
    for (int o = 0; o < kObjetos; ++o) {
        objetos.push_back(tqjson2_crea_nodo_objeto());
        for (size_t i = 0; i < etiquetas.size(); ++i)
            tqjson2_append_long_a_objeto(objetos.back(), etiquetas[i].c_str(), int32_t(i));
    }
    return objetos;
}

void i_destruye(std::vector<tqjson2_nodo_t *> &objetos) {
    for (tqjson2_nodo_t *&objeto : objetos)
        tqjson2_destruye_nodo(&objeto);
}

// Looks every member of every object up, and a missing name; false on a wrong answer.
template <bool kMayOMin>
bool i_busca_en(const std::vector<tqjson2_nodo_t *> &objetos,
                const std::vector<std::u16string> &etiquetas) {
    const auto busca = kMayOMin ? tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto
                                : tqjson2_existe_atributo_con_nombre_en_objeto;
    for (tqjson2_nodo_t *objeto : objetos)
        if (!i_busca_todas(busca, objeto, etiquetas) || busca(objeto, u"missing", nullptr) != FALSO)
            return false;
    return true;
}

std::vector<std::u16string> i_nombres(int m) {
    std::vector<std::u16string> etiquetas;
    for (int i = 0; i < m; ++i)
        etiquetas.push_back(i_ascii(i < 16 ? kNombres[i] : "extra_" + std::to_string(i)));
    return etiquetas;
}

// The same objects looked up again and again.
template <bool kMayOMin> void BM_small(benchmark::State &state) {
    const auto etiquetas = i_nombres(int(state.range(0)));
    auto objetos = i_objetos(etiquetas);
    for (auto _ : state) {
        if (!i_busca_en<kMayOMin>(objetos, etiquetas)) {
            state.SkipWithError("a lookup gave a wrong answer");
            break;
        }
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(objetos.size()) *
                            int64_t(etiquetas.size() + 1));
    i_destruye(objetos);
}

// New objects each time, each member looked up once, as a program that reads a document does:
// the time includes making the index where one is made.
template <bool kMayOMin> void BM_first(benchmark::State &state) {
    const auto etiquetas = i_nombres(int(state.range(0)));
    int64_t busquedas = 0;
    for (auto _ : state) {
        auto objetos = i_objetos(etiquetas);
        const auto inicio = reloj::now();
        const bool bien = i_busca_en<kMayOMin>(objetos, etiquetas);
        state.SetIterationTime(i_segundos(inicio));
        busquedas += int64_t(objetos.size()) * int64_t(etiquetas.size() + 1);
        i_destruye(objetos);
        if (!bien) {
            state.SkipWithError("a lookup gave a wrong answer");
            break;
        }
    }
    state.SetItemsProcessed(busquedas);
}

} // namespace

BENCHMARK(BM_large)->Name("large")->Arg(1000)->Arg(10000)->Arg(40000)->UseManualTime()->Unit(
    benchmark::kMillisecond);
BENCHMARK(BM_small<false>)
    ->Name("small_exact")
    ->DenseRange(1, 16)
    ->Arg(24)
    ->Arg(32)
    ->Arg(48)
    ->Arg(64);
BENCHMARK(BM_small<true>)
    ->Name("small_any_case")
    ->DenseRange(1, 16)
    ->Arg(24)
    ->Arg(32)
    ->Arg(48)
    ->Arg(64);
BENCHMARK(BM_first<false>)
    ->Name("first_exact")
    ->DenseRange(8, 32, 4)
    ->Arg(48)
    ->Arg(64)
    ->UseManualTime();
BENCHMARK(BM_first<true>)
    ->Name("first_any_case")
    ->DenseRange(8, 32, 4)
    ->Arg(48)
    ->Arg(64)
    ->UseManualTime();

BENCHMARK_MAIN();
