// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/epoll/bucle_epoll.h"

namespace kv {

/// Reports to the service manager that started this process: that it is ready, that it lives, that
/// it reads its configuration anew, that it ends. Does nothing when no manager started it, or when
/// the manager does not want to know.
class AvisosDeServicio {
  public:
    /// Must live as long as the loop turns.
    explicit AvisosDeServicio(BucleEpoll& bucle);
    /// Start-up is done. From here on there is a sign of life every half of the time that the
    /// manager allows, at the end of a turn of the loop: a handler that never comes back stops it,
    /// whatever it lets run meanwhile.
    void listo();
    /// Its configuration is being read anew; `listo` follows.
    void recargando();
    void terminando();

  private:
    Temporizador latido_;
    bool debeLatir_ = false;
};

} // namespace kv
