// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "papel.h"

#include "script/avisos.h"
#include "vbscript/engine.h"

/// The objects that a plant script finds in the driver, here on paper: what they are asked is
/// printed. "WScript" is there for scripts that are written for the desk.
void agregarObjetos(vbscript::Engine& motor, Papel& papel);

/// What the desk knows beside what the driver does.
kv::LugarDelGuion::Objeto objetoDelEscritorio();
