# What the other scripts of this folder share; sourced, not run.

BUILD_PACKAGES=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libtomlplusplus-dev libsqlite3-dev zlib1g-dev
    libfmt-dev libutf8proc-dev)
TEST_PACKAGES=(clang lld mold patchelf libgtest-dev libgmock-dev libbenchmark-dev pkgconf)
TIDY_PACKAGES=(clang clang-tidy)
DOCS_PACKAGES=(doxygen)

SCRIPT=$(basename "$0")
ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
JOBS=$(nproc)
STEP="starting"

say() { printf '\n==> %s\n' "$*"; }
begin() { STEP=$1; say "$1"; }
run() { printf '$ %s\n' "$*"; "$@"; }

# arguments_are <option or ""> "$@": rejects what the script doesn't take: it takes nothing, or the option.
arguments_are() {
    local option=$1
    shift
    if [ "$#" -gt 1 ] || { [ "$#" -eq 1 ] && [ "$1" != "$option" ]; }; then
        STEP="reading the arguments"
        echo "$SCRIPT takes no such arguments: $*" >&2
        echo "usage: scripts/$SCRIPT${option:+ [$option]}" >&2
        exit 2
    fi
}

# The last line of every script is one clear word.
finish() {
    local status=$?
    if [ "$status" -eq 0 ]; then
        printf '\n%s: OK\n' "$SCRIPT"
    else
        printf '\n%s: FAILED while %s\n' "$SCRIPT" "$STEP"
    fi
}
trap finish EXIT
trap 'exit 143' HUP INT TERM   # or a script that is ended from outside would call that OK

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Neither root nor sudo: please run as root: $*" >&2
        return 1
    fi
}

# require_packages <package>...: installs those that are missing; where nothing is missing, only dpkg-query runs.
require_packages() {
    begin "looking for the packages needed"
    if ! command -v dpkg-query >/dev/null; then
        echo "Not a Debian system: assuming that these are installed: $*"
        return
    fi
    local package missing=()
    for package in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            missing+=("$package")
        fi
    done
    if [ "${#missing[@]}" -eq 0 ]; then
        echo "All are there: $*"
        return
    fi
    begin "installing ${missing[*]}"
    as_root apt-get -qq update
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -y --no-install-recommends install \
        "${missing[@]}" >/dev/null
}

# Compiling the same twice is saved where ccache is at hand; nothing depends on it.
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_SLOPPINESS=pch_defines,time_macros
fi
cd "$ROOT"
