// SPDX-License-Identifier: Apache-2.0
// The manual write dialog, the ports list and the About box, as hands use them.

#include "operator/escritura_manual.h"
#include "ventana/manos.h"
#include "ventana/pantalla.h"
#include "window/dialogs/FrmAbout.h"
#include "window/dialogs/FrmEscritura.h"

#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>

namespace kv {
namespace {

class Anotador final : public OrdenDeEscribir {
  public:
    void escribirDireccion(const std::string& direccion, double valor) override {
        escritas.emplace_back(direccion, valor);
    }
    [[nodiscard]] std::string loQueSeLee(std::string_view direccion) const override {
        return direccion.starts_with("1.2.40001") ? leido : std::string();
    }
    std::vector<std::pair<std::string, double>> escritas;
    std::string leido = "5   OK   07:05:20 16-11-2025";
};

class Escritura : public testing::Test {
  protected:
    void SetUp() override {
        padre.setWindowTitle("DriverKV2200");
        padre.show();
        dialogo = std::make_unique<FrmEscritura>(anotador, &padre).release();
        dialogo->mostrarPara("1", "2", "40001", 5);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dialogo));
    }
    [[nodiscard]] QString ahora() { return hallar<QLabel>(*dialogo, "LblAhora").text(); }
    [[nodiscard]] bool okPosible() { return hallar<QPushButton>(*dialogo, "BtnOk").isEnabled(); }
    [[nodiscard]] QLineEdit& caja(const char* nombre) {
        return hallar<QLineEdit>(*dialogo, nombre);
    }
    [[nodiscard]] QString valor() { return caja("TxtValor").text(); }
    [[nodiscard]] QString binario() { return hallar<QLabel>(*dialogo, "LblBinario").text(); }
    [[nodiscard]] QCheckBox& bit(int b) {
        return hallar<QCheckBox>(*dialogo, QString("CheckBin(%1)").arg(b));
    }
    [[nodiscard]] QString tildados() {
        QString s;
        for (int b = 15; b >= 0; --b)
            s += bit(b).isChecked() ? '1' : '0';
        return s;
    }
    void teclear(const char* nombre, const char* texto) {
        caja(nombre).selectAll();
        QTest::keyClicks(&caja(nombre), texto);
    }
    void pegar(const char* nombre, const char* texto) {
        QApplication::clipboard()->setText(texto);
        QTest::keyClick(&caja(nombre), Qt::Key_V, Qt::ControlModifier);
    }
    [[nodiscard]] bool seCerro() {
        return llega([&] { return dialogo == nullptr; });
    }

    Anotador anotador;
    QWidget padre;
    QPointer<FrmEscritura> dialogo;
};

} // namespace

TEST_F(Escritura, ElNumeroYLosBitsSonElMismoValor) {
    EXPECT_EQ(binario(), "Binario: 0000000000000101");
    EXPECT_EQ(tildados(), "0000000000000101");
    fotografiar(*dialogo, "frmescritura");
    QTest::mouseClick(&bit(1), Qt::LeftButton);
    EXPECT_EQ(valor(), "7");
    EXPECT_EQ(binario(), "Binario: 0000000000000111");
    QTest::keyClick(&bit(15), Qt::Key_Space);
    EXPECT_EQ(valor(), "32775");
    teclear("TxtValor", "70001");
    EXPECT_EQ(tildados(), "0001000101110001");
    QTest::mouseClick(&bit(0), Qt::LeftButton);
    EXPECT_EQ(valor(), "4464") << "a cleared bit leaves sixteen bits";
    for (int b = 1; b < 16; ++b)
        EXPECT_LT(bit(b).x(), bit(b - 1).x()) << "bit 15 stands on the left";
    dialogo->recibirValorMW(-2);
    EXPECT_EQ(valor(), "-2");
    EXPECT_EQ(binario(), "Binario: 1111111111111110");
}

TEST_F(Escritura, SoloEntranDigitosTecleadosOPegados) {
    for (const char* nombre : {"txtPuerto", "TxtPlc", "TxtDireccion", "TxtValor"}) {
        teclear(nombre, "1a2.3-4 x");
        EXPECT_EQ(caja(nombre).text(), "1234") << nombre;
        for (const char* ajeno : {"5a", "-5", "1.5", "ñ", "\xD9\xA3"}) {
            pegar(nombre, ajeno);
            EXPECT_EQ(caja(nombre).text(), "1234") << nombre << " took " << ajeno;
        }
        pegar(nombre, "56");
        EXPECT_EQ(caja(nombre).text(), "123456") << nombre;
        QTest::keyClick(&caja(nombre), Qt::Key_Backspace);
        EXPECT_EQ(caja(nombre).text(), "12345") << nombre;
    }
    dialogo->recibirValorMW(-12);
    QTest::keyClick(&caja("TxtValor"), Qt::Key_Backspace);
    EXPECT_EQ(valor(), "-1") << "a value that came with a sign can be edited";
    QTest::keyClick(&caja("TxtValor"), Qt::Key_Minus);
    EXPECT_EQ(valor(), "-1");
}

TEST_F(Escritura, UnValorVaciadoEsCero) {
    caja("TxtValor").selectAll();
    QTest::keyClick(&caja("TxtValor"), Qt::Key_Delete);
    EXPECT_EQ(valor(), "0");
    EXPECT_EQ(tildados(), "0000000000000000");
    QTest::keyClicks(&caja("TxtValor"), "8");
    EXPECT_EQ(valor(), "8") << "the zero gives way to what is typed";
}

TEST_F(Escritura, OkReclamaLoQueFaltaEnOrdenYDespuesEscribe) {
    for (const char* nombre : {"txtPuerto", "TxtPlc", "TxtDireccion"})
        caja(nombre).setText("  ");
    const std::pair<const char*, const char*> pasos[] = {
        {"txtPuerto", "Error de numero de Puerto"},
        {"TxtPlc", "Error de numero de PLC"},
        {"TxtDireccion", "Error de numero de Direccion"}};
    for (const auto& [nombre, mensaje] : pasos) {
        clic(*dialogo, "BtnOk");
        ASSERT_NE(mensajeSobre(*dialogo), nullptr) << "the click returns while the message stands";
        EXPECT_EQ(mensajeSobre(*dialogo)->text(), mensaje);
        EXPECT_EQ(mensajeSobre(*dialogo)->standardButtons(), QMessageBox::Ok);
        responder(*dialogo, "OK");
        ASSERT_FALSE(dialogo.isNull());
        EXPECT_TRUE(anotador.escritas.empty());
        teclear(nombre, "3");
    }
    QTest::keyClick(&caja("TxtValor"), Qt::Key_Return);
    ASSERT_EQ(anotador.escritas.size(), 1U);
    EXPECT_EQ(anotador.escritas[0], std::make_pair(std::string("3.3.3"), 5.0));
    EXPECT_TRUE(seCerro());
}

TEST_F(Escritura, ElValorDeAhoraSigueAlRegistroMientrasSeTeclea) {
    EXPECT_EQ(ahora(), "5   OK   07:05:20 16-11-2025");
    teclear("TxtValor", "77");
    anotador.leido = "6   BAD";
    EXPECT_TRUE(llega([this] { return ahora() == "6   BAD"; }));
    EXPECT_EQ(valor(), "77");
    teclear("TxtDireccion", "40002");
    EXPECT_EQ(ahora(), "no se lee") << "of the address that would be written";
}

TEST_F(Escritura, LoQueNoEntraEnUnaPalabraNoSeEscribe) {
    teclear("TxtValor", "65535");
    EXPECT_TRUE(okPosible());
    teclear("TxtValor", "65536");
    EXPECT_FALSE(okPosible());
    EXPECT_EQ(hallar<QLabel>(*dialogo, "LblExceso").text(), "No entra: el máximo es 65535");
    QTest::keyClick(&caja("TxtValor"), Qt::Key_Return);
    EXPECT_TRUE(anotador.escritas.empty());
    QTest::mouseClick(&bit(3), Qt::LeftButton);
    QTest::mouseClick(&bit(3), Qt::LeftButton);
    EXPECT_EQ(valor(), "0") << "a cleared bit leaves sixteen";
    EXPECT_TRUE(okPosible());
}

TEST_F(Escritura, LaFilaDeUnBitTieneEseBitYNadaMas) {
    anotador.leido = "1   OK   07:05:20 16-11-2025";
    dialogo->mostrarPara("1", "2", "40001.3", 1);
    EXPECT_EQ(binario(), "Bit 3: 1");
    for (int b = 0; b < 16; ++b)
        EXPECT_EQ(bit(b).isVisible(), b == 3) << b;
    fotografiar(*dialogo, "frmescritura-bit");
    EXPECT_TRUE(bit(3).isChecked());
    QTest::keyClick(&bit(3), Qt::Key_Space);
    EXPECT_EQ(valor(), "0");
    EXPECT_EQ(binario(), "Bit 3: 0");
    QTest::keyClick(&caja("TxtDireccion"), Qt::Key_Backspace);
    EXPECT_EQ(caja("TxtDireccion").text(), "40001.3") << "it never becomes the whole word";
    teclear("TxtValor", "2");
    EXPECT_FALSE(okPosible());
    teclear("TxtValor", "1");
    clic(*dialogo, "BtnOk");
    ASSERT_EQ(anotador.escritas.size(), 1U);
    EXPECT_EQ(anotador.escritas[0], std::make_pair(std::string("1.2.40001.3"), 1.0));
}

TEST_F(Escritura, CancelarYSalirCierranSinEscribir) {
    clic(*dialogo, "BtnCancelar");
    EXPECT_TRUE(seCerro());
    SetUp();
    clic(*dialogo, "BtnSalir");
    EXPECT_TRUE(seCerro());
    EXPECT_TRUE(anotador.escritas.empty());
}

TEST_F(Escritura, SeVeBienEnOscuro) {
    ConPaletaOscura oscura;
    dialogo->recibirValorMW(43690);
    EXPECT_TRUE(llega([&] { return caja("TxtValor").palette() == QApplication::palette(); }));
    EXPECT_EQ(tildados(), "1010101010101010");
    fotografiar(*dialogo, "frmescritura-oscura");
}

TEST(About, LlevaElIconoDeLaVentanaPrincipalYLaVersion) {
    QPixmap rojo(16, 16);
    rojo.fill(Qt::red);
    QWidget padre;
    padre.setWindowIcon(QIcon(rojo));
    FrmAbout about(&padre, "9.8.7");
    about.setAttribute(Qt::WA_DeleteOnClose, false);
    about.show();
    EXPECT_EQ(about.windowTitle(), "Driver KV2200v1 - About");
    EXPECT_EQ(about.windowIcon().cacheKey(), padre.windowIcon().cacheKey());
    EXPECT_TRUE(hallar<QLabel>(about, "Label_ControlDeVercion").text().contains("9.8.7"));
    EXPECT_TRUE(hallar<QLabel>(about, "Label1_1").text().contains("DriverKV2200"));
    for (const char* imagen : {"Image1", "Icono"})
        EXPECT_FALSE(hallar<QLabel>(about, imagen).pixmap().isNull()) << imagen;
    fotografiar(about, "frmabout");
    ConPaletaOscura oscura;
    FrmAbout otra(&padre, "9.8.7");
    otra.setAttribute(Qt::WA_DeleteOnClose, false);
    otra.show();
    fotografiar(otra, "frmabout-oscura");
}

} // namespace kv
