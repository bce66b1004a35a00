// The pool of small blocks holds what the application holds, plus a bounded slack, whatever the
// pattern of threads: checked on the memory component's own counters, over the process.
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "support/texts.h"
#include "support/tree_consumer.h"
#include "tqjson2.h"

namespace {

marlspy_estado_bloques_pequenos_t state() {
    marlspy_estado_bloques_pequenos_t estado;
    marlspy_nousar_estado_bloques_pequenos(&estado);
    return estado;
}

// Bytes of chunks that hold blocks, or are being carved: what the pool holds beyond its cache.
size_t in_chunks(const marlspy_estado_bloques_pequenos_t &estado) {
    return estado.retenido - estado.en_cache;
}

constexpr size_t kCache = 8u << 20;
// A thread keeps the chunk it carves of each size class.
constexpr size_t kCurrentChunks = 48u << 16;

tqjson2_nodo_t *read(const std::string &texto) {
    tqjson2_nodo_t *raiz = nullptr;
    EXPECT_EQ(tqjson2_se_lee_texto_utf8(texto.c_str(), &raiz), CIERTO);
    return raiz;
}

// The bytes one tree of `texto` holds in the pool, after a warm-up read; skips where the pool is
// off (sanitized builds take every block from the system).
size_t tree_bytes(const std::string &texto) {
    tqjson2_nodo_t *raiz = read(texto);
    tqjson2_destruye_nodo(&raiz);
    const size_t antes = state().en_uso;
    raiz = read(texto);
    const size_t arbol = state().en_uso - antes;
    tqjson2_destruye_nodo(&raiz);
    EXPECT_EQ(state().en_uso, antes);
    return arbol;
}

#define SKIP_WITHOUT_POOL(arbol)                                                                   \
    if ((arbol) == 0)                                                                              \
    GTEST_SKIP() << "the pool is off in this build"

// One thread reads, another destroys, at most two trees alive: the blocks the consumer frees go
// back to the producer's chunks, so what the pool holds stops growing.
TEST(Pool, BlocksFreedOnAnotherThreadAreReusedByTheThreadThatTookThem) {
    const std::string texto = records_document(1, 2000);
    const size_t arbol = tree_bytes(texto);
    SKIP_WITHOUT_POOL(arbol);
    const size_t en_uso = state().en_uso;
    size_t inicio, mitad, final;
    {
        TreeConsumer consumer;
        const auto hand_over = [&](int reads) {
            for (int i = 0; i < reads; ++i)
                consumer.hand_over(read(texto));
            consumer.wait_taken();
        };
        hand_over(20);
        inicio = state().retenido;
        hand_over(100);
        mitad = state().retenido;
        hand_over(100);
        final = state().retenido;
    }
    EXPECT_LE(final, inicio + 4 * arbol);
    EXPECT_LE(final, mitad + 2 * arbol);
    EXPECT_EQ(state().en_uso, en_uso);
}

// A thread per read: each heap of an ended thread is taken over by the next thread. A tree kept
// by a thread that ends is destroyed on another: the parked heap's chunks go back.
TEST(Pool, TheHeapOfAThreadThatEndsIsTakenOverAndATreeThatOutlivesItIsGivenBack) {
    const std::string texto = records_document(1, 500), grande = records_document(1, 4000);
    const size_t arbol = tree_bytes(texto), arbol_grande = tree_bytes(grande);
    SKIP_WITHOUT_POOL(arbol);
    const auto threads = [&](int count) {
        for (int i = 0; i < count; ++i)
            std::thread([&] {
                tqjson2_nodo_t *raiz = read(texto);
                tqjson2_destruye_nodo(&raiz);
            }).join();
    };
    const size_t en_uso = state().en_uso;
    threads(5);
    const size_t inicio = state().retenido;
    threads(100);
    EXPECT_LE(state().retenido, inicio + arbol);
    EXPECT_EQ(state().en_uso, en_uso);

    const marlspy_estado_bloques_pequenos_t antes = state();
    tqjson2_nodo_t *raiz = nullptr;
    std::thread([&] { raiz = read(grande); }).join();
    EXPECT_EQ(state().en_uso, antes.en_uso + arbol_grande);
    tqjson2_destruye_nodo(&raiz);
    const marlspy_estado_bloques_pequenos_t despues = state();
    EXPECT_EQ(despues.en_uso, antes.en_uso);
    EXPECT_LE(in_chunks(despues), in_chunks(antes) + kCurrentChunks);
}

// Destroying a large tree gives its chunks back to the system beyond a small cache, and the peak
// saw the whole tree.
TEST(Pool, EmptyChunksGoBackToTheSystemBeyondASmallCache) {
    const std::string texto = records_document(1, 100000);
    const size_t arbol = tree_bytes(texto);
    SKIP_WITHOUT_POOL(arbol);
    ASSERT_GT(arbol, 3 * kCache);
    marlspy_nousar_reinicia_pico_bloques_pequenos();
    const marlspy_estado_bloques_pequenos_t antes = state();
    tqjson2_nodo_t *raiz = read(texto);
    EXPECT_GE(in_chunks(state()), arbol);
    tqjson2_destruye_nodo(&raiz);
    const marlspy_estado_bloques_pequenos_t despues = state();
    EXPECT_GE(despues.pico, antes.en_uso + arbol);
    EXPECT_LE(despues.pico, antes.en_uso + arbol + (16u << 10));
    EXPECT_LE(despues.en_cache, kCache);
    EXPECT_LE(in_chunks(despues), in_chunks(antes) + kCurrentChunks);
    EXPECT_GE(despues.devuelto, antes.devuelto + arbol - kCache - kCurrentChunks);
}

} // namespace
