#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <thread>
#include <vector>

#include "companion/block_batches.h"
#include "companion/traspaso.h"
#include "support/recording_handler.h"
#include "tqbase/memoria.h"

// The non-null hand-over reports a null pointer or address.
TEST(Memory, HandOverReturnsThePointerAndNullsTheCallers) {
    int valor = 7;
    int *propio = &valor;
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero(&propio), &valor);
    EXPECT_EQ(propio, nullptr);
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero(&propio), nullptr); // null is handed over too
    propio = &valor;
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero_no_null(&propio), &valor);
    EXPECT_EQ(propio, nullptr);
    RecordingHandler handler;
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero_no_null(&propio), nullptr);
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero_no_null(nullptr), nullptr);
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero(nullptr), nullptr);
    EXPECT_EQ(
        handler.conditions(),
        (std::vector<std::string>{"(valor) != NULL", "(puntero) != NULL", "(puntero) != NULL"}));
}

// Calloc zeroes; small blocks of every size, interleaved with large ones, keep their bytes
// through resizes in both directions and across the pool's boundary, whoever frees them; freeing
// nulls the pointer and takes a null one; the pool's use comes back to where it was. (Sanitized
// builds take every block from the system.)
TEST(Memory, BlocksKeepTheirContentThroughResizesAndFreeingNullsThePointer) {
    auto *bloque = static_cast<unsigned char *>(marlspy_nousar_calloc(16, 4));
    ASSERT_NE(bloque, nullptr);
    EXPECT_EQ(std::count(bloque, bloque + 64, 0), 64);
    bloque[63] = 0xAB;
    bloque = static_cast<unsigned char *>(marlspy_nousar_realloc(bloque, 1 << 20));
    EXPECT_EQ(bloque[63], 0xAB);
    marlspy_nousar_free_pp(&bloque, 1);
    EXPECT_EQ(bloque, nullptr);
    marlspy_nousar_free_pp(&bloque, 1); // a null block is accepted
    double *registro = i_nuevo<double>();
    *registro = 1.5;
    i_libera(&registro);
    EXPECT_EQ(registro, nullptr);
    size_t antes = 0, pico = 0;
    marlspy_nousar_uso_bloques_pequenos(&antes, nullptr);
    std::vector<unsigned char *> bloques;
    for (size_t vuelta = 0; vuelta < 3000; ++vuelta) { // far past one chunk of every class
        const size_t tam = 1 + vuelta % 80;
        auto *bloque = static_cast<unsigned char *>(marlspy_nousar_malloc(tam));
        std::memset(bloque, int(vuelta & 0xFF), tam);
        bloques.push_back(bloque);
    }
    for (size_t i = 0; i < bloques.size(); ++i) {
        const size_t tam = 1 + i % 80, nuevo = 1 + (i * 7) % 200;
        bloques[i] = static_cast<unsigned char *>(marlspy_nousar_realloc(bloques[i], nuevo));
        for (size_t j = 0; j < std::min(tam, nuevo); ++j)
            ASSERT_EQ(bloques[i][j], i & 0xFF) << i << " " << j;
    }
    marlspy_nousar_uso_bloques_pequenos(nullptr, &pico);
    for (size_t i = 1; i < bloques.size(); i += 2)
        marlspy_nousar_free_pp(&bloques[i], 1);
    std::thread otro([&] { // blocks freed by another thread go back to their chunks
        for (size_t i = 0; i < bloques.size(); i += 2)
            marlspy_nousar_free_pp(&bloques[i], 1);
        void *reusado = marlspy_nousar_malloc(16);
        marlspy_nousar_free_pp(&reusado, 1);
    });
    otro.join();
    EXPECT_GE(pico, antes);
    // What one thread takes and gives back leaves its count where it was.
    marlspy_nousar_uso_bloques_pequenos(&antes, nullptr);
    for (auto &bloque : bloques)
        bloque = static_cast<unsigned char *>(marlspy_nousar_malloc(24));
    for (auto &bloque : bloques)
        marlspy_nousar_free_pp(&bloque, 1);
    size_t despues = 0;
    marlspy_nousar_uso_bloques_pequenos(&despues, nullptr);
    EXPECT_EQ(despues, antes);
}

// Batches: every block usable on its own, across chunks and beyond the pool's sizes; freeing the
// batch (null entries passed over) brings the pool's count back.
TEST(Memory, BatchesTakeAndGiveBackBlocksOfOneSize) {
    size_t antes = 0, despues = 0;
    marlspy_nousar_uso_bloques_pequenos(&antes, nullptr);
    for (const size_t tam : {size_t{16}, size_t{40}, size_t{5000}}) {
        std::vector<void *> bloques(tam == 16 ? 9000 : 300); // 9,000 blocks of 16 span chunks
        marlspy_nousar_malloc_lote(tam, bloques.data(), static_cast<uint32_t>(bloques.size()));
        for (size_t i = 0; i < bloques.size(); ++i)
            std::memset(bloques[i], int(i & 0xFF), tam);
        for (size_t i = 0; i < bloques.size(); ++i) {
            const auto *bytes = static_cast<const unsigned char *>(bloques[i]);
            ASSERT_EQ(bytes[0], i & 0xFF) << tam << " " << i;
            ASSERT_EQ(bytes[tam - 1], i & 0xFF) << tam << " " << i;
        }
        bloques.insert(bloques.begin() + 5, nullptr);
        marlspy_nousar_free_lote(bloques.data(), static_cast<uint32_t>(bloques.size()));
    }
    marlspy_nousar_uso_bloques_pequenos(&despues, nullptr);
    EXPECT_EQ(despues, antes);
}
