/** @file
   tqjson2: JSON documents as trees of nodes, built, queried, written and read in process.

   Ownership in a word: the caller owns every root node it creates or reads and destroys it with
   tqjson2_destruye_nodo, which destroys everything the node owns. A function that takes
   something over receives the address of the caller's pointer and sets that pointer to null.
   Texts and arrays returned are new and the caller's unless a function says it returns the
   tree's own data. A broken precondition (a null pointer, a wrong node kind) is an
   internal-error report through the handler of tqbase/error_interno.h. */
#ifndef TQJSON2_H
#define TQJSON2_H

#include "tqbase.h"

#if defined(_WIN32)
#if defined(TQJSON2_BUILD)
#define TQJSON2_API __declspec(dllexport)
#else
#define TQJSON2_API __declspec(dllimport)
#endif
#else
/** Marks the library's exports. */
#define TQJSON2_API __attribute__((visibility("default")))
#endif

TQBASE_C_INICIO

/* Node kinds, as tqjson2_tipo_nodo answers them. */
#define TQJSON_TIPO_OBJETO   0 /**< an object */
#define TQJSON_TIPO_ARRAY    1 /**< an array */
#define TQJSON_TIPO_CADENA   2 /**< a string */
#define TQJSON_TIPO_ENTERO   3 /**< a 32-bit integer */
#define TQJSON_TIPO_DOUBLE   4 /**< a double */
#define TQJSON_TIPO_BOOLEANO 5 /**< a boolean */
#define TQJSON_TIPO_NULL     6 /**< null */

/** A node of a document tree. */
typedef struct tqjson2_nodo tqjson2_nodo_t;
/** A member of an object node: its name and its value node. */
typedef struct tqjson2_atributo tqjson2_atributo_t;

/** How a tree is written to a file. Only the value CIERTO (1) switches a field on. */
typedef struct tqjson2_conf_escritura {
    tqbool espacio_antes_dos_puntos; /**< CIERTO: "name" : value; otherwise "name": value */
    tqbool indentado;                /**< CIERTO: four spaces a level and a line feed a line */
} tqjson2_conf_escritura_t;

/** Where a failed file read stopped. Free it with tqjson2_error_destruye. */
typedef struct tqjson2_error {
    int32_t linea;   /**< the line, from 1 */
    int32_t columna; /**< the column, from 1, in UTF-16 code units */
} tqjson2_error_t;

/* ---- creating and destroying nodes ----
   Every creator returns a new node owned by the caller (or by whatever it is later appended
   to); destroy a root with tqjson2_destruye_nodo. */

/** An object without members. */
TQJSON2_API tqjson2_nodo_t *tqjson2_crea_nodo_objeto(void);
/** An array without elements. */
TQJSON2_API tqjson2_nodo_t *tqjson2_crea_nodo_array(void);
/** A string node that takes the caller's UTF-8 string over as it is (no copy, no escaping) and
   nulls `*cadena_utf8`. The string must come from the tqbase memory component. */
TQJSON2_API tqjson2_nodo_t *tqjson2_crea_nodo_texto_utf8(char **cadena_utf8);
/** A string node from wide text, stored in the escaped form (control characters, the solidus
   and the backslash as JSON escapes); the caller's wide string is destroyed and nulled. */
TQJSON2_API tqjson2_nodo_t *tqjson2_crea_nodo_texto_unicode_a_utf8(char16_t **texto);
/** An integer node holding the value. */
TQJSON2_API tqjson2_nodo_t *tqjson2_crea_nodo_entero(int32_t valor);
/** A double node holding the value. */
TQJSON2_API tqjson2_nodo_t *tqjson2_crea_nodo_double(double valor);
/** A boolean node holding the value. */
TQJSON2_API tqjson2_nodo_t *tqjson2_crea_nodo_booleano(tqbool valor);
/** A null node. */
TQJSON2_API tqjson2_nodo_t *tqjson2_crea_nodo_null(void);

/** A new member named with a copy of `nombre` that takes the node over (nulling `*nodo`) and
   owns it. */
TQJSON2_API tqjson2_atributo_t *tqjson2_crea_atributo(const char16_t *nombre,
                                                      tqjson2_nodo_t **nodo);

/** Destroys the node and everything it owns, however deep, and nulls `*nodo`. Values that
   members only borrow are left alone. */
TQJSON2_API void tqjson2_destruye_nodo(tqjson2_nodo_t **nodo);

/* ---- building trees ----
   Appends to an object take (object, member name, value) and copy the name; appends to an array
   take (array, value). Members and elements keep the order of the appends, and a second member
   of the same name is appended, not merged. A function that takes something over does so on
   every path: what a refused append was given is destroyed, not leaked. */

/** Takes the member over (nulling `*atributo`) and appends it to the object. */
TQJSON2_API void tqjson2_append_atributo_a_objeto(tqjson2_nodo_t *objeto,
                                                  tqjson2_atributo_t **atributo);
/** Takes the node over (nulling `*nodo`) and appends it to the array node. */
TQJSON2_API void tqjson2_append_elemento_a_array(tqjson2_nodo_t *nodo_array, tqjson2_nodo_t **nodo);
/** Appends a member named `etiqueta` that takes the node over and owns it. */
TQJSON2_API void tqjson2_append_nodo_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                              tqjson2_nodo_t **nodo);
/** Appends a member that only borrows `nodo`: the object never destroys it, several objects may
   share it, and the caller destroys it after every object that refers to it. */
TQJSON2_API void tqjson2_append_puntero_nodo_const_a_objeto(tqjson2_nodo_t *objeto,
                                                            const char16_t *etiqueta,
                                                            const tqjson2_nodo_t *nodo);

/** Appends an integer member named with a copy of `etiqueta`. */
TQJSON2_API void tqjson2_append_long_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                              int32_t valor);
/** Appends an integer element. */
TQJSON2_API void tqjson2_append_long_a_array(tqjson2_nodo_t *nodo_array, int32_t valor);
/** Stored as a signed 32-bit integer: a value above 2147483647 is reported and saturates. */
TQJSON2_API void tqjson2_append_ulong_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                               uint32_t valor);
/** As tqjson2_append_ulong_a_objeto, as an element. */
TQJSON2_API void tqjson2_append_ulong_a_array(tqjson2_nodo_t *nodo_array, uint32_t valor);
/** Appends a double member. */
TQJSON2_API void tqjson2_append_double_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                                double valor);
/** Appends a double element. */
TQJSON2_API void tqjson2_append_double_a_array(tqjson2_nodo_t *nodo_array, double valor);
/** Appends a boolean member. */
TQJSON2_API void tqjson2_append_tqbool_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                                tqbool valor);
/** Appends a boolean element. */
TQJSON2_API void tqjson2_append_bool_a_array(tqjson2_nodo_t *nodo_array, tqbool valor);
/** Appends a null member (arrays have no null append). */
TQJSON2_API void tqjson2_append_null_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta);
/** A string of a copy of `texto`, in the escaped form; the caller keeps its text. */
TQJSON2_API void tqjson2_append_cadena_unicode_a_objeto(tqjson2_nodo_t *objeto,
                                                        const char16_t *etiqueta,
                                                        const char16_t *texto);
/** As tqjson2_append_cadena_unicode_a_objeto, as an element; the caller keeps its text. */
TQJSON2_API void tqjson2_append_cadena_unicode_a_array(tqjson2_nodo_t *nodo_array,
                                                       const char16_t *texto);
/** The same with the caller's own wide string, which is destroyed and nulled. */
TQJSON2_API void tqjson2_append_cadena_unicode_a_array_pp(tqjson2_nodo_t *nodo_array,
                                                          char16_t **texto);
/** A plain string that takes the caller's UTF-8 string over as it is and nulls the pointer. */
TQJSON2_API void tqjson2_append_cadena_utf8_a_objeto(tqjson2_nodo_t *objeto,
                                                     const char16_t *etiqueta, char **texto_utf8);
/** As tqjson2_append_cadena_utf8_a_objeto, as an element: `*texto_utf8` is taken over
   and nulled. */
TQJSON2_API void tqjson2_append_cadena_utf8_a_array(tqjson2_nodo_t *nodo_array, char **texto_utf8);
/** A plain string converted from ANSI text; the caller keeps its text. */
TQJSON2_API void tqjson2_append_cadena_ansi_a_objeto(tqjson2_nodo_t *objeto,
                                                     const char16_t *etiqueta,
                                                     const char *texto_ansi);
/** As tqjson2_append_cadena_ansi_a_objeto, as an element; the caller keeps its text. */
TQJSON2_API void tqjson2_append_cadena_ansi_a_array(tqjson2_nodo_t *nodo_array,
                                                    const char *texto_ansi);
/** A string of the time's decimal digits (a JSON string, not a number). */
TQJSON2_API void tqjson2_append_time_t_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                                int64_t valor);
/** The same for a 64-bit time. */
TQJSON2_API void tqjson2_append_time64_t_a_objeto(tqjson2_nodo_t *objeto, const char16_t *etiqueta,
                                                  int64_t valor);
/** As tqjson2_append_cadena_unicode_a_objeto for a text that may lie in unreadable memory: when
   reading it faults, or the append makes an internal-error report, the member holds the text
   "<Writted uninitialized variable>" instead and the process goes on. */
TQJSON2_API void tqjson2_append_cadena_unicode_a_objeto_seguro(tqjson2_nodo_t *objeto,
                                                               const char16_t *etiqueta,
                                                               const char16_t *texto);

/* ---- changing values in place ----
   Only string, integer, double and boolean nodes change kind and value; null, object and array
   nodes never do. */
/** Makes a basic node an integer node holding the value. */
TQJSON2_API void tqjson2_set_nodo_entero(tqjson2_nodo_t *nodo, int32_t valor);
/** Makes a basic node a double node holding the value. */
TQJSON2_API void tqjson2_set_nodo_double(tqjson2_nodo_t *nodo, double valor);
/** Makes a basic node a boolean node holding the value. */
TQJSON2_API void tqjson2_set_nodo_booleano(tqjson2_nodo_t *nodo, tqbool valor);
/** Stores the caller's wide text in the escaped form; the text is destroyed and nulled. */
TQJSON2_API void tqjson2_set_nodo_texto_unicode_a_utf8(tqjson2_nodo_t *nodo, char16_t **texto);
/** Destroys the array node's elements, then takes the given array of nodes over (nulling it). */
TQJSON2_API void tqjson2_set_nodo_valores_array(tqjson2_nodo_t *nodo, arr_puntero_t **valores);

/* ---- querying trees ----
   Getters that return arrays, names, nodes or the stored text return the tree's own data: do
   not free it. Getters that convert return a new string the caller frees. A getter given a node
   of another kind reports it and returns a neutral value; the tests (es_valor_) are the
   tolerant way. */
/** The node's kind, one of the TQJSON_TIPO_ constants. */
TQJSON2_API int32_t tqjson2_tipo_nodo(const tqjson2_nodo_t *nodo);
/** The object's members (tqjson2_atributo_t *), in order. */
TQJSON2_API arr_puntero_t *tqjson2_get_atributos_objeto(const tqjson2_nodo_t *nodo);
/** The array's elements (tqjson2_nodo_t *), in order. */
TQJSON2_API arr_puntero_t *tqjson2_get_valores_array(const tqjson2_nodo_t *nodo);
/** The member's name, the tree's own text. */
TQJSON2_API const char16_t *tqjson2_get_nombre_atributo(const tqjson2_atributo_t *atributo);
/** The member's value node, the tree's own (borrowed or owned by the member). */
TQJSON2_API tqjson2_nodo_t *tqjson2_get_valor_atributo(const tqjson2_atributo_t *atributo);
/** An integer node's value. */
TQJSON2_API int32_t tqjson2_get_valor_entero(const tqjson2_nodo_t *nodo);
/** A double node's value. */
TQJSON2_API double tqjson2_get_valor_double(const tqjson2_nodo_t *nodo);
/** The stored UTF-8 text as stored (escaped form included). */
TQJSON2_API const char *tqjson2_get_valor_cadena_utf8(const tqjson2_nodo_t *nodo);
/** A new wide string of the stored text, escape sequences left as stored. */
TQJSON2_API char16_t *tqjson2_get_valor_cadena_u(const tqjson2_nodo_t *nodo);
/** A new wide string of the text, escape sequences decoded. */
TQJSON2_API char16_t *tqjson2_get_valor_cadena_unicode(const tqjson2_nodo_t *nodo);
/** A new ANSI string of the decoded text. */
TQJSON2_API char *tqjson2_get_valor_cadena_decodificada_ANSI(const tqjson2_nodo_t *nodo);
/** CIERTO when the pointer itself is null. */
TQJSON2_API tqbool tqjson2_get_valor_null(const tqjson2_nodo_t *nodo);

/** Each test writes `*valor` as its table says and answers whether the node is of the type:
   entero and double write the node's field first, whatever its kind; booleano also takes a
   string holding true or false in any letter case; the string tests hand out a new text,
   not decoded, or null. */
TQJSON2_API tqbool tqjson2_es_valor_entero(const tqjson2_nodo_t *nodo, int32_t *valor);
/** CIERTO for a double node; `*valor` gets the node's double field. */
TQJSON2_API tqbool tqjson2_es_valor_double(const tqjson2_nodo_t *nodo, double *valor);
/** CIERTO for a boolean node or a string reading true or false in any letter case,
   with the value in `*valor`. */
TQJSON2_API tqbool tqjson2_es_valor_booleano(const tqjson2_nodo_t *nodo, tqbool *valor);
/** CIERTO for a string node, with a new copy of its stored UTF-8 text in `*valor`
   (free it with marlstr_destruye); otherwise FALSO and null. */
TQJSON2_API tqbool tqjson2_es_valor_cadena_utf8(const tqjson2_nodo_t *nodo, char **valor);
/** CIERTO for a string node, with its stored text as a new wide string in `*valor`
   (free it with widestr_nousar_destruye); otherwise FALSO and null. */
TQJSON2_API tqbool tqjson2_es_valor_cadena_unicode(const tqjson2_nodo_t *nodo, char16_t **valor);
/** CIERTO for a string node, with its stored text as a new ANSI string in `*valor`
   (free it with marlstr_destruye); otherwise FALSO and null. */
TQJSON2_API tqbool tqjson2_es_valor_cadena_ansi(const tqjson2_nodo_t *nodo, char **valor);

/** CIERTO and the value of the only member named exactly `etiqueta` (the tree's own node);
   otherwise FALSO and null; a name present twice counts as absent. `valor` may be null. */
TQJSON2_API tqbool tqjson2_existe_atributo_con_nombre_en_objeto(const tqjson2_nodo_t *nodo_objeto,
                                                                const char16_t *etiqueta,
                                                                tqjson2_nodo_t **valor);
/** A second name of tqjson2_existe_atributo_con_nombre_en_objeto. */
TQJSON2_API tqbool tqjson2_existe_atributo_con_nombre_en_objeto2(const tqjson2_nodo_t *nodo_objeto,
                                                                 const char16_t *etiqueta,
                                                                 tqjson2_nodo_t **valor);
/** Ignoring letter case: the first matching member whose value is not null wins; when every
   match holds null, the last one's null node; with no match FALSO and `*valor` untouched. */
TQJSON2_API tqbool tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(
    const tqjson2_nodo_t *nodo_objeto, const char16_t *etiqueta, tqjson2_nodo_t **valor);
/** As the exact lookup, and on CIERTO the member is removed and its value handed to the caller,
   who then owns it (a borrowed value comes back to its owner). */
TQJSON2_API tqbool tqjson2_se_extrae_atributo_con_nombre_de_objeto(tqjson2_nodo_t *nodo_objeto,
                                                                   const char16_t *etiqueta,
                                                                   tqjson2_nodo_t **valor);

/* ---- decoding tolerance ----
   CIERTO pushes, any other value pops, a process-wide counter: while it is non-zero, a "\u00"
   escape with digits that are not hexadecimal decodes to '?' without an internal-error report.
   Not synchronised: callers that push and pop from several threads serialise those calls. */
/** Pushes the decoding tolerance with CIERTO, pops it with any other value. */
TQJSON2_API void tqjson2_apila_desapila_ignorar_assert_se_decodifica(tqbool apila);

/* ---- reading ----
   JSON text to a tree. The root is the first object or array of the text: what precedes it is
   skipped and what follows it ignored. Commas between values may be left out. Integers are
   32-bit (beyond that range: an internal-error report and the nearest bound); numbers with a
   fraction or an exponent are doubles. Text nested deeper than 1,024 levels is refused. On
   CIERTO the caller owns the tree in `*nodo`; on FALSO `*nodo` is null. */

/** Reads the file `nombre_fichero` (UTF-8, with or without a byte-order mark, or UTF-16 behind
   its mark), decoding escape sequences in string values. A missing file gives FALSO and leaves
   `*nodo` as it was. */
TQJSON2_API tqbool tqjson2_se_lee_fichero(const char16_t *nombre_fichero, tqjson2_nodo_t **nodo);
/** As tqjson2_se_lee_fichero, decoding string values only with `decodifica_secuencias_escape`
   CIERTO, reading through buffered stream reads with `lectura_con_fread` CIERTO. With `error`
   given, a read of an existing file stores there null on CIERTO, or on FALSO a new record with
   the line and column (from 1, columns in UTF-16 units) where the read stopped, which the
   caller frees with tqjson2_error_destruye. */
TQJSON2_API tqbool tqjson2_se_lee_fichero_ex(const char16_t *nombre_fichero,
                                             tqbool decodifica_secuencias_escape,
                                             tqbool lectura_con_fread, tqjson2_nodo_t **nodo,
                                             tqjson2_error_t **error);
/** Reads zero-terminated UTF-8 text (a leading byte-order mark is skipped), decoding escape
   sequences in string values. The text stays the caller's. */
TQJSON2_API tqbool tqjson2_se_lee_texto_utf8(const char *texto, tqjson2_nodo_t **nodo);
/** As tqjson2_se_lee_texto_utf8, storing string values as they stand in the text, to be
   decoded when a getter asks for them. */
TQJSON2_API tqbool tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(const char *texto,
                                                                             tqjson2_nodo_t **nodo);
/** Frees an error record and nulls the caller's pointer. */
TQJSON2_API void tqjson2_error_destruye(tqjson2_error_t **error);

/* ---- writing ----
   A tree is written from its root, which must be an object or an array, as UTF-8 JSON without
   a byte-order mark: indented (four spaces a level, a line feed after every line) or minified
   (one line, no line feed). Member names are written as stored, without escaping; string values
   as stored, with a backslash put before every quotation mark. A double is written with at
   most 15 significant digits ("2.0", "0.1", "1E-05"); one below 1e-15 in magnitude as 0.0. The
   values JSON has no number for: an infinity is written 1E+999 (-1E+999), which reads back as
   the same infinity, and a NaN is written null, which reads back as a null node. The tree is
   only read. */

/** Writes the tree to the file `nombre_fichero` (created or emptied), indented, with " : "
   between names and values. */
TQJSON2_API void tqjson2_escribe_fichero(const tqjson2_nodo_t *nodo_raiz,
                                         const char16_t *nombre_fichero);
/** As tqjson2_escribe_fichero with the caller's configuration (null: the default, both fields
   CIERTO). The configuration stays the caller's. */
TQJSON2_API void tqjson2_escribe_fichero_ex(const tqjson2_nodo_t *nodo_raiz,
                                            const tqjson2_conf_escritura_t *conf,
                                            const char16_t *nombre_fichero);
/** The tree as one new UTF-8 text, indented, with " : " between names and values. The caller
   frees it with marlstr_destruye. */
TQJSON2_API char *tqjson2_genera_texto_utf8(const tqjson2_nodo_t *nodo_raiz);
/** As tqjson2_genera_texto_utf8, minified; the separator is still " : ". */
TQJSON2_API char *tqjson2_genera_texto_utf8_minificado(const tqjson2_nodo_t *nodo_raiz);

/* ---- named values: the fields of a record saved as members of an object node ----
   The label comes first and the object node last. Labels are wide texts compared exactly; a
   writer copies its label and never takes the caller's value over. A writer reports a label
   that is already present ("existe == FALSO", then "nodo_dato == NULL") and appends all the
   same. A reader answers with the member's value when the label names exactly one member of
   the expected kind, and otherwise with the caller's default (or null, or an empty array),
   without a report. Every text and array a reader returns is new and the caller's. */

/** An integer member. */
TQJSON2_API void tqjson2_graba_long(const char16_t *etiqueta, int32_t valor, tqjson2_nodo_t *nodo);
/** An integer member holding the value's 32 bits; above 2147483647 is the number-conversion
   component's out-of-range report. */
TQJSON2_API void tqjson2_graba_ulong(const char16_t *etiqueta, uint32_t valor,
                                     tqjson2_nodo_t *nodo);
/** An integer member holding 0 to 255. */
TQJSON2_API void tqjson2_graba_version(const char16_t *etiqueta, uint8_t valor,
                                       tqjson2_nodo_t *nodo);
/** A double member. */
TQJSON2_API void tqjson2_graba_double(const char16_t *etiqueta, double valor, tqjson2_nodo_t *nodo);
/** A boolean member. */
TQJSON2_API void tqjson2_graba_tqbool(const char16_t *etiqueta, tqbool valor, tqjson2_nodo_t *nodo);
/** A string member from ANSI text (Windows-1252 off Windows); the text stays the caller's. */
TQJSON2_API void tqjson2_graba_cadena_ansi(const char16_t *etiqueta, const char *texto,
                                           tqjson2_nodo_t *nodo);
/** A string member from wide text, stored escaped; the text stays the caller's. */
TQJSON2_API void tqjson2_graba_cadena_unicode(const char16_t *etiqueta, const char16_t *texto,
                                              tqjson2_nodo_t *nodo);

/** An integer member's value, or `defecto`. */
TQJSON2_API int32_t tqjson2_lee_long(const char16_t *etiqueta, int32_t defecto,
                                     const tqjson2_nodo_t *nodo);
/** The same function under a second name: an integer member's 32 bits, unconverted. */
TQJSON2_API uint32_t tqjson2_lee_ulong(const char16_t *etiqueta, uint32_t defecto,
                                       const tqjson2_nodo_t *nodo);
/** A double member's value (an integer member does not count), or `defecto`. */
TQJSON2_API double tqjson2_lee_double(const char16_t *etiqueta, double defecto,
                                      const tqjson2_nodo_t *nodo);
/** A boolean member, or a string member reading true or false in any letter case; or
   `defecto`. */
TQJSON2_API tqbool tqjson2_lee_tqbool(const char16_t *etiqueta, tqbool defecto,
                                      const tqjson2_nodo_t *nodo);
/** A string member's decoded text in ANSI, or a copy of `defecto`; free it with
   marlstr_destruye. */
TQJSON2_API char *tqjson2_lee_cadena_ansi(const char16_t *etiqueta, const char *defecto,
                                          const tqjson2_nodo_t *nodo);
/** As tqjson2_lee_cadena_ansi, null instead of a default. */
TQJSON2_API char *tqjson2_lee_cadena_ansi_opcional(const char16_t *etiqueta,
                                                   const tqjson2_nodo_t *nodo);
/** A string member's decoded text, or a copy of `defecto`; free it with
   widestr_nousar_destruye. */
TQJSON2_API char16_t *tqjson2_lee_cadena_unicode(const char16_t *etiqueta, const char16_t *defecto,
                                                 const tqjson2_nodo_t *nodo);
/** As tqjson2_lee_cadena_unicode, null instead of a default. */
TQJSON2_API char16_t *tqjson2_lee_cadena_unicode_opcional(const char16_t *etiqueta,
                                                          const tqjson2_nodo_t *nodo);
/** As tqjson2_lee_cadena_unicode inside a trap frame: an access fault or an internal-error
   report during the read gives a new "<Readed uninitialized variable>" instead. */
TQJSON2_API char16_t *tqjson2_lee_cadena_unicode_seguro(const char16_t *etiqueta,
                                                        const char16_t *defecto,
                                                        const tqjson2_nodo_t *nodo);
/** A time from a string member of decimal digits (read through a double), an integer member or
   a double member (cut toward zero), or `defecto`, also for a null node, without a report.
   A value beyond the 64-bit range or not a number gives INT64_MIN. */
TQJSON2_API int64_t tqjson2_lee_time_t(const char16_t *etiqueta, int64_t defecto,
                                       const tqjson2_nodo_t *nodo);
/** The same for a 64-bit time. */
TQJSON2_API int64_t tqjson2_lee_time64_t(const char16_t *etiqueta, int64_t defecto,
                                         const tqjson2_nodo_t *nodo);
/** An integer member brought down to 8 bits (out of 0 to 255: the number-conversion
   component's report), or `defecto`. */
TQJSON2_API uint8_t tqjson2_lee_version_opcional(const char16_t *etiqueta, uint8_t defecto,
                                                 const tqjson2_nodo_t *nodo);

/* ---- named arrays: a typed array saved as a member holding a JSON array ----
   The writers only read the caller's array and test no label for presence. The readers return
   a new array (the caller destroys it with its arr_Destruye function), empty when the label
   names no single member; an element of the wrong kind is reported and leaves its place at
   FALSO, 0 or an empty text. The _en_array forms work on an array node the caller has. */

/** A member holding the booleans as a JSON array. */
TQJSON2_API void tqjson2_graba_arr_bool(const char16_t *etiqueta, const arr_bool_t *valores,
                                        tqjson2_nodo_t *nodo);
/** ANSI texts, stored as strings. */
TQJSON2_API void tqjson2_graba_arr_cadenas(const char16_t *etiqueta, const arr_cadena_t *valores,
                                           tqjson2_nodo_t *nodo);
/** Wide texts, stored escaped. */
TQJSON2_API void tqjson2_graba_arr_cadenas_unicode(const char16_t *etiqueta,
                                                   const arr_cadena_u_t *valores,
                                                   tqjson2_nodo_t *nodo);
/** Unsigned integers, stored as integers (above 2147483647: the number-conversion report). */
TQJSON2_API void tqjson2_graba_arr_ulong(const char16_t *etiqueta, const arr_ulong_t *valores,
                                         tqjson2_nodo_t *nodo);
/** Appends the booleans to the caller's array node. */
TQJSON2_API void tqjson2_graba_arr_bool_en_array(const arr_bool_t *valores,
                                                 tqjson2_nodo_t *nodo_array);
/** Appends the ANSI texts to the caller's array node as strings. */
TQJSON2_API void tqjson2_graba_arr_cadenas_en_array(const arr_cadena_t *valores,
                                                    tqjson2_nodo_t *nodo_array);
/** Appends the wide texts to the caller's array node as escaped strings. */
TQJSON2_API void tqjson2_graba_arr_cadenas_unicode_en_array(const arr_cadena_u_t *valores,
                                                            tqjson2_nodo_t *nodo_array);
/** Appends the unsigned integers to the caller's array node as integers. */
TQJSON2_API void tqjson2_graba_arr_ulong_en_array(const arr_ulong_t *valores,
                                                  tqjson2_nodo_t *nodo_array);

/** Booleans, or strings reading true or false in any letter case. */
TQJSON2_API arr_bool_t *tqjson2_lee_arr_bool(const char16_t *etiqueta, const tqjson2_nodo_t *nodo);
/** Decoded texts in ANSI. */
TQJSON2_API arr_cadena_t *tqjson2_lee_arr_cadenas(const char16_t *etiqueta,
                                                  const tqjson2_nodo_t *nodo);
/** Decoded wide texts. */
TQJSON2_API arr_cadena_u_t *tqjson2_lee_arr_cadenas_unicode(const char16_t *etiqueta,
                                                            const tqjson2_nodo_t *nodo);
/** Doubles, integers taken as doubles. */
TQJSON2_API arr_double_t *tqjson2_lee_arr_double(const char16_t *etiqueta,
                                                 const tqjson2_nodo_t *nodo);
/** Integers' 32 bits (a negative one is the number-conversion component's report). */
TQJSON2_API arr_ulong_t *tqjson2_lee_arr_ulong(const char16_t *etiqueta,
                                               const tqjson2_nodo_t *nodo);
/** A new array of the array node's booleans. */
TQJSON2_API arr_bool_t *tqjson2_lee_arr_bool_en_array(const tqjson2_nodo_t *nodo_array);
/** A new array of the array node's strings, decoded, in ANSI. */
TQJSON2_API arr_cadena_t *tqjson2_lee_arr_cadenas_en_array(const tqjson2_nodo_t *nodo_array);
/** A new array of the array node's strings, decoded. */
TQJSON2_API arr_cadena_u_t *
tqjson2_lee_arr_cadenas_unicode_en_array(const tqjson2_nodo_t *nodo_array);
/** A new array of the array node's doubles, integers taken as doubles. */
TQJSON2_API arr_double_t *tqjson2_lee_arr_double_en_array(const tqjson2_nodo_t *nodo_array);
/** A new array of the array node's integers' 32 bits. */
TQJSON2_API arr_ulong_t *tqjson2_lee_arr_ulong_en_array(const tqjson2_nodo_t *nodo_array);

/* ---- records within records, through the caller's callbacks ----
   The library never reads a record: it makes the object nodes, places them under a label
   (alone, or as the elements of a JSON array) and calls the callbacks in index order. */

/** Fills `nodo`, a new empty object the library owns, with the members of `item`. */
typedef void (*tqjson2_func_graba_item_t)(void *item, tqjson2_nodo_t *nodo);
/** Builds a record from `nodo` and returns it; the record goes to the caller unread. */
typedef void *(*tqjson2_func_lee_item_t)(const tqjson2_nodo_t *nodo);

/** A member holding an object that `func_graba_item` fills from `item`. The label is not tested
   for presence. */
TQJSON2_API void tqjson2_nousar_graba_ST(const char16_t *etiqueta, void *item,
                                         tqjson2_func_graba_item_t func_graba_item,
                                         tqjson2_nodo_t *nodo);
/** As tqjson2_nousar_graba_ST; a null `item` writes nothing and calls nothing. */
TQJSON2_API void tqjson2_nousar_graba_ST_opcional(const char16_t *etiqueta, void *item,
                                                  tqjson2_func_graba_item_t func_graba_item,
                                                  tqjson2_nodo_t *nodo);
/** A member holding a JSON array of one object per record of `items`; the list and its records
   stay the caller's. */
TQJSON2_API void tqjson2_nousar_graba_arr_punterosST(const char16_t *etiqueta,
                                                     const arr_puntero_t *items,
                                                     tqjson2_func_graba_item_t func_graba_item,
                                                     tqjson2_nodo_t *nodo);
/** What `func_lee_item` makes of the object member `etiqueta`; anything else is reported. */
TQJSON2_API void *tqjson2_nousar_lee_ST(const char16_t *etiqueta,
                                        tqjson2_func_lee_item_t func_lee_item,
                                        const tqjson2_nodo_t *nodo);
/** As tqjson2_nousar_lee_ST, null without a report when there is no object member to read. */
TQJSON2_API void *tqjson2_nousar_lee_ST_opcional(const char16_t *etiqueta,
                                                 tqjson2_func_lee_item_t func_lee_item,
                                                 const tqjson2_nodo_t *nodo);
/** A new list of what `func_lee_item` makes of each element of the array member `etiqueta`
   (empty when the label is missing); the list and the records are the caller's. */
TQJSON2_API arr_puntero_t *tqjson2_nousar_lee_arr_punterosST(const char16_t *etiqueta,
                                                             tqjson2_func_lee_item_t func_lee_item,
                                                             const tqjson2_nodo_t *nodo);

/* ---- JSON texts carried through save streams (tqbase/marlsave.h) ---- */

/** Writes the text into the stream; it stays the caller's. */
TQJSON2_API void tqjson2_graba_str_json_marlsave(const char *str_json, marlsave_t *stream);
/** A presence flag, then the text when there is one. */
TQJSON2_API void tqjson2_graba_str_json_marlsave_opcional(const char *str_json, marlsave_t *stream);
/** The next text of the stream, new; free it with marlstr_destruye. */
TQJSON2_API char *tqjson2_lee_str_json_marlsave(marlsave_t *stream);
/** The flag, then the text when the flag says there is one; otherwise null. */
TQJSON2_API char *tqjson2_lee_str_json_marlsave_opcional(marlsave_t *stream);

/* ---- settings: readers with defaults, readability tests and setters (tqjsonlsn_) ----
   The node comes first in the readers and setters, the label first in the tests. A setter
   changes a present member's value in place and appends a missing one. */

/** A member's value, or `defecto` when the node is null or the label names no single member of
   the kind; a node that is not an object is reported. */
TQJSON2_API tqbool tqjsonlsn_leer_valor_booleano_con_valor_defecto(const tqjson2_nodo_t *nodo,
                                                                   const char16_t *etiqueta,
                                                                   tqbool defecto);
/** Only a double member counts. */
TQJSON2_API double tqjsonlsn_leer_valor_double_con_valor_defecto(const tqjson2_nodo_t *nodo,
                                                                 const char16_t *etiqueta,
                                                                 double defecto);
/** An integer member's value, or `defecto`. */
TQJSON2_API int32_t tqjsonlsn_leer_valor_long_con_valor_defecto(const tqjson2_nodo_t *nodo,
                                                                const char16_t *etiqueta,
                                                                int32_t defecto);
/** The 32 bits of the integer member, unconverted. */
TQJSON2_API uint32_t tqjsonlsn_leer_valor_ulong_con_valor_defecto(const tqjson2_nodo_t *nodo,
                                                                  const char16_t *etiqueta,
                                                                  uint32_t defecto);
/** The low 16 bits; a result of 65535 or more is reported ("valor < USHRT_MAX"). */
TQJSON2_API uint16_t tqjsonlsn_leer_valor_ushort_con_valor_defecto(const tqjson2_nodo_t *nodo,
                                                                   const char16_t *etiqueta,
                                                                   uint16_t defecto);
/** CIERTO with a double member's value in `*valor`; FALSO with 1.7976931348623157e308. */
TQJSON2_API tqbool tqjsonlsn_es_posible_leer_double(const char16_t *etiqueta,
                                                    const tqjson2_nodo_t *nodo, double *valor);
/** CIERTO with a string member's decoded text, new and the caller's, in `*cadena`; FALSO with
   null (an old text there is overwritten, not freed). */
TQJSON2_API tqbool tqjsonlsn_es_posible_leer_cadena_unicode(const char16_t *etiqueta,
                                                            const tqjson2_nodo_t *nodo,
                                                            char16_t **cadena);
/** The valid values of an enumeration run from 0 upward; this tells whether one is valid. */
typedef tqbool (*tqjsonlsn_func_es_correcto_valor_enum_t)(int32_t valor);
/** The text that names a valid value; it stays the callback's. */
typedef const char16_t *(*tqjsonlsn_func_get_texto_valor_enum_t)(int32_t valor);
/** CIERTO with the lowest value whose text equals the string member's exactly; FALSO with -1. */
TQJSON2_API tqbool tqjsonlsn_nousar_es_posible_leer_enum(
    const char16_t *etiqueta, tqjsonlsn_func_es_correcto_valor_enum_t func_es_correcto_valor_enum,
    tqjsonlsn_func_get_texto_valor_enum_t func_get_texto_valor_enum, const tqjson2_nodo_t *nodo,
    int32_t *valor_enum);
/** Gives the member a boolean value in place, or appends a boolean member. */
TQJSON2_API void tqjsonlsn_set_valor_booleano(tqjson2_nodo_t *nodo, const char16_t *etiqueta,
                                              tqbool valor);
/** Gives the member a double value in place, or appends a double member. */
TQJSON2_API void tqjsonlsn_set_valor_double(tqjson2_nodo_t *nodo, const char16_t *etiqueta,
                                            double valor);
/** Gives the member an integer value in place, or appends an integer member; a present
   member holding an object, an array or null is reported. */
TQJSON2_API void tqjsonlsn_set_valor_long(tqjson2_nodo_t *nodo, const char16_t *etiqueta,
                                          int32_t valor);
/** Stores the value's 32 bits as an integer, unconverted. */
TQJSON2_API void tqjsonlsn_set_valor_ulong(tqjson2_nodo_t *nodo, const char16_t *etiqueta,
                                           uint32_t valor);
/** Stores the value widened to 32 bits, as tqjsonlsn_set_valor_long. */
TQJSON2_API void tqjsonlsn_set_valor_ushort(tqjson2_nodo_t *nodo, const char16_t *etiqueta,
                                            uint16_t valor);
/** Stores a copy of the text, escaped; the text stays the caller's. */
TQJSON2_API void tqjsonlsn_set_valor_cadena_unicode(tqjson2_nodo_t *nodo, const char16_t *etiqueta,
                                                    const char16_t *texto);
/** Takes the list of nodes over (and nulls `*valores`) as the elements of the array member
   `etiqueta`, whose old elements are destroyed, or of a new array member. */
TQJSON2_API void tqjsonlsn_set_nodos_array(tqjson2_nodo_t *nodo, const char16_t *etiqueta,
                                           arr_puntero_t **valores);

/* ---- Base64 (RFC 4648, standard alphabet, '=' padding, one line) ----
   Results are new buffers of the caller's, freed with marlspy_nousar_free_pp(&buffer, 1); on
   null, `*out_len` is left as it was. */

/** The Base64 text of `len` bytes, zero-terminated; `*out_len` gets its length without the
   terminator. Null for 2^30 bytes or more. */
TQJSON2_API char *tqjsonbase64_encode(const void *src, uint32_t len, uint32_t *out_len);
/** The bytes that `len` bytes of Base64 stand for (no terminator), with `*out_len` their count.
   Bytes outside the alphabet and '=' are skipped, and the first group holding '=' ends the
   text. Null when no character or a number of them that is not a multiple of 4 remains, or
   when a group holds three or four '='. */
TQJSON2_API unsigned char *tqjsonbase64_decode(const void *src, uint32_t len, uint32_t *out_len);

TQBASE_C_FIN

#endif
