# shellcheck shell=bash
# What the commands of the project share. Sourced; sets TOP, the project's folder.

TOP=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
BUILD=$TOP/build
mkdir -p "$BUILD"

say() { printf '%s\n' "$*"; }
fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

seconds_since() { awk -v from="$1" -v to="$(date +%s.%N)" 'BEGIN { printf "%.1f", to - from }'; }

# One run at a time may use what the commands share under build/.
take_turn() {
    exec 9>"$BUILD/$1.lock"
    if ! flock -n 9; then
        say "Another run of this kind is under way; waiting for it"
        flock 9
    fi
}

# build_preset PRESET LOG [TARGET...]
build_preset() {
    local preset=$1 log=$2
    shift 2
    (
        cd "$TOP" || exit 1
        # A configured tree reconfigures itself when a list file or a globbed folder changes.
        [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" || exit 1
        ninja -C "build/$preset" "$@"
    ) >"$log" 2>&1 9>&-
}

# The path as Windows programs see it.
windows_path() {
    local path
    path=$(realpath -ms "$1")
    printf 'Z:%s' "${path//\//\\}"
}

# ---- a private display -------------------------------------------------------------------------

start_display() {
    local number_file
    number_file=$(mktemp)
    # The keyboard map is reset with the last client unless -noreset; Ctrl+Alt+F keys would switch
    # consoles unless taken out of the map.
    # Without a key anybody on the machine could look and type into it: one cookie for every host and number.
    AUTHORITY=$(mktemp "$BUILD/display.XXXXXXXX") && {
        printf '\377\377\0\0\0\0\0\022MIT-MAGIC-COOKIE-1\0\020'
        head -c 16 /dev/urandom
    } >"$AUTHORITY" || fail "The key of the virtual display cannot be written"
    export XAUTHORITY=$AUTHORITY
    Xvfb -auth "$AUTHORITY" -displayfd 8 -noreset -nolisten tcp -screen 0 1280x1024x24 8>"$number_file" >/dev/null 2>&1 9>&- &
    DISPLAY_PROCESS=$!
    for _ in $(seq 100); do
        [ -s "$number_file" ] && break
        kill -0 "$DISPLAY_PROCESS" 2>/dev/null || break
        sleep 0.05
    done
    if [ ! -s "$number_file" ]; then
        rm -f "$number_file"
        fail "The virtual display (Xvfb) did not start"
    fi
    DISPLAY=:$(cat "$number_file")
    export DISPLAY
    rm -f "$number_file"
    setxkbmap -option srvrkeys:none 2>/dev/null || true
}

# ---- Wine --------------------------------------------------------------------------------------

# Programs of a run see this prefix and no crash dialog; never the user's own settings.
use_prefix() {
    export WINEPREFIX=$1 WINEDEBUG=-all
    export WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe=;winedbg.exe="
    export LC_ALL=C.UTF-8
}

# make_prefix DIR: a 32-bit prefix with the fonts that dialogs are measured in. Made once.
make_prefix() {
    use_prefix "$1"
    export WINEARCH=win32
    # Without a window manager Wine waits two seconds for each managed window that goes; these open many.
    local programs="test_options test_shell test_ui test_windowing test_jukebox_room bench_lists bench_plugin bench_trees"
    local stamp="$WINEPREFIX/.tessera" recipe program
    recipe="$(wine --version); unmanaged: $programs"
    [ "$(cat "$stamp" 2>/dev/null)" = "$recipe" ] && return
    say "Making a Wine prefix in ${WINEPREFIX#"$TOP"/}"
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    timeout 180 wineboot -i >"$BUILD/wineboot.log" 2>&1 9>&- || {
        tail -n 5 "$BUILD/wineboot.log" >&2
        fail "Wine could not make its prefix"
    }
    timeout 20 wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1 9>&-
    for program in $programs; do
        timeout 20 wine reg add "HKCU\\Software\\Wine\\AppDefaults\\$program.exe\\X11 Driver" /v Managed /d N /f >/dev/null 2>&1 9>&-
    done
    timeout 60 wineserver -w
    cp /usr/share/wine/fonts/*.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
    printf '%s\n' "$recipe" >"$stamp"
}

# Wine's helpers are started by the first program and keep its output open; whoever reads a program's
# output to the end would wait for them. Started here, they hold nothing.
start_desktop() {
    wine explorer /desktop </dev/null >/dev/null 2>&1 9>&- &
    timeout 30 wine cmd /c ver </dev/null >/dev/null 2>&1 9>&-
    sleep 1
}

# ---- locales -----------------------------------------------------------------------------------

# Locales for programs that run in other code pages: LOCPATH=build/locales LC_ALL=ja_JP.UTF-8.
make_locales() {
    local name
    mkdir -p "$BUILD/locales"
    for name in cs_CZ de_DE ja_JP; do
        [ -f "$BUILD/locales/$name.UTF-8/LC_CTYPE" ] && continue
        localedef -i "$name" -f UTF-8 "$BUILD/locales/$name.UTF-8" >/dev/null 2>&1
        [ -f "$BUILD/locales/$name.UTF-8/LC_CTYPE" ] || fail "The locale $name.UTF-8 cannot be made (package locales?)"
    done
}

# ---- clean-up ----------------------------------------------------------------------------------

# Ends what this run has started: the prefix's server (unless the prefix is the user's) and the display.
leave_nothing_running() {
    [ -n "${tidy:-}" ] && kill "$tidy" 2>/dev/null
    if [ -n "${OWN_PREFIX:-}" ] && [ -d "$OWN_PREFIX" ]; then
        WINEPREFIX=$OWN_PREFIX wineserver -k >/dev/null 2>&1
    fi
    if [ -n "${DISPLAY_PROCESS:-}" ]; then
        kill "$DISPLAY_PROCESS" 2>/dev/null
        wait "$DISPLAY_PROCESS" 2>/dev/null
    fi
    [ -z "${AUTHORITY:-}" ] || rm -f "$AUTHORITY"
}
clean_up_at_end() {
    trap leave_nothing_running EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
}
