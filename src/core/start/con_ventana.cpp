#include "core/start/con_ventana.h"

#include "ui/qt/idioma.h"
#include "ui/qt/ventanas.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QSocketNotifier>

#include <array>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kv {
namespace {

/// The arguments that the toolkit sees: the program's own options are none of its business.
struct Argumentos {
    int cuantos = 1;
    std::array<char, 16> nombre{"DriverKV2200"};
    std::array<char*, 2> valores{nombre.data(), nullptr};
};

[[noreturn]] void probarPantalla() {
    const rlimit sinVolcado{0, 0};
    setrlimit(RLIMIT_CORE, &sinVolcado);
    const int nada = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nada, STDOUT_FILENO);
    dup2(nada, STDERR_FILENO);
    Argumentos argumentos;
    const QGuiApplication aplicacion(argumentos.cuantos, argumentos.valores.data());
    _exit(0);
}

/// An exception must not travel through the toolkit: it is logged, and the driver goes on.
class Aplicacion final : public QApplication {
  public:
    Aplicacion(Argumentos& argumentos, ArchivoLog& log)
        : QApplication(argumentos.cuantos, argumentos.valores.data()), log_(log) {
        setQuitOnLastWindowClosed(false);
        // The toolkit takes the machine's locale over; numbers of the plant keep their point.
        std::setlocale(LC_ALL, "C");
        std::setlocale(LC_CTYPE, "C.UTF-8");
    }
    bool notify(QObject* destino, QEvent* suceso) override {
        try {
            return QApplication::notify(destino, suceso);
        } catch (const std::exception& falla) {
            log_.escribirLog("DRIVER", "Ventana", destino->objectName().toStdString(),
                             falla.what());
            return false;
        }
    }

  private:
    ArchivoLog& log_;
};

/// Asking to quit would ask the windows, and the main one refuses.
void terminar() { QCoreApplication::exit(0); }

/// The toolkit wants texts of the system in UTF-8 and complains of any other locale.
void asegurarUtf8() {
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) setenv("LC_ALL", "C.UTF-8", 1);
}

} // namespace

bool hayPantalla() {
    const pid_t hijo = fork();
    if (hijo == 0) probarPantalla();
    int estado = 0;
    return hijo > 0 && waitpid(hijo, &estado, 0) == hijo && WIFEXITED(estado) &&
           WEXITSTATUS(estado) == 0;
}

int correrConVentana(const Opciones& opciones) {
    Programa programa(opciones, terminar);
    Motor& motor = programa.motor;
    asegurarUtf8();
    Argumentos argumentos;
    Aplicacion aplicacion(argumentos, motor.log);
    // Its descriptor only wakes the outer loop. The turn comes before the outer loop sleeps, and so
    // also after every command, which may have left timers and messages behind.
    const QSocketNotifier aviso(programa.bucle.descriptor(), QSocketNotifier::Read);
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     &aplicacion, [&programa] { programa.bucle.atender(); });
    // What the window wants to know is none of the engine's questions, which may be recorded.
    Ajustes ajustes(programa.archivos, opciones.carpeta);
    ponerIdioma(
        ajustes.leerIni(ajustes.archivoDeAjustes(), kSeccionDeAjustes, "Idioma_Ventana", ""));
    Mensajero mensajero(programa.salida);
    motor.vista.observar(&mensajero);
    const bool unico = programa.arranque.soyElUnico();
    if (unico) {
        EditorDeGuion editor(programa.archivos, motor.guion);
        Ventanas ventanas({motor.vista, motor.operador, editor, mensajero, KV_VERSION, terminar});
        bool corriendo = true;
        programa.bucle.alFinalDeVuelta([&] {
            if (corriendo) ventanas.mirarVisibilidad();
        });
        programa.arrancar();
        QCoreApplication::exec();
        corriendo = false;
    } else {
        QObject::connect(&mensajero, &Mensajero::todosCerrados, &aplicacion, terminar);
        QCoreApplication::exec();
    }
    motor.vista.observar(&programa.salida);
    return unico ? kOrdenado : kYaCorre;
}

} // namespace kv
