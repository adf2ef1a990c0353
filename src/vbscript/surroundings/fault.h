// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace vbscript {

/// The place of a fault, counted from 1; line 0: not known yet. Where the fault lies in a text that
/// the script itself ran or added, line and column are those of the statement that set it going,
/// and the rest says where in that text.
struct Place {
    int line = 0, column = 0;
    std::string text; ///< Its first words; empty: not in a text that was run.
    int textLine = 0, textColumn = 0;
};

/// A run-time error of the language, on its way to the handler or to the end of the run.
struct Fault {
    explicit Fault(int n) : number(n) {}
    Fault(int n, std::string text) : number(n), description(std::move(text)) {}
    int number;
    std::string description; ///< Empty: the classic text of the number.
    std::string source;      ///< Empty: the engine's own.
    std::string detail;      ///< Added to the text in the report only, not in Err.Description.
    std::string helpFile;
    int helpContext = 0;
    bool raised = false; ///< By Err.Raise.
    Place at;            ///< Filled in by the innermost frame.
};

/// A mistake in the text, found before anything of it runs. Line and column count from 1.
struct CompileFault {
    int number;
    int line, column;
    std::string description; ///< Empty: the classic text of the number.
};

enum class BudgetKind { Time, Steps, Memory };

/// A budget is used up: no handler of the script sees this one. Calls that go too deep are an
/// ordinary error, which a script may handle.
struct BudgetFault {
    explicit BudgetFault(BudgetKind k) : kind(k) {}
    BudgetKind kind;
    Place at;
};

/// The classic text of a run-time or compile error; "Unknown runtime error" for the rest.
std::string_view errorText(int number);
/// The number and text that a stopped run is reported with.
int budgetNumber(BudgetKind kind);
std::string_view budgetText(BudgetKind kind);

inline constexpr std::string_view runtimeSource = "Microsoft VBScript runtime error";
inline constexpr std::string_view compileSource = "Microsoft VBScript compilation error";

} // namespace vbscript
