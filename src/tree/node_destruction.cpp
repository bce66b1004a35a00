// Destroying nodes and members. Destruction runs on a work stack instead of the C stack, so a
// tree of any depth is destroyed in constant stack space.
#include <vector>

#include "tree/nodes.h"

namespace {

// The records of a tree being destroyed go back to the memory component many at a time.
class i_liberaciones {
  public:
    i_liberaciones() = default;
    i_liberaciones(const i_liberaciones &) = delete;
    i_liberaciones &operator=(const i_liberaciones &) = delete;
    ~i_liberaciones() { vacia(); }
    void agrega(void *bloque) {
        if (num_ == i_MAX)
            vacia();
        bloques_[num_++] = bloque;
    }

  private:
    static constexpr uint32_t i_MAX = 128;
    void vacia() {
        marlspy_nousar_free_lote(bloques_, num_);
        num_ = 0;
    }
    void *bloques_[i_MAX];
    uint32_t num_ = 0;
};

// Frees the member's name and record and hands back the value it owned (null for a borrowed
// or missing value), which the caller destroys.
tqjson2_nodo_t *i_desmonta_atributo(tqjson2_atributo_t *a, i_liberaciones &liberaciones) {
    if (a->nombre != i_nombre_en_linea(a))
        widestr_nousar_destruye(&a->nombre, i_MODULO, __LINE__);
    tqjson2_nodo_t *valor_propio = (a->es_propietario == CIERTO) ? a->valor : nullptr;
    liberaciones.agrega(a);
    return valor_propio;
}

// Hands a member or element array's own blocks to the batch; its children are the caller's.
void i_desmonta_array(arr_puntero_t **arr, i_liberaciones &liberaciones) {
    void *bloques[2];
    const uint32_t num = arr_DesmontaPunteroConTipo(arr, bloques);
    for (uint32_t i = 0; i < num; ++i)
        liberaciones.agrega(bloques[i]);
}

} // namespace

void i_destruye_atributo(tqjson2_atributo_t **atributo) {
    if (!i_VERIFICA_NO_NULO(atributo) || !i_VERIFICA_NO_NULO(*atributo))
        return;
    tqjson2_nodo_t *valor = nullptr;
    {
        i_liberaciones liberaciones;
        valor = i_desmonta_atributo(i_toma(atributo), liberaciones);
    }
    if (valor)
        tqjson2_destruye_nodo(&valor);
}

// Frees a node that holds no other node (a scalar or a string) at once; a container waits on
// `pendientes`, and so does a node of no known kind, whose report i_desmonta_nodo makes. Every
// node of a tree being destroyed, its root included, comes through here.
[[gnu::always_inline]] static inline void i_desmonta_hijo(tqjson2_nodo_t *nodo,
                                                          std::vector<tqjson2_nodo_t *> &pendientes,
                                                          i_liberaciones &liberaciones) {
    switch (nodo->tipo) {
        case TQJSON_TIPO_CADENA:
            liberaciones.agrega(nodo->cadena_utf8); // a block of the memory component
            [[fallthrough]];
        case TQJSON_TIPO_ENTERO:
        case TQJSON_TIPO_DOUBLE:
        case TQJSON_TIPO_BOOLEANO:
        case TQJSON_TIPO_NULL:
            liberaciones.agrega(nodo);
            break;
        default:
            pendientes.push_back(nodo);
            break;
    }
}

// Takes apart a container that i_desmonta_hijo set aside (its children go through it in turn)
// and frees its record; a node of no known kind is reported and freed.
static void i_desmonta_nodo(tqjson2_nodo_t *nodo, std::vector<tqjson2_nodo_t *> &pendientes,
                            i_liberaciones &liberaciones) {
    switch (nodo->tipo) {
        case TQJSON_TIPO_OBJETO:
            if (nodo->atributos_objeto) {
                uint32_t num = 0;
                void *const *atributos = arr_DatosPunteroConTipo(nodo->atributos_objeto, &num);
                for (uint32_t i = 0; i < num; ++i) {
                    // A null slot is reported as destroying a member through it would be.
                    if (!i_verifica(atributos[i] != nullptr, i_TEXTO_NO_NULO(*atributo), i_MODULO,
                                    __LINE__))
                        continue;
                    auto *atributo = static_cast<tqjson2_atributo_t *>(atributos[i]);
                    if (tqjson2_nodo_t *valor = i_desmonta_atributo(atributo, liberaciones))
                        i_desmonta_hijo(valor, pendientes, liberaciones);
                }
                i_desmonta_array(&nodo->atributos_objeto, liberaciones);
            }
            break;
        case TQJSON_TIPO_ARRAY:
            if (nodo->valores_array) {
                uint32_t num = 0;
                void *const *valores = arr_DatosPunteroConTipo(nodo->valores_array, &num);
                for (uint32_t i = 0; i < num; ++i)
                    if (i_verifica(valores[i] != nullptr, i_TEXTO_NO_NULO(*nodo), i_MODULO,
                                   __LINE__))
                        i_desmonta_hijo(static_cast<tqjson2_nodo_t *>(valores[i]), pendientes,
                                        liberaciones);
                i_desmonta_array(&nodo->valores_array, liberaciones);
            }
            break;
        default:
            i_ERROR_DEFAULT(); // the record is freed all the same
            break;
    }
    liberaciones.agrega(nodo);
}

void tqjson2_destruye_nodo(tqjson2_nodo_t **nodo) {
    if (!i_VERIFICA_NO_NULO(nodo) || !i_VERIFICA_NO_NULO(*nodo))
        return;
    std::vector<tqjson2_nodo_t *> pendientes;
    i_liberaciones liberaciones;
    i_desmonta_hijo(i_toma(nodo), pendientes, liberaciones);
    while (!pendientes.empty()) {
        tqjson2_nodo_t *siguiente = pendientes.back();
        pendientes.pop_back();
        i_desmonta_nodo(siguiente, pendientes, liberaciones);
    }
}

void i_destruye_nodo_elemento(void *nodo) {
    tqjson2_destruye_nodo(static_cast<tqjson2_nodo_t **>(nodo));
}
