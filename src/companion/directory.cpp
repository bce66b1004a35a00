// tqbase directory component.
#include "directory.h"

#include <sys/stat.h>

#include "tqbase/cadenas.h"
#include "unicode.h"

tqbool cdir_existe_fichero_UNICODE(const char16_t *nombre_fichero) {
    if (!nombre_fichero)
        return FALSO;
#if defined(_WIN32)
    struct _stat64 estado;
    const bool existe = _wstat64(reinterpret_cast<const wchar_t *>(nombre_fichero), &estado) == 0 &&
                        (estado.st_mode & _S_IFREG) != 0;
#else
    char *ruta = unicode_convierte_UNICODE_a_UTF8(nombre_fichero);
    struct stat estado;
    const bool existe = stat(ruta, &estado) == 0 && S_ISREG(estado.st_mode);
    marlstr_destruye(&ruta);
#endif
    return existe ? CIERTO : FALSO;
}
