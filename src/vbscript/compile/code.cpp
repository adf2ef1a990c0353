// SPDX-License-Identifier: Apache-2.0
#include "vbscript/compile/code.h"

namespace vbscript {

namespace {

template <class T>
std::size_t bytesOf(const std::vector<T>& v) {
    return v.capacity() * sizeof(T); // NOLINT(bugprone-sizeof-expression): pointers, too
}

constexpr std::size_t node = 48; // of a table, besides what it holds

std::size_t bytesOf(const Proc& p) {
    return sizeof(Proc) + bytesOf(p.code) + bytesOf(p.pool) + bytesOf(p.regions) +
           bytesOf(p.names) + bytesOf(p.parameters) + bytesOf(p.callees);
}

std::size_t bytesOf(const ClassInfo& c) {
    std::size_t all = sizeof(ClassInfo) + bytesOf(c.variables);
    for (const MemberVariable& v : c.variables)
        all += bytesOf(v.extents);
    return all + c.members.size() * (sizeof(Member) + node);
}

} // namespace

std::size_t Unit::bytes() const {
    if (charged != 0) return charged;
    constexpr std::size_t blocks = 1800; // three deques begin with
    std::size_t all = sizeof(Unit) + blocks + source.capacity() + constants.size() * sizeof(Value) +
                      bytesOf(shapes) + bytesOf(declares);
    for (const Proc& p : procs)
        all += bytesOf(p);
    for (const ClassInfo& c : classes)
        all += bytesOf(c);
    for (const ArrayShape& s : shapes)
        all += bytesOf(s.extents);
    return all;
}

void Unit::charge() {
    const std::size_t all = bytes();
    account.grow(all);
    charged = all;
}

} // namespace vbscript
