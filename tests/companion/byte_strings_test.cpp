#include <gtest/gtest.h>

#include "companion/byte_strings.h"
#include "support/recording_handler.h"
#include "support/texts.h"

TEST(ByteStrings, CopyConcatenateAndRepeat) {
    char *texto = cad_copia_cadena("");
    cad_concatena(&texto, "ab");
    cad_concatena(&texto, "");
    cad_concatena(&texto, "c\xC3\xA9");
    EXPECT_EQ(take(texto), "abc\xC3\xA9");
    EXPECT_EQ(take(creacadena_con_caracter(8, ' ')), "        ");
    EXPECT_EQ(take(creacadena_con_caracter(0, ' ')), "");
    EXPECT_EQ(take(creacadena(4)), "");
}

TEST(ByteStrings, EqualityIgnoringCaseFoldsAsciiLettersOnly) {
    const struct {
        const char *a, *b;
        tqbool iguales;
    } rows[] = {{"true", "TRUE", CIERTO}, {"False", "fALSE", CIERTO},     {"", "", CIERTO},
                {"true", "true ", FALSO}, {"true", "tru", FALSO},         {"@", "`", FALSO},
                {"[", "{", FALSO},        {"\xC3\xA9", "\xC3\x89", FALSO}}; // é and É differ
    for (const auto &row : rows)
        EXPECT_EQ(cad_cadenas_iguales_may_o_min(row.a, row.b), row.iguales)
            << row.a << " / " << row.b;
}

TEST(ByteStrings, NullArgumentsAreReported) {
    RecordingHandler handler;
    char *copia = cad_copia_cadena(nullptr);
    cad_concatena(&copia, nullptr);
    EXPECT_EQ(cad_cadenas_iguales_may_o_min(nullptr, "a"), FALSO);
    EXPECT_STREQ(copia, "");
    marlstr_destruye(&copia);
    marlstr_destruye(&copia); // freeing a null string is no error
    EXPECT_EQ(
        handler.conditions(),
        (std::vector<std::string>{"(cadena) != NULL", "(sufijo) != NULL", "(cadena_1) != NULL"}));
}
