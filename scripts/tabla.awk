# A live table of a driver's variables from its trace: awk -f tabla.awk CONFIG.ini TRACE
# On a terminal (terminal=1) the table is redrawn once a second; elsewhere every change is a line.

# The configuration first: which connection a block key belongs to. Connections are numbered in the
# order in which their addresses first appear.
FNR == NR {
    gsub(/\r/, "")
    split($0, campo, "=")
    if (campo[1] == "NUMERO") puerto = campo[2]
    if (campo[1] ~ /^Esclavo[0-9]+_Numero$/) plc = campo[2]
    if (campo[1] ~ /^Esclavo[0-9]+_Ip$/) ip = campo[2]
    if (campo[1] ~ /^Esclavo[0-9]+_Puerto$/) {
        direccion = ip ":" campo[2]
        if (!(direccion in conexion)) conexion[direccion] = conexiones++
        deEstacion[puerto "." plc] = conexion[direccion]
    }
    next
}

/^txtTramas: .* Envio -> / {
    clave = $0
    sub(/.*Bloque: /, "", clave)
    sub(/ Envio.*/, "", clave)
    split(clave, parte, ".")
    enCurso[deEstacion[parte[1] "." parte[2]]] = clave
}
/^txtTramas: .*  Recepcion <- / {
    trama = $0
    sub(/.*<- \[/, "", trama)
    split(trama, bytes, /\]\[|\]/)
    valor = hex(bytes[6]) * 256 + hex(bytes[7])
    if (valor > 32767) valor -= 65536
    llego = 1
}
# The answer belongs to the connection whose pause starts with it.
/^txtTimerIpPuerto\([0-9]+\): .*ACTIVACION DE TIMER/ && llego {
    n = $0
    sub(/^txtTimerIpPuerto\(/, "", n)
    sub(/\).*/, "", n)
    llego = 0
    if (n in enCurso) mostrar(enCurso[n], valor, "OK")
}
/^txtTramas: .* Deshabilitacion de / {
    clave = $0
    sub(/.* Deshabilitacion de /, "", clave)
    mostrar(clave, valores[clave], "BAD")
}

function mostrar(clave, valor, estado) {
    if (!(clave in valores)) orden[++cuantas] = clave
    if (clave in valores && valores[clave] == valor && estados[clave] == estado) return
    valores[clave] = valor
    estados[clave] = estado
    horas[clave] = strftime("%H:%M:%S")
    if (!terminal) {
        printf "%s %-12s %8s %s\n", horas[clave], clave, valor, estado
        fflush()
    } else if (systime() != dibujada) {
        dibujada = systime()
        dibujar()
    }
}

function dibujar(    i, c) {
    printf "\033[H\033[2J%-12s %8s %-6s %s\n", "Direccion", "Valor", "Estado", "Fecha Hora"
    for (i = 1; i <= cuantas; ++i) {
        c = orden[i]
        printf "%-12s %8s %-6s %s\n", c, valores[c], estados[c], horas[c]
    }
    fflush()
}

function hex(texto,    i, n) {
    n = 0
    for (i = 1; i <= length(texto); ++i)
        n = n * 16 + index("0123456789ABCDEF", substr(texto, i, 1)) - 1
    return n
}
