// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/object.h"

namespace vbscript {

namespace {
constexpr std::size_t plainObject = 96; // about what one costs besides its contents
}

Object::Object() : account_(&Memory::current()) { account_->take(plainObject); }
Object::~Object() { account_->giveBack(plainObject); }

void Object::free(Object* o) {
    // The last share is still counted: code that runs now may take another one.
    o->dying();
    if (o->last())
        delete o;
    else
        o->unshare();
}

} // namespace vbscript
