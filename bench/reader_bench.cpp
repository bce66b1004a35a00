// Reading and writing the benchmark documents in memory: each document of bench/data is read
// from UTF-8 text into a tree (MB/s of input) and written back indented and minified (MB/s of
// output). scan/<doc> only finds the document's tokens with the lexer, the part of a read that
// a scanner fused into the parser could save at most. Integers beyond 32 bits are reported as out
// of range while reading; a quiet handler counts those reports instead of printing them.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "companion/lexer.h"
#include "tqjson2.h"

namespace {

long long g_informes = 0;
void i_cuenta_informe(const char *, const char *, int) {
    ++g_informes;
}

std::string i_lee_documento(const std::string &nombre) {
    std::ifstream fichero(std::string(TQ_BENCH_DATA_DIR) + "/" + nombre, std::ios::binary);
    std::ostringstream bytes;
    bytes << fichero.rdbuf();
    return bytes.str();
}

void BM_lee(benchmark::State &state, const std::string &nombre) {
    const std::string texto = i_lee_documento(nombre);
    for (auto _ : state) {
        tqjson2_nodo_t *raiz = nullptr;
        if (tqjson2_se_lee_texto_utf8(texto.c_str(), &raiz) != CIERTO) {
            state.SkipWithError("the document did not read");
            return;
        }
        tqjson2_destruye_nodo(&raiz);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(texto.size()));
}

void BM_escanea(benchmark::State &state, const std::string &nombre) {
    const std::string texto = i_lee_documento(nombre);
    for (auto _ : state) {
        anlex_palabras_reservadas_t *palabras = anlex_crea_palabras_reservadas_vacio();
        anlex_t *lex = anlex_crea_analizando_memoria_utf8(texto.c_str(), &palabras, CIERTO);
        anlex_set_atributo_aplicar_criterio_json_para_analisis_literales(lex);
        anlex_inicia(lex);
        while (anlex_lee_token(lex) != ANLEX_FIN)
            continue;
        anlex_destruye(&lex);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(texto.size()));
}

void BM_escribe(benchmark::State &state, const std::string &nombre, bool indentado) {
    const std::string texto = i_lee_documento(nombre);
    tqjson2_nodo_t *raiz = nullptr;
    if (tqjson2_se_lee_texto_utf8(texto.c_str(), &raiz) != CIERTO) {
        state.SkipWithError("the document did not read");
        return;
    }
    const auto genera =
        indentado ? tqjson2_genera_texto_utf8 : tqjson2_genera_texto_utf8_minificado;
    int64_t bytes = 0;
    for (auto _ : state) {
        char *salida = genera(raiz);
        bytes = static_cast<int64_t>(std::strlen(salida));
        marlstr_destruye(&salida);
    }
    state.SetBytesProcessed(state.iterations() * bytes);
    tqjson2_destruye_nodo(&raiz);
}

} // namespace

int main(int argc, char **argv) {
    error_interno_set_manejador(i_cuenta_informe);
    for (const char *nombre : {"canada.json", "citm_catalog.json", "twitter.json"}) {
        benchmark::RegisterBenchmark((std::string("read/") + nombre).c_str(), BM_lee, nombre)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((std::string("scan/") + nombre).c_str(), BM_escanea, nombre)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((std::string("write_indented/") + nombre).c_str(), BM_escribe,
                                     nombre, true)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((std::string("write_minified/") + nombre).c_str(), BM_escribe,
                                     nombre, false)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::fprintf(stderr, "internal-error reports counted: %lld\n", g_informes);
    return 0;
}
