// SPDX-License-Identifier: Apache-2.0
// The warnings that a plant engineer gets of a script before it runs: addresses against the
// configuration.

#include "apoyo/configuracion.h"
#include "config/comprobacion.h"
#include "platform/simulated/archivos_simulados.h"
#include "script/avisos.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

std::string avisos(std::string_view guion, const DireccionesDePlanta* planta) {
    std::string todo;
    for (const AvisoDeGuion& a : avisosDeGuion(guion, {planta}))
        todo += std::to_string(a.linea) + ":" + std::to_string(a.columna) + " " + a.texto + "\n";
    return todo;
}

class AvisosDePlanta : public testing::Test {
  protected:
    void SetUp() override {
        archivos.poner("/kv/DRIVER_KV2200_Config.ini", Configuracion()
                                                           .puerto()
                                                           .estacion(1, "10.0.0.1", 1)
                                                           .bloque(1, "0A", "1")
                                                           .bloque(1, "11", "600")
                                                           .texto());
        planta = direccionesConfiguradas(ajustes).value();
    }
    [[nodiscard]] std::string en(std::string_view guion) const { return avisos(guion, &planta); }

    ArchivosSimulados archivos;
    Ajustes ajustes{archivos, "/kv"};
    DireccionesDePlanta planta;
};

} // namespace

TEST_F(AvisosDePlanta, LosNombresSonLosQueSePublican) {
    EXPECT_EQ(en("x = MW_1_1_0A + mw_1_1_11_status + MW_1_1_11_15 + MW_1_1_11_0_STATUS"), "");
    EXPECT_EQ(en("x = MW_1_1_A"),
              "1:5 nada da valor a 'MW_1_1_A', ni el guion ni la planta; ¿MW_1_1_0A?\n")
        << "the same register, but not its name";
    EXPECT_NE(en("x = MW_1_1_11_16"), "") << "no such bit";
    EXPECT_EQ(avisos("x = MW_7_7_7 + mw_1\nmw.writeMW \"MW_9_9_9\", 1", nullptr), "")
        << "nobody knows the plant";
    EXPECT_EQ(avisos("x = MV_7_7_7", nullptr),
              "1:5 nada da valor a 'MV_7_7_7', ni el guion ni la planta\n");
}

TEST_F(AvisosDePlanta, UnaDireccionEnUnTextoTieneQueEstarEnLaConfiguracion) {
    const auto falta = [](const std::string& lugar, const std::string& texto) {
        return lugar + " la configuración no tiene la dirección '" + texto + "'\n";
    };
    EXPECT_EQ(en("mw.writeMW \"MW_1_1_A\", 1 : mw.escribirDireccion \"1.1.11.3\", 1"), "")
        << "writes go by the register's number";
    EXPECT_EQ(en("mw.writeMW \"MW_1_1_12\", 1"), falta("1:12", "MW_1_1_12"));
    EXPECT_EQ(en("mw.escribirDireccion \"nada\", 1"), falta("1:22", "nada"));
    EXPECT_EQ(en("x = 1\nmw.READBLOQ \"MW_1_2_11\""), falta("2:13", "MW_1_2_11"));
    EXPECT_EQ(en("mw.READBLOQ \"MW_1_1_100\""), falta("1:13", "MW_1_1_100"))
        << "no frame can ask for it";
    EXPECT_EQ(en("mw.Activar_Dir \"1.1.0A\", True : mw.Activar_Dir \"MW_1_1_0A\", True"), "");
    EXPECT_EQ(en("mw.Activar_Dir \"1.1.A\", True"), falta("1:16", "1.1.A")) << "keys are exact";
    EXPECT_EQ(en("For Each n In Array(\"MW_1_1_11\", \"MW_1_1_11_STATUS\", \"MW_1_1_13\", \"MW y "
                 "otros\", \"1.1.13\") : mw.writeMW n, 1 : Next"),
              falta("1:54", "MW_1_1_13"))
        << "what is written as a name is one wherever it stands";
    EXPECT_EQ(en("mw.Log \"MW_9_9_9\" : mw.writeMW nombre, 1 : nombre = \"x\""), "");
}

TEST_F(AvisosDePlanta, LoQueElGuionMandaLeerExisteDesdeEntonces) {
    EXPECT_EQ(en("mw.READBLOQ \"MW_1_1_77\"\nx = MW_1_1_77 + MW_1_1_77_STATUS\n"
                 "mw.writeMW \"MW_1_1_77\", 1"),
              "");
    for (const std::string nadie : {"MW_1_2_77", "MW_1_1_177"}) // no such station, no such register
        EXPECT_NE(en("mw.READBLOQ \"" + nadie + "\"\nx = " + nadie).find("2:5"), std::string::npos)
            << nadie;
}

} // namespace kv
