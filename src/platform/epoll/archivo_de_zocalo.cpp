// SPDX-License-Identifier: Apache-2.0
#include "platform/epoll/archivo_de_zocalo.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace kv {

ArchivoDeZocalo::~ArchivoDeZocalo() {
    if (carpeta_ >= 0) close(carpeta_);
}

bool ArchivoDeZocalo::liberar() const {
    struct stat que {};
    if (lstat(ruta_.c_str(), &que) != 0) return true;
    return S_ISSOCK(que.st_mode) && unlink(ruta_.c_str()) == 0;
}

template <class F>
bool ArchivoDeZocalo::conDireccion(F hacer) {
    sockaddr_un donde{};
    donde.sun_family = AF_UNIX;
    std::string corta = ruta_;
    const auto barra = ruta_.rfind('/');
    if (ruta_.size() >= sizeof donde.sun_path && barra != std::string::npos) {
        if (carpeta_ < 0)
            carpeta_ = open(ruta_.substr(0, barra).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        corta = "/proc/self/fd/" + std::to_string(carpeta_) + ruta_.substr(barra);
    }
    if (corta.size() >= sizeof donde.sun_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    std::memcpy(donde.sun_path, corta.c_str(), corta.size() + 1);
    return hacer(reinterpret_cast<const sockaddr*>(&donde), sizeof donde) == 0; // NOLINT
}

bool ArchivoDeZocalo::atar(int descriptor) {
    return conDireccion([&](const sockaddr* a, socklen_t n) { return bind(descriptor, a, n); }) &&
           chmod(ruta_.c_str(), S_IRUSR | S_IWUSR) == 0;
}

bool ArchivoDeZocalo::darAlGrupo(std::int64_t grupo) const {
    return grupo < 0 ||
           (chown(ruta_.c_str(), static_cast<uid_t>(-1), static_cast<gid_t>(grupo)) == 0 &&
            chmod(ruta_.c_str(), S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP) == 0);
}

bool ArchivoDeZocalo::conectar(int descriptor) {
    return conDireccion([&](const sockaddr* a, socklen_t n) { return connect(descriptor, a, n); });
}

} // namespace kv
