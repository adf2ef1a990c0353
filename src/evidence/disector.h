// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace kv {

/// A script with which Wireshark and tshark show the stations' frames on these TCP ports: command,
/// station, register, value, whether the sum is right.
[[nodiscard]] std::string disectorPara(const std::set<std::uint16_t>& puertos);

} // namespace kv
