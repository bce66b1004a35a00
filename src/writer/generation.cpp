// The writing exports: a tree to a file, streamed, or to one UTF-8 text in memory.
#include "report_texts.h"
#include "writer.h"

namespace {

bool i_raiz_valida(const tqjson2_nodo_t *nodo_raiz) {
    return i_VERIFICA_NO_NULO(nodo_raiz) &&
           i_VERIFICA_TEXTO(nodo_raiz->tipo == TQJSON_TIPO_OBJETO ||
                                nodo_raiz->tipo == TQJSON_TIPO_ARRAY,
                            i_TEXTO_RAIZ_ES_CONTENEDOR);
}

// The text functions always write with the default configuration, so " : " even minified.
char *i_genera_texto_utf8(const tqjson2_nodo_t *nodo_raiz, tqbool indentado) {
    if (!i_raiz_valida(nodo_raiz))
        return cad_copia_cadena("");
    i_destino_gltf_t destino = i_crea_destino(i_DESTINO_LINEAS, nullptr, &i_conf_escritura_defecto);
    i_escribe_nodo(nodo_raiz, u"", 0, FALSO, indentado, &destino);
    return i_entrega_texto(&destino);
}

} // namespace

void tqjson2_escribe_fichero(const tqjson2_nodo_t *nodo_raiz, const char16_t *nombre_fichero) {
    tqjson2_escribe_fichero_ex(nodo_raiz, nullptr, nombre_fichero);
}

void tqjson2_escribe_fichero_ex(const tqjson2_nodo_t *nodo_raiz,
                                const tqjson2_conf_escritura_t *conf,
                                const char16_t *nombre_fichero) {
    if (!i_raiz_valida(nodo_raiz))
        return;
    // A file that cannot be opened is reported by the file component; the walk still runs,
    // and its lines go nowhere.
    lc_fichero_t *fichero = f_lc_fopen_u(nombre_fichero, u"wt", i_MODULO, __LINE__);
    i_destino_gltf_t destino =
        i_crea_destino(i_DESTINO_FICHERO, fichero, conf ? conf : &i_conf_escritura_defecto);
    const tqbool indentado = conf ? conf->indentado : CIERTO;
    i_escribe_nodo(nodo_raiz, u"", 0, FALSO, indentado, &destino);
    i_vuelca_destino(&destino);
    i_libera_destino(&destino);
    lc_fclose(fichero);
}

char *tqjson2_genera_texto_utf8(const tqjson2_nodo_t *nodo_raiz) {
    return i_genera_texto_utf8(nodo_raiz, CIERTO);
}

char *tqjson2_genera_texto_utf8_minificado(const tqjson2_nodo_t *nodo_raiz) {
    return i_genera_texto_utf8(nodo_raiz, FALSO);
}
