// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/text.h"

#include "text/tabla_1252.h"
#include "text/utf8.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <vector>

namespace vbscript {

namespace {

// From this length on the plain search may take too long over "aaaaaaab" in a long text.
constexpr std::size_t longNeedle = 8;

std::size_t findLong(std::u16string_view in, std::u16string_view what, std::size_t from) {
    std::vector<std::uint32_t> fail(what.size(), 0);
    for (std::size_t i = 1, k = 0; i < what.size(); ++i) {
        while (k > 0 && what[i] != what[k])
            k = fail[k - 1];
        if (what[i] == what[k]) ++k;
        fail[i] = static_cast<std::uint32_t>(k);
    }
    for (std::size_t i = from, k = 0; i < in.size(); ++i) {
        while (k > 0 && in[i] != what[k])
            k = fail[k - 1];
        if (in[i] == what[k]) ++k;
        if (k == what.size()) return i + 1 - k;
    }
    return std::u16string_view::npos;
}

} // namespace

char32_t nextUtf8(std::string_view t, std::size_t& at) {
    const auto [c, length] = kv::leerUtf8(t, at);
    if (length == 0) return fromAnsi(static_cast<unsigned char>(t[at++]));
    at += length;
    return c;
}

std::u16string utf16(std::string_view t) {
    std::u16string out;
    out.reserve(t.size());
    for (std::size_t at = 0; at < t.size();) {
        const char32_t c = nextUtf8(t, at);
        if (c < 0x10000) {
            out += static_cast<char16_t>(c);
        } else {
            out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }
    return out;
}

std::string utf8(std::u16string_view t) {
    std::string out;
    out.reserve(t.size());
    for (std::size_t at = 0; at < t.size(); ++at) {
        char32_t c = t[at];
        if (c >= 0xD800 && c <= 0xDFFF) {
            const bool pair =
                c < 0xDC00 && at + 1 < t.size() && t[at + 1] >= 0xDC00 && t[at + 1] <= 0xDFFF;
            c = pair ? 0x10000 + ((c - 0xD800) << 10) + (t[at + 1] - 0xDC00U) : 0xFFFD;
            if (pair) ++at;
        }
        kv::agregarUtf8(out, c);
    }
    return out;
}

unsigned char ansiOf(char16_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<unsigned char>(c);
    const auto at = std::ranges::find(kv::kAltosDe1252, c);
    return at == kv::kAltosDe1252.end()
               ? '?'
               : static_cast<unsigned char>(0x80 + (at - kv::kAltosDe1252.begin()));
}

char16_t fromAnsi(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? kv::kAltosDe1252[byte - 0x80] : byte;
}

char16_t upper(char16_t c) {
    if (c < 0x80) return c >= 'a' && c <= 'z' ? static_cast<char16_t>(c - 32) : c;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return static_cast<char16_t>(c - 32);
    if (c == 0xFF) return 0x178;
    if (c >= 0x100 && c <= 0x17F) {
        const bool oddIsLower = (c <= 0x137 && c != 0x131) || (c >= 0x14A && c <= 0x177);
        const bool evenIsLower = (c >= 0x13A && c <= 0x148) || (c >= 0x17A && c <= 0x17E);
        if ((oddIsLower && (c & 1)) || (evenIsLower && !(c & 1)))
            return static_cast<char16_t>(c - 1);
        return c;
    }
    if (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) return static_cast<char16_t>(c - 32);
    if (c >= 0x430 && c <= 0x44F) return static_cast<char16_t>(c - 32);
    if (c >= 0x450 && c <= 0x45F) return static_cast<char16_t>(c - 80);
    return c;
}

char16_t lower(char16_t c) {
    if (c < 0x80) return c >= 'A' && c <= 'Z' ? static_cast<char16_t>(c + 32) : c;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return static_cast<char16_t>(c + 32);
    if (c == 0x178) return 0xFF;
    if (c >= 0x100 && c <= 0x17E && upper(static_cast<char16_t>(c + 1)) == c && c != 0x130) {
        return static_cast<char16_t>(c + 1);
    }
    if (c >= 0x391 && c <= 0x3A9) return static_cast<char16_t>(c + 32);
    if (c >= 0x410 && c <= 0x42F) return static_cast<char16_t>(c + 32);
    if (c >= 0x400 && c <= 0x40F) return static_cast<char16_t>(c + 80);
    return c;
}

std::u16string lowered(std::u16string_view text) {
    std::u16string out(text);
    std::transform(out.begin(), out.end(), out.begin(), lower);
    return out;
}

std::size_t findText(std::u16string_view in, std::u16string_view what, std::size_t from) {
    if (what.size() < longNeedle) return in.find(what, from);
    return findLong(in, what, from);
}

int compare(std::u16string_view a, std::u16string_view b, bool asText) {
    if (!asText) {
        const int c = a.compare(b);
        return c < 0 ? -1 : c > 0;
    }
    const std::size_t n = std::min(a.size(), b.size());
    for (std::size_t k = 0; k < n; ++k) {
        const char16_t x = lower(a[k]);
        const char16_t y = lower(b[k]);
        if (x != y) return x < y ? -1 : 1;
    }
    return a.size() < b.size() ? -1 : a.size() > b.size();
}

std::u16string wide(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

std::string narrow(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char16_t c : text)
        out += c < 0x80 ? static_cast<char>(c) : '?';
    return out;
}

} // namespace vbscript
