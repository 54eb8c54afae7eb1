# The common part of this folder's recipes. They read it after setting `name`.
# shellcheck shell=bash
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
cache=${ZRK_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/zrk-loader/windows}
mirror=${ZRK_DEBIAN_MIRROR:-$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Codename: bookworm' |
    head -n 1)}
triple=x86_64-w64-mingw32

say() { echo "$name: $*" >&2; }
stop() {
    say "$@"
    exit 1
}

version_of() { # PACKAGE: the version of the source of an installed package
    dpkg-query -W -f='${source:Version}' "$1" 2>/dev/null ||
        stop "The package $1 is missing. Run packaging/install-dependencies windows."
}

run() { # COMMAND...: keeps its output in $log, and shows the end of that if it fails
    "$@" >>"$log" 2>&1 || {
        tail -n 25 "$log" >&2
        stop "This failed: $*
$name: All of it is in $log. What is built stays where it is: run the same again to go on from there."
    }
}

# begin VERSION: sets `prefix`, prints it and ends the recipe if it is complete; else takes the lock and makes `work`
# for building. The name contains the version, the recipe and the compiler, so that a change of any of them builds
# again.
begin() {
    local compiler key
    compiler=$(dpkg-query -W -f='${Version}' g++-mingw-w64-x86-64-posix 2>/dev/null) ||
        stop "The package g++-mingw-w64-x86-64-posix is missing. Run packaging/install-dependencies windows."
    key=$({
        cat "$here/$name" "$here/toolchain.cmake"
        echo "$1 $compiler"
    } | sha256sum | cut -c1-16)
    prefix=$cache/$name-${1%%[+-]*}-$key
    work=$cache/work-$name-$key
    log=$work/log
    mkdir -p "$cache"
    exec 9>"$cache/$name.lock"
    if [ ! -e "$prefix/complete" ] && ! flock -n 9; then
        say "Another build of it is under way in $cache; waiting for that."
        flock 9
    fi
    if [ -e "$prefix/complete" ]; then
        echo "$prefix"
        exit 0
    fi
    mkdir -p "$work"
    : >"$log"
}

# fetch SOURCE VERSION SUITE...: unpacks a source package of Debian, with its patches, to $work/SOURCE. It uses its own
# list of sources, so that this machine's configuration does not change and root is not needed; the archive's signature
# is checked.
fetch() {
    [ ! -e "$work/$1" ] || return 0
    say "Fetching the source of $1 $2 from $mirror ..."
    local apt=$work/apt suite
    mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial" "$work/fetched"
    for suite in "${@:3}"; do
        echo "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror $suite main"
    done >"$apt/sources.list"
    local apt_get=(apt-get -o "Dir::Etc::SourceList=$apt/sources.list" -o Dir::Etc::SourceParts=/nonexistent
        -o "Dir::State::Lists=$apt/lists" -o "Dir::Cache=$apt/cache" -o "APT::Sandbox::User=$(id -un)")
    run "${apt_get[@]}" update
    run env -C "$work/fetched" "${apt_get[@]}" source --download-only "$1=$2"
    rm -rf "$work/$1.part"
    run dpkg-source -x "$work/fetched/$1_${2#*:}.dsc" "$work/$1.part"
    mv "$work/$1.part" "$work/$1"
}

# complete FOLDER: makes the folder the prefix, and prints it.
complete() {
    touch "$1/complete"
    rm -rf "$prefix"
    mv "$1" "$prefix"
    rm -rf "$work"
    say "Stored in $prefix ($(du -sh "$prefix" | cut -f1))."
    echo "$prefix"
}
