// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"

namespace vbscript {

namespace {

struct Number {
    const char* name;
    std::int64_t value;
};

constexpr Number numbers[] = {
    {"vbEmpty", 0},
    {"vbNull", 1},
    {"vbInteger", 2},
    {"vbLong", 3},
    {"vbSingle", 4},
    {"vbDouble", 5},
    {"vbCurrency", 6},
    {"vbDate", 7},
    {"vbString", 8},
    {"vbObject", 9},
    {"vbError", 10},
    {"vbBoolean", 11},
    {"vbVariant", 12},
    {"vbDataObject", 13},
    {"vbDecimal", 14},
    {"vbByte", 17},
    {"vbArray", 8192},
    {"vbBinaryCompare", 0},
    {"vbTextCompare", 1},
    {"vbDatabaseCompare", 2},
    {"vbSunday", 1},
    {"vbMonday", 2},
    {"vbTuesday", 3},
    {"vbWednesday", 4},
    {"vbThursday", 5},
    {"vbFriday", 6},
    {"vbSaturday", 7},
    {"vbUseSystem", 0},
    {"vbUseSystemDayOfWeek", 0},
    {"vbFirstJan1", 1},
    {"vbFirstFourDays", 2},
    {"vbFirstFullWeek", 3},
    {"vbGeneralDate", 0},
    {"vbLongDate", 1},
    {"vbShortDate", 2},
    {"vbLongTime", 3},
    {"vbShortTime", 4},
    {"vbBlack", 0},
    {"vbRed", 0xFF},
    {"vbGreen", 0xFF00},
    {"vbYellow", 0xFFFF},
    {"vbBlue", 0xFF0000},
    {"vbMagenta", 0xFF00FF},
    {"vbCyan", 0xFFFF00},
    {"vbWhite", 0xFFFFFF},
    {"vbOKOnly", 0},
    {"vbOKCancel", 1},
    {"vbAbortRetryIgnore", 2},
    {"vbYesNoCancel", 3},
    {"vbYesNo", 4},
    {"vbRetryCancel", 5},
    {"vbCritical", 16},
    {"vbQuestion", 32},
    {"vbExclamation", 48},
    {"vbInformation", 64},
    {"vbDefaultButton1", 0},
    {"vbDefaultButton2", 256},
    {"vbDefaultButton3", 512},
    {"vbDefaultButton4", 768},
    {"vbApplicationModal", 0},
    {"vbSystemModal", 4096},
    {"vbMsgBoxHelpButton", 16384},
    {"vbMsgBoxSetForeground", 65536},
    {"vbMsgBoxRight", 524288},
    {"vbMsgBoxRtlReading", 1048576},
    {"vbOK", 1},
    {"vbCancel", 2},
    {"vbAbort", 3},
    {"vbRetry", 4},
    {"vbIgnore", 5},
    {"vbYes", 6},
    {"vbNo", 7},
    {"vbTrue", -1},
    {"vbFalse", 0},
    {"vbUseDefault", -2},
    {"vbObjectError", -2147221504LL},
};

struct Text {
    const char* name;
    std::u16string_view value;
};

constexpr Text texts[] = {
    {"vbCr", u"\r"},          {"vbLf", u"\n"},
    {"vbCrLf", u"\r\n"},      {"vbNewLine", u"\r\n"},
    {"vbTab", u"\t"},         {"vbFormFeed", u"\f"},
    {"vbVerticalTab", u"\v"}, {"vbNullChar", std::u16string_view(u"\0", 1)},
    {"vbNullString", u""},    {"vbBack", u"\b"},
};

} // namespace

std::vector<BuiltinConstant> builtinConstants() {
    std::vector<BuiltinConstant> all;
    for (const Number& n : numbers) {
        all.push_back(
            {n.name, n.value < -2147483647 ? Value::longint(n.value) : Value::smallest(n.value)});
    }
    for (const Text& t : texts)
        all.push_back({t.name, Value::string(t.value)});
    return all;
}

} // namespace vbscript
