// Base64 encoding and decoding of 64 MiB of random bytes, in MB/s of the bytes on the binary
// side (input of the encoder, output of the decoder).
#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "tqjson2.h"

namespace {

constexpr uint32_t kBytes = 64u << 20;

const std::string &bytes() {
    static const std::string datos = [] {
        std::string d(kBytes, '\0');
        std::mt19937_64 azar(1);
        for (size_t i = 0; i < d.size(); i += 8) {
            const uint64_t r = azar();
            d.replace(i, 8, reinterpret_cast<const char *>(&r), 8);
        }
        return d;
    }();
    return datos;
}

const std::string &text() {
    static const std::string texto = [] {
        uint32_t n = 0;
        char *t = tqjsonbase64_encode(bytes().data(), kBytes, &n);
        std::string s(t, n);
        marlspy_nousar_free_pp(&t, 1);
        return s;
    }();
    return texto;
}

void encode(benchmark::State &state) {
    const std::string &d = bytes();
    for (auto _ : state) {
        uint32_t n = 0;
        char *t = tqjsonbase64_encode(d.data(), kBytes, &n);
        benchmark::DoNotOptimize(t);
        marlspy_nousar_free_pp(&t, 1);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * kBytes);
}

void decode(benchmark::State &state) {
    const std::string &t = text();
    for (auto _ : state) {
        uint32_t n = 0;
        unsigned char *d = tqjsonbase64_decode(t.data(), static_cast<uint32_t>(t.size()), &n);
        benchmark::DoNotOptimize(d);
        marlspy_nousar_free_pp(&d, 1);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * kBytes);
}

} // namespace

BENCHMARK(encode)->Unit(benchmark::kMillisecond);
BENCHMARK(decode)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
