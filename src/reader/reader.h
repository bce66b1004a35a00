// The reader: JSON text to a tree, through the tokens of the lexer component.
#pragma once

#include "tree/nodes.h"

// Bytes the lexer asks of a file at a time.
inline constexpr uint32_t i_LONGITUD_BUFFER_LECTURA = 8388608;
// Objects and arrays nested deeper than this refuse the whole read.
inline constexpr uint32_t i_PROFUNDIDAD_MAXIMA = 1024;

// A new table of the reserved words true, false and null, under their i_palabra_reservada_t.
anlex_palabras_reservadas_t *i_crea_palabras_reservadas();

// Sets the lexer up and reads the root: CIERTO with the tree in `*nodo`, FALSO with null there.
tqbool i_lee_json(anlex_t *lex, tqbool decodifica_secuencias_escape, tqjson2_nodo_t **nodo);
