# shellcheck shell=bash
# A virtual display with a window manager and a compositor, for the tests that need real windows.

# attendre WHAT COMMAND...: until the command succeeds, ten seconds at most.
attendre() {
    local quoi=$1 essai
    shift
    for ((essai = 0; essai < 200; essai++)); do
        "$@" >/dev/null 2>&1 && return 0
        sleep 0.05
    done
    echo "$quoi did not start" >&2
    return 1
}

gestionnaire_pret() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'; }

# avec_un_ecran COMMAND...: runs it with DISPLAY set, and ends the servers afterwards. With ECRAN_NU set there is neither window
# manager nor compositor.
avec_un_ecran() {
    local dossier etat=0 serveur
    dossier=$(mktemp -d)
    # The server chooses a free number and writes it when it listens.
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$dossier/numero" >"$dossier/xvfb.log" 2>&1 &
    serveur=$!
    # shellcheck disable=SC2064 # The values of now are meant.
    trap "kill $serveur 2>/dev/null; rm -rf '$dossier'" EXIT
    attendre Xvfb test -s "$dossier/numero" || {
        cat "$dossier/xvfb.log"
        return 1
    }
    DISPLAY=:$(cat "$dossier/numero")
    export DISPLAY
    unset WAYLAND_DISPLAY
    if [ -n "${ECRAN_NU:-}" ]; then
        dire "display $DISPLAY: Xvfb" >&2
    else
        dire "display $DISPLAY: Xvfb, openbox, picom" >&2
        # Both end with the server.
        openbox >"$dossier/openbox.log" 2>&1 &
        attendre openbox gestionnaire_pret || return 1
        # It goes into the background once it owns the compositing selection.
        picom --config /dev/null --backend xrender -b >"$dossier/picom.log" 2>&1 || {
            cat "$dossier/picom.log"
            return 1
        }
    fi

    "$@" || etat=$?

    kill "$serveur"
    wait "$serveur" 2>/dev/null || true
    trap - EXIT
    rm -rf "$dossier"
    return $etat
}
