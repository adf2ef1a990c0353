// SPDX-License-Identifier: Apache-2.0
#pragma once

class QString;
class QWidget;

namespace kv {

/// A message with an OK button over `padre`. Returns at once: polling goes on while it stands.
void avisar(QWidget* padre, const QString& texto);

} // namespace kv
