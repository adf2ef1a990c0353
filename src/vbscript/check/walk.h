// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/syntax/ast.h"

#include <functional>

namespace vbscript {

/// What a walk over a procedure's statements meets, each in no promised order.
struct Visitor {
    std::function<void(const Expr&)> expression = {}; ///< each, once; of the targets see `target`
    std::function<void(const Expr&)> target = {};     ///< a name that gets a value
    std::function<void(const Stmt&)> unreachable = {};
};

/// Recursion is as deep as the parser lets statements and expressions nest, however long a chain
/// of operators is. An expression under With comes with the object that its dot means.
class Walk {
  public:
    explicit Walk(const Visitor& visitor) : visitor_(visitor) {}
    void block(const Block& block);
    /// The object of the With that the present expression stands in; null outside of any With.
    [[nodiscard]] const Expr* with() const { return withs_.empty() ? nullptr : withs_.back(); }

  private:
    void statement(const Stmt& s);
    void expression(const Expr* e);
    void target(const Expr* e);

    const Visitor& visitor_;
    std::vector<const Expr*> withs_;
};

} // namespace vbscript
