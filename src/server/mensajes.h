// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kv {

// The words of the client's protocol. Those that come in are found whatever their letter case.
inline constexpr std::string_view kClaveAceptada = "PassOK";
inline constexpr std::string_view kEscrituraRecibida = "[WRITE_OK]";
inline constexpr std::string_view kKeepAliveDelCliente = "[KEEP_DESDE_SERVIDOR]";
inline constexpr std::string_view kKeepAliveDelDriver = "[KEEP_DESDE_DRI]";
inline constexpr std::string_view kFinDeSincronismo = "[SINK_FIN]";
inline constexpr std::string_view kSincronizar = "SINCRONIZAR";
inline constexpr std::string_view kAbreSobre = "[DRI]";
inline constexpr std::string_view kCierraSobre = "[/DRI]";
inline constexpr std::size_t kRegistrosPorSobre = 10; ///< at most

/// The two ends of a frame.
struct Marcas {
    std::string_view abre;
    std::string_view cierra;
};
inline constexpr Marcas kMarcasDeEscritura{"[Write]", "[/Write]"};
inline constexpr Marcas kMarcasDeForzado{"[FORZNIV]", "[/FORZNIV]"};
inline constexpr Marcas kMarcasDeLectura{"Read;", "FinRead;"};

/// The frames of an arrival.
struct Tramas {
    std::vector<std::string> contenidos; ///< in the order in which they are to be carried out
    std::string resto;                   ///< what remains of the arrival
    std::size_t repetidas = 0;           ///< frames that went with an equal one before them
};

/// Takes the frames out of an arrival: again and again the first opening mark with the first
/// closing one after it, and with every frame also all others of exactly its text (whatever the
/// letter case). So "1, 0, 1" written to one address in one arrival writes 1, 0. Text that closes
/// up around a frame taken out may form marks anew. One pass over the arrival; of frames nested in
/// hundreds equal ones may come more than once, so that the time stays linear. After `maximo`
/// frames the arrival is left as it then stands.
[[nodiscard]] Tramas extraerTramas(std::string_view llegada, const Marcas& marcas,
                                   std::size_t maximo = static_cast<std::size_t>(-1));

/// Takes every `palabra` out of `texto`, whatever its letter case; false when the word was not
/// there.
bool quitarPalabra(std::string& texto, std::string_view palabra);

/// The address in the content of a read frame: up to the ";" that precedes the closing mark.
[[nodiscard]] std::string_view direccionDeLectura(std::string_view contenido);

/// The first two of the fields between ";"; nothing when there is only one.
[[nodiscard]] std::optional<std::pair<std::string_view, std::string_view>>
dosCampos(std::string_view contenido);

/// Whether an arrival is nothing but keep-alive tags, of either side, and blanks.
[[nodiscard]] bool esSoloKeepAlive(std::string_view llegada);

/// The field separators of what is sent; on the wire's bytes.
struct Separadores {
    std::string campo = ";";
    std::string sobre = "#";
};

/// Appends address (text in memory), value and status, each followed by the separator.
void agregarRegistro(std::string& destino, std::string_view direccion, double valor, double estado,
                     const Separadores& separadores);
void abrirSobre(std::string& destino, const Separadores& separadores);
void cerrarSobre(std::string& destino, const Separadores& separadores);

/// Appends text in memory as the wire's bytes. ASCII, which is nearly all, is only copied.
void agregarAlCable(std::string& destino, std::string_view texto);

} // namespace kv
