# shellcheck shell=bash
# What ./run, ./check and bench/compare share. Sourced from the root of the source tree.
# shellcheck disable=SC2034 # The lists of packages are for those scripts.

export LC_ALL=C.UTF-8
JOBS=${JOBS:-$(nproc)}
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
    mkdir -p build/runtime
    chmod 700 build/runtime
    export XDG_RUNTIME_DIR=$PWD/build/runtime
fi

PAQUETS_CONSTRUCTION=(g++ cmake ninja-build pkg-config ccache qt6-base-dev qt6-base-private-dev qt6-qpa-plugins
    libicu-dev rapidjson-dev libxcb1-dev libxcb-shape0-dev libgl-dev libopengl-dev libxkbcommon-dev libcups2-dev
    fonts-liberation2 fonts-dejavu-core)
PAQUETS_ESSAIS=(libgtest-dev libgmock-dev poppler-utils)
PAQUETS_LINT=(clang-format clang-tidy shellcheck git)
PAQUETS_FENETRES=(xvfb openbox picom xdotool x11-utils x11-xserver-utils dbus-bin dbus-daemon dunst cups-daemon cups-client)
# The gallery shows a list of words, and a few lines of its own without it.
PAQUETS_GALERIE=(wfrench)
PAQUETS_BANCS=(libbenchmark-dev wfrench)

dire() { printf '== %s\n' "$*"; }
echouer() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

# Installs the Debian packages that are missing, and says which. Needs root or sudo only when one is.
installer() {
    command -v dpkg-query >/dev/null || echouer "this is not a Debian system; install by hand: $*"
    local manquants=() paquet
    for paquet in "$@"; do
        if ! dpkg-query -W -f='${db:Status-Status}\n' "$paquet" 2>/dev/null | grep -qx installed; then
            manquants+=("$paquet")
        fi
    done
    [ ${#manquants[@]} -eq 0 ] && return 0
    dire "installing with apt-get: ${manquants[*]}"
    local sudo=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || echouer "neither root nor sudo; install by hand: apt-get install ${manquants[*]}"
        sudo=(sudo)
    fi
    "${sudo[@]}" apt-get update -q || echouer "apt-get update failed"
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -qy --no-install-recommends "${manquants[@]}" ||
        echouer "apt-get could not install: ${manquants[*]}"
}

# configurer PRESET
configurer() {
    dire "configuring build/$1"
    mkdir -p build
    cmake --preset "$1" >"build/$1.log" 2>&1 || {
        cat "build/$1.log"
        echouer "cmake could not configure the preset $1"
    }
}

# construire PRESET [TARGET...]
construire() {
    local preset=$1 cibles=()
    shift
    [ $# -gt 0 ] && cibles=(--target "$@")
    configurer "$preset"
    dire "building build/$preset with $JOBS jobs"
    cmake --build "build/$preset" -j "$JOBS" "${cibles[@]}" || echouer "the build of $preset failed"
}
