// SPDX-License-Identifier: Apache-2.0
// Loaded into a program under test before everything else: stands between it and the kernel, and
// lets calls fail, or the whole program die, where the environment says.
//
//     KV_FALLAS=matar:12                dies, as by kill -9, at the 12th step of writing files
//     KV_FALLAS=write:ENOSPC:3:0:1      from the 3rd write to a file on (to the last: 0) every one
//     KV_FALLAS=recv:EINTR:1:0:2,...    every second one; "corto" instead of an error lets one byte
//                                       through
//     KV_CUENTA=file                    written at an orderly end: steps of writing, a blank, and
//                                       how often the program asked for a peer to accept
//
// A step of writing is an open for writing, a write (two steps: before it, and with half of it
// done), and a close, rename, unlink, mkdir or change of mode or length. Every call goes
// straight to the kernel, so that nothing here depends on the order of loading.

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <span>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int kCorto = -1;
constexpr std::size_t kDescriptores = 4096;

struct Regla {
    std::string llamada;
    int error = 0;
    long desde = 1, hasta = 0, cada = 1;
    long vistas = 0;
};

int errorDe(std::string_view nombre) {
    constexpr std::array<std::pair<std::string_view, int>, 9> kErrores{{{"corto", kCorto},
                                                                        {"ENOSPC", ENOSPC},
                                                                        {"EIO", EIO},
                                                                        {"EINTR", EINTR},
                                                                        {"EAGAIN", EAGAIN},
                                                                        {"EMFILE", EMFILE},
                                                                        {"ENOMEM", ENOMEM},
                                                                        {"ECONNRESET", ECONNRESET},
                                                                        {"ENOBUFS", ENOBUFS}}};
    for (const auto& [n, e] : kErrores) {
        if (n == nombre) return e;
    }
    std::abort();
}

class Plan {
  public:
    Plan() {
        const char* texto = std::getenv("KV_FALLAS");
        std::string_view resto = texto != nullptr ? texto : "";
        while (!resto.empty())
            agregar(palabra(resto, ','));
    }
    ~Plan() {
        const char* archivo = std::getenv("KV_CUENTA");
        if (archivo == nullptr) return;
        const auto d = syscall(SYS_openat, AT_FDCWD, archivo, O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const std::string n = std::to_string(pasos_) + " " + std::to_string(aceptados_);
        syscall(SYS_write, d, n.data(), n.size());
    }
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;

    void paso() {
        if (++pasos_ == mortal_) syscall(SYS_kill, getpid(), SIGKILL);
    }
    void aceptado() { ++aceptados_; }
    /// What is to become of this call: 0 nothing, an error, or kCorto.
    int falla(const char* llamada) {
        for (Regla& r : std::span(reglas_).first(cuantas_)) {
            if (r.llamada != llamada) continue;
            const long n = ++r.vistas;
            if (n >= r.desde && (r.hasta == 0 || n <= r.hasta) && (n - r.desde) % r.cada == 0)
                return r.error;
        }
        return 0;
    }
    void abierto(long d, bool si) {
        if (d >= 0 && d < static_cast<long>(kDescriptores)) abiertos_[d] = si;
    }
    [[nodiscard]] bool esArchivo(long d) const {
        return d >= 0 && d < static_cast<long>(kDescriptores) && abiertos_[d];
    }

  private:
    static std::string_view palabra(std::string_view& resto, char hasta) {
        const auto i = resto.find(hasta);
        const std::string_view p = resto.substr(0, i);
        resto = i == std::string_view::npos ? std::string_view() : resto.substr(i + 1);
        return p;
    }
    static long numero(std::string_view& resto) {
        return std::atol(std::string(palabra(resto, ':')).c_str());
    }
    void agregar(std::string_view texto) {
        const std::string_view llamada = palabra(texto, ':');
        if (llamada == "matar") {
            mortal_ = numero(texto);
            return;
        }
        if (cuantas_ == reglas_.size()) std::abort();
        Regla& r = reglas_[cuantas_++];
        r.llamada = llamada;
        r.error = errorDe(palabra(texto, ':'));
        r.desde = numero(texto);
        r.hasta = numero(texto);
        r.cada = numero(texto);
        if (r.cada < 1) std::abort();
    }

    std::array<Regla, 16> reglas_;
    std::size_t cuantas_ = 0;
    std::array<bool, kDescriptores> abiertos_{};
    long pasos_ = 0;
    long mortal_ = 0;
    long aceptados_ = 0;
};

Plan& plan() {
    static Plan p;
    return p;
}

/// An error to be reported as the call's.
bool fallo(const char* llamada) {
    const int e = plan().falla(llamada);
    if (e > 0) errno = e;
    return e > 0;
}

int abrir(const char* ruta, int modo, mode_t permisos) {
    const bool escribe = (modo & O_ACCMODE) != O_RDONLY;
    if (escribe) plan().paso();
    if (fallo("open")) return -1;
    const long d = syscall(SYS_openat, AT_FDCWD, ruta, modo, permisos);
    plan().abierto(d, escribe);
    return static_cast<int>(d);
}

long sobreUnArchivo(const char* llamada, int d, long numero, long argumento) {
    if (plan().esArchivo(d)) plan().paso();
    if (fallo(llamada)) return -1;
    return syscall(numero, d, argumento);
}

} // namespace

extern "C" {

int open(const char* ruta, int modo, ...) {
    va_list v;
    va_start(v, modo);
    const mode_t permisos = (modo & O_CREAT) != 0 ? va_arg(v, mode_t) : 0;
    va_end(v);
    return abrir(ruta, modo, permisos);
}
int open64(const char* ruta, int modo, ...) __attribute__((alias("open")));

int close(int d) {
    const bool archivo = plan().esArchivo(d);
    if (archivo) plan().paso();
    plan().abierto(d, false);
    const long r = syscall(SYS_close, d);
    return archivo && fallo("close") ? -1 : static_cast<int>(r);
}

ssize_t write(int d, const void* bytes, size_t n) {
    if (!plan().esArchivo(d)) return syscall(SYS_write, d, bytes, n);
    plan().paso();
    const int falla = plan().falla("write");
    if (falla > 0) {
        errno = falla;
        return -1;
    }
    if (falla == kCorto) return syscall(SYS_write, d, bytes, n < 1 ? n : 1);
    const ssize_t mitad = syscall(SYS_write, d, bytes, n / 2);
    plan().paso();
    if (mitad < 0) return mitad;
    const ssize_t otra = syscall(SYS_write, d, static_cast<const char*>(bytes) + mitad, n - mitad);
    return otra < 0 ? otra : mitad + otra;
}

int fchmod(int d, mode_t m) { return static_cast<int>(sobreUnArchivo("fchmod", d, SYS_fchmod, m)); }
int ftruncate(int d, off_t n) {
    return static_cast<int>(sobreUnArchivo("ftruncate", d, SYS_ftruncate, n));
}
int ftruncate64(int d, off_t n) __attribute__((alias("ftruncate")));

int rename(const char* viejo, const char* nuevo) {
    plan().paso();
    if (fallo("rename")) return -1;
    return static_cast<int>(syscall(SYS_renameat, AT_FDCWD, viejo, AT_FDCWD, nuevo));
}
int unlink(const char* ruta) noexcept {
    plan().paso();
    return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, ruta, 0));
}
int mkdir(const char* ruta, mode_t permisos) {
    plan().paso();
    if (fallo("mkdir")) return -1;
    return static_cast<int>(syscall(SYS_mkdirat, AT_FDCWD, ruta, permisos));
}

int socket(int familia, int tipo, int protocolo) {
    if (fallo("socket")) return -1;
    return static_cast<int>(syscall(SYS_socket, familia, tipo, protocolo));
}
int connect(int d, const sockaddr* a, socklen_t n) {
    const long r = syscall(SYS_connect, d, a, n); // an interrupted one goes on all the same
    return fallo("connect") ? -1 : static_cast<int>(r);
}
int accept4(int d, sockaddr* a, socklen_t* n, int modo) {
    plan().aceptado();
    if (fallo("accept")) return -1;
    return static_cast<int>(syscall(SYS_accept4, d, a, n, modo));
}
ssize_t recv(int d, void* bytes, size_t n, int modo) {
    const int falla = plan().falla("recv");
    if (falla > 0) errno = falla;
    if (falla > 0) return -1;
    return syscall(SYS_recvfrom, d, bytes, falla == kCorto && n > 0 ? 1 : n, modo, nullptr,
                   nullptr);
}
ssize_t send(int d, const void* bytes, size_t n, int modo) {
    const int falla = plan().falla("send");
    if (falla > 0) errno = falla;
    if (falla > 0) return -1;
    return syscall(SYS_sendto, d, bytes, falla == kCorto && n > 0 ? 1 : n, modo, nullptr, 0);
}
int epoll_wait(int d, struct epoll_event* sucesos, int n, int espera) {
    if (fallo("epoll_wait")) return -1;
    return static_cast<int>(syscall(SYS_epoll_pwait, d, sucesos, n, espera, nullptr, 8));
}
int epoll_ctl(int d, int que, int sobre, struct epoll_event* e) noexcept {
    if (que == 1 && fallo("epoll_add")) return -1; // EPOLL_CTL_ADD
    return static_cast<int>(syscall(SYS_epoll_ctl, d, que, sobre, e));
}

} // extern "C"
