// tqbase lexer component: the tokens of JSON-like text, read from UTF-8 or UTF-16 text in
// memory or from a file. The lexer scans UTF-8 bytes in place; other inputs are put into UTF-8
// once, in a form that reads back to the same UTF-16 units, so every input gives the same
// tokens for the same characters.
//
// Tokens: blanks (space, tab, line feed, carriage return, vertical tab, form feed) separate
// them; a zero byte or unit ends the input. Punctuation is one character. A number is JSON's,
// without the sign (a minus sign is a token of its own): digits alone make an integer
// constant, a fraction or an exponent a real constant. A word is an ASCII letter or underscore
// followed by letters, digits and underscores: a reserved word when the table holds it
// (compared case-sensitively), an identifier otherwise. Any other character is an error token
// of its own. A literal runs between quotation marks; under the JSON criterion a backslash
// escapes the next unit, and a raw line feed or the end of the input before the closing mark
// makes the token an error token that ends before the line feed.
//
// Lines and columns count from 1; columns count UTF-16 code units.
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "tqbase/tipos.h"

TQBASE_C_INICIO

#define ANLEX_FIN               0  /* the end of the input */
#define ANLEX_ERROR             1  /* a character that begins no token, or a broken literal */
#define ANLEX_MENOS             14 /* - */
#define ANLEX_CORCH_ABR         20 /* [ */
#define ANLEX_CORCH_CER         21 /* ] */
#define ANLEX_LLAVE_ABR         22 /* { */
#define ANLEX_LLAVE_CER         23 /* } */
#define ANLEX_COMA              29 /* , */
#define ANLEX_DOS_PUNTOS        31 /* : */
#define ANLEX_IDENTIFICADOR     35 /* a word the table does not hold */
#define ANLEX_LITERAL           36 /* "..." */
#define ANLEX_CTE_ENTERA        46 /* digits */
#define ANLEX_CTE_REAL          47 /* digits with a fraction or an exponent */
#define ANLEX_PALABRA_RESERVADA 50

typedef struct anlex anlex_t;
typedef struct anlex_palabras_reservadas anlex_palabras_reservadas_t;

/* Reserved words: a table of words, each under an id. */
TQBASE_API anlex_palabras_reservadas_t *anlex_crea_palabras_reservadas_vacio(void);
/* Adds a copy of `palabra` under `id`. */
TQBASE_API void anlex_append_palabra_reservada_ulong_u(anlex_palabras_reservadas_t *palabras,
                                                       uint32_t id, const char16_t *palabra);
TQBASE_API void anlex_destruye_palabras_reservadas(anlex_palabras_reservadas_t **palabras);

/* Creations. Each receives the address of the caller's table pointer: with `toma_palabras`
   CIERTO the lexer takes the table over (it is destroyed with the lexer and the caller's
   pointer is nulled); otherwise it borrows it, and the table must outlive the lexer.
   The file lexers read the file when the analysis starts: UTF-8, with or without a byte-order
   mark, or UTF-16 of either byte order behind its mark. A file that cannot be read reads as
   empty. The text of the memory lexers stays the caller's and must outlive the lexer. */
TQBASE_API anlex_t *anlex_crea_analizando_fichero(const char16_t *nombre_fichero,
                                                  anlex_palabras_reservadas_t **palabras,
                                                  tqbool toma_palabras);
/* As anlex_crea_analizando_fichero, reading through buffered stream reads. */
TQBASE_API anlex_t *anlex_crea_analizando_fichero_lectura_con_fread(
    const char16_t *nombre_fichero, anlex_palabras_reservadas_t **palabras, tqbool toma_palabras);
/* Over wide (UTF-16) text. */
TQBASE_API anlex_t *anlex_crea_analizando_memoria(const char16_t *texto,
                                                  anlex_palabras_reservadas_t **palabras,
                                                  tqbool toma_palabras);
/* Over UTF-8 text, scanned where it stands: the same tokens as over its UTF-16 form. */
TQBASE_API anlex_t *anlex_crea_analizando_memoria_utf8(const char *texto,
                                                       anlex_palabras_reservadas_t **palabras,
                                                       tqbool toma_palabras);

/* Bytes a file lexer asks of the system at a time. */
TQBASE_API void anlex_set_longitud_buffer_lectura(anlex_t *lex, uint32_t longitud);
/* Literals follow JSON's rules (see above); without it a literal runs to the next quotation
   mark, backslashes and line feeds included. */
TQBASE_API void anlex_set_atributo_aplicar_criterio_json_para_analisis_literales(anlex_t *lex);
/* Starts the analysis at the beginning of the input, before its first token. */
TQBASE_API void anlex_inicia(anlex_t *lex);

/* Makes the next token the current one and returns its kind. */
TQBASE_API uint32_t anlex_lee_token(anlex_t *lex);
/* The current token's kind (ANLEX_FIN before the first). */
TQBASE_API uint32_t anlex_get_token(const anlex_t *lex);
/* Reads tokens until the current one is of kind `token_1` or `token_2` (CIERTO) or the input
   ends (FALSO). `maximo_tokens` bounds the tokens read; 0 sets no bound. */
TQBASE_API tqbool anlex_salta_hasta_token2_igual(anlex_t *lex, uint32_t token_1, uint32_t token_2,
                                                 uint32_t maximo_tokens);

/* The current literal without its quotation marks, as wide text in which an escaped quotation
   mark stands bare and every other escape sequence as written. The lexer's own text, valid
   until the next token. */
TQBASE_API const char16_t *anlex_get_literal(anlex_t *lex);
/* The current literal's bytes between its quotation marks as they stand in the UTF-8 input,
   escape sequences unresolved; `*con_barras` says whether a backslash stands among them. */
TQBASE_API const char *anlex_get_literal_utf8(const anlex_t *lex, size_t *longitud,
                                              tqbool *con_barras);
/* Where the current token ends in the UTF-8 input, and in `*fin_texto` where the input ends (a
   zero byte stands there): a reader that scans the rest by itself goes on from there, and
   hands the token it stops at back with anlex_situa_en_token. */
TQBASE_API const char *anlex_get_fin_token_utf8(const anlex_t *lex, const char **fin_texto);
/* The current integer or real constant's value (correctly rounded; beyond the range of a
   double, an infinity). */
TQBASE_API double anlex_get_cte_entera_double(const anlex_t *lex);
TQBASE_API double anlex_get_cte_real(const anlex_t *lex);
/* The id of the current reserved word. */
TQBASE_API uint32_t anlex_get_id_palabra_reservada_ulong(const anlex_t *lex);
#define anlex_get_palabra_reservada_enum(lex, tipo_enum)                                           \
    ((tipo_enum)anlex_get_id_palabra_reservada_ulong(lex))

/* A token as the lexer keeps its current one, for a reader that scans by itself and hands the
   token it stops at back (anlex_situa_en_token). */
typedef struct anlex_token {
    const char *inicio;  /* its first byte in the UTF-8 input */
    uint32_t longitud;   /* its bytes (a literal's with its quotation marks) */
    uint16_t token;      /* its kind */
    tqbool barras;       /* a literal with a backslash among its bytes */
    uint32_t id_palabra; /* a reserved word's id */
} anlex_token_t;

/* Makes a token of this lexer's input the current one, for the operations that read the
   current token (its literal, its position). */
TQBASE_API void anlex_situa_en_token(anlex_t *lex, const anlex_token_t *token);
/* The value of an integer or real constant token, as anlex_get_cte_entera_double and
   anlex_get_cte_real give it. */
TQBASE_API double anlex_valor_constante(const anlex_token_t *token);

/* Where the current token begins (at the end of the input: where it ends). */
TQBASE_API void anlex_linea_y_columna_actual(const anlex_t *lex, int32_t *linea, int32_t *columna);
/* Destroys the lexer (and a table it took over) and nulls the caller's pointer. */
TQBASE_API void anlex_destruye(anlex_t **lex);

TQBASE_C_FIN
