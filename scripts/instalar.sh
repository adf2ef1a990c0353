# SPDX-License-Identifier: Apache-2.0
# Sourced by ./run, ./test and .ci/run: installs the Debian packages that are missing.
# Usage: instalar PACKAGE...

instalar() {
    local faltan=() p
    for p in "$@"; do
        dpkg-query -W -f='${db:Status-Status}' "$p" 2>/dev/null | grep -qx installed || faltan+=("$p")
    done
    [ ${#faltan[@]} -eq 0 ] && return 0
    local como=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages, and neither root nor sudo to install them. As root, run:" >&2
            echo "    apt-get install ${faltan[*]}" >&2
            return 1
        fi
        como=(sudo)
    fi
    echo "Installing: ${faltan[*]}" >&2
    "${como[@]}" apt-get update -qq >&2 || true
    "${como[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${faltan[@]}" >/dev/null
}

# What the driver and its tools are built with, and what the tests want beside that.
PAQUETES_PROGRAMA=(g++ cmake ninja-build libcli11-dev libpcre2-dev pkg-config libsystemd-dev
                   qt6-base-dev qt6-l10n-tools liborcus-dev)
PAQUETES_PRUEBAS=(libgtest-dev python3 xvfb xauth fonts-dejavu-core)
