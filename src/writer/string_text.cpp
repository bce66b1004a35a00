// String values between their quotation marks. A stored text is written as the UTF-8 it reads
// as through UTF-16, with a backslash before every quotation mark. Text that reads back
// unchanged, nearly all of it, is copied straight; anything else (ill-formed bytes, encoded
// surrogates) takes the trip through UTF-16, which turns it into what it reads as.
#include "writer.h"

namespace {

void i_copia_con_comillas(i_salida_t *salida, const char *texto, size_t longitud) {
    const char *const fin = texto + longitud;
    while (texto != fin) {
        const char *comilla =
            static_cast<const char *>(std::memchr(texto, '"', static_cast<size_t>(fin - texto)));
        const char *tramo_fin = comilla ? comilla : fin;
        if (tramo_fin != texto)
            i_anade_bytes(salida, texto, static_cast<size_t>(tramo_fin - texto));
        if (!comilla)
            break;
        i_anade_bytes(salida, "\\\"", 2);
        texto = comilla + 1;
    }
}

} // namespace

void i_escribe_texto_cadena_json(i_salida_t *salida, const char *texto_utf8) {
    if (!texto_utf8) // a string node made from a null text holds the empty text
        return;
    size_t longitud = 0;
    if (unicode_es_UTF8_estable(texto_utf8, &longitud) == CIERTO) [[likely]] {
        i_copia_con_comillas(salida, texto_utf8, longitud);
        return;
    }
    char16_t *leido = unicode_convierte_UTF8_a_UNICODE(texto_utf8);
    char *reescrito = unicode_convierte_UNICODE_a_UTF8(leido);
    i_copia_con_comillas(salida, reescrito, std::strlen(reescrito));
    marlstr_destruye(&reescrito);
    widestr_nousar_destruye(&leido, i_MODULO, __LINE__);
}
