/* Builds a small order document through the tqjson2 exports and writes it as indented JSON:
   to standard output, or to the file named by the only argument. The project builds it as
   build/default/examples/write_document (cmake --build --preset default --target
   write_document); run that, or build/windows/wine-run build/windows/examples/write_document.exe
   for the Windows build. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tqjson2.h"

/* A copy of `texto` in a block of the tqbase memory component, as the UTF-8 appends require:
   they take the string over and free it with the tree. */
static char *copia_utf8(const char *texto) {
    const size_t tam = strlen(texto) + 1;
    char *copia = marlspy_nousar_malloc(tam);
    memcpy(copia, texto, tam);
    return copia;
}

/* The UTF-16 form of a UTF-8 path, in a block the caller frees with free(); null when the path
   is not well-formed UTF-8. */
static char16_t *utf8_a_utf16(const char *texto) {
    const unsigned char *p = (const unsigned char *)texto;
    /* Never more UTF-16 units than bytes: a 4-byte sequence gives two units. */
    char16_t *resultado = malloc((strlen(texto) + 1) * sizeof(char16_t));
    char16_t *salida = resultado;
    if (resultado == NULL)
        return NULL;
    while (*p) {
        uint32_t punto;
        int continuaciones;
        uint32_t minimo;
        if (*p < 0x80) {
            punto = *p;
            continuaciones = 0;
            minimo = 0;
        } else if ((*p & 0xE0) == 0xC0) {
            punto = *p & 0x1Fu;
            continuaciones = 1;
            minimo = 0x80;
        } else if ((*p & 0xF0) == 0xE0) {
            punto = *p & 0x0Fu;
            continuaciones = 2;
            minimo = 0x800;
        } else if ((*p & 0xF8) == 0xF0) {
            punto = *p & 0x07u;
            continuaciones = 3;
            minimo = 0x10000;
        } else {
            free(resultado);
            return NULL;
        }
        ++p;
        for (int i = 0; i < continuaciones; ++i, ++p) {
            if ((*p & 0xC0) != 0x80) { /* also stops at the terminator */
                free(resultado);
                return NULL;
            }
            punto = (punto << 6) | (*p & 0x3Fu);
        }
        /* Overlong forms, surrogates and values beyond Unicode are not characters. */
        if (punto < minimo || (punto >= 0xD800 && punto <= 0xDFFF) || punto > 0x10FFFF) {
            free(resultado);
            return NULL;
        }
        if (punto >= 0x10000) {
            punto -= 0x10000;
            *salida++ = (char16_t)(0xD800 | (punto >> 10));
            *salida++ = (char16_t)(0xDC00 | (punto & 0x3FF));
        } else {
            *salida++ = (char16_t)punto;
        }
    }
    *salida = 0;
    return resultado;
}

/* One line of the order: a book with its price and the units ordered. */
static tqjson2_nodo_t *crea_linea(const char16_t *titulo, const char *isbn, uint32_t unidades,
                                  double precio) {
    tqjson2_nodo_t *linea = tqjson2_crea_nodo_objeto();
    char *isbn_utf8 = copia_utf8(isbn);
    tqjson2_append_cadena_unicode_a_objeto(linea, u"titulo", titulo);
    tqjson2_append_cadena_utf8_a_objeto(linea, u"isbn", &isbn_utf8);
    tqjson2_append_ulong_a_objeto(linea, u"unidades", unidades);
    tqjson2_append_double_a_objeto(linea, u"precio", precio);
    return linea;
}

static tqjson2_nodo_t *crea_documento(void) {
    tqjson2_nodo_t *pedido = tqjson2_crea_nodo_objeto();
    tqjson2_append_long_a_objeto(pedido, u"numero", 1042);
    tqjson2_append_long_a_objeto(pedido, u"ajuste_stock", -3);
    tqjson2_append_ulong_a_objeto(pedido, u"puntos_cliente", 1500000000u);
    /* Texts that the escaped form and the writer have to take care of. */
    tqjson2_append_cadena_unicode_a_objeto(pedido, u"nota",
                                           u"Dejar en \"conserjer\u00eda\"\tpiso 2/B\n"
                                           u"llamar antes");
    tqjson2_append_cadena_unicode_a_objeto(pedido, u"factura", u"C:\\facturas\\1042.pdf");
    tqjson2_append_cadena_unicode_a_objeto(pedido, u"seguimiento",
                                           u"https://tienda.example/pedidos/1042");

    /* The customer, one text per source encoding. */
    tqjson2_nodo_t *cliente = tqjson2_crea_nodo_objeto();
    char *correo = copia_utf8("zo\xC3\xAB@example.org");
    tqjson2_append_cadena_unicode_a_objeto(cliente, u"nombre", u"Zo\u00eb Mart\u00edn");
    tqjson2_append_cadena_utf8_a_objeto(cliente, u"correo", &correo);
    tqjson2_append_cadena_ansi_a_objeto(cliente, u"ciudad", "M\xE1laga"); /* Windows-1252 */
    tqjson2_append_tqbool_a_objeto(cliente, u"registrado", CIERTO);
    tqjson2_append_null_a_objeto(cliente, u"telefono");
    tqjson2_append_nodo_a_objeto(pedido, u"cliente", &cliente);

    /* The lines, each an object built apart and then handed to the array. */
    tqjson2_nodo_t *lineas = tqjson2_crea_nodo_array();
    tqjson2_nodo_t *linea =
        crea_linea(u"\u65e5\u672c\u8a9e\u306e\u6587\u6cd5", "9784000000001", 1, 24.5);
    tqjson2_append_elemento_a_array(lineas, &linea);
    linea = crea_linea(u"Caf\u00e9 y \"tertulia\"", "9788400000002", 2, 8.7);
    tqjson2_append_elemento_a_array(lineas, &linea);
    tqjson2_append_nodo_a_objeto(pedido, u"lineas", &lineas);

    /* Doubles: an integral one keeps its point, a fraction has up to 15 significant digits. */
    tqjson2_append_double_a_objeto(pedido, u"peso_kg", 2.0);
    tqjson2_append_double_a_objeto(pedido, u"descuento", 0.1);
    tqjson2_append_double_a_objeto(pedido, u"total", 37.71);
    tqjson2_append_tqbool_a_objeto(pedido, u"pagado", CIERTO);
    tqjson2_append_tqbool_a_objeto(pedido, u"regalo", FALSO);
    tqjson2_append_null_a_objeto(pedido, u"cupon");

    /* An array of every scalar kind, through the array forms of the appends. */
    tqjson2_nodo_t *registro = tqjson2_crea_nodo_array();
    char *estado = copia_utf8("enviado \xE2\x86\x92 Espa\xC3\xB1" /* split: 'a' is a hex digit */
                              "a");
    tqjson2_nodo_t *nulo = tqjson2_crea_nodo_null();
    tqjson2_append_cadena_unicode_a_array(registro, u"recibido \u2713");
    tqjson2_append_cadena_utf8_a_array(registro, &estado);
    tqjson2_append_cadena_ansi_a_array(registro, "almac\xE9n");
    tqjson2_append_long_a_array(registro, -7);
    tqjson2_append_ulong_a_array(registro, 7u);
    tqjson2_append_double_a_array(registro, 1.5e-3);
    tqjson2_append_bool_a_array(registro, FALSO);
    tqjson2_append_elemento_a_array(registro, &nulo);

    /* Empty containers are written too. */
    tqjson2_nodo_t *vacio_objeto = tqjson2_crea_nodo_objeto();
    tqjson2_nodo_t *vacio_array = tqjson2_crea_nodo_array();
    tqjson2_append_elemento_a_array(registro, &vacio_objeto);
    tqjson2_append_elemento_a_array(registro, &vacio_array);
    tqjson2_append_nodo_a_objeto(pedido, u"registro", &registro);

    /* The shipment: an array nested in an object nested in the root. */
    tqjson2_nodo_t *envio = tqjson2_crea_nodo_objeto();
    tqjson2_nodo_t *medidas = tqjson2_crea_nodo_array();
    tqjson2_append_double_a_array(medidas, 30.0);
    tqjson2_append_double_a_array(medidas, 21.5);
    tqjson2_append_long_a_array(medidas, 4);
    tqjson2_append_nodo_a_objeto(envio, u"medidas_cm", &medidas);
    tqjson2_append_cadena_unicode_a_objeto(envio, u"transportista", u"R\u00e1pido / 24 h");
    tqjson2_append_nodo_a_objeto(pedido, u"envio", &envio);
    return pedido;
}

/* A file that cannot be opened, like any broken precondition, is an internal-error report and
   not a return value: counting the reports is how the program learns that something failed. */
static int num_informes = 0;

static void cuenta_informe(const char *condicion, const char *modulo, int linea) {
    fprintf(stderr, "%s:%d: internal error: %s\n", modulo, linea, condicion);
    ++num_informes;
}

static void uso(FILE *flujo, const char *programa) {
    fprintf(flujo,
            "usage: %s [PATH]\n"
            "Builds an order document and writes it as indented JSON: to standard output, or\n"
            "to the file PATH (created or emptied).\n",
            programa);
}

int main(int argc, char **argv) {
    if (argc > 2 || (argc == 2 && strcmp(argv[1], "--help") == 0)) {
        uso(argc > 2 ? stderr : stdout, argv[0]);
        return argc > 2 ? 2 : 0;
    }
    char16_t *ruta = NULL;
    if (argc == 2) {
        ruta = utf8_a_utf16(argv[1]);
        if (ruta == NULL) {
            fprintf(stderr, "%s: the path is not valid UTF-8\n", argv[0]);
            return 2;
        }
    }

    error_interno_set_manejador(cuenta_informe);
    tqjson2_nodo_t *documento = crea_documento();
    if (ruta == NULL) {
        char *texto = tqjson2_genera_texto_utf8(documento);
        fputs(texto, stdout);
        marlstr_destruye(&texto);
    } else {
        tqjson2_escribe_fichero(documento, ruta);
        free(ruta);
        if (num_informes == 0)
            printf("written to %s\n", argv[1]);
        else
            fprintf(stderr, "%s: could not write %s\n", argv[0], argv[1]);
    }
    tqjson2_destruye_nodo(&documento);
    return num_informes == 0 ? 0 : 1;
}
