// SPDX-License-Identifier: Apache-2.0
// The door for programs of this machine.

#include "puerta/apoyo.h"

#include "text/numeros.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

Configuracion tresRegistros() {
    return Configuracion()
        .puerto({"1", "1", "20"})
        .estacion(1, "10.0.0.1", 1)
        .bloque(1, "10", "1")
        .bloque(1, "11", "1")
        .bloque(1, "12", "1", false);
}

class PuertaDeLaMaquina : public testing::Test {
  protected:
    PuertaDeLaMaquina() : c(tresRegistros()), p(c) {
        p.archivos.poner("/etc/passwd", "root:x:0:0::/:/bin/sh\nana:x:1000:1000::/:/bin/sh\n"
                                        "1000:x:2000:2000::/:/bin/sh\n");
        p.en("10.0.0.1");
    }
    void arrancar() {
        p.arrancar();
        p.arranque.abrirServidor();
        p.avanzar(15'000);
        v.conectar();
        ASSERT_TRUE(v.conectado);
    }
    [[nodiscard]] std::string registro(const char* de) {
        return p.archivos.contenido(std::string("/kv/LOGS_DRIVER/251116 DriverKV2200 ") + de +
                                    ".txt");
    }
    Configuracion c;
    Planta p;
    Vecino v{p};
};

} // namespace

TEST_F(PuertaDeLaMaquina, LosPedidosQueTardanNoSeHacenTodosEnElMismoTic) {
    struct Lento final : OyenteDeSucesos {
        explicit Lento(BucleSimulado& b) : bucle(b) {}
        void alSuceder(const Suceso& /*s*/, std::string_view /*texto*/) override {
            ++veces;
            bucle.demorar(2);
        }
        BucleSimulado& bucle;
        int veces = 0;
    } lento(p.bucle);
    arrancar();
    Vecino otro(p);
    otro.conectar();
    p.motor.sucesos.avisarA(&lento, {Que::EscrituraRechazada});
    for (int i = 0; i < 20; ++i) {
        for (Vecino* cual : {&v, &otro})
            cual->enviar("{\"pedido\":\"escribir\",\"direccion\":\"1.1.10\",\"valor\":1}\n");
    }
    int enElMayor = 0;
    for (int tic = 0; tic < 200; ++tic) {
        const int antes = lento.veces;
        p.avanzar(1);
        enElMayor = std::max(enElMayor, lento.veces - antes);
        if (tic != 60) continue;
        EXPECT_FALSE(v.recibido.empty() || otro.recibido.empty()) << "each has its turn";
    }
    p.motor.sucesos.dejarDeAvisarA(&lento);
    EXPECT_EQ(lento.veces, 40);
    EXPECT_EQ(enElMayor, 1);
}

TEST_F(PuertaDeLaMaquina, ContestaLoQueSeLePregunta) {
    arrancar();
    auto r = v.pedir(R"({"pedido":"estado","id":"a1"})");
    ASSERT_EQ(r.size(), 2U);
    EXPECT_EQ(dice(r[0], "id"), "a1");
    EXPECT_EQ(dice(r[0], "ok") + dice(r[0], "bad") + dice(r[0], "apagadas"), "201");
    EXPECT_EQ(dice(r[0], "conectadas"), "1");
    EXPECT_EQ(dice(r[0], "guion"), "OK");
    EXPECT_LT(dice(r[0], "desde"), dice(r[0], "hora"));
    EXPECT_EQ(dice(r[1], "fin"), "si");

    r = v.pedir(R"({"pedido":"variables","id":7})");
    ASSERT_EQ(r.size(), 4U);
    EXPECT_EQ(dice(r[0], "direccion") + " " + dice(r[0], "valor") + " " + dice(r[0], "estado"),
              "1.1.10 116 OK");
    EXPECT_EQ(dice(r[2], "estado") + dice(r[2], "activa") + dice(r[2], "leida"), "BADnonull");
    EXPECT_EQ(dice(r[3], "id") + dice(r[3], "cuantos"), "73");

    p.motor.forzado.forzarPoleo("1.1.11.4", "prueba"); // a bit: 117 is 0x75
    p.avanzar(3000);
    r = v.pedir(R"({"pedido":"variables","direcciones":["1.1.11.4","1.1.10"]})");
    EXPECT_EQ(dice(r[0], "direccion") + " " + dice(r[0], "valor"), "1.1.11.4 1");

    // As a write finds them: a register by its number, and a bit that nobody has asked for.
    r = v.pedir(R"({"pedido":"variables","direcciones":["1.1.011","1.1.11.5"]})");
    ASSERT_EQ(r.size(), 3U);
    EXPECT_EQ(dice(r[0], "direccion") + " " + dice(r[1], "direccion"), "1.1.11 1.1.11.5");
    for (const char* ninguna : {"1.1.77", "1.1.11.16", "9.1.11"})
        EXPECT_NE(dice(v.pedir(std::string(R"({"pedido":"variables","direcciones":[")") + ninguna +
                               "\"]}")[0],
                       "error"),
                  "-")
            << ninguna;

    EXPECT_EQ(v.pedir(R"({"pedido":"bloques"})").size(), 4U);
    r = v.pedir(R"({"pedido":"conexiones"})");
    EXPECT_EQ(dice(r[0], "direccion") + dice(r[0], "conectada"), "10.0.0.1:502si");
    EXPECT_EQ(dice(r[0].miembro("estaciones")->elementos()[0], "callada"), "no");
    r = v.pedir(R"({"pedido":"contadores"})");
    EXPECT_EQ(dice(r[0], "respuestas"), textoDeNumero(double(p.motor.recepcion.respuestas())));
    for (const char* que : {"1.1.10", "1.1", "10.0.0.1:502"}) {
        r = v.pedir(std::string(R"({"pedido":"porque","direccion":")") + que + "\"}");
        ASSERT_EQ(r.size(), 1U);
        EXPECT_NE(dice(r[0], "porque"), "-") << que;
    }
    EXPECT_EQ(dice(v.pedir(R"({"pedido":"porque","direccion":"1.1.12"})")[0], "porque"),
              p.motor.porQue.porQueVariable(2));
}

TEST_F(PuertaDeLaMaquina, LosSucesosSePidenDesdeUnaHoraOUnNumero) {
    arrancar();
    auto r = v.pedir(R"({"pedido":"sucesos"})");
    ASSERT_GT(r.size(), 10U);
    EXPECT_EQ(dice(r[0], "suceso"), "EnlaceArriba");
    const auto envio = std::find_if(r.begin(), r.end(),
                                    [](const Json& j) { return dice(j, "suceso") == "Envio"; });
    ASSERT_NE(envio, r.end());
    EXPECT_NE(dice(*envio, "texto").find("1.1.10"), std::string::npos) << dice(*envio, "texto");
    EXPECT_EQ(dice(*envio, "bytes"), "52010010000063");
    const std::string hora = dice(r[9], "hora");
    const std::string segundo = hora.substr(0, 19);
    r = v.pedir(R"({"pedido":"sucesos","desde":")" + segundo + "\"}");
    for (std::size_t k = 0; k + 1 < r.size(); ++k)
        EXPECT_GE(dice(r[k], "hora"), segundo);
    EXPECT_GT(r.size(), 2U);
    r = v.pedir(R"({"pedido":"sucesos","desde":9,"conexion":"10.0.0.1:502"})");
    EXPECT_EQ(dice(r[0], "numero"), "9");
    EXPECT_EQ(dice(r[0], "hora"), hora);
    // Without seconds; and a time that is still to come was yesterday.
    const std::size_t todos = v.pedir(R"({"pedido":"sucesos"})").size();
    for (const std::string& desde : {hora.substr(0, 10) + "T00:00", std::string("23:59")})
        EXPECT_GE(v.pedir(R"({"pedido":"sucesos","desde":")" + desde + "\"}").size(), todos)
            << desde;
    EXPECT_EQ(dice(v.pedir(R"({"pedido":"sucesos","desde":"25:99"})")[0], "error").substr(0, 6),
              "desde:");
}

TEST_F(PuertaDeLaMaquina, QuienVigilaSabeLoQueCambiaYNadaMas) {
    arrancar();
    auto r = v.pedir(
        R"({"pedido":"vigilar","valores":true,"sucesos":true,"clases":["EnlaceAbajo","EnlaceArriba"]})");
    ASSERT_EQ(r.size(), 4U) << "the order, and what each variable is now";
    p.avanzar(5000);
    EXPECT_TRUE(v.tomar().empty());
    p.en("10.0.0.1").registros[{1, 0x10}] = 4321;
    p.avanzar(3000);
    r = v.tomar();
    ASSERT_EQ(r.size(), 1U);
    EXPECT_EQ(dice(r[0], "valor"), "4321");
    p.en("10.0.0.1").cortar();
    p.avanzar(5100);
    r = v.tomar();
    std::string que;
    for (const Json& j : r)
        que += dice(j, "suceso") + dice(j, "estado") + ";";
    EXPECT_EQ(que, "-BAD;-BAD;-BAD;EnlaceAbajo-;");
    r = v.pedir(R"({"pedido":"vigilar","valores":true,"direcciones":["1.1.11","1.1.11.3"]})");
    ASSERT_EQ(r.size(), 3U);
    p.avanzar(30'000);
    r = v.tomar();
    ASSERT_EQ(r.size(), 2U);
    EXPECT_EQ(dice(r[0], "direccion") + " " + dice(r[1], "direccion"), "1.1.11 1.1.11.3");
    p.en("10.0.0.2").registros[{1, 0x11}] = 777;
    p.archivos.poner("/kv/DRIVER_KV2200_Config.ini", Configuracion()
                                                         .puerto({"1", "1", "20"})
                                                         .estacion(1, "10.0.0.2", 1)
                                                         .bloque(1, "11", "1")
                                                         .bloque(1, "12", "1")
                                                         .texto());
    p.motor.operador.recargar();
    p.avanzar(30'000);
    r = v.tomar();
    ASSERT_GE(r.size(), 2U);
    EXPECT_EQ(dice(r[r.size() - 2], "direccion") + " " + dice(r[r.size() - 2], "valor") + " " +
                  dice(r.back(), "direccion") + " " + dice(r.back(), "valor"),
              "1.1.11 777 1.1.11.3 1")
        << "of the station at its new address, and of nothing else";
    v.pedir(R"({"pedido":"vigilar"})");
    p.en("10.0.0.1").registros[{1, 0x11}] = 1;
    p.avanzar(3000);
    EXPECT_TRUE(v.tomar().empty());
}

TEST_F(PuertaDeLaMaquina, SoloQuienElAjusteNombraEscribeYQuedaAnotadoConSuNombre) {
    p.ajuste("Puerta_Local_Escriben", "beto, 3000");
    arrancar();
    auto& plc = p.en("10.0.0.1");
    const auto escritas = [&] {
        return std::count_if(plc.pedidos.begin(), plc.pedidos.end(),
                             [](const auto& x) { return x.trama[0] == 0x57; });
    };
    auto r = v.pedir(R"({"pedido":"escribir","direccion":"1.1.10","valor":5})", 3000);
    EXPECT_EQ(dice(r[0], "error"), "el usuario ana no esta en Puerta_Local_Escriben");
    EXPECT_EQ(dice(v.pedir(R"({"pedido":"forzar","direccion":"1.1.77"})", 3000)[0], "error"),
              "el usuario ana no esta en Puerta_Local_Escriben");
    Vecino root(p, "0/1");
    root.conectar();
    EXPECT_NE(dice(root.pedir(R"({"pedido":"forzar","nivel":1,"veces":-1})")[0], "error"), "-");
    EXPECT_EQ(escritas(), 0);
    EXPECT_EQ(p.motor.tablas.bloques.limiteSuperior(), 3U);
    EXPECT_TRUE(p.bloque(0).activo);

    p.ajuste("Puerta_Local_Escriben", "beto,ana");
    r = v.pedir(R"({"pedido":"escribir","direccion":"1.1.10","valor":5,"id":1})", 3000);
    ASSERT_EQ(r.size(), 2U);
    EXPECT_EQ(dice(r[0], "aceptada"), "si");
    EXPECT_EQ(dice(r[1], "id") + dice(r[1], "confirmada"), "1si");
    EXPECT_EQ(plc.valor(1, 0x10), 5);
    p.motor.terminar();
    EXPECT_NE(registro("Escrituras").find("usuario ana"), std::string::npos)
        << registro("Escrituras");
}

TEST_F(PuertaDeLaMaquina, UnNombreQuePareceUnNumeroNoEsEseNumero) {
    p.ajuste("Puerta_Local_Escriben", "1000");
    arrancar();
    Vecino impostor(p, "2000/5"); // whose name is "1000"
    impostor.conectar();
    EXPECT_NE(dice(impostor.pedir(R"({"pedido":"forzar","direccion":"1.1.10"})")[0], "error"), "-");
    EXPECT_EQ(dice(v.pedir(R"({"pedido":"forzar","direccion":"1.1.10"})")[0], "aceptada"), "si");
    EXPECT_NE(registro("ArchivoLog").find("usuario ana"), std::string::npos);
    EXPECT_EQ(dice(v.pedir(R"({"pedido":"forzar","direccion":"9.9.10"})")[0], "error"),
              "no se hace: no existe ese puerto o PLC");
    EXPECT_EQ(dice(v.pedir(R"({"pedido":"forzar","nivel":77,"veces":1})")[0], "error"),
              "no se hace: ningun bloque tiene ese nivel");
    for (const char* mal : {"0.5", "-2", "-1.5", "40000"})
        EXPECT_NE(
            dice(v.pedir(std::string(R"({"pedido":"forzar","nivel":1,"veces":)") + mal + "}")[0],
                 "error"),
            "-")
            << mal;
    EXPECT_EQ(dice(v.pedir(R"({"pedido":"forzar","nivel":1,"veces":-1})")[0], "aceptada"), "si");
    EXPECT_NE(p.motor.porQue.porQueBloque(0).find(" por el usuario ana"), std::string::npos);
    EXPECT_NE(registro("ArchivoLog").find("1.1.10, por orden del usuario ana"), std::string::npos);
}

TEST_F(PuertaDeLaMaquina, UnaEscrituraQueFallaSeDice) {
    p.ajuste("Puerta_Local_Escriben", "ana");
    arrancar();
    p.en("10.0.0.1").demora = [](const Solicitud&) { return std::nullopt; };
    auto r = v.pedir(R"({"pedido":"escribir","direccion":"1.1.10","valor":5,"id":1})", 30'000);
    ASSERT_EQ(r.size(), 2U);
    EXPECT_EQ(dice(r[1], "confirmada"), "no");
    r = v.pedir(R"({"pedido":"escribir","direccion":"9.9.10","valor":5,"id":2})");
    EXPECT_EQ(dice(r[0], "error"), "no se acepta: no se encuentra PLC");
    // The program ends while one is out.
    r = v.pedir(R"({"pedido":"escribir","direccion":"1.1.10","valor":6,"id":3})", 100);
    ASSERT_EQ(r.size(), 1U);
    p.motor.terminar();
    p.avanzar(10);
    r = v.tomar();
    ASSERT_EQ(r.size(), 1U);
    EXPECT_EQ(dice(r[0], "id") + dice(r[0], "confirmada"), "3no");
}

TEST_F(PuertaDeLaMaquina, LoQueNoSeEntiendeSeDiceYNoCierra) {
    arrancar();
    for (const char* malo : {"{", "[]", "7", "{\"pedido\":\"borrar\"}", "{\"pedido\":3}",
                             "{\"pedido\":\"estado\",\"id\":{}}", "\xFF\xFE",
                             "{\"pedido\":\"variables\",\"direcciones\":[\"9.9.9\"]}",
                             "{\"pedido\":\"vigilar\",\"clases\":[\"Nada\"]}"}) {
        const auto r = v.pedir(malo);
        ASSERT_EQ(r.size(), 1U) << malo;
        EXPECT_NE(dice(r[0], "error"), "-") << malo;
    }
    EXPECT_TRUE(v.pedir("\r\n  ").empty());
    EXPECT_EQ(v.pedir("{\"pedido\":\n\"estado\"}").size(), 2U) << "a line each";
    v.enviar("{\"pedido\":\"est");
    p.avanzar(50);
    EXPECT_EQ(v.pedir("ado\"}").size(), 2U) << "a line may come in pieces";
    EXPECT_TRUE(v.conectado);
    const auto r = v.pedir(std::string(70'000, 'x'), 1000);
    EXPECT_EQ(dice(r[0], "error"), "un pedido tiene mas de 64 KiB");
    EXPECT_FALSE(v.conectado);
    EXPECT_EQ(p.motor.puertaLocal.lectores(), 0U);
}

TEST_F(PuertaDeLaMaquina, LosLectoresTienenUnLimiteYUnoQuePideSinLeerSeCierra) {
    arrancar();
    std::vector<std::unique_ptr<Vecino>> todos;
    for (std::size_t k = 0; k < PuertaLocal::kLectores; ++k) {
        todos.push_back(std::make_unique<Vecino>(p));
        todos.back()->conectar();
    }
    EXPECT_EQ(p.motor.puertaLocal.lectores(), PuertaLocal::kLectores);
    EXPECT_FALSE(todos.back()->conectado);
    EXPECT_NE(registro("ArchivoLog").find("ya hay 32 lectores"), std::string::npos);
    // One that reads nothing is sent no more than fits, and goes after a while; the others are
    // served meanwhile.
    p.bucle.red().fijarVentana(v.enlace, 1000);
    std::string muchos;
    for (int k = 0; k < 2000; ++k)
        muchos += "{\"pedido\":\"contadores\"}\n";
    v.enviar(muchos);
    p.avanzar(20'000);
    EXPECT_TRUE(v.conectado);
    EXPECT_EQ(todos[0]->pedir(R"({"pedido":"estado"})").size(), 2U);
    p.avanzar(30'000);
    EXPECT_FALSE(v.conectado);
    EXPECT_NE(registro("ArchivoLog").find("ana no lee lo que se le dice"), std::string::npos);
    EXPECT_EQ(p.motor.puertaLocal.lectores(), PuertaLocal::kLectores - 1);
}

TEST_F(PuertaDeLaMaquina, CerradaPorAjusteNoEsta) {
    p.ajuste("Puerta_Local", "0");
    p.arrancar();
    p.arranque.abrirServidor();
    p.avanzar(1000);
    v.conectar();
    EXPECT_FALSE(v.conectado);
}

} // namespace kv
