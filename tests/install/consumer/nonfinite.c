/* A program of an application that calls tqjson2's exports only, none of tqbase's: linked with
   --as-needed, it does not name tqbase, which tqjson2 must then find itself. It writes the
   doubles that JSON has no number for to the file named by its argument and reads them back:
   a NaN comes back as a null node, each infinity as itself. */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include <tqjson2.h>

static const tqjson2_nodo_t *miembro(const tqjson2_nodo_t *objeto, const char16_t *nombre) {
    tqjson2_nodo_t *valor = NULL;
    tqjson2_existe_atributo_con_nombre_en_objeto(objeto, nombre, &valor);
    return valor;
}

static int es_double(const tqjson2_nodo_t *nodo, double esperado) {
    return nodo && tqjson2_tipo_nodo(nodo) == TQJSON_TIPO_DOUBLE &&
           tqjson2_get_valor_double(nodo) == esperado;
}

int main(int argc, char **argv) {
    char16_t fichero[1024];
    size_t i = 0;
    if (argc != 2 || strlen(argv[1]) >= sizeof fichero / sizeof fichero[0])
        return 2;
    for (; argv[1][i]; ++i) /* the path is ASCII */
        fichero[i] = (char16_t)(unsigned char)argv[1][i];
    fichero[i] = 0;

    tqjson2_nodo_t *raiz = tqjson2_crea_nodo_objeto();
    tqjson2_append_double_a_objeto(raiz, u"nan", NAN);
    tqjson2_append_double_a_objeto(raiz, u"inf", INFINITY);
    tqjson2_append_double_a_objeto(raiz, u"minus_inf", -INFINITY);
    const tqjson2_conf_escritura_t minificado = {FALSO, FALSO};
    tqjson2_escribe_fichero_ex(raiz, &minificado, fichero);
    tqjson2_destruye_nodo(&raiz);

    tqjson2_nodo_t *leido = NULL;
    if (tqjson2_se_lee_fichero(fichero, &leido) != CIERTO)
        return 1;
    const tqjson2_nodo_t *nan = miembro(leido, u"nan");
    const int ok = nan && tqjson2_tipo_nodo(nan) == TQJSON_TIPO_NULL &&
                   es_double(miembro(leido, u"inf"), INFINITY) &&
                   es_double(miembro(leido, u"minus_inf"), -INFINITY);
    printf("NaN reads back as %s, the infinities as themselves: %s\n",
           nan && tqjson2_tipo_nodo(nan) == TQJSON_TIPO_NULL ? "null" : "something else",
           ok ? "yes" : "no");
    tqjson2_destruye_nodo(&leido);
    return ok ? 0 : 1;
}
