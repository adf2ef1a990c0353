// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/standard.h"

#include "vbscript/library/builtins.h"
#include "vbscript/library/regexp.h"

namespace vbscript {

Provisions standardProvisions() {
    return {{convertBuiltins(), typeBuiltins(), mathBuiltins(), stringBuiltins(), listBuiltins(),
             byteBuiltins(), dateBuiltins(), datePartBuiltins(), formatBuiltins(), hostBuiltins()},
            builtinConstants(),
            makeRegExp};
}

} // namespace vbscript
