// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDialog>

namespace kv {

/// The About box: the program's name and version under the icon of the window that opens it.
/// Deletes itself when it is closed.
class FrmAbout final : public QDialog {
    Q_OBJECT
  public:
    FrmAbout(QWidget* padre, const QString& version);
};

} // namespace kv
