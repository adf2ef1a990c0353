// SPDX-License-Identifier: Apache-2.0
#include "window/controls/aplicacion.h"

#include "text/nombre_del_programa.h"
#include "window/controls/paleta.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QSocketNotifier>

#include <array>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <langinfo.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kv {
namespace {

/// The arguments that the toolkit sees: the program's own options do not concern it.
struct Argumentos {
    int cuantos = 1;
    std::string nombre{kNombreDelPrograma};
    std::array<char*, 2> valores{nombre.data(), nullptr};
};

constexpr unsigned kEsperaDePantallaS = 10;

/// A screen that takes the call and never answers ends the process too.
[[noreturn]] void probarPantalla() {
    alarm(kEsperaDePantallaS);
    const rlimit sinVolcado{0, 0};
    setrlimit(RLIMIT_CORE, &sinVolcado);
    const int nada = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nada, STDOUT_FILENO);
    dup2(nada, STDERR_FILENO);
    Argumentos argumentos;
    const QGuiApplication aplicacion(argumentos.cuantos, argumentos.valores.data());
    _exit(0);
}

/// The toolkit wants texts of the system in UTF-8 and complains of any other locale.
void asegurarUtf8() {
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) setenv("LC_ALL", "C.UTF-8", 1);
}

/// An exception must not travel through the toolkit: it is reported, and the driver goes on.
class AplicacionQueSigue final : public QApplication {
  public:
    AplicacionQueSigue(Argumentos& argumentos, Aplicacion::AlFallar alFallar)
        : QApplication(argumentos.cuantos, argumentos.valores.data()),
          alFallar_(std::move(alFallar)) {
        setQuitOnLastWindowClosed(false);
        // The toolkit takes the machine's locale over; numbers of the plant keep their point.
        std::setlocale(LC_ALL, "C");
        std::setlocale(LC_CTYPE, "C.UTF-8");
        cuidarColores();
    }
    bool notify(QObject* destino, QEvent* suceso) override {
        try {
            return QApplication::notify(destino, suceso);
        } catch (const std::exception& falla) {
            alFallar_(destino->objectName().toStdString(), falla.what());
            return false;
        }
    }

    bool terminada = false; ///< the toolkit forgets to have been ended before its loop runs

  private:
    Aplicacion::AlFallar alFallar_;
};

} // namespace

bool hayPantalla() {
    const pid_t hijo = fork();
    if (hijo == 0) probarPantalla();
    int estado = 0;
    return hijo > 0 && waitpid(hijo, &estado, 0) == hijo && WIFEXITED(estado) &&
           WEXITSTATUS(estado) == 0;
}

struct Aplicacion::Interior {
    Interior(int descriptor, AlFallar alFallar)
        : aplicacion(argumentos, std::move(alFallar)), aviso(descriptor, QSocketNotifier::Read) {}

    Argumentos argumentos;
    AplicacionQueSigue aplicacion;
    QSocketNotifier aviso; ///< only wakes the loop
};

Aplicacion::Aplicacion(int descriptor, std::function<void()> atender, AlFallar alFallar) {
    asegurarUtf8();
    interior_ = std::make_unique<Interior>(descriptor, std::move(alFallar));
    // The turn comes before the outer loop sleeps, and so also after every command, which may have
    // left timers and messages behind.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     &interior_->aplicacion, std::move(atender));
}

Aplicacion::~Aplicacion() = default;

void Aplicacion::correr() {
    if (!interior_->aplicacion.terminada) QCoreApplication::exec();
}

void Aplicacion::terminar() {
    if (auto* const a = dynamic_cast<AplicacionQueSigue*>(QCoreApplication::instance()))
        a->terminada = true;
    QCoreApplication::exit(0);
}

} // namespace kv
