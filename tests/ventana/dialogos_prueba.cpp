#include "ui/commands/escritura_manual.h"
#include "ui/qt/ventana.h"
#include "ventana/pantalla.h"

#include <QLineEdit>
#include <QWidget>

#include <gtest/gtest.h>

namespace kv {

TEST(Ventanas, CadaControlLlevaElContextoDeAyuda) {
    QWidget ventana;
    QLineEdit caja(&ventana);
    prepararVentana(ventana);
    EXPECT_EQ(caja.property(kPropiedadDeAyuda).toInt(), kContextoDeAyuda);
}

TEST(EscrituraManual, LosBitsSiguenAlValorYElValorALosBits) {
    EscrituraManual dialogo;
    dialogo.recibirValorMW(5);
    EXPECT_EQ(dialogo.LblBinario(), "Binario: 0000000000000101");
    dialogo.marcar(1, true);
    EXPECT_EQ(dialogo.TxtValor(), "7");
    dialogo.ponerValor("70001");
    dialogo.marcar(0, false);
    EXPECT_EQ(dialogo.TxtValor(), "4464") << "a cleared bit leaves sixteen bits";
    dialogo.ponerValor("");
    EXPECT_EQ(dialogo.TxtValor(), "0");
}

} // namespace kv
