// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace kv::fallas {

/// The allocations of this program: any of them can be made to fail, and what is held is counted.
/// Every operator new goes through here.
struct Memoria {
    static void fallarEn(long enesima, bool desdeAhi); ///< counted from the next one on
    static void noFallarMas();
    static long pedidas();    ///< since `fallarEn` or `noFallarMas`
    static long falladas();   ///< likewise
    static long vivas();      ///< blocks that are held now
    static long bytesVivos(); ///< what they take
};

} // namespace kv::fallas
