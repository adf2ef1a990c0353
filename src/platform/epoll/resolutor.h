// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/epoll/bucle_epoll.h"

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kv {

/// Names of machines become addresses. The system is asked in threads of their own, because it may
/// take half a minute to answer; what they find comes back through the loop, and nothing else of
/// the program is known to them. At most kHilos of them run, and only while names are asked for.
/// The program's end does not wait for one that is still asking.
class Resolutor final : private Atendido {
  public:
    static constexpr int kHilos = 8;
    /// Names that may wait to be asked for at once.
    static constexpr std::size_t kNombres = 4096;

    /// `consulta` runs in any thread and may block. Throws std::system_error.
    Resolutor(BucleEpoll& bucle, ConsultaDeNombre consulta);
    ~Resolutor() override;
    Resolutor(const Resolutor&) = delete;
    Resolutor& operator=(const Resolutor&) = delete;

    /// Asks for a name; `quien` is called with the answer later. Requests for a name that is being
    /// asked for already share its answer. False when too many wait or no thread can be had.
    [[nodiscard]] bool pedir(const std::string& nombre, AlResolver& quien);
    /// `quien` does not want to know any more.
    void olvidar(const std::string& nombre, const AlResolver& quien);

  private:
    struct Comun;

    void alOcurrir(std::uint32_t sucesos) override;
    void repartir();
    [[nodiscard]] bool empezarHilo();
    static void trabajar(const std::shared_ptr<Comun>& comun);

    BucleEpoll& bucle_;
    std::shared_ptr<Comun> comun_; ///< all that the threads know; the last one to let go ends it
    BucleEpoll::Registro registro_;
    std::map<std::string, std::vector<AlResolver*>> esperan_;
    std::deque<std::pair<AlResolver*, std::shared_ptr<const NombreResuelto>>> porAvisar_;
};

/// Asks the system, however long it takes.
[[nodiscard]] NombreResuelto resolverConElSistema(const std::string& nombre);

} // namespace kv
