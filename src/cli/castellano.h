#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace kv {

/// The headings of a program's help, in the operators' tongue. Call before options are declared.
void ponerEnCastellano(CLI::App& app);
/// What is wrong with a command line, in one line.
[[nodiscard]] std::string enCastellano(const CLI::ParseError& error);

} // namespace kv
