// SPDX-License-Identifier: Apache-2.0
#include "evidence/disector.h"

#include <string_view>

namespace kv {
namespace {

// What is behind the table of ports.
constexpr std::string_view kGuion = R"lua(
local p = Proto("kv2200", "Tramas KV2200")
local f = p.fields
local ordenes = { [0x52] = "Lectura", [0x57] = "Escritura" }
f.orden = ProtoField.uint8("kv2200.orden", "Orden", base.HEX, ordenes)
f.estacion = ProtoField.string("kv2200.estacion", "Estacion")
f.registro = ProtoField.uint8("kv2200.registro", "Registro", base.HEX)
f.valor = ProtoField.int16("kv2200.valor", "Valor")
f.propios = ProtoField.bytes("kv2200.propios", "Bytes de la estacion")
f.suma = ProtoField.uint8("kv2200.suma", "Suma", base.HEX)
f.suma_bien = ProtoField.bool("kv2200.suma_bien", "Suma bien")
f.pedido = ProtoField.framenum("kv2200.pedido", "Pedido anterior")
f.sueltos = ProtoField.bytes("kv2200.sueltos", "Bytes que no son una trama")
local sumaMal = ProtoExpert.new("kv2200.suma_mal", "Suma mal", expert.group.CHECKSUM, expert.severity.WARN)
p.experts = { sumaMal }

local ultimo = {} -- of a link its last request, for frames as they are first seen
local deRespuesta = {} -- of a frame with answers the request before

function p.init()
    ultimo, deRespuesta = {}, {}
end

local function suma(tvb, desde, cuantos)
    local s = 0
    for i = desde, desde + cuantos - 1 do s = s + tvb(i, 1):uint() end
    return s % 256
end

local function cerrar(rama, tvb, en, bien)
    rama:add(f.suma, tvb(en, 1))
    rama:add(f.suma_bien, tvb(en, 1), bien):set_generated()
    if not bien then rama:add_proto_expert_info(sumaMal) end
end

local function pedido(tvb, en, rama)
    local bien = suma(tvb, en, 6) == tvb(en + 6, 1):uint()
    local estacion = string.format("%02X", tvb(en + 1, 1):uint())
    local orden, registro = tvb(en, 1):uint(), tvb(en + 3, 1):uint()
    local r = rama:add(p, tvb(en, 7))
    r:add(f.orden, tvb(en, 1))
    r:add(f.estacion, tvb(en + 1, 1), estacion)
    r:add(f.registro, tvb(en + 3, 1))
    if orden == 0x57 then r:add(f.valor, tvb(en + 4, 2)) end
    cerrar(r, tvb, en + 6, bien)
    local texto = string.format("%s estacion %s registro %02X", ordenes[orden] or "Orden desconocida",
                                estacion, registro)
    if orden == 0x57 then texto = texto .. " valor " .. tvb(en + 4, 2):int() end
    if not bien then texto = texto .. " SUMA MAL" end
    r:append_text(": " .. texto)
    return texto
end

local function respuesta(tvb, en, rama, de)
    local bien = suma(tvb, en + 1, 6) == tvb(en + 7, 1):uint()
    local r = rama:add(p, tvb(en, 8))
    r:add(f.propios, tvb(en + 1, 4))
    r:add(f.valor, tvb(en + 5, 2))
    cerrar(r, tvb, en + 7, bien)
    if de then r:add(f.pedido, tvb(en, 0), de):set_generated() end
    local texto = "Respuesta valor " .. tvb(en + 5, 2):int()
    if not bien then texto = texto .. " SUMA MAL" end
    r:append_text(": " .. texto)
    return texto
end

-- Where the next answer begins that is whole and right, or one that may still become so.
local function proxima(tvb, desde)
    for i = desde, tvb:len() - 1 do
        if tvb(i, 1):uint() == 7 and
            (tvb:len() - i < 8 or suma(tvb, i + 1, 6) == tvb(i + 7, 1):uint()) then return i end
    end
    return tvb:len()
end

local function enlace(pinfo, alReves)
    local a, b = tostring(pinfo.src) .. ":" .. pinfo.src_port, tostring(pinfo.dst) .. ":" .. pinfo.dst_port
    return alReves and b .. a or a .. b
end

function p.dissector(tvb, pinfo, arbol)
    local en, dicho, largo = 0, {}, tvb:len()
    local dePedidos = puertos[pinfo.dst_port] ~= nil
    pinfo.cols.protocol = "KV2200"
    if not pinfo.visited then
        if dePedidos then ultimo[enlace(pinfo)] = pinfo.number
        else deRespuesta[pinfo.number] = ultimo[enlace(pinfo, true)] end
    end
    while en < largo do
        local hay = largo - en
        if dePedidos and hay >= 7 then
            table.insert(dicho, pedido(tvb, en, arbol))
            en = en + 7
        elseif dePedidos or (tvb(en, 1):uint() == 7 and hay < 8) then
            pinfo.desegment_offset = en
            pinfo.desegment_len = (dePedidos and 7 or 8) - hay
            break
        else
            local sigue = proxima(tvb, en)
            if sigue == en or (tvb(en, 1):uint() == 7 and sigue >= en + 8) then
                table.insert(dicho, respuesta(tvb, en, arbol, deRespuesta[pinfo.number]))
                en = en + 8
            else
                arbol:add(p, tvb(en, sigue - en)):add(f.sueltos, tvb(en, sigue - en))
                table.insert(dicho, (sigue - en) .. " bytes sueltos")
                en = sigue
            end
        end
    end
    if #dicho > 0 then pinfo.cols.info = table.concat(dicho, "; ") end
    return largo
end

for puerto in pairs(puertos) do DissectorTable.get("tcp.port"):add(puerto, p) end
)lua";

} // namespace

std::string disectorPara(const std::set<std::uint16_t>& puertos) {
    std::string guion = "-- Tramas KV2200 en Wireshark: wireshark -X lua_script:kv2200.lua "
                        "-r tramas.pcap\n-- Los puertos TCP de las estaciones:\nlocal puertos = {";
    for (const std::uint16_t p : puertos)
        guion += " [" + std::to_string(p) + "] = true,";
    return guion.append(" }\n").append(kGuion);
}

} // namespace kv
