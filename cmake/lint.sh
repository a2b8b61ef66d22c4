# shellcheck shell=bash
# Formatting, includes, references, scripts and clang-tidy. Sourced by ./check.

# Third parties that may be known to one storey only.
TIERS='Q[A-Z]|q[a-z]+/|qpa/|unicode/|xcb/|X11/|xkbcommon/|litehtml|cups/|systemd/|dbus/|gtest/|gmock/|benchmark/'

# etage NAME LIBVUE-FOLDERS-IT-MAY-SEE THIRD-PARTIES-IT-MAY-SEE FILE...
# Both are extended regular expressions; an empty one allows nothing. Prints the lines that break them.
etage() {
    local nom=$1 vus=$2 tiers=$3 etat=0 fautes
    shift 3
    [ $# -gt 0 ] || return 0
    fautes=$(grep -nHE '^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"]libvue/' "$@" |
        grep -vE "include[[:space:]]*[<\"]libvue/($vus)" || true)
    if [ -n "$fautes" ]; then
        printf 'storey %s may not include:\n%s\n' "$nom" "$fautes"
        etat=1
    fi
    fautes=$(grep -nHE "^[[:space:]]*#[[:space:]]*include[[:space:]]*[<\"]($TIERS)" "$@" || true)
    if [ -n "$tiers" ]; then
        fautes=$(printf '%s' "$fautes" | grep -vE "include[[:space:]]*[<\"]($tiers)" || true)
    fi
    if [ -n "$fautes" ]; then
        printf 'storey %s may not include:\n%s\n' "$nom" "$fautes"
        etat=1
    fi
    # A relative path would go round the include roots.
    fautes=$(grep -nHE '^[[:space:]]*#[[:space:]]*include[[:space:]]*"[^"]*/' "$@" || true)
    if [ -n "$fautes" ]; then
        printf 'include with <libvue/...> instead:\n%s\n' "$fautes"
        etat=1
    fi
    return $etat
}

fichiers() { git ls-files -- "$@"; }

includes() {
    local etat=0 liste
    local base='platform/foundation/'
    local interfaces='platform/backend/[^/]+>'
    local outils='layout/|popover/|panels/|collections/|charts/|controls/|images/|text/|alerts/|search/'

    mapfile -t liste < <(fichiers 'libvue/platform/foundation/*.h')
    etage "foundation (headers)" "$base" '' "${liste[@]}" || etat=1
    mapfile -t liste < <(fichiers 'libvue/platform/foundation/*.cpp')
    etage foundation "$base" 'unicode/' "${liste[@]}" || etat=1
    mapfile -t liste < <(fichiers 'libvue/platform/coredata/*.h' 'libvue/platform/coredata/*.cpp')
    etage coredata "$base|platform/coredata/" '' "${liste[@]}" || etat=1
    mapfile -t liste < <(fichiers ':(glob)libvue/platform/backend/*.h' ':(glob)libvue/platform/backend/*.cpp')
    etage "backend interfaces" "$base|$interfaces" '' "${liste[@]}" || etat=1
    mapfile -t liste < <(fichiers 'libvue/platform/graphics/*.h' 'libvue/platform/graphics/*.cpp')
    etage graphics "$base|$interfaces|platform/graphics/" '' "${liste[@]}" || etat=1
    mapfile -t liste < <(fichiers 'libvue/platform/appkit/*.h' 'libvue/platform/appkit/*.cpp')
    etage appkit "$base|$interfaces|platform/graphics/|platform/appkit/" '' "${liste[@]}" || etat=1
    mapfile -t liste < <(fichiers 'libvue/socle/*.h' 'libvue/socle/*.cpp')
    etage socle "$base|socle/" '' "${liste[@]}" || etat=1
    mapfile -t liste < <(fichiers 'libvue/platform/backend/memory/*.h' 'libvue/platform/backend/memory/*.cpp')
    etage backend_memory "$base|$interfaces|platform/backend/memory/" '' "${liste[@]}" || etat=1
    mapfile -t liste < <(fichiers 'libvue/platform/backend/qt/*.h' 'libvue/platform/backend/qt/*.cpp')
    etage backend_qt "$base|$interfaces|platform/backend/qt/" "$TIERS" "${liste[@]}" || etat=1
    mapfile -t liste < <(fichiers libvue | grep -E "^libvue/($outils).*\.(h|cpp)$" || true)
    etage toolkit "$base|platform/coredata/|platform/graphics/|platform/appkit/|socle/|$outils" '' "${liste[@]}" || etat=1
    return $etat
}

# Without a branch of origin to compare with, as many commits are looked at, and no more sources than take minutes.
DERNIERS_COMMITS=20
SOURCES_AU_PLUS=40

# The sources among the files on the standard input, in their order, with those of the headers among them.
sources_des_fichiers() {
    local fichier
    while read -r fichier; do
        fichier=${fichier%.*}.cpp
        [ -f "$fichier" ] && echo "$fichier"
    done | awk '!vu[$0]++'
}

# The sources that clang-tidy looks at: all of them, or those that changed, with the sources of headers that changed.
sources_a_lire() {
    local base
    if [ "${1:-}" = --all ]; then
        fichiers 'libvue/*.cpp' 'tests/*.cpp' 'examples/*.cpp' 'bench/*.cpp'
    elif base=$(git merge-base HEAD origin/main 2>/dev/null) && [ "$base" != "$(git rev-parse HEAD)" ]; then
        git diff --name-only "$base" -- '*.cpp' '*.h' | sources_des_fichiers
    else
        {
            git diff --name-only HEAD -- '*.cpp' '*.h'
            git log --format= --name-only -n "$DERNIERS_COMMITS" -- '*.cpp' '*.h'
        } | sources_des_fichiers | awk -v n="$SOURCES_AU_PLUS" 'NR <= n'
    fi
}

lint() {
    local etat=0 liste restant
    [ $# -eq 0 ] || [ "$*" = --all ] || echouer "--lint takes --all and nothing else"

    dire "clang-format"
    mapfile -t liste < <(fichiers '*.h' '*.cpp')
    [ ${#liste[@]} -gt 0 ] || echouer "no C++ file is tracked"
    printf '%s\0' "${liste[@]}" | xargs -0 -n 32 -P "$JOBS" clang-format --dry-run -Werror || etat=1

    dire "includes of each storey"
    includes || etat=1

    dire "references that go too early"
    fichiers '*.h' '*.cpp' | perl cmake/references.pl || etat=1

    dire "shellcheck"
    shellcheck -x run check bench/compare .ci/run cmake/*.sh || etat=1

    configurer debug
    mapfile -t liste < <(sources_a_lire "$@")
    # Only what the debug preset compiles has its flags known.
    restant=()
    for fichier in "${liste[@]}"; do
        grep -qF "\"$PWD/$fichier\"" build/debug/compile_commands.json && restant+=("$fichier")
    done
    dire "clang-tidy on ${#restant[@]} sources"
    if [ ${#restant[@]} -gt 0 ]; then
        printf '%s\0' "${restant[@]}" |
            xargs -0 -n 1 -P "$JOBS" clang-tidy --quiet -p build/debug 2> >(grep -v 'warnings\?\( and .*\)\? generated' >&2) || etat=1
    fi

    if [ $etat -eq 0 ]; then dire "lint: clean"; else dire "lint: FAILED"; fi
    return $etat
}
