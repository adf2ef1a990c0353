// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "valores.h"

/// The values of a driver's recording: a row for each run of its script. Throws ValoresMalos.
Valores valoresDeGrabacion(const std::string& ruta, std::string contenido);
