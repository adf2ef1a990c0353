#pragma once

#include <QDialog>

class QTreeWidget;

namespace kv {

/// The ports list: always empty, and nothing can be done in it. The configured ports are among the
/// connections of the main window.
class FrmPuertos final : public QDialog {
    Q_OBJECT
  public:
    explicit FrmPuertos(QWidget* padre);
    /// Empties the list and brings the window to the front.
    void mostrarPuertos();

  private:
    QTreeWidget* LstViewPuertos_;
};

} // namespace kv
