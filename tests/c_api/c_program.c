/* A C11 program over the public headers: it proves they compile as C and that the shared
   libraries serve a C caller. Exits non-zero on the first wrong result. */
#include <stdio.h>
#include <string.h>

#include "tqjson2.h"

static int g_fallos = 0;

#define COMPRUEBA(condicion)                                                                       \
    do {                                                                                           \
        if (!(condicion)) {                                                                        \
            fprintf(stderr, "%s:%d: failed: %s\n", __FILE__, __LINE__, #condicion);                \
            ++g_fallos;                                                                            \
        }                                                                                          \
    } while (0)

static int g_reportes = 0;
static void cuenta_reportes(const char *condicion, const char *modulo, int linea) {
    (void)condicion, (void)modulo, (void)linea;
    ++g_reportes;
}

int main(void) {
    error_interno_set_manejador(cuenta_reportes);

    tqjson2_nodo_t *nodos[] = {tqjson2_crea_nodo_objeto(),         tqjson2_crea_nodo_array(),
                               tqjson2_crea_nodo_entero(-7),       tqjson2_crea_nodo_double(0.25),
                               tqjson2_crea_nodo_booleano(CIERTO), tqjson2_crea_nodo_null()};
    for (int i = 0; i < 6; ++i) {
        COMPRUEBA(nodos[i] != NULL);
        tqjson2_destruye_nodo(&nodos[i]);
        COMPRUEBA(nodos[i] == NULL);
    }

    char *utf8 = marlspy_nousar_malloc(4);
    memcpy(utf8, "abc", 4);
    tqjson2_nodo_t *cadena = tqjson2_crea_nodo_texto_utf8(&utf8);
    COMPRUEBA(utf8 == NULL && cadena != NULL);
    tqjson2_destruye_nodo(&cadena);

    char16_t *ancha = marlspy_nousar_malloc(3 * sizeof(char16_t));
    memcpy(ancha, u"\u00F1/", 3 * sizeof(char16_t));
    tqjson2_nodo_t *escapada = tqjson2_crea_nodo_texto_unicode_a_utf8(&ancha);
    COMPRUEBA(ancha == NULL && escapada != NULL);
    tqjson2_destruye_nodo(&escapada);

    arr_ulong_t *numeros = arr_CreaULong(2);
    arr_SetULong(numeros, 1, 0xFFFFFFFFu);
    COMPRUEBA(arr_NumElemsULong(numeros) == 2 && arr_GetULong(numeros, 1) == 0xFFFFFFFFu);
    arr_DestruyeULong(&numeros);
    COMPRUEBA(numeros == NULL);

    COMPRUEBA(g_reportes == 0);
    tqjson2_destruye_nodo(NULL); /* a broken precondition is a report, not a crash */
    COMPRUEBA(g_reportes == 1);

    if (g_fallos == 0)
        printf("C program: every check passed\n");
    return g_fallos == 0 ? 0 : 1;
}
