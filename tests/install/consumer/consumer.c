/* A program of an application, built against an installed copy of the libraries: it builds a
   document, saves a named value and a Base64 text, writes it and reads it back. */
#include <stdio.h>
#include <string.h>

#include <tqjson2.h>

int main(void) {
    tqjson2_nodo_t *raiz = tqjson2_crea_nodo_objeto();
    tqjson2_graba_long(u"n", 42, raiz);
    uint32_t n = 0;
    char *b64 = tqjsonbase64_encode("abc", 3, &n);
    tqjson2_graba_cadena_ansi(u"b64", b64, raiz);
    marlspy_nousar_free_pp(&b64, 1);
    char *texto = tqjson2_genera_texto_utf8_minificado(raiz);
    tqjson2_nodo_t *leido = NULL;
    const int ok = tqjson2_se_lee_texto_utf8(texto, &leido) == CIERTO &&
                   tqjson2_lee_long(u"n", 0, leido) == 42 && n == 4;
    printf("%s\n", texto);
    marlstr_destruye(&texto);
    tqjson2_destruye_nodo(&leido);
    tqjson2_destruye_nodo(&raiz);
    return ok ? 0 : 1;
}
