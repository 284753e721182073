# shellcheck shell=bash disable=SC2034
# Sourced by the scripts beside it, which then stand in the root of the tree.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# What the tree needs to configure and to build, tests included.
buildPackages=(
    cmake ninja-build g++
    qt6-base-dev qt6-serialport-dev qt6-tools-dev qt6-translations-l10n
    libgtest-dev libgmock-dev nlohmann-json3-dev libxcb1-dev
)

# What tests/bench compares with, and measures by.
benchPackages=(pkg-config libbenchmark-dev libglib2.0-dev libinih-dev libsimpleini-dev libxcb-damage0-dev)

# What fuzzing takes besides: the compiler that has libFuzzer, and its sanitizers.
fuzzPackages=(clang-14 libclang-rt-14-dev)

# What the package is made with and looked at by, and the fresh system that it is tried in.
packagingPackages=(git dpkg-dev file lintian man-db desktop-file-utils appstream debootstrap strace)

# A virtual screen shows nothing without fonts, and no frames without a window manager.
screenPackages=(openbox xauth fonts-dejavu-core)

# What shows a virtual screen to a VNC viewer.
sharedScreenPackages=("${screenPackages[@]}" tigervnc-standalone-server)

# Installs those of the named Debian packages that are missing. Nothing is asked.
ensure_packages()
{
    local package installed missing=()
    installed=" $(dpkg-query --show --showformat='${Package}=${db:Status-Status} ' "$@" 2>/dev/null || true)"
    for package in "$@"; do
        [[ $installed == *" $package=installed "* ]] || missing+=("$package")
    done
    (( ${#missing[@]} > 0 )) || return 0

    local apt=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300)
    (( EUID == 0 )) || apt=(sudo "${apt[@]}")
    echo "Installing: ${missing[*]}"
    # A source that cannot be refreshed need not be the one that holds the packages.
    "${apt[@]}" update || true
    if ! "${apt[@]}" install --yes --no-install-recommends "${missing[@]}"; then
        echo "Missing packages: ${missing[*]}" >&2
        echo "Have them installed as root (apt-get install ${missing[*]}), then start again." >&2
        return 1
    fi
}

# configure PRESET DIRECTORY [OPTION...]: a tree that is configured already is left to the build, which knows by itself
# when its lists of files change.
configure()
{
    local preset=$1 directory=$2
    shift 2
    [[ $directory/build.ninja -nt CMakePresets.json ]] || cmake --preset "$preset" -B "$directory" "$@"
}

# A virtual screen's files (in a directory that only this user can look into), and what runs on it, in order of start.
screenDirectory=
screenSocket=
screenPids=()

# To be called before start_screen: from here on the script leaves nothing behind, however it ends.
prepare_screen()
{
    trap stop_screen EXIT
    trap 'exit 129' HUP
    trap 'exit 130' INT
    trap 'exit 143' TERM
    screenDirectory=$(mktemp --directory --tmpdir corvrec.XXXXXXXX)
}

# start_screen COMMAND...: a virtual screen with a window manager; COMMAND is an X server with its options. Exports
# DISPLAY and XAUTHORITY (without the key in that file no other user of the machine gets at the screen).
start_screen()
{
    local number
    export XAUTHORITY=$screenDirectory/xauthority
    # Qt wants a directory of the user's own.
    export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$screenDirectory}
    # One pipe each: the server may hold its own open for a moment after its line, and the next reader would see it end.
    mkfifo "$screenDirectory/server" "$screenDirectory/manager"

    for (( number = 1; number < 50; ++number )); do
        [[ ! -e /tmp/.X11-unix/X$number && ! -e /tmp/.X$number-lock ]] || continue
        # Every user of the machine can read the arguments of a process, but not its standard input.
        xauth -q -f "$XAUTHORITY" source - <<< "add :$number . $(mcookie)" 2> /dev/null
        # In a session of its own: Ctrl+C reaches the script alone, which then ends things in order.
        setsid "$@" ":$number" -auth "$XAUTHORITY" -nolisten tcp -displayfd 5 \
            5> "$screenDirectory/server" > "$screenDirectory/server.log" 2>&1 &
        screenPids=($!)
        # The server tells its number when it is ready. One that ends instead found its number or its port taken.
        if read -r < "$screenDirectory/server"; then
            export DISPLAY=:$number
            break
        fi
    done
    if (( number == 50 )); then
        echo "No virtual screen could be started:" >&2
        tail --lines=5 "$screenDirectory/server.log" >&2
        return 1
    fi

    # A window that is there before the window manager would get its frame outside the screen.
    (trap '' PIPE; exec setsid openbox --startup 'echo ready') \
        > "$screenDirectory/manager" 2> "$screenDirectory/openbox.log" &
    screenPids+=($!)
    read -r < "$screenDirectory/manager"
}

# start_shared_screen [OPTION...]: a virtual screen that a VNC viewer of this user can show, through the Unix socket
# screenSocket. No port is open. The socket and its directory belong to this user alone, so there is no password: a door
# that nobody else reaches needs no second lock, and five wrong guesses would lock the owner out.
start_shared_screen()
{
    screenSocket=$screenDirectory/vnc
    start_screen Xtigervnc -rfbport -1 -rfbunixpath "$screenSocket" -SecurityTypes None \
        -geometry 1280x800 -depth 24 "$@"
}

# What was started last goes first: the program, the window manager, the server.
stop_screen()
{
    local i
    for (( i = ${#screenPids[@]} - 1; i >= 0; --i )); do
        kill "${screenPids[i]}" 2> /dev/null || true
        wait "${screenPids[i]}" 2> /dev/null || true
    done
    [[ -z $screenDirectory ]] || rm -rf "$screenDirectory"
}

# window TITLE: waits until the window with this title (an extended regular expression) is there and has the keyboard.
window()
{
    local id
    id=$(timeout 30 xdotool search --sync --onlyvisible --name "$1" | tail -n 1)
    timeout 30 xdotool windowactivate --sync "$id"
}

# gone TITLE: waits until no such window is there.
gone()
{
    local attempt
    for (( attempt = 0; attempt < 100; ++attempt )); do
        xdotool search --onlyvisible --name "$1" > /dev/null 2>&1 || return 0
        sleep 0.1
    done
    echo "Still there: $1" >&2
    return 1
}
