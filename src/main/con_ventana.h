// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "main/programa.h"

namespace kv {

/// The driver with its windows, until it is ordered to end: the exit code. Throws
/// std::runtime_error where there is no screen. Declared here and written where the windows are, so
/// that nothing below them knows them; a program without windows does not call it.
[[nodiscard]] int correrConVentana(const Opciones& opciones);

} // namespace kv
