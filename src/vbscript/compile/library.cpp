// SPDX-License-Identifier: Apache-2.0
#include "vbscript/compile/library.h"

#include <utility>

namespace vbscript {

Library::Library(Names& names, Provisions provisions)
    : constants_(std::move(provisions.constants)), regExp_(provisions.regExp) {
    for (const auto& group : provisions.functions)
        add(names, group);
    for (const auto& c : constants_) {
        const Atom a = names.of(c.name);
        if (a >= constantOf_.size()) constantOf_.resize(a + 1, nullptr);
        constantOf_[a] = &c.value;
    }
}

void Library::add(Names& names, std::span<const Builtin> group) {
    for (const Builtin& b : group) {
        const Atom a = names.of(b.name);
        if (a >= functionOf_.size()) functionOf_.resize(a + 1, none);
        functionOf_[a] = static_cast<std::uint32_t>(functions_.size());
        functions_.push_back(&b);
    }
}

} // namespace vbscript
