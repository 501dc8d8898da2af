# shellcheck shell=bash
# What the scripts share. Sourced, never run: it sets strict mode, `root` and `cache`.

set -euo pipefail

# The repository's root.
# shellcheck disable=SC2034 # used by those who source this
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Holds what outlives a build folder: the Windows libraries, the Wine prefix, compiled objects.
# Exported because the toolchain file looks there too.
export BREVINT_CACHE=${BREVINT_CACHE:-~/.cache/brevint}
cache=$BREVINT_CACHE
mkdir -p "$cache"

# The same everywhere; and Wine hands on names beyond ASCII only in a UTF-8 locale.
export LC_ALL=C.UTF-8

say() { printf '%s\n' "$*"; }

die() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# step TEXT COMMAND...: runs the command, says how long it took, shows its output if it fails.
step() {
    local text=$1 start=$SECONDS status=0 output
    shift
    output=$("$@" </dev/null 2>&1) || status=$?
    if ((status == 0)); then
        say "$text: $((SECONDS - start)) s"
    else
        say "$text: failed with status $status after $((SECONDS - start)) s"
        say "$output"
    fi
    return "$status"
}

# build_preset PRESET [TARGET...]: configures the preset where that is due, and builds it or the
# targets. Ninja itself sees changed CMake files, but not changed presets. Its progress is for a
# terminal; elsewhere it tells only what fails.
build_preset() {
    local preset=${1:?} folder=$root/build/$1 quiet=()
    shift
    [[ -t 1 ]] || quiet=(-- --quiet)
    # Compiled objects are shared by all build folders and clones.
    if command -v ccache >/dev/null; then
        export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
        export CCACHE_DIR=$cache/ccache CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
        # What was compiled with a precompiled header is kept too, and what is new is not preprocessed
        # once more for the cache's sake.
        export CCACHE_DEPEND=1 CCACHE_INODECACHE=1
        export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    fi
    if [[ ! $folder/build.ninja -nt $root/CMakePresets.json ]]; then
        cmake -S "$root" --preset "$preset" || return
    fi
    cmake --build "$folder" ${1:+--target} "$@" "${quiet[@]}"
}

# median: the middle one of the numbers on standard input.
median() { sort -g | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

# For what talks to loopback only: a proxy would be in the way.
unset_proxies() {
    unset http_proxy https_proxy all_proxy no_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY NO_PROXY
}

# What starts a program at the same addresses each time, where the kernel lets one ask for that.
# ThreadSanitizer cannot map its memory under some kernels' randomisation, nor, now and then, can Wine.
fixed_addresses=()
! setarch -R true 2>&- || fixed_addresses=(setarch -R)

# Wine. One prefix serves all builds: it takes 700 MB and some ten seconds to make. BREVINT_WINE names
# another one. Wine is quiet, but for why a program could not be loaded.
export WINEPREFIX=$cache/wine${BREVINT_WINE:+-$BREVINT_WINE} WINEARCH=win64 WINEDLLOVERRIDES="mscoree=;mshtml="
export WINEDEBUG=-all,err+module,err+virtual

# Starts a Windows program. One page of Windows has a fixed address, 0x7ffe0000. A new kernel puts the
# heap of Debian's Wine anywhere in the gigabyte where that page is: one start in 8,000 fails.
wine=("${fixed_addresses[@]}" wine)

# One Wine process, kept apart from our standard streams (whatever it starts inherits them, and a
# reader of ours would wait for it) and from the lock of wine_start.
wine_quietly() { timeout --kill-after=10 120 "$@" </dev/null >/dev/null 2>&1 9>&-; }

wine_runs() { [[ -e $WINEPREFIX/.complete ]] && wine_quietly wineserver -k0; }

# Makes the prefix on first use, then sees to it that Wine's background services run, so that no
# program's standard output is inherited by them. They end ten minutes after the last program.
wine_start() {
    (
        flock 9
        if [[ ! -e $WINEPREFIX/.complete ]]; then
            rm -rf "$WINEPREFIX"
            wine_quietly "${wine[@]}" wineboot --init || die "cannot make the Wine prefix $WINEPREFIX"
            wine_quietly wineserver -w
            touch "$WINEPREFIX/.complete"
        fi
        if ! wine_quietly wineserver -k0; then
            # Fails where one runs after all; wineboot tells whether it does.
            wine_quietly wineserver -p600 || true
            wine_quietly "${wine[@]}" wineboot || die "cannot start Wine"
        fi
    ) 9>"$cache/wine.lock"
}

wine_stop() {
    if [[ -e $WINEPREFIX/.complete ]]; then
        wine_quietly wineserver -k || true
    fi
}
