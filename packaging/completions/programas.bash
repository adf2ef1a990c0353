# SPDX-License-Identifier: Apache-2.0
# Completion of the driver's programs for bash. Options are asked of the program itself, so that they
# are always those that it has.
_driverkv2200() {
    local palabra=${COMP_WORDS[COMP_CWORD]} anterior=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    case $anterior in
    --carpeta | --local)
        mapfile -t COMPREPLY < <(compgen -d -- "$palabra")
        compopt -o filenames
        return
        ;;
    --config | --grabar | --reproducir | --exportar | --importar | --evidencia | --con-grabacion)
        mapfile -t COMPREPLY < <(compgen -f -- "$palabra")
        compopt -o filenames
        return
        ;;
    --idioma)
        mapfile -t COMPREPLY < <(compgen -W "es-AR en-US" -- "$palabra")
        return
        ;;
    esac
    if [[ $palabra == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$("$1" --help 2>/dev/null |
            grep -oE -- '(^|[ ,])--?[a-z][a-z-]*' | tr -d ' ,')" -- "$palabra")
    elif [[ $1 == *ClienteKV2200 ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$("$1" --help 2>/dev/null |
            sed -n '/^Órdenes/,/^$/s/^  \([a-z]\{1,\}\) .*/\1/p')" -- "$palabra")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$palabra")
        compopt -o filenames
    fi
}
complete -F _driverkv2200 DriverKV2200 DriverKV2200-ventana SimuladorKV2200 ClienteKV2200 GuionKV2200
