# Shared by ./run, ./test and .ci/run, which source it after setting `root` to the folder of the checkout: installs what
# is missing, configures and builds. Everything said here goes to standard error; standard output belongs to the
# program that is started.

# What a build needs from Debian, and what each script needs besides.
buildPackages=(g++ cmake ninja-build nlohmann-json3-dev libzstd-dev zlib1g-dev)
# The window's build, and the QML modules and platforms that it loads when it runs: none of these brings another.
windowPackages=(qt6-base-dev qt6-declarative-dev qt6-declarative-dev-tools qt6-svg-dev
    qml6-module-{qtquick{,-window,-controls,-templates,-layouts,-shapes,-dialogs},qtqml{,-models,-workerscript}}
    qml6-module-qt-labs-folderlistmodel libqt6svg6 qt6-wayland)
# The desktop's own tools for the Trash, which the moves are checked against and timed beside.
trashPackages=(strace dbus dbus-daemon gvfs libglib2.0-bin trash-cli)
testPackages=("${trashPackages[@]}" libgtest-dev git mount e2fsprogs xfsprogs btrfs-progs libxml2-utils qml6-module-qttest
    fonts-dejavu-core xvfb xdotool weston squashfs-tools ncdu gdu)
checkPackages=(ccache clang-format-14 clang-tidy-19)
fuzzPackages=(clang-19 libclang-rt-19-dev)
# What makes the packages, looks them over, and tries them in a bare Debian.
packagePackages=(dpkg-dev file lintian desktop-file-utils appstream mandoc groff-base zsh fish debootstrap xvfb xauth)
benchmarkPackages=(libbenchmark-dev ncdu gdu bfs jdupes rdfind rmlint)

releaseFolder="$root/build/release"

say() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }

fail() {
    say "$*"
    exit 1
}

# CMake writes down the folder it is called from as the caller named it, and builds all anew when that changes: it is
# always called from the same one.
inRoot() (cd -P "$root" && exec "$@")

# Runs a command silently; shows what it said only when it fails.
quietly() {
    local output status=0
    output=$("$@" </dev/null 2>&1) || status=$?
    [ "$status" -eq 0 ] || printf '%s\n' "$output" >&2
    return "$status"
}

# Runs a command with all it says on standard error.
loudly() { "$@" </dev/null >&2; }

# The given packages that are not installed.
missingPackages() {
    local package
    declare -A installed=()
    while read -r package; do
        installed[$package]=1
    done < <(dpkg-query -W -f '${db:Status-Status} ${binary:Package}\n' "$@" 2>/dev/null |
        sed -n 's/^installed \([^:]*\).*/\1/p')
    for package in "$@"; do
        [ -n "${installed[$package]-}" ] || printf '%s\n' "$package"
    done
}

# Runs apt-get with the rights it needs, never asking anything on standard input (which is the program's).
aptGet() {
    local rights=()
    if [ "$(id -u)" -ne 0 ]; then
        rights=(sudo)
    fi
    "${rights[@]}" env DEBIAN_FRONTEND=noninteractive ${http_proxy:+"http_proxy=$http_proxy"} \
        ${https_proxy:+"https_proxy=$https_proxy"} \
        apt-get -q -y -o DPkg::Lock::Timeout=300 "$@" </dev/null
}

mayInstall() {
    command -v apt-get >/dev/null || return 1
    [ "$(id -u)" -ne 0 ] || return 0
    command -v sudo >/dev/null || return 1
    # Without a terminal nobody could type the password.
    sudo -n true 2>/dev/null || { : </dev/tty; } 2>/dev/null
}

# Installs those of the given Debian packages that are missing.
ensurePackages() {
    local missing
    if ! command -v dpkg-query >/dev/null; then
        # Not a Debian: what the packages bring has to be there already, and CMake names what is not.
        command -v cmake >/dev/null && command -v ninja >/dev/null ||
            fail "This system has no Debian packages. Install the like of these first: $*"
        return 0
    fi
    mapfile -t missing < <(missingPackages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    mayInstall || fail "These Debian packages are missing and cannot be installed from here" \
        "(neither root nor sudo). Run: apt-get install --no-install-recommends ${missing[*]}"
    say "Installing ${missing[*]}"
    # A machine that has never updated its package lists does not know the names; one that has may hold old addresses.
    apt-cache show "${missing[@]}" >/dev/null 2>&1 || quietly aptGet update || true
    quietly aptGet install --no-install-recommends --no-remove "${missing[@]}" 2>/dev/null && return 0
    quietly aptGet update || true
    quietly aptGet install --no-install-recommends --no-remove "${missing[@]}" ||
        fail "apt-get could not install: ${missing[*]}"
}

# Debian 13 has Qt's plugins for SVG in a package of their own, Debian 12 in libqt6svg6.
ensureSvgPlugins() {
    compgen -G '/usr/lib/*/qt6/plugins/iconengines/libqsvgicon.so' >/dev/null || ensurePackages qt6-svg-plugins
}

# Takes the lock on build/, so that two starts at once do not build over each other. Held until releaseBuild.
lockBuild() {
    mkdir -p "$root/build" 2>/dev/null && exec {buildLock}>"$root/build/.lock" ||
        fail "Cannot write to $root/build. Was it built by another user?"
    flock -n "$buildLock" && return 0
    say "Waiting for another build in $root/build"
    flock "$buildLock"
}

# The program must not inherit the lock: it would hold it as long as it runs.
releaseBuild() { exec {buildLock}>&-; }

# Whether build/release is configured with an option switched on, or off.
isConfiguredWith() { grep -qx "$1:BOOL=ON" "$releaseFolder/CMakeCache.txt" 2>/dev/null; }
isConfiguredWithout() { grep -qx "$1:BOOL=OFF" "$releaseFolder/CMakeCache.txt" 2>/dev/null; }

# Warnings stop only the check of a change (.ci/run): another compiler or library warns of what is no fault of a user's.
warningsAsErrors=-DCMAKE_COMPILE_WARNING_AS_ERROR:BOOL=${ORBEL_WARNINGS_AS_ERRORS:-OFF}

# Configures build/release, giving CMake the arguments. Ninja does it again by itself when a CMakeLists.txt changes, but
# knows nothing of the presets; a checkout that was moved has to start anew.
configureRelease() {
    local fresh=()
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$releaseFolder/CMakeCache.txt" 2>/dev/null || fresh=(--fresh)
    quietly inRoot cmake --preset release "${fresh[@]}" "$warningsAsErrors" "$@" ||
        fail "The build could not be configured."
    touch "$releaseFolder/.configured"
}

releaseIsConfigured() {
    [ -f "$releaseFolder/build.ninja" ] && [ "$releaseFolder/.configured" -nt "$root/CMakePresets.json" ] &&
        grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$releaseFolder/CMakeCache.txt" &&
        grep -qxF -e "${warningsAsErrors#-D}" "$releaseFolder/CMakeCache.txt"
}

# Builds a target of build/release; `product` is the program that it is built for. The first build takes a while, so on a
# terminal its progress shows; afterwards only failures do.
buildRelease() {
    local target=$1 product=$2 show=quietly
    if [ ! -x "$releaseFolder/bin/$product" ]; then
        say "Building $product for the first time; this takes a few minutes"
        [ ! -t 2 ] || show=loudly
    fi
    "$show" inRoot cmake --build --preset release --target "$target" || fail "The build failed."
}
