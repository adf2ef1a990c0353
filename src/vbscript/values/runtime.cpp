// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/runtime.h"

#include <cstring>

namespace vbscript {

void ErrState::set(const Fault& f) {
    number = f.number;
    description = f.description.empty() ? std::string(errorText(f.number)) : f.description;
    source = f.source.empty() && !f.raised ? std::string(runtimeSource) : f.source;
    helpFile = f.helpFile;
    helpContext = f.helpContext;
}

float Chance::last() const { return static_cast<float>(state_) / 16777216.0F; }

float Chance::next() {
    state_ = (state_ * 0x43FD43FDU + 0xC39EC3U) & 0xFFFFFFU;
    return last();
}

void Chance::seed(float v) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &v, sizeof bits);
    state_ = (bits + (bits >> 24)) & 0xFFFFFFU;
}

void Chance::randomize(double v) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &v, sizeof bits);
    const auto high = static_cast<std::uint32_t>(bits >> 32);
    state_ = (state_ & 0xFFU) | (((high ^ (high >> 16)) << 8) & 0xFFFF00U);
}

} // namespace vbscript
