// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/number_text.h"

#include "vbscript/values/literals.h"
#include "vbscript/values/text.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace vbscript {

namespace {

bool isDigit(char16_t c) { return c >= '0' && c <= '9'; }

std::u16string exponentForm(const std::string& digits, int exponent, char16_t decimal) {
    std::u16string out(1, static_cast<char16_t>(digits[0]));
    if (digits.size() > 1) {
        out += decimal;
        out += wide(std::string_view(digits).substr(1));
    }
    out += u'E';
    out += exponent < 0 ? u'-' : u'+';
    const std::string e = std::to_string(std::abs(exponent));
    if (e.size() < 2) out += u'0';
    return out + wide(e);
}

std::u16string plainForm(const std::string& digits, int exponent, char16_t decimal) {
    std::u16string out;
    if (exponent < 0) {
        out += u'0';
        out += decimal;
        out.append(static_cast<std::size_t>(-exponent - 1), u'0');
        return out + wide(digits);
    }
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= whole) return wide(digits) + std::u16string(whole - digits.size(), u'0');
    out = wide(std::string_view(digits).substr(0, whole));
    out += decimal;
    return out + wide(std::string_view(digits).substr(whole));
}

} // namespace

std::u16string numberText(double v, int significant, char16_t decimal) {
    if (std::isnan(v)) return u"-1" + std::u16string(1, decimal) + u"#IND";
    if (std::isinf(v)) return (v < 0 ? u"-1" : u"1") + std::u16string(1, decimal) + u"#INF";
    if (v == 0) return u"0";
    if (std::fabs(v) < (significant < 9 ? 1e6 : 1e9) && v == std::trunc(v))
        return wide(std::to_string(static_cast<long long>(v)));
    char buffer[40];
    const auto r = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(v),
                                 std::chars_format::scientific, significant - 1);
    const std::string_view text(buffer, static_cast<std::size_t>(r.ptr - buffer));
    const std::size_t e = text.find('e');
    const int exponent = std::atoi(std::string(text.substr(e + 1)).c_str());
    std::string digits(1, text[0]);
    if (e > 2) digits += text.substr(2, e - 2);
    while (digits.size() > 1 && digits.back() == '0')
        digits.pop_back();
    const bool plain = exponent >= -4 && exponent < significant;
    std::u16string out =
        plain ? plainForm(digits, exponent, decimal) : exponentForm(digits, exponent, decimal);
    return v < 0 ? u'-' + out : out;
}

std::u16string currencyText(long long n, char16_t decimal) {
    const bool negative = n < 0;
    const unsigned long long u =
        negative ? 0ULL - static_cast<unsigned long long>(n) : static_cast<unsigned long long>(n);
    std::u16string out = wide(std::to_string(u / 10000));
    if (u % 10000 != 0) {
        std::string part = std::to_string(10000 + u % 10000).substr(1);
        while (part.back() == '0')
            part.pop_back();
        out += decimal;
        out += wide(part);
    }
    return negative ? u'-' + out : out;
}

bool parseNumber(std::u16string_view t, const Locale& locale, double& v) {
    while (!t.empty() && (t.front() == ' ' || t.front() == '\t'))
        t.remove_prefix(1);
    while (!t.empty() && (t.back() == ' ' || t.back() == '\t'))
        t.remove_suffix(1);
    if (t.empty() || t.size() > 400) return false;
    if (t.front() == '&') {
        Value n;
        const std::string ascii = narrow(t);
        if (scanRadix(ascii, n) != ascii.size() || n.is(Type::Null)) return false;
        v = static_cast<double>(n.i);
        return true;
    }
    std::string plain;
    std::size_t k = 0;
    if (t[0] == '+' || t[0] == '-') {
        if (t[0] == '-') plain += '-';
        ++k;
    }
    if (t.substr(k, locale.currency.size()) == locale.currency) k += locale.currency.size();
    while (k < t.size() && t[k] == ' ')
        ++k;
    bool digits = false;
    bool point = false;
    for (; k < t.size(); ++k) {
        if (isDigit(t[k])) {
            plain += static_cast<char>(t[k]);
            digits = true;
        } else if (t[k] == locale.decimal && !point) {
            plain += '.';
            point = true;
        } else if (t[k] != locale.thousands || !digits || point) {
            break;
        }
    }
    if (!digits) return false;
    if (k < t.size() && (lower(t[k]) == 'e' || lower(t[k]) == 'd')) {
        plain += 'e';
        ++k;
        if (k < t.size() && (t[k] == '+' || t[k] == '-')) {
            if (t[k] == '-') plain += '-';
            ++k;
        }
        const std::size_t first = k;
        for (; k < t.size() && isDigit(t[k]); ++k)
            plain += static_cast<char>(t[k]);
        if (k == first) return false;
    }
    if (k != t.size()) return false;
    const auto r = std::from_chars(plain.data(), plain.data() + plain.size(), v);
    if (r.ec == std::errc::result_out_of_range) {
        v = 0;
        return plain.find("e-") != std::string::npos;
    }
    return r.ec == std::errc() && r.ptr == plain.data() + plain.size();
}

std::string fixedText(double v, int places) {
    char buffer[512];
    // Fifteen digits are what a script sees of a number: 0.285 is meant when it is written so.
    const auto seen = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(v),
                                    std::chars_format::scientific, 14);
    const std::string_view text(buffer, static_cast<std::size_t>(seen.ptr - buffer));
    const std::size_t e = text.find('e');
    const int exponent = std::atoi(std::string(text.substr(e + 1)).c_str());
    std::string digits = text[0] + std::string(text.substr(2, e - 2));
    // digits[k] stands for 10^(exponent - k); everything behind 10^-places is rounded away.
    const int keep = exponent + 1 + places;
    if (keep < 0) {
        digits = "0";
    } else if (keep < static_cast<int>(digits.size())) {
        const bool up = digits[static_cast<std::size_t>(keep)] >= '5';
        digits = "0" + digits.substr(0, static_cast<std::size_t>(keep));
        std::size_t at = digits.size() - 1;
        if (up) {
            for (; digits[at] == '9'; --at)
                digits[at] = '0';
            ++digits[at];
        }
    } else {
        digits = "0" + digits + std::string(static_cast<std::size_t>(keep) - digits.size(), '0');
    }
    const auto p = static_cast<std::size_t>(places);
    if (digits.size() <= p) digits.insert(0, p + 1 - digits.size(), '0');
    std::string whole = digits.substr(0, digits.size() - p);
    const std::size_t first = whole.find_first_not_of('0');
    whole = first == std::string::npos ? "0" : whole.substr(first);
    return p == 0 ? whole : whole + '.' + digits.substr(digits.size() - p);
}

} // namespace vbscript
