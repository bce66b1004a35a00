#include <gtest/gtest.h>

#include "companion/traspaso.h"
#include "support/recording_handler.h"
#include "tqbase/memoria.h"

TEST(Memory, HandOverReturnsThePointerAndNullsTheCallers) {
    RecordingHandler handler;
    int valor = 7;
    int *propio = &valor;
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero(&propio), &valor);
    EXPECT_EQ(propio, nullptr);
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero(&propio), nullptr); // null is handed over too
    propio = &valor;
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero_no_null(&propio), &valor);
    EXPECT_EQ(propio, nullptr);
    EXPECT_TRUE(handler.reports().empty());
}

TEST(Memory, NonNullHandOverReportsANullPointerOrAddress) {
    RecordingHandler handler;
    int *nulo = nullptr;
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero_no_null(&nulo), nullptr);
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero_no_null(nullptr), nullptr);
    EXPECT_EQ(marlspy_nousar_asigna_doble_puntero(nullptr), nullptr);
    EXPECT_EQ(
        handler.conditions(),
        (std::vector<std::string>{"(valor) != NULL", "(puntero) != NULL", "(puntero) != NULL"}));
}

TEST(Memory, BlocksAreUsableResizableAndFreedWithTheirPointerNulled) {
    auto *bloque = static_cast<unsigned char *>(marlspy_nousar_calloc(16, 4));
    ASSERT_NE(bloque, nullptr);
    for (int i = 0; i < 64; ++i)
        EXPECT_EQ(bloque[i], 0) << i;
    bloque[63] = 0xAB;
    bloque = static_cast<unsigned char *>(marlspy_nousar_realloc(bloque, 1 << 20));
    EXPECT_EQ(bloque[63], 0xAB);
    marlspy_nousar_free_pp(&bloque, 1);
    EXPECT_EQ(bloque, nullptr);
    marlspy_nousar_free_pp(&bloque, 1); // a null block is accepted

    struct Registro {
        double a, b;
    };
    Registro *registro = i_nuevo<Registro>();
    registro->a = 1.5;
    i_libera(&registro);
    EXPECT_EQ(registro, nullptr);
}
