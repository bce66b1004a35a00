/* tqbase: files saved by wide name. A save never destroys what the file held before: the bytes
   go into a new file beside it, which takes the file's place in one step once every byte is on
   the device. A reader sees the old content or the new one, never a part. */
#ifndef TQBASE_FICHEROS_H
#define TQBASE_FICHEROS_H

#include "tipos.h"

TQBASE_C_INICIO

typedef struct lc_fichero lc_fichero_t;

/* Opens `nombre` (wide, UTF-16) in the fopen manner with the wide mode `modo`. A write mode
   ("wt", "wb": from the start, as text or as bytes; on POSIX text mode changes no byte) starts
   a save: what is written reaches `nombre` only at lc_fclose. The save keeps the file's
   permissions and, when `nombre` is a symbolic link, replaces the file it points to; a new file
   gets the mode of an ordinary open. A file that is no regular file (a device, a pipe), that
   has other hard links, or beside which no file can be made is written in place.
   A file that cannot be opened is reported against the caller's `modulo` and `linea` (which
   the later steps' reports carry too) and gives null, with errno set to the system's reason;
   ctxt_printf, lc_fwrite, lc_fclose and lc_fdescarta accept null and do nothing. */
TQBASE_API lc_fichero_t *f_lc_fopen_u(const char16_t *nombre, const char16_t *modo,
                                      const char *modulo, int linea);

/* Writes `num` bytes. FALSO once a write of this file has failed: the save then fails at
   lc_fclose, and later writes are skipped. */
TQBASE_API tqbool lc_fwrite(lc_fichero_t *fichero, const void *datos, size_t num);

/* Ends the save and frees the handle: puts every byte written on the device, closes the file
   and puts it in the place of the name opened. 0 on success. Otherwise the first step that
   failed (write, flush to the device, close, replace) is reported against the open's module
   string and line, the file keeps what it held before (a file written in place keeps what
   reached it) and the result is the system's error number of that step (errno, for strerror;
   EBADF for a null handle). */
TQBASE_API int lc_fclose(lc_fichero_t *fichero);

/* Gives up the save and frees the handle: the file keeps what it held before (a file written in
   place keeps what reached it). Nothing is reported. */
TQBASE_API void lc_fdescarta(lc_fichero_t *fichero);

TQBASE_C_FIN

#endif
