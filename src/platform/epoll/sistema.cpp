// SPDX-License-Identifier: Apache-2.0
#include "platform/epoll/sistema.h"

#include "text/texto.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kv {
namespace fs = std::filesystem;
namespace {

std::string conBarras(std::string ruta) {
    for (char& c : ruta) {
        if (c == '\\') c = '/';
    }
    return ruta;
}

/// Goes through what lies in a folder for as long as `sigue` says; false when it cannot be read to
/// the end. A range-based loop would throw in the midst of a folder.
template <class F>
bool recorrer(const fs::path& carpeta, F sigue) {
    std::error_code error;
    for (fs::directory_iterator i(carpeta, error), fin; !error && i != fin; i.increment(error)) {
        if (!sigue(i->path())) break;
    }
    return !error;
}

/// The existing path that differs from `ruta` by the case of letters only, or `ruta` itself.
std::string resolver(const std::string& ruta) {
    std::string recta = conBarras(ruta);
    struct stat s {};
    if (stat(recta.c_str(), &s) == 0) return recta;
    fs::path hecha = !recta.empty() && recta.front() == '/' ? "/" : "";
    for (const fs::path& parte : fs::path(recta).relative_path()) {
        fs::path siguiente = hecha / parte;
        std::error_code error;
        if (!fs::exists(siguiente, error)) {
            recorrer(hecha.empty() ? "." : hecha, [&](const fs::path& hay) {
                const bool es = igualSinCaja(hay.filename().string(), parte.string());
                if (es) siguiente = hecha / hay.filename();
                return !es;
            });
        }
        hecha = std::move(siguiente);
    }
    return hecha.string();
}

/// The file that a link leads to, so that replacing it leaves the link alone; any other path, and a
/// link to nothing, as it is.
std::string seguirEnlace(std::string ruta) {
    std::error_code error;
    if (!fs::is_symlink(ruta, error)) return ruta;
    const fs::path destino = fs::canonical(ruta, error);
    return error ? ruta : destino.string();
}

/// A descriptor closed at the end of its scope.
class Descriptor {
  public:
    Descriptor(const std::string& ruta, int modo) : numero_(open(ruta.c_str(), modo, 0644)) {}
    ~Descriptor() {
        if (numero_ >= 0) close(numero_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    [[nodiscard]] bool abierto() const { return numero_ >= 0; }
    [[nodiscard]] int numero() const { return numero_; }

  private:
    int numero_;
};

bool escribirTodo(int descriptor, std::string_view contenido) {
    while (!contenido.empty()) {
        const ssize_t n = write(descriptor, contenido.data(), contenido.size());
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        contenido.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

/// Holds the file that is to take another's place against other processes until its descriptor is
/// closed. False when another one has it, or had it and put it in its place; or when it is no file,
/// but a device perhaps, which would take the other's place.
bool tomarPara(const std::string& ruta, int descriptor) {
    struct stat abierto {};
    struct stat nombrado {};
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0 && fstat(descriptor, &abierto) == 0 &&
           S_ISREG(abierto.st_mode) && stat(ruta.c_str(), &nombrado) == 0 &&
           abierto.st_ino == nombrado.st_ino;
}

/// Whether an error says that a file cannot be put in the place of another here, as one that is
/// mounted or lies in a folder that we may not write to; not that the disk is full or broken.
bool noSePuedeAlLado(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY ||
           error == EXDEV || error == EISDIR;
}

/// Gives the new file the owner, group and mode of the one it is to replace; false when it may not.
bool igualarDueno(int descriptor, const struct stat& s) {
    struct stat nuevo {};
    if (fstat(descriptor, &nuevo) != 0) return false;
    const bool otro = nuevo.st_uid != s.st_uid || nuevo.st_gid != s.st_gid;
    if (otro && fchown(descriptor, s.st_uid, s.st_gid) != 0) return false;
    return fchmod(descriptor, s.st_mode & 07777) == 0;
}

/// Writes over a file in its place. A reader may see it half done; what it held is put back when it
/// cannot be done.
bool reescribir(const std::string& ruta, std::string_view contenido) {
    const Descriptor d(ruta, O_RDWR | O_CLOEXEC);
    struct stat s {};
    if (!d.abierto() || flock(d.numero(), LOCK_EX | LOCK_NB) != 0 || fstat(d.numero(), &s) != 0)
        return false;
    std::string habia(static_cast<std::size_t>(s.st_size), '\0');
    if (pread(d.numero(), habia.data(), habia.size(), 0) != s.st_size) return false;
    const auto poner = [&d](std::string_view todo) {
        return lseek(d.numero(), 0, SEEK_SET) == 0 && escribirTodo(d.numero(), todo) &&
               ftruncate(d.numero(), static_cast<off_t>(todo.size())) == 0;
    };
    if (poner(contenido)) return true;
    static_cast<void>(poner(habia));
    return false;
}

/// Whether the last line has no end: its writer died, or the disk was full, in the middle of it.
bool quedoSinTerminar(int descriptor) {
    struct stat s {};
    char ultimo = '\n';
    return fstat(descriptor, &s) == 0 && s.st_size > 0 &&
           pread(descriptor, &ultimo, 1, s.st_size - 1) == 1 && ultimo != '\n';
}

} // namespace

std::string ArchivosReales::comoEsta(const std::string& ruta) { return resolver(ruta); }

bool ArchivosReales::existe(const std::string& ruta) { return huella(ruta).existe; }

HuellaDeArchivo ArchivosReales::huella(const std::string& ruta) {
    struct stat s {};
    // A link whose file has gone, with a disk that was not mounted perhaps, counts as existing all
    // the same.
    if (stat(conBarras(ruta).c_str(), &s) != 0 && stat(resolver(ruta).c_str(), &s) != 0 &&
        lstat(conBarras(ruta).c_str(), &s) != 0)
        return {};
    return {true, std::int64_t{s.st_mtim.tv_sec} * 1'000'000'000 + s.st_mtim.tv_nsec,
            static_cast<std::uint64_t>(s.st_size), s.st_ino};
}

std::optional<std::string> ArchivosReales::leer(const std::string& ruta, std::size_t maximo) {
    // A pipe of that name must not be waited for.
    const Descriptor d(resolver(ruta), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (!d.abierto()) return std::nullopt;
    struct stat s {};
    if (fstat(d.numero(), &s) != 0 || !S_ISREG(s.st_mode)) return std::nullopt;
    std::string contenido;
    contenido.reserve(std::min(maximo, static_cast<std::size_t>(s.st_size)) + 1);
    std::array<char, 65536> trozo; // NOLINT: filled by read
    for (;;) {
        const ssize_t n = read(d.numero(), trozo.data(), trozo.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return std::nullopt;
        if (n == 0) return contenido;
        if (contenido.size() + static_cast<std::size_t>(n) > maximo) return std::nullopt;
        contenido.append(trozo.data(), static_cast<std::size_t>(n));
    }
}

bool ArchivosReales::reemplazar(const std::string& ruta, std::string_view contenido) {
    const std::string destino = seguirEnlace(resolver(ruta));
    const std::string nuevo = destino + ".nuevo";
    struct stat s {};
    const bool hay = stat(destino.c_str(), &s) == 0;
    // A file that may not be written stays as it is, although its folder would allow replacing it;
    // so does what is no file.
    if (hay && (!S_ISREG(s.st_mode) || access(destino.c_str(), W_OK) != 0)) return false;
    const Descriptor d(nuevo, O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC);
    if (!d.abierto()) return hay && noSePuedeAlLado(errno) && reescribir(destino, contenido);
    if (!tomarPara(nuevo, d.numero())) return false;
    if (hay && !igualarDueno(d.numero(), s)) {
        unlink(nuevo.c_str());
        return reescribir(destino, contenido);
    }
    // Held until it has taken the place, or another process writes into it meanwhile. Not forced to
    // the disk: the driver must not wait for one.
    const bool escrito = ftruncate(d.numero(), 0) == 0 && escribirTodo(d.numero(), contenido);
    if (escrito && rename(nuevo.c_str(), destino.c_str()) == 0) return true;
    const int error = errno;
    unlink(nuevo.c_str());
    return escrito && hay && noSePuedeAlLado(error) && reescribir(destino, contenido);
}

bool ArchivosReales::agregar(const std::string& ruta, std::string_view lineas) {
    // Nor must a pipe of that name be waited for which nobody empties.
    const Descriptor d(resolver(ruta), O_RDWR | O_CREAT | O_APPEND | O_NONBLOCK | O_CLOEXEC);
    if (!d.abierto()) return false;
    if (!quedoSinTerminar(d.numero())) return escribirTodo(d.numero(), lineas);
    return escribirTodo(d.numero(), "\r\n" + std::string(lineas));
}

bool ArchivosReales::crearCarpeta(const std::string& ruta) {
    std::error_code error;
    fs::create_directories(resolver(ruta), error);
    return !error;
}

std::string porQueNoSeEscribeEn(const std::string& carpeta) {
    const std::string ruta = resolver(carpeta);
    const Descriptor sinNombre(ruta, O_TMPFILE | O_WRONLY | O_CLOEXEC);
    const bool abierto = sinNombre.abierto();
    if (abierto && escribirTodo(sinNombre.numero(), "\n")) return {};
    // Some disks have no files without a name: there what is allowed has to do.
    const bool noHay = !abierto && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL);
    if (noHay && access(ruta.c_str(), W_OK | X_OK) == 0) return {};
    switch (errno) {
    case EACCES:
    case EPERM:
        return "no hay permiso";
    case EROFS:
        return "es de sólo lectura";
    case ENOENT:
        return "no existe";
    case ENOTDIR:
        return "no es una carpeta";
    case ENOSPC:
    case EDQUOT:
        return "no queda lugar";
    case EFBIG:
        return "el sistema no deja que un archivo crezca (ulimit -f)";
    case ELOOP:
        return "sus enlaces no llevan a ninguna parte";
    default:
        return std::generic_category().message(errno);
    }
}

ProcesosReales::~ProcesosReales() {
    if (cerrojo_ >= 0) close(cerrojo_);
    if (atendida_ >= 0) close(atendida_);
}

namespace {

/// The mark by which a file is known to be served: one byte of its folder, which may be read only,
/// stays when the file is replaced, and holds more than one configuration.
struct Marca {
    fs::path carpeta;
    struct flock byte {};
    explicit Marca(const std::string& ruta) {
        constexpr std::uint64_t kAlcance = 0x3FFF'FFFF'FFFF'FFFF;
        std::uint64_t n = 14695981039346656037U; // FNV-1a: the same in every build
        const fs::path archivo = seguirEnlace(resolver(ruta));
        for (const char c : archivo.filename().string())
            n = (n ^ static_cast<unsigned char>(c)) * 1099511628211U;
        carpeta = archivo.has_parent_path() ? archivo.parent_path() : fs::path(".");
        byte.l_whence = SEEK_SET;
        byte.l_start = static_cast<off_t>(n & kAlcance);
        byte.l_len = 1;
    }
    [[nodiscard]] int abrir() const {
        return open(carpeta.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    }
};

} // namespace

void ProcesosReales::atenderConfiguracion(const std::string& ruta) {
    Marca marca(ruta);
    marca.byte.l_type = F_RDLCK;
    const int antes = std::exchange(atendida_, marca.abrir());
    if (atendida_ >= 0) static_cast<void>(fcntl(atendida_, F_OFD_SETLK, &marca.byte));
    if (antes >= 0) close(antes);
}

bool configuracionAtendida(const std::string& ruta) {
    Marca marca(ruta);
    marca.byte.l_type = F_WRLCK; // is only asked about
    const int d = marca.abrir();
    if (d < 0) return false;
    const bool otro = fcntl(d, F_OFD_GETLK, &marca.byte) == 0 && marca.byte.l_type != F_UNLCK;
    close(d);
    return otro;
}

bool ProcesosReales::tomarCarpeta(const std::string& carpeta) {
    const int d = open(resolver(carpeta).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (d < 0) return true; // a folder that cannot be opened tells nothing
    if (flock(d, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        close(d);
        return false;
    }
    cerrojo_ = d;
    return true;
}

void pedirDescriptores() {
    rlimit limite{};
    if (getrlimit(RLIMIT_NOFILE, &limite) != 0 || limite.rlim_cur == limite.rlim_max) return;
    limite.rlim_cur = limite.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limite);
}

namespace {

/// The file that this process was started from, also when it was replaced by a newer one since;
/// empty when the system does not say.
fs::path archivoDelPrograma(std::error_code& error) {
    constexpr std::string_view kBorrado = " (deleted)";
    std::string archivo = fs::read_symlink("/proc/self/exe", error).string();
    if (archivo.ends_with(kBorrado)) archivo.resize(archivo.size() - kBorrado.size());
    return archivo;
}

} // namespace

std::string carpetaDelPrograma() {
    std::error_code error;
    const fs::path archivo = archivoDelPrograma(error);
    return error ? fs::current_path().string() : archivo.parent_path().string();
}

std::string nombreDelPrograma() {
    std::error_code error;
    return archivoDelPrograma(error).stem().string();
}

void empezarDeNuevo(char** argumentos) {
    std::error_code error;
    const std::string archivo = archivoDelPrograma(error).string();
    if (error) throw std::system_error(error, "/proc/self/exe");
    execv(archivo.c_str(), argumentos);
    throw std::system_error(errno, std::generic_category(), archivo);
}

void usarPaginasGrandes(char** argumentos) {
    constexpr const char* kDeLaMemoria = "GLIBC_TUNABLES";
    if (std::getenv(kDeLaMemoria) != nullptr) return; // NOLINT: there is one thread yet
    setenv(kDeLaMemoria, "glibc.malloc.hugetlb=1", 1);
    try {
        empezarDeNuevo(argumentos);
    } catch (const std::system_error&) { // small ones will do
    }
}

} // namespace kv
