/* Builds a small document through the tqjson2 exports, walks it back with the getters to say
   what it made, and destroys it. Run it with tools/run-example.sh. */
#include <stdio.h>

#include "tqjson2.h"

static const char *const NOMBRES_TIPO[] = {"object", "array",   "string", "integer",
                                           "double", "boolean", "null"};

/* Prints a wide text of the Basic Multilingual Plane as UTF-8. */
static void imprime_ancho(const char16_t *texto) {
    for (; *texto; ++texto) {
        unsigned c = *texto;
        if (c < 0x80)
            putchar((int)c);
        else if (c < 0x800)
            printf("%c%c", 0xC0 | (c >> 6), 0x80 | (c & 0x3F));
        else
            printf("%c%c%c", 0xE0 | (c >> 12), 0x80 | ((c >> 6) & 0x3F), 0x80 | (c & 0x3F));
    }
}

static void describe(const tqjson2_nodo_t *nodo, int profundidad);

static void sangra(int profundidad) {
    for (int i = 0; i < profundidad; ++i)
        fputs("    ", stdout);
}

static void describe_valor(const tqjson2_nodo_t *nodo) {
    int32_t entero;
    double doble;
    tqbool booleano;
    switch (tqjson2_tipo_nodo(nodo)) {
        case TQJSON_TIPO_CADENA: {
            char16_t *texto = tqjson2_get_valor_cadena_unicode(nodo);
            fputs("\"", stdout);
            imprime_ancho(texto);
            printf("\" (stored as %s)", tqjson2_get_valor_cadena_utf8(nodo));
            widestr_nousar_destruye(&texto, "build_tree", __LINE__);
            break;
        }
        case TQJSON_TIPO_ENTERO:
            tqjson2_es_valor_entero(nodo, &entero);
            printf("%d", entero);
            break;
        case TQJSON_TIPO_DOUBLE:
            tqjson2_es_valor_double(nodo, &doble);
            printf("%g", doble);
            break;
        case TQJSON_TIPO_BOOLEANO:
            tqjson2_es_valor_booleano(nodo, &booleano);
            fputs(booleano == CIERTO ? "true" : "false", stdout);
            break;
        default:
            break;
    }
}

static void describe(const tqjson2_nodo_t *nodo, int profundidad) {
    const int32_t tipo = tqjson2_tipo_nodo(nodo);
    printf("%s ", NOMBRES_TIPO[tipo]);
    if (tipo == TQJSON_TIPO_OBJETO) {
        arr_puntero_t *atributos = tqjson2_get_atributos_objeto(nodo);
        printf("with %u members\n", arr_NumElemsPuntero(atributos));
        for (uint32_t i = 0; i < arr_NumElemsPuntero(atributos); ++i) {
            const tqjson2_atributo_t *atributo = arr_GetPunteroConTipo(atributos, i);
            sangra(profundidad + 1);
            imprime_ancho(tqjson2_get_nombre_atributo(atributo));
            fputs(": ", stdout);
            describe(tqjson2_get_valor_atributo(atributo), profundidad + 1);
        }
    } else if (tipo == TQJSON_TIPO_ARRAY) {
        arr_puntero_t *elementos = tqjson2_get_valores_array(nodo);
        printf("with %u elements\n", arr_NumElemsPuntero(elementos));
        for (uint32_t i = 0; i < arr_NumElemsPuntero(elementos); ++i) {
            sangra(profundidad + 1);
            describe(arr_GetPunteroConTipo(elementos, i), profundidad + 1);
        }
    } else {
        describe_valor(nodo);
        putchar('\n');
    }
}

int main(void) {
    tqjson2_nodo_t *documento = tqjson2_crea_nodo_objeto();
    tqjson2_append_cadena_unicode_a_objeto(documento, u"nombre", u"Café \"Ñandú\"\tc/ Mayor 3");
    tqjson2_append_long_a_objeto(documento, u"plantas", 3);
    tqjson2_append_double_a_objeto(documento, u"superficie", 812.5);
    tqjson2_append_tqbool_a_objeto(documento, u"abierto", CIERTO);
    tqjson2_append_null_a_objeto(documento, u"cierre");
    tqjson2_append_time64_t_a_objeto(documento, u"creado", 1795000000);

    tqjson2_nodo_t *horas = tqjson2_crea_nodo_array();
    tqjson2_append_long_a_array(horas, 8);
    tqjson2_append_long_a_array(horas, 20);
    tqjson2_append_nodo_a_objeto(documento, u"horario", &horas);

    tqjson2_nodo_t *contacto = tqjson2_crea_nodo_objeto();
    tqjson2_append_cadena_ansi_a_objeto(contacto, u"ciudad", "M\xE1laga");
    tqjson2_append_nodo_a_objeto(documento, u"contacto", &contacto);

    fputs("made ", stdout);
    describe(documento, 0);
    tqjson2_destruye_nodo(&documento);
    printf("destroyed the document (pointer now %s)\n", documento == NULL ? "null" : "set");
    return 0;
}
