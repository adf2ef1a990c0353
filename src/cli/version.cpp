// SPDX-License-Identifier: Apache-2.0
#include "cli/version.h"

namespace kv {

std::string_view version() { return KV_VERSION; }

std::string conVersion(std::string_view programa) {
    return std::string(programa) + " " + KV_VERSION;
}

} // namespace kv
