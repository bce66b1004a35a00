// What the file component asks of the system, each platform's way in one place: the name a wide
// name stands for, the new file a save writes beside its target, and the steps that put that file
// on the device and in the target's place. Failures are the system's error numbers as errno
// values, on Windows too.
#pragma once

#include <cstdio>
#include <string>

#if defined(_WIN32)
using i_ruta_t = std::wstring;
#else
using i_ruta_t = std::string;
#endif

// The system's name for the wide `nombre` (UTF-8 on POSIX).
i_ruta_t i_ruta_sistema(const char16_t *nombre);

// Opens `ruta` itself, as fopen does with the wide mode `modo`; null with errno set.
std::FILE *i_sistema_abre(const i_ruta_t &ruta, const char16_t *modo);

// Where a save of `ruta` writes.
struct i_al_lado_t {
    std::FILE *flujo; // the new file, open for writing; null when there is none
    i_ruta_t destino; // the file it replaces: `ruta` with its symbolic links followed
    i_ruta_t nuevo;   // the new file's name, beside `destino`
    int fallo;        // without a new file: 0 to write `ruta` in place, else why none was made
};

// Makes the new file of a save of `ruta`, open for writing as text or as bytes, with the
// permissions of the file it replaces or, for a new one, those of an ordinary open. None is
// made for a target that must be written in place: one that is no regular file, has other hard
// links, or beside which no file can be made.
i_al_lado_t i_sistema_crea_al_lado(const i_ruta_t &ruta, bool texto);

// Puts what the system holds of the file, already flushed from the stream, on the device.
int i_sistema_vuelca(std::FILE *flujo);
// Puts the closed file `nuevo` in the place of `destino` in one step.
int i_sistema_sustituye(const i_ruta_t &nuevo, const i_ruta_t &destino);
void i_sistema_borra(const i_ruta_t &ruta);
