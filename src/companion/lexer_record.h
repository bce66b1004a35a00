// The lexer's record, shared by the scanner and the input loader of the lexer component.
#pragma once

#include <string>
#include <vector>

#include "lexer.h"

struct anlex_palabras_reservadas {
    struct i_entrada {
        std::string palabra; // UTF-8
        uint32_t id;
    };
    std::vector<i_entrada> entradas;
};

enum class i_origen_lexico { memoria, fichero, fichero_fread };

struct anlex {
    anlex_palabras_reservadas_t *palabras;
    bool palabras_propias;
    i_origen_lexico origen;
    std::u16string nombre_fichero; // file lexers, read when the analysis starts
    bool cargado;
    uint32_t longitud_buffer;
    bool criterio_json;

    // The input: UTF-8 from `texto` to `fin`, where a zero byte always stands.
    const char *texto;
    const char *fin;
    std::string propio; // the input when the lexer holds it (files, wide text)

    // The scan and the current token.
    const char *pos;
    uint32_t token;
    const char *inicio_token;
    const char *fin_token;
    bool literal_con_barras;
    uint32_t id_palabra;
    std::u16string literal_ancho;
};

// Loads a file lexer's input into `propio` as UTF-8 and points `texto` and `fin` at it.
void i_carga_fichero(anlex *lex);
// Points `texto` and `fin` at `propio`, ending the input at its first zero byte.
void i_usa_texto_propio(anlex *lex);
