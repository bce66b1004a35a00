/* Builds nodes of every kind through the tqjson2 exports, says what it made and destroys them.
   Run it with tools/run-example.sh. */
#include <stdio.h>
#include <string.h>

#include "tqjson2.h"

/* A wide string from the tqbase memory component, which string creators take over. */
static char16_t *texto_ancho(const char *ascii) {
    size_t n = strlen(ascii);
    char16_t *texto = marlspy_nousar_malloc((n + 1) * sizeof(char16_t));
    for (size_t i = 0; i <= n; ++i)
        texto[i] = (char16_t)(unsigned char)ascii[i];
    return texto;
}

int main(void) {
    struct {
        const char *descripcion;
        tqjson2_nodo_t *nodo;
    } hechos[8];
    int n = 0;

    hechos[n].descripcion = "an object without members";
    hechos[n++].nodo = tqjson2_crea_nodo_objeto();
    hechos[n].descripcion = "an array without elements";
    hechos[n++].nodo = tqjson2_crea_nodo_array();
    hechos[n].descripcion = "the integer 42";
    hechos[n++].nodo = tqjson2_crea_nodo_entero(42);
    hechos[n].descripcion = "the double 2.5";
    hechos[n++].nodo = tqjson2_crea_nodo_double(2.5);
    hechos[n].descripcion = "the boolean true";
    hechos[n++].nodo = tqjson2_crea_nodo_booleano(CIERTO);
    hechos[n].descripcion = "null";
    hechos[n++].nodo = tqjson2_crea_nodo_null();

    char16_t *ruta = texto_ancho("a/b\ttab");
    hechos[n].descripcion = "the string \"a/b<tab>tab\", stored escaped as a\\/b\\ttab";
    hechos[n++].nodo = tqjson2_crea_nodo_texto_unicode_a_utf8(&ruta);

    for (int i = 0; i < n; ++i)
        printf("made %s\n", hechos[i].descripcion);
    for (int i = 0; i < n; ++i)
        tqjson2_destruye_nodo(&hechos[i].nodo);
    printf("destroyed %d nodes\n", n);
    return 0;
}
