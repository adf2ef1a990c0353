# SPDX-License-Identifier: Apache-2.0
# Sourced by the scripts beside it: bare roots of a Debian release, in which packages are built and
# tried. Wants root; installs mmdebstrap and systemd-container. Roots are kept as archives, so that a
# second one of a kind takes seconds; KV_RAICES names where (build/raices).

. "$(dirname "${BASH_SOURCE[0]}")/../scripts/instalar.sh"
shopt -s inherit_errexit
arbol=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
guardadas=${KV_RAICES:-$arbol/build/raices}

# The release that a number means.
nombre_de_debian() {
    case $1 in
    12) echo bookworm ;;
    13) echo trixie ;;
    *)
        echo "which Debian? 12 or 13, not \"$1\"" >&2
        return 2
        ;;
    esac
}

# archivar_raiz DEBIAN KIND PACKAGES: the archive of a bare root with those packages, made if it is
# missing or older than a week.
archivar_raiz() {
    local archivo=$guardadas/$1-$2.tar
    mkdir -p "$guardadas"
    if [ -z "$(find "$archivo" -mtime -7 2>/dev/null)" ]; then
        mmdebstrap --quiet --variant=minbase --include="$3" \
            --aptopt='Acquire::Languages "none"' "$(nombre_de_debian "$1")" "${archivo%.tar}.nuevo.tar" >&2
        mv "${archivo%.tar}.nuevo.tar" "$archivo"
    fi
    echo "$archivo"
}

# nueva_raiz ARCHIVE: a root of one's own, to be removed by whoever asked for it.
nueva_raiz() {
    local raiz
    raiz=$(mktemp -d "${TMPDIR:-/tmp}/kv-raiz.XXXXXX")
    chmod 755 "$raiz"
    tar xf "$1" -C "$raiz"
    # The installer writes it, not a package.
    [ -e "$raiz/etc/hosts" ] || printf '127.0.0.1\tlocalhost\n::1\tlocalhost\n' >"$raiz/etc/hosts"
    echo "$raiz"
}

# What nspawn keeps about a container, it leaves behind where /run is no file system of its own.
nspawn() {
    mkdir -p /run/systemd/nspawn
    unshare --mount sh -c \
        'mount -t tmpfs nspawn /run/systemd/nspawn && exec systemd-nspawn "$@"' sh \
        --quiet --register=no --keep-unit "$@" </dev/null
}

# en_raiz ROOT [OPTIONS OF systemd-nspawn ...] -- COMMAND: runs it there, with the machine's network.
en_raiz() {
    local raiz=$1 opciones=()
    shift
    while [ "$1" != -- ]; do
        opciones+=("$1")
        shift
    done
    shift
    nspawn --as-pid2 -D "$raiz" --setenv=LC_ALL=C.UTF-8 \
        --setenv=DEBIAN_FRONTEND=noninteractive "${opciones[@]}" "$@"
}
