// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/locale.h"

#include "vbscript/values/text.h"

#include <algorithm>

namespace vbscript {

namespace {

constexpr Locale esAr{
    "es-AR",
    11274,
    u',',
    u'.',
    u"$",
    true,
    true,
    1,
    u"Verdadero",
    u"Falso",
    {u"enero", u"febrero", u"marzo", u"abril", u"mayo", u"junio", u"julio", u"agosto",
     u"septiembre", u"octubre", u"noviembre", u"diciembre"},
    {u"ene", u"feb", u"mar", u"abr", u"may", u"jun", u"jul", u"ago", u"sep", u"oct", u"nov",
     u"dic"},
    {u"domingo", u"lunes", u"martes", u"miércoles", u"jueves", u"viernes", u"sábado"},
    {u"dom", u"lun", u"mar", u"mié", u"jue", u"vie", u"sáb"}};

constexpr Locale enUs{
    "en-US",
    1033,
    u'.',
    u',',
    u"$",
    false,
    false,
    1,
    u"True",
    u"False",
    {u"January", u"February", u"March", u"April", u"May", u"June", u"July", u"August", u"September",
     u"October", u"November", u"December"},
    {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun", u"Jul", u"Aug", u"Sep", u"Oct", u"Nov",
     u"Dec"},
    {u"Sunday", u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday", u"Saturday"},
    {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"}};

constexpr const Locale* all[] = {&esAr, &enUs};

} // namespace

const Locale& spanish() { return esAr; }
const Locale& english() { return enUs; }

const Locale* localeByTag(std::string_view tag) {
    for (const Locale* l : all) {
        const bool same = std::equal(tag.begin(), tag.end(), l->tag.begin(), l->tag.end(),
                                     [](char a, char b) { return lowerAscii(a) == lowerAscii(b); });
        if (same) return l;
    }
    return nullptr;
}

const Locale* localeByLcid(int lcid) {
    for (const Locale* l : all) {
        if (l->lcid == lcid) return l;
    }
    return nullptr;
}

} // namespace vbscript
