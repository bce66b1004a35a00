// The condition texts of tqjson2's reports, other than null checks (which i_VERIFICA_NO_NULO
// spells from the pointer's name). Applications and the tqjson tool match reports by these texts,
// so each is written here once, and a check names the text it reports rather than having its
// code spell it.
#pragma once

#include <cstdint>

#include "companion/verifica.h"

// A check reported with a named text, against the module of the file.
#define i_VERIFICA_TEXTO(cumple, texto) i_verifica((cumple), (texto), i_MODULO, __LINE__)

// "nodo->tipo == TQJSON_TIPO_..." by the kind a node must have, indexed by that kind.
#define i_TEXTO_TIPO_NODO(tipo) "nodo->tipo == " #tipo
inline constexpr const char *i_TEXTO_NODO_DE_TIPO[] = {
    i_TEXTO_TIPO_NODO(TQJSON_TIPO_OBJETO), i_TEXTO_TIPO_NODO(TQJSON_TIPO_ARRAY),
    i_TEXTO_TIPO_NODO(TQJSON_TIPO_CADENA), i_TEXTO_TIPO_NODO(TQJSON_TIPO_ENTERO),
    i_TEXTO_TIPO_NODO(TQJSON_TIPO_DOUBLE),
};

// Trees.
inline constexpr char i_TEXTO_OBJETO_ES_OBJETO[] = "objeto->tipo == TQJSON_TIPO_OBJETO";
inline constexpr char i_TEXTO_NODO_ARRAY_ES_ARRAY[] = "nodo_array->tipo == TQJSON_TIPO_ARRAY";
inline constexpr char i_TEXTO_NODO_OBJETO_ES_OBJETO[] = "nodo_objeto->tipo == TQJSON_TIPO_OBJETO";
inline constexpr char i_TEXTO_TIPO_NUEVO_BASICO[] = "i_es_tipo_basico(tipo) == CIERTO";
inline constexpr char i_TEXTO_TIPO_ACTUAL_BASICO[] = "i_es_tipo_basico(nodo->tipo) == CIERTO";

// Escape sequences.
inline constexpr char i_TEXTO_SE_CODIFICA[] = "se_codifica == CIERTO";
inline constexpr char i_TEXTO_SE_DECODIFICA[] = "se_decodifica == CIERTO";
inline constexpr char i_TEXTO_SECUENCIA_NO_VACIA[] = "longitud_secuencia_escape > 0";
inline constexpr char i_TEXTO_SECUENCIA_CABE[] =
    "tam_secuencia < (size_t)(i_TAM_BUFFER_SECUENCIA_ESCAPE - 1)";

// Reading.
inline constexpr char i_TEXTO_RAIZ_ABRE_CONTENEDOR[] = "token == ANLEX_CORCH_ABR";
inline constexpr char i_TEXTO_NEGATIVO_ES_REAL[] = "token == ANLEX_CTE_REAL";
inline constexpr char i_TEXTO_NEGATIVO_CABE[] =
    "cambtipo_se_puede_double_a_long(cte_double) == CIERTO";
inline constexpr char i_TEXTO_PALABRA_ES_NULL[] =
    "anlex_get_palabra_reservada_enum(lex, i_palabra_reservada_t) == i_PALABRA_RESERVADA_NULL";

// Writing.
inline constexpr char i_TEXTO_RAIZ_ES_CONTENEDOR[] =
    "nodo_raiz->tipo == TQJSON_TIPO_OBJETO || nodo_raiz->tipo == TQJSON_TIPO_ARRAY";

// Base64.
inline constexpr char i_TEXTO_SALIDA_EN_ORDEN[] = "out <= pos";

// Named values and settings.
inline constexpr char i_TEXTO_ETIQUETA_NO_EXISTE[] = "existe == FALSO";
inline constexpr char i_TEXTO_SIN_DATO[] = "nodo_dato == NULL";
inline constexpr char i_TEXTO_ELEMENTO_BOOLEANO[] = "es_valor_bool == CIERTO";
inline constexpr char i_TEXTO_ELEMENTO_NUMERO[] = "es_valor_entero == CIERTO";
inline constexpr char i_TEXTO_MIEMBRO_OBJETO[] =
    "tqjson2_tipo_nodo(nodo) == TQJSON_TIPO_OBJETO && "
    "tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta, &nodo_dato) == CIERTO && "
    "tqjson2_tipo_nodo(nodo_dato) == TQJSON_TIPO_OBJETO";
inline constexpr char i_TEXTO_CABE_EN_USHORT[] = "valor < USHRT_MAX";
