// SPDX-License-Identifier: Apache-2.0
#include "recording/discos.h"

namespace kv {
namespace {

using vbscript::DiskAnswer;
using vbscript::DiskOrder;

constexpr std::size_t kPreguntas = 1000;
constexpr std::size_t kBytes = std::size_t{64} << 20;
constexpr std::uint64_t kUltimaFalla = 65535;

bool mira(const DiskOrder& orden) {
    using What = DiskOrder::What;
    return orden.what == What::Look || orden.what == What::Read || orden.what == What::List ||
           orden.what == What::Modified;
}

/// What the tape says was asked, to notice a script that asks for another file or act.
std::string comoTexto(const DiskOrder& orden) {
    return std::to_string(static_cast<int>(orden.what)) + ' ' + orden.path +
           (orden.to.empty() ? "" : " > " + orden.to);
}

} // namespace

std::shared_ptr<vbscript::Disk> discoDeCarpeta(const std::string& carpeta) {
    return carpeta.empty() ? nullptr : std::make_shared<vbscript::FolderDisk>(carpeta);
}

DiskAnswer RespuestasDeDisco::esperada(const DiskOrder& orden) const {
    const auto vista = vistas_.find({orden.what, orden.path});
    return vista == vistas_.end() ? DiskAnswer() : vista->second;
}

void RespuestasDeDisco::anotar(const DiskOrder& orden, const DiskAnswer& respuesta) {
    if (!mira(orden)) return;
    const auto [lugar, nueva] = vistas_.try_emplace({orden.what, orden.path});
    DiskAnswer& vista = lugar->second;
    bytes_ += (nueva ? orden.path.size() : 0) + respuesta.bytes.size() - vista.bytes.size();
    vista = respuesta;
    if (vistas_.size() <= kPreguntas && bytes_ <= kBytes) return;
    vistas_.clear();
    bytes_ = 0;
}

DiskAnswer DiscoGrabado::ask(const DiskOrder& orden) {
    DiskAnswer r = disco_->ask(orden);
    if (!grabador_.preguntar() || r == respuestas_.esperada(orden)) return r;
    respuestas_.anotar(orden, r);
    grabador_.respuesta(Entrada::Disco)
        .texto(comoTexto(orden))
        .numero(static_cast<std::uint64_t>(r.fault))
        .numero(static_cast<std::uint64_t>(r.kind))
        .numero(r.size)
        .texto(r.bytes);
    grabador_.cerrar();
    return r;
}

DiskAnswer DiscoReproducido::ask(const DiskOrder& orden) {
    if (!reproductor_.toca(Entrada::Disco)) return respuestas_.esperada(orden);
    CintaLeida& cinta = reproductor_.cinta();
    if (cinta.texto() != comoTexto(orden)) reproductor_.noCorresponde(orden.path);
    const std::uint64_t falla = cinta.numero();
    const std::uint64_t clase = cinta.numero();
    if (falla > kUltimaFalla || clase > static_cast<std::uint64_t>(DiskAnswer::Kind::Folder))
        throw CintaMala{"una respuesta imposible sobre " + orden.path};
    DiskAnswer r;
    r.fault = static_cast<int>(falla);
    r.kind = static_cast<DiskAnswer::Kind>(clase);
    r.size = cinta.numero();
    r.bytes = cinta.texto();
    respuestas_.anotar(orden, r);
    return r;
}

} // namespace kv
