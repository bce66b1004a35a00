// The reserved words of JSON text: one table, from which the reader registers them and the
// writer spells them.
#pragma once

#include <cstddef>

enum i_palabra_reservada_t {
    i_PALABRA_RESERVADA_TRUE,
    i_PALABRA_RESERVADA_FALSE,
    i_PALABRA_RESERVADA_NULL
};

struct i_palabra_reservada {
    i_palabra_reservada_t palabra;
    const char16_t *texto;
    const char *texto_utf8; // the same word in bytes, for writers of UTF-8
    size_t longitud;
};

inline constexpr i_palabra_reservada i_PALABRAS_RESERVADAS[] = {
    {i_PALABRA_RESERVADA_TRUE, u"true", "true", 4},
    {i_PALABRA_RESERVADA_FALSE, u"false", "false", 5},
    {i_PALABRA_RESERVADA_NULL, u"null", "null", 4},
};
