# Sourced by the scripts beside it: where things are, and the environment of Windows programs.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
no_wine_mark=$root/build/no-wine
wine_state=$root/build/wine.state

jobs=$(nproc)

# say TEXT: one line about what a script is doing.
say() { printf '%s\n' "$*"; }

# fail TEXT: one line on stderr, and out with status 1.
fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# What every Windows program of ours runs with, as a prefix of its command. A Russian locale makes the ANSI code
# page 1251. (Exported here instead, the locale would make bash itself complain: it looks for LOCPATH too early.)
wine_prefix=$root/build/wine
with_wine=(
    env -u LANGUAGE -u WAYLAND_DISPLAY -u XAUTHORITY
    "WINEPREFIX=$wine_prefix"
    WINEARCH=win32
    WINEDEBUG=-all
    "WINEDLLOVERRIDES=mscoree,mshtml,winedbg.exe,winemenubuilder.exe="
    "LOCPATH=$root/build/locale"
    LC_ALL=ru_RU.UTF-8
)

# process_is PID NAME: whether that process lives and is still the program that was started under this number. One
# that has ended without anybody collecting it (state Z) doesn't live.
process_is() {
    local line
    [[ -n $1 ]] && { read -r line <"/proc/$1/stat"; } 2>/dev/null && [[ $line == *"($2"*") "[^ZX]* ]]
}

# Whether the environment that wine-env starts is up. Sets DISPLAY from its state file when it is.
wine_is_up() {
    local display xvfb server
    [[ -r $wine_state ]] && read -r display xvfb server <"$wine_state" || return 1
    process_is "$xvfb" Xvfb && process_is "$server" wineserver || return 1
    export DISPLAY=$display
}
