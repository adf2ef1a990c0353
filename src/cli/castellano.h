// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace kv {

/// The headings of a program's help, in the operators' tongue, and what every program understands:
/// -h, --help and --version. The program's name is the app's. Call before options are declared.
void ponerEnCastellano(CLI::App& app);
/// The exit code of every program for a command line that means nothing.
inline constexpr int kMalaLinea = 2;
/// What a command line that could not be carried out comes to: the help or the version, printed in
/// `salida`, and 0; else one line that tells in `errores` what is wrong, and kMalaLinea.
[[nodiscard]] int terminarLinea(const CLI::App& app, const CLI::ParseError& error,
                                std::ostream& salida, std::ostream& errores);
/// The same for a line that means nothing although its options are there.
[[nodiscard]] int terminarLinea(const CLI::App& app, const std::string& queja,
                                std::ostream& errores);
/// What is wrong with a command line, in one line.
[[nodiscard]] std::string enCastellano(const CLI::ParseError& error);

} // namespace kv
