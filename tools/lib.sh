# What run, test, probe and tools/check share; sourced by them. Packages that are missing are
# installed, a build folder is configured and built. All that is printed goes to standard error.
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)

say() { printf '%s\n' "$*" >&2; }
die() { say "$@"; exit 1; }

# quietly COMMAND...: its output is shown only if it fails
quietly() {
    local output status=0
    output=$("$@" 2>&1 </dev/null) || status=$?
    [ $status = 0 ] || say "$output"
    return $status
}

# packages KIND...: the names in packaging/packages-KIND.txt, one a line
packages() {
    local kind
    for kind in "$@"; do sed 's/#.*//' "$top/packaging/packages-$kind.txt"; done |
        tr -s ' \t' '\n\n' | sed '/^$/d' | LC_ALL=C sort -u
}

missing_packages() {
    LC_ALL=C comm -23 <(packages "$@") <(
        dpkg-query -W -f='${db:Status-Status} ${Package}\n' | sed -n 's/^installed //p' |
            LC_ALL=C sort -u)
}

# need_packages KIND...: installs what is missing of them; where that cannot be done, prints the
# command that does it and ends the script
need_packages() {
    local missing sudo=() options=(-o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=300)
    if ! command -v dpkg-query >/dev/null; then
        say "This is no Debian: the packages are not looked after. On Debian they would be:" \
            $(packages "$@")
        return
    fi
    missing=$(missing_packages "$@" | tr '\n' ' ')
    missing=${missing% }
    [ -n "$missing" ] || return 0
    local remedy="sudo apt-get install --no-install-recommends $missing"
    if [ "$(id -u)" != 0 ]; then
        if ! command -v sudo >/dev/null || { ! sudo -n true 2>/dev/null && [ ! -t 0 ]; }; then
            die "Packages are missing. This installs them:" $'\n'"$remedy"
        fi
        sudo=(sudo)
    fi
    say "Installing $(wc -w <<<"$missing") packages: $missing"
    quietly "${sudo[@]}" apt-get "${options[@]}" -q update ||
        say "Not all package lists could be fetched; going on with those at hand."
    quietly "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get "${options[@]}" -q -y install \
        --no-install-recommends $missing ||
        die "The installation failed. This was the command:" $'\n'"$remedy"
}

# build PRESET TARGET...: configures build/PRESET where that is due, then builds
build() {
    local preset=$1 folder=$top/build/$1 configured
    shift
    mkdir -p "$folder"
    [ -w "${HOME:-/nonexistent}" ] || export CCACHE_DISABLE=1
    (
        flock 9 # two builds in one folder at a time would spoil each other
        cd "$top"
        configured=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$folder/CMakeCache.txt" \
            2>/dev/null || true)
        if [ "$configured" != "$top" ]; then
            quietly cmake --preset "$preset" --fresh
        elif [ ! -e "$folder/build.ninja" ] || [ CMakePresets.json -nt "$folder/build.ninja" ]; then
            quietly cmake --preset "$preset"
        fi
        if [ -t 2 ]; then
            ninja -C "$folder" "$@" >&2
        else
            ninja --quiet -C "$folder" "$@" 2>&1 | sed -u '/^ninja: no work to do\.$/d' >&2
        fi
    ) 9>"$folder/.lock"
}
