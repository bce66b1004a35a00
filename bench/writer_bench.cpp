// Generation of JSON text from a tree is one depth-first walk that appends to one growing
// buffer, so its time should grow linearly with the document. These benchmarks time the text
// generators, indented and minified, over documents of 1,000 to 1,000,000 records and let
// Google Benchmark fit the times to O(N); a last one writes the largest document to a file.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>

#include <unistd.h>

#include "tqjson2.h"

namespace {

// Names with a quotation mark, a tab, a solidus and a backslash, so that both the escaped
// form of the tree and the writer's quoting are exercised; two carry non-ASCII text.
const char16_t *const NOMBRES[] = {
    u"Tornillo \"M4\" inox",
    u"Tuerca\tpaso 0,7",
    u"Arandela 4/8 mm",
    u"Caf\u00e9 \\ \u65e5\u672c",
};

tqjson2_nodo_t *crea_registro(int64_t i) {
    tqjson2_nodo_t *registro = tqjson2_crea_nodo_objeto();
    tqjson2_append_long_a_objeto(registro, u"id", static_cast<int32_t>(i));
    tqjson2_append_double_a_objeto(registro, u"precio", 0.25 * static_cast<double>(i % 400) + 0.1);
    tqjson2_append_cadena_unicode_a_objeto(registro, u"nombre", NOMBRES[i % 4]);
    tqjson2_append_tqbool_a_objeto(registro, u"activo", i % 2 == 0 ? CIERTO : FALSO);
    tqjson2_append_null_a_objeto(registro, u"baja");

    tqjson2_nodo_t *medidas = tqjson2_crea_nodo_array();
    tqjson2_append_long_a_array(medidas, static_cast<int32_t>(i % 100));
    tqjson2_append_double_a_array(medidas, 2.5);
    tqjson2_append_double_a_array(medidas, 2.0);
    tqjson2_append_nodo_a_objeto(registro, u"medidas", &medidas);

    tqjson2_nodo_t *origen = tqjson2_crea_nodo_objeto();
    tqjson2_append_cadena_unicode_a_objeto(origen, u"pais", u"Espa\u00f1a");
    tqjson2_append_long_a_objeto(origen, u"codigo", static_cast<int32_t>(i % 50));
    tqjson2_append_nodo_a_objeto(registro, u"origen", &origen);
    return registro;
}

// Building a million records takes longer than writing them, and Google Benchmark calls each
// function more than once per size, so every size is built once and shared; main destroys
// the documents at the end.
std::map<int64_t, tqjson2_nodo_t *> documentos;

const tqjson2_nodo_t *documento(int64_t num_registros) {
    tqjson2_nodo_t *&raiz = documentos[num_registros];
    if (raiz == nullptr) {
        raiz = tqjson2_crea_nodo_array();
        for (int64_t i = 0; i < num_registros; ++i) {
            tqjson2_nodo_t *registro = crea_registro(i);
            tqjson2_append_elemento_a_array(raiz, &registro);
        }
    }
    return raiz;
}

using generador_t = char *(*)(const tqjson2_nodo_t *);

void genera_texto(benchmark::State &state, generador_t generador) {
    const tqjson2_nodo_t *raiz = documento(state.range(0));
    // The size of the output, from one generation outside the timed loop.
    char *texto = generador(raiz);
    const int64_t bytes = static_cast<int64_t>(std::strlen(texto));
    marlstr_destruye(&texto);
    for (auto _ : state) {
        texto = generador(raiz);
        benchmark::DoNotOptimize(texto);
        marlstr_destruye(&texto);
    }
    state.SetComplexityN(state.range(0));
    state.SetBytesProcessed(state.iterations() * bytes);
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["text_bytes"] = static_cast<double>(bytes);
}

void BM_genera_texto_utf8(benchmark::State &state) {
    genera_texto(state, tqjson2_genera_texto_utf8);
}

void BM_genera_texto_utf8_minificado(benchmark::State &state) {
    genera_texto(state, tqjson2_genera_texto_utf8_minificado);
}

void BM_escribe_fichero(benchmark::State &state) {
    const tqjson2_nodo_t *raiz = documento(state.range(0));
    char plantilla[] = "/tmp/tqjson2_writer_bench_XXXXXX";
    const int descriptor = mkstemp(plantilla);
    if (descriptor < 0) {
        state.SkipWithError("cannot create a temporary file");
        return;
    }
    close(descriptor);
    // The template is ASCII, so its wide form is a unit per byte.
    const std::u16string ruta(plantilla, plantilla + std::strlen(plantilla));
    for (auto _ : state)
        tqjson2_escribe_fichero(raiz, ruta.c_str());
    const auto bytes = static_cast<int64_t>(std::filesystem::file_size(plantilla));
    std::remove(plantilla);
    if (bytes == 0) {
        state.SkipWithError("the file was left empty");
        return;
    }
    state.SetBytesProcessed(state.iterations() * bytes);
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["file_bytes"] = static_cast<double>(bytes);
}

} // namespace

BENCHMARK(BM_genera_texto_utf8)
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);
BENCHMARK(BM_genera_texto_utf8_minificado)
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);
// Wall time, as a caller waiting for its file sees it.
BENCHMARK(BM_escribe_fichero)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char **argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    for (auto &[num_registros, raiz] : documentos)
        tqjson2_destruye_nodo(&raiz);
    return 0;
}
