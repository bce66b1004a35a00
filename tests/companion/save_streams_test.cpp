#include <gtest/gtest.h>

#include "support/recording_handler.h"
#include "support/texts.h"
#include "tqbase.h"

// Values come back in the order written, as often as the stream is rewound; reading past the
// end is reported, gives FALSO or an empty text and leaves a cut text unread.
TEST(SaveStreams, ValuesComeBackInOrderAndReadingPastTheEndIsReported) {
    marlsave_t *s = marlsave_crea_en_memoria();
    const std::string largo(100000, '\xE9');
    marlsave_graba_bool(CIERTO, s);
    marlsave_graba_cadena_como_buffer("", s);
    marlsave_graba_bool(FALSO, s);
    marlsave_graba_cadena_como_buffer(largo.c_str(), s);
    for (int vuelta = 0; vuelta < 2; ++vuelta) {
        marlsave_rebobina(s);
        EXPECT_EQ(marlsave_lee_bool(s), CIERTO);
        EXPECT_EQ(take(marlsave_lee_cadena_como_buffer(s)), "");
        EXPECT_EQ(marlsave_lee_bool(s), FALSO);
        EXPECT_EQ(take(marlsave_lee_cadena_como_buffer(s)), largo);
    }
    RecordingHandler handler;
    EXPECT_EQ(marlsave_lee_bool(s), FALSO);
    EXPECT_EQ(take(marlsave_lee_cadena_como_buffer(s)), "");
    marlsave_destruye(&s);
    EXPECT_EQ(s, nullptr);
    // Four flags read as a text claim 0x01010101 bytes: the text is refused and the stream
    // stays where it began.
    s = marlsave_crea_en_memoria();
    for (int i = 0; i < 4; ++i)
        marlsave_graba_bool(CIERTO, s);
    EXPECT_EQ(take(marlsave_lee_cadena_como_buffer(s)), "");
    EXPECT_EQ(marlsave_lee_bool(s), CIERTO);
    EXPECT_EQ(handler.conditions(),
              (std::vector<std::string>{"n <= quedan", "n <= quedan", "n <= quedan"}));
    marlsave_destruye(&s);
}
