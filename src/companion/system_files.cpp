#include "system_files.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tqbase/cadenas.h"
#include "unicode.h"
#endif

namespace {

// A new file's name: hidden where the system hides dot files, and unlikely to be taken. The
// file is made only if no file has the name, so a taken one is merely tried again.
i_ruta_t i_nombre_nuevo() {
    static std::atomic<uint64_t> g_contador{0};
    uint64_t valor =
        static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    valor = (valor ^ g_contador.fetch_add(1, std::memory_order_relaxed)) * 0x9E3779B97F4A7C15u;
    i_ruta_t nombre;
    for (const char *c = ".tqbase-"; *c; ++c)
        nombre += static_cast<i_ruta_t::value_type>(*c);
    for (int cifra = 0; cifra < 16; ++cifra, valor >>= 4)
        nombre += static_cast<i_ruta_t::value_type>("0123456789abcdef"[valor & 15]);
    return nombre;
}

// The folder part of `ruta`, separator included; empty for a name in the current folder.
i_ruta_t i_carpeta(const i_ruta_t &ruta) {
#if defined(_WIN32)
    const size_t fin = ruta.find_last_of(L"\\/:");
#else
    const size_t fin = ruta.rfind('/');
#endif
    return fin == i_ruta_t::npos ? i_ruta_t{} : ruta.substr(0, fin + 1);
}

#if defined(_WIN32)

int i_errno_de(DWORD error) {
    switch (error) {
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return ENOSPC;
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return EACCES;
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return ENOENT;
        default:
            return EIO;
    }
}

// Whether the open target `objetivo` (links followed) may be replaced: a disk file without other
// hard links that is not read-only. Sets the file to replace (the link's target when `ruta` is
// a link) and the attributes the new file takes over.
bool i_reemplazable(HANDLE objetivo, const std::wstring &ruta, std::wstring *destino,
                    DWORD *atributos) {
    BY_HANDLE_FILE_INFORMATION informacion;
    if (GetFileType(objetivo) != FILE_TYPE_DISK ||
        !GetFileInformationByHandle(objetivo, &informacion) || informacion.nNumberOfLinks != 1 ||
        (informacion.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)))
        return false;
    const DWORD propios = informacion.dwFileAttributes &
                          (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                           FILE_ATTRIBUTE_NOT_CONTENT_INDEXED);
    *atributos = propios ? propios : FILE_ATTRIBUTE_NORMAL;
    const DWORD del_nombre = GetFileAttributesW(ruta.c_str());
    if (del_nombre == INVALID_FILE_ATTRIBUTES || !(del_nombre & FILE_ATTRIBUTE_REPARSE_POINT))
        return true;
    wchar_t final[MAX_PATH * 4];
    const DWORD longitud = GetFinalPathNameByHandleW(objetivo, final, MAX_PATH * 4, 0);
    if (longitud == 0 || longitud >= MAX_PATH * 4)
        return false;
    destino->assign(final, longitud);
    return true;
}

#else

// The file that `ruta` leads to: a save replaces the file a symbolic link points to, and the
// link stays. A link that points nowhere leads to the name it holds.
std::string i_sigue_enlaces(std::string ruta) {
    for (int salto = 0; salto < 40; ++salto) {
        struct stat estado;
        char enlace[PATH_MAX];
        if (lstat(ruta.c_str(), &estado) != 0 || !S_ISLNK(estado.st_mode))
            break;
        const ssize_t longitud = readlink(ruta.c_str(), enlace, sizeof enlace);
        if (longitud <= 0 || longitud == static_cast<ssize_t>(sizeof enlace))
            break;
        const std::string objetivo(enlace, static_cast<size_t>(longitud));
        ruta = objetivo[0] == '/' ? objetivo : i_carpeta(ruta) + objetivo;
    }
    return ruta;
}

// Gives the new file the target's owner, then its permissions (in that order: a change of
// owner clears the set-user-ID bits).
bool i_toma_permisos(int descriptor, const struct stat &estado) {
    return fchown(descriptor, estado.st_uid, estado.st_gid) == 0 &&
           fchmod(descriptor, estado.st_mode & 07777) == 0;
}

#endif

} // namespace

#if defined(_WIN32)

i_ruta_t i_ruta_sistema(const char16_t *nombre) {
    return reinterpret_cast<const wchar_t *>(nombre);
}

std::FILE *i_sistema_abre(const i_ruta_t &ruta, const char16_t *modo) {
    return _wfopen(ruta.c_str(), reinterpret_cast<const wchar_t *>(modo));
}

// A target that another process holds open without sharing its deletion cannot be replaced:
// the probe that asks for deletion finds out before any new file is made.
i_al_lado_t i_sistema_crea_al_lado(const i_ruta_t &ruta, bool texto) {
    i_al_lado_t al_lado{nullptr, ruta, {}, 0};
    DWORD atributos = FILE_ATTRIBUTE_NORMAL;
    HANDLE objetivo = CreateFileW(ruta.c_str(), DELETE | FILE_READ_ATTRIBUTES,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (objetivo == INVALID_HANDLE_VALUE) {
        if (GetLastError() != ERROR_FILE_NOT_FOUND)
            return al_lado;
    } else {
        const bool reemplazable = i_reemplazable(objetivo, ruta, &al_lado.destino, &atributos);
        CloseHandle(objetivo);
        if (!reemplazable)
            return al_lado;
    }
    HANDLE nuevo = INVALID_HANDLE_VALUE;
    DWORD error = ERROR_FILE_EXISTS;
    for (int intento = 0; intento < 100 && error == ERROR_FILE_EXISTS; ++intento) {
        al_lado.nuevo = i_carpeta(al_lado.destino) + i_nombre_nuevo();
        nuevo = CreateFileW(al_lado.nuevo.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                            CREATE_NEW, atributos, nullptr);
        error = nuevo == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS;
    }
    if (nuevo == INVALID_HANDLE_VALUE) {
        al_lado.fallo = error == ERROR_ACCESS_DENIED ? 0 : i_errno_de(error);
        al_lado.nuevo.clear();
        return al_lado;
    }
    // Text mode comes from the C runtime, as for a file opened in place.
    const int descriptor =
        _open_osfhandle(reinterpret_cast<intptr_t>(nuevo), texto ? _O_TEXT : _O_BINARY);
    al_lado.flujo = descriptor < 0 ? nullptr : _fdopen(descriptor, texto ? "wt" : "wb");
    if (!al_lado.flujo) {
        al_lado.fallo = EMFILE;
        if (descriptor < 0)
            CloseHandle(nuevo);
        else
            _close(descriptor);
        i_sistema_borra(al_lado.nuevo);
        al_lado.nuevo.clear();
    }
    return al_lado;
}

int i_sistema_vuelca(std::FILE *flujo) {
    const auto manejador = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(flujo)));
    return FlushFileBuffers(manejador) ? 0 : i_errno_de(GetLastError());
}

int i_sistema_sustituye(const i_ruta_t &nuevo, const i_ruta_t &destino) {
    return MoveFileExW(nuevo.c_str(), destino.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)
               ? 0
               : i_errno_de(GetLastError());
}

void i_sistema_borra(const i_ruta_t &ruta) {
    DeleteFileW(ruta.c_str());
}

#else

i_ruta_t i_ruta_sistema(const char16_t *nombre) {
    char *utf8 = unicode_convierte_UNICODE_a_UTF8(nombre);
    std::string ruta = utf8;
    marlstr_destruye(&utf8);
    return ruta;
}

// Text mode is binary mode on POSIX: 't' is dropped.
std::FILE *i_sistema_abre(const i_ruta_t &ruta, const char16_t *modo) {
    char modo_c[8];
    size_t longitud = 0;
    for (const char16_t *m = modo; *m && longitud + 1 < sizeof modo_c; ++m)
        if (*m != u't')
            modo_c[longitud++] = static_cast<char>(*m);
    modo_c[longitud] = '\0';
    return std::fopen(ruta.c_str(), modo_c);
}

// A folder that refuses a new file leaves the target to be written in place; any other failure
// (a full disk) is the save's, and the target is not touched.
i_al_lado_t i_sistema_crea_al_lado(const i_ruta_t &ruta, bool) {
    i_al_lado_t al_lado{nullptr, i_sigue_enlaces(ruta), {}, 0};
    struct stat estado;
    const bool existe = stat(al_lado.destino.c_str(), &estado) == 0;
    if (existe ? (!S_ISREG(estado.st_mode) || estado.st_nlink != 1) : errno != ENOENT)
        return al_lado;
    // A file the caller may not write is not replaced either: the open in place refuses it.
    if (existe && faccessat(AT_FDCWD, al_lado.destino.c_str(), W_OK, AT_EACCESS) != 0)
        return al_lado;
    // Made with no more permissions than the target has, so that no one else can read it
    // meanwhile; a new target's mode is an ordinary open's, 0666 less the umask.
    int descriptor = -1;
    for (int intento = 0; intento < 100 && descriptor < 0; ++intento) {
        al_lado.nuevo = i_carpeta(al_lado.destino) + i_nombre_nuevo();
        descriptor = open(al_lado.nuevo.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                          existe ? estado.st_mode & 0777 : 0666);
        if (descriptor < 0 && errno != EEXIST)
            break;
    }
    if (descriptor < 0) {
        al_lado.fallo = errno == EACCES || errno == EPERM ? 0 : errno;
        al_lado.nuevo.clear();
        return al_lado;
    }
    if (existe && !i_toma_permisos(descriptor, estado)) { // what the target was cannot be kept
        close(descriptor);
        i_sistema_borra(al_lado.nuevo);
        al_lado.nuevo.clear();
        return al_lado;
    }
    al_lado.flujo = fdopen(descriptor, "w");
    if (!al_lado.flujo) {
        al_lado.fallo = errno;
        close(descriptor);
        i_sistema_borra(al_lado.nuevo);
        al_lado.nuevo.clear();
    }
    return al_lado;
}

int i_sistema_vuelca(std::FILE *flujo) {
    return fsync(fileno(flujo)) == 0 ? 0 : errno;
}

// The folder is put on the device too, so that the new name survives a crash; the save is done
// by then, so a folder that cannot be synchronised changes nothing.
int i_sistema_sustituye(const i_ruta_t &nuevo, const i_ruta_t &destino) {
    if (std::rename(nuevo.c_str(), destino.c_str()) != 0)
        return errno;
    const std::string carpeta = i_carpeta(destino);
    const int descriptor = open(carpeta.empty() ? "." : carpeta.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
    return 0;
}

void i_sistema_borra(const i_ruta_t &ruta) {
    unlink(ruta.c_str());
}

#endif
