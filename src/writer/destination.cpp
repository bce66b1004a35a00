// The writer's destination: lines built in place in one byte buffer, which either becomes the
// generated text or is handed to the file in large pieces.
#include "writer.h"

const tqjson2_conf_escritura_t i_conf_escritura_defecto = {CIERTO, CIERTO};

namespace {

// Pending bytes after which a file destination hands its lines to the file.
constexpr size_t i_UMBRAL_VOLCADO = size_t{1} << 16;

constexpr size_t i_CAPACIDAD_INICIAL = 256;

} // namespace

void i_amplia_salida(i_salida_t *salida, size_t minimo) {
    size_t capacidad =
        salida->capacidad < i_CAPACIDAD_INICIAL ? i_CAPACIDAD_INICIAL : salida->capacidad * 2;
    if (capacidad < minimo)
        capacidad = minimo;
    salida->datos = static_cast<char *>(marlspy_nousar_realloc(salida->datos, capacidad));
    salida->capacidad = capacidad;
}

i_destino_gltf_t i_crea_destino(uint32_t tipo_destino, lc_fichero_t *fichero,
                                const tqjson2_conf_escritura_t *conf) {
    return {tipo_destino, fichero, {nullptr, 0, 0}, 0, conf};
}

void i_entrega_linea(i_destino_gltf_t *destino_gltf) {
    switch (destino_gltf->tipo_destino) {
        case i_DESTINO_FICHERO:
            if (destino_gltf->texto.longitud >= i_UMBRAL_VOLCADO)
                i_vuelca_destino(destino_gltf);
            break;
        case i_DESTINO_LINEAS:
            break;
        default: // the line has nowhere to go
            i_ERROR_DEFAULT();
            destino_gltf->texto.longitud = destino_gltf->inicio_linea;
            break;
    }
}

void i_vuelca_destino(i_destino_gltf_t *destino_gltf) {
    i_salida_t *texto = &destino_gltf->texto;
    if (destino_gltf->tipo_destino != i_DESTINO_FICHERO || texto->longitud == 0)
        return;
    // No line holds a zero byte, so the pending lines go as one string.
    *i_reserva_salida(texto, 1) = '\0';
    ctxt_printf(destino_gltf->fichero, "%s", texto->datos);
    texto->longitud = 0;
}

char *i_entrega_texto(i_destino_gltf_t *destino_gltf) {
    i_salida_t *texto = &destino_gltf->texto;
    *i_reserva_salida(texto, 1) = '\0';
    // The buffer goes as it is, not cut to the text: cutting a large block moves or remaps
    // it, and teaches the system allocator to map and unmap it afresh on every generation.
    char *resultado = texto->datos;
    *texto = {nullptr, 0, 0};
    return resultado;
}

void i_libera_destino(i_destino_gltf_t *destino_gltf) {
    marlspy_nousar_free_pp(&destino_gltf->texto.datos, 1);
    destino_gltf->texto = {nullptr, 0, 0};
}
