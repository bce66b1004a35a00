// tqjson2 side by side with peer JSON libraries (cJSON, jansson, json-c, RapidJSON's DOM,
// simdjson's DOM) on each document of bench/data, all in one run. For each document and library:
// - read/<doc>/<lib>: UTF-8 text in memory to a tree, and the tree destroyed (MB/s of input);
// - write_indented/<doc>/<lib> and write_minified/<doc>/<lib>: the tree to one text in memory
//   (MB/s of output, and output_bytes);
// - memory/<doc>/<lib>: heap bytes one read tree holds (tree_bytes) and the peak while reading
//   it (peak_bytes), both over the figure before the read.
// A library without a form (simdjson writes no indented text) has no benchmark for it.
// bench/peers.py runs this and prints one table per document.
#include <benchmark/benchmark.h>

#include <cjson/cJSON.h>
#include <jansson.h>
#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <simdjson.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "counting_allocator.h"
#include "json_c_peer.h"
#include "tqjson2.h"

namespace {

// tqjson2 reports integers beyond 32 bits (the ids of twitter.json and citm_catalog.json) as
// out of range; a quiet handler counts the reports instead of printing them.
long long g_informes = 0;
void i_cuenta_informe(const char *, const char *, int) {
    ++g_informes;
}

// A document in memory, zero-terminated for the libraries that want it, and with the padding
// simdjson requires, made once as its users do when they load a file.
struct Documento {
    std::string nombre;
    std::string texto;
    simdjson::padded_string relleno;
};

Documento i_lee_documento(const std::string &nombre) {
    std::ifstream fichero(std::string(TQ_BENCH_DATA_DIR) + "/" + nombre, std::ios::binary);
    std::ostringstream bytes;
    bytes << fichero.rdbuf();
    std::string texto = bytes.str();
    simdjson::padded_string relleno(texto);
    return Documento{nombre, std::move(texto), std::move(relleno)};
}

// Each library as one tree type: lee reads the document into it (false when it does not read),
// destruye frees it, escribe writes it to one text in memory, frees the text and returns its
// size in bytes.

struct Tqjson2 {
    static constexpr const char *nombre = "tqjson2";
    static constexpr bool tiene_indentado = true;
    tqjson2_nodo_t *raiz = nullptr;

    bool lee(const Documento &d) {
        return tqjson2_se_lee_texto_utf8(d.texto.c_str(), &raiz) == CIERTO;
    }
    void destruye() { tqjson2_destruye_nodo(&raiz); }
    size_t escribe(bool indentado) const {
        char *salida = indentado ? tqjson2_genera_texto_utf8(raiz)
                                 : tqjson2_genera_texto_utf8_minificado(raiz);
        const size_t bytes = std::strlen(salida);
        marlstr_destruye(&salida);
        return bytes;
    }
};

struct CJson {
    static constexpr const char *nombre = "cJSON";
    static constexpr bool tiene_indentado = true;
    cJSON *raiz = nullptr;

    bool lee(const Documento &d) {
        raiz = cJSON_ParseWithLength(d.texto.data(), d.texto.size());
        return raiz != nullptr;
    }
    void destruye() {
        cJSON_Delete(raiz);
        raiz = nullptr;
    }
    // cJSON indents with one tab a level.
    size_t escribe(bool indentado) const {
        char *salida = indentado ? cJSON_Print(raiz) : cJSON_PrintUnformatted(raiz);
        const size_t bytes = std::strlen(salida);
        cJSON_free(salida);
        return bytes;
    }
};

struct Jansson {
    static constexpr const char *nombre = "jansson";
    static constexpr bool tiene_indentado = true;
    json_t *raiz = nullptr;

    bool lee(const Documento &d) {
        json_error_t error;
        raiz = json_loadb(d.texto.data(), d.texto.size(), 0, &error);
        return raiz != nullptr;
    }
    void destruye() {
        json_decref(raiz);
        raiz = nullptr;
    }
    size_t escribe(bool indentado) const {
        char *salida = json_dumps(raiz, indentado ? JSON_INDENT(4) : JSON_COMPACT);
        const size_t bytes = std::strlen(salida);
        std::free(salida);
        return bytes;
    }
};

struct JsonC {
    static constexpr const char *nombre = "json-c";
    static constexpr bool tiene_indentado = true;
    json_c_peer::Arbol *raiz = nullptr;

    bool lee(const Documento &d) {
        raiz = json_c_peer::lee(d.texto.c_str());
        return raiz != nullptr;
    }
    void destruye() {
        json_c_peer::destruye(raiz);
        raiz = nullptr;
    }
    size_t escribe(bool indentado) const { return json_c_peer::escribe(raiz, indentado); }
};

struct RapidJson {
    static constexpr const char *nombre = "RapidJSON";
    static constexpr bool tiene_indentado = true;
    std::unique_ptr<rapidjson::Document> raiz;

    bool lee(const Documento &d) {
        raiz = std::make_unique<rapidjson::Document>();
        raiz->Parse(d.texto.data(), d.texto.size());
        return !raiz->HasParseError();
    }
    void destruye() { raiz.reset(); }
    // Each write into a new buffer, as the other libraries return a new text.
    size_t escribe(bool indentado) const {
        rapidjson::StringBuffer salida;
        if (indentado) {
            rapidjson::PrettyWriter<rapidjson::StringBuffer> escritor(salida);
            raiz->Accept(escritor);
        } else {
            rapidjson::Writer<rapidjson::StringBuffer> escritor(salida);
            raiz->Accept(escritor);
        }
        return salida.GetSize();
    }
};

struct Simdjson {
    static constexpr const char *nombre = "simdjson";
    static constexpr bool tiene_indentado = false; // 3.0.1 writes minified text only
    // The tree lives in its parser's buffers, which the parser reuses from one document to the
    // next: the timed loops share one parser made outside them, as simdjson's users do, so a read
    // allocates nothing once the buffers have grown, and destroying a tree is a no-op. The memory
    // measurement gives each tree a parser of its own, whose buffers are what the tree holds.
    std::unique_ptr<simdjson::dom::parser> propio;
    simdjson::dom::parser *parser = nullptr;
    simdjson::dom::element raiz;

    static simdjson::dom::parser &compartido() {
        static simdjson::dom::parser parser;
        return parser;
    }
    bool lee(const Documento &d) {
        if (!parser)
            parser = &compartido();
        return parser->parse(d.relleno).get(raiz) == simdjson::SUCCESS;
    }
    bool lee_con_parser_propio(const Documento &d) {
        propio = std::make_unique<simdjson::dom::parser>();
        parser = propio.get();
        return lee(d);
    }
    void destruye() {
        raiz = {};
        parser = nullptr;
        propio.reset();
    }
    size_t escribe(bool) const { return simdjson::minify(raiz).size(); }
};

template <class L> bool i_lee_aislado(L &arbol, const Documento &d) {
    if constexpr (requires { arbol.lee_con_parser_propio(d); })
        return arbol.lee_con_parser_propio(d);
    else
        return arbol.lee(d);
}

template <class L> void BM_lee(benchmark::State &state, const Documento *d) {
    for (auto _ : state) {
        L arbol;
        if (!arbol.lee(*d)) {
            state.SkipWithError("the document did not read");
            return;
        }
        benchmark::ClobberMemory();
        arbol.destruye();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(d->texto.size()));
}

template <class L> void BM_escribe(benchmark::State &state, const Documento *d, bool indentado) {
    L arbol;
    if (!arbol.lee(*d)) {
        state.SkipWithError("the document did not read");
        return;
    }
    int64_t bytes = 0;
    for (auto _ : state) {
        bytes = static_cast<int64_t>(arbol.escribe(indentado));
        benchmark::DoNotOptimize(bytes);
    }
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["output_bytes"] = static_cast<double>(bytes);
    arbol.destruye();
}

// One read, counted. A read before it, outside the count, leaves out what a library sets up
// once per process (hash seeds, the choice of a SIMD kernel).
template <class L> void BM_memoria(benchmark::State &state, const Documento *d) {
    {
        L previo;
        if (!i_lee_aislado(previo, *d)) {
            state.SkipWithError("the document did not read");
            return;
        }
        previo.destruye();
    }
    contador::Uso antes, leido, despues;
    for (auto _ : state) {
        L arbol;
        antes = contador::empieza();
        const bool leyo = i_lee_aislado(arbol, *d);
        leido = contador::lee();
        arbol.destruye();
        despues = contador::termina();
        if (!leyo) {
            state.SkipWithError("the document did not read");
            return;
        }
    }
    const auto menos = [](size_t a, size_t b) {
        return static_cast<double>(a) - static_cast<double>(b);
    };
    state.counters["tree_bytes"] = menos(leido.actual, antes.actual);
    state.counters["peak_bytes"] = menos(leido.pico, antes.actual);
    state.counters["pool_bytes"] = menos(leido.de_pool, antes.de_pool);
    // Expected 0: anything else is a block the library keeps after the tree is gone, or one it
    // took before the count and freed during it.
    state.counters["residual_bytes"] = menos(despues.actual, antes.actual);
}

template <class L> void i_registra(const Documento *d) {
    const std::string sufijo = "/" + d->nombre + "/" + L::nombre;
    benchmark::RegisterBenchmark(("read" + sufijo).c_str(), BM_lee<L>, d)
        ->Unit(benchmark::kMillisecond);
    if (L::tiene_indentado)
        benchmark::RegisterBenchmark(("write_indented" + sufijo).c_str(), BM_escribe<L>, d, true)
            ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("write_minified" + sufijo).c_str(), BM_escribe<L>, d, false)
        ->Unit(benchmark::kMillisecond);
}

template <class L> void i_registra_memoria(const Documento *d) {
    benchmark::RegisterBenchmark(("memory/" + d->nombre + "/" + L::nombre).c_str(), BM_memoria<L>,
                                 d)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

template <class... L> void i_registra_todas(const Documento *d) {
    (i_registra<L>(d), ...);
    (i_registra_memoria<L>(d), ...);
}

} // namespace

int main(int argc, char **argv) {
    error_interno_set_manejador(i_cuenta_informe);
    std::vector<std::unique_ptr<Documento>> documentos;
    // Every document of bench/data, in name order.
    std::vector<std::string> nombres;
    for (const auto &entrada : std::filesystem::directory_iterator(TQ_BENCH_DATA_DIR))
        if (entrada.path().extension() == ".json")
            nombres.push_back(entrada.path().filename().string());
    std::sort(nombres.begin(), nombres.end());
    for (const std::string &nombre : nombres) {
        documentos.push_back(std::make_unique<Documento>(i_lee_documento(nombre)));
        i_registra_todas<Tqjson2, CJson, Jansson, JsonC, RapidJson, Simdjson>(
            documentos.back().get());
    }
    benchmark::AddCustomContext("cJSON", cJSON_Version());
    benchmark::AddCustomContext("jansson", JANSSON_VERSION);
    benchmark::AddCustomContext("json-c", json_c_peer::version());
    benchmark::AddCustomContext("RapidJSON", RAPIDJSON_VERSION_STRING);
    benchmark::AddCustomContext("simdjson",
                                std::to_string(simdjson::SIMDJSON_VERSION_MAJOR) + "." +
                                    std::to_string(simdjson::SIMDJSON_VERSION_MINOR) + "." +
                                    std::to_string(simdjson::SIMDJSON_VERSION_REVISION) + ", " +
                                    simdjson::get_active_implementation()->name() + " kernel");
    benchmark::AddCustomContext("tqjson2 small-block pool counted",
                                contador::cuenta_pool() ? "yes" : "no (none exported)");
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::fprintf(stderr, "tqjson2 internal-error reports counted: %lld\n", g_informes);
    return 0;
}
