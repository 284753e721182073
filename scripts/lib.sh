# shellcheck shell=bash disable=SC2034
# Sourced by the other scripts; changes to the root of the tree.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# To configure and build the tree, including the tests.
buildPackages=(
    cmake ninja-build g++
    qt6-base-dev qt6-serialport-dev qt6-tools-dev qt6-translations-l10n
    libgtest-dev libgmock-dev nlohmann-json3-dev libxcb1-dev
)

# For the benchmarks: the libraries they compare with, and the one they measure with.
benchPackages=(pkg-config libbenchmark-dev libglib2.0-dev libinih-dev libsimpleini-dev libxcb-damage0-dev)

# Also needed for fuzzing: the compiler that has libFuzzer, and its sanitizers.
fuzzPackages=(clang-14 libclang-rt-14-dev)

# To build for Windows, with Qt from Debian's source package, and to test under Wine, with the line partner of the tests.
windowsPackages=(
    cmake ninja-build g++ libgtest-dev libgmock-dev g++-mingw-w64-x86-64-posix wine64 googletest nlohmann-json3-dev
    qt6-base-dev dpkg-dev
)

# To make setup.exe and the zip and to test them, in addition to those for Windows.
setupPackages=(git nsis zip unzip icoutils binutils locales qt6-tools-dev qt6-translations-l10n xvfb xdotool)

# To build and check the Debian package, and to create the fresh system in which it is tested.
packagingPackages=(git dpkg-dev file lintian man-db desktop-file-utils appstream debootstrap strace)

# For a virtual screen: fonts, and a window manager for the frames.
screenPackages=(openbox xauth fonts-dejavu-core)

# For a virtual screen that a VNC viewer can show.
sharedScreenPackages=("${screenPackages[@]}" tigervnc-standalone-server)

# ensure_packages PACKAGE...: installs the Debian packages that are missing, without questions.
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
    # An unreachable source may not be the one that has the packages.
    "${apt[@]}" update || true
    if ! "${apt[@]}" install --yes --no-install-recommends "${missing[@]}"; then
        echo "Missing packages: ${missing[*]}" >&2
        echo "Install them as root (apt-get install ${missing[*]}), then start again." >&2
        return 1
    fi
}

# configure PRESET DIRECTORY [OPTION...]: configures a build directory unless that is done already. The build itself
# configures again when a CMakeLists.txt changes.
configure()
{
    local preset=$1 directory=$2
    shift 2
    [[ $directory/build.ninja -nt CMakePresets.json ]] || cmake --preset "$preset" -B "$directory" "$@"
}

# A virtual screen's directory, readable for this user only, and its processes in the order in which they started.
screenDirectory=
screenSocket=
screenPids=()

# Call before start_screen. From then on everything is cleaned up, however the script ends.
prepare_screen()
{
    trap stop_screen EXIT
    trap 'exit 129' HUP
    trap 'exit 130' INT
    trap 'exit 143' TERM
    screenDirectory=$(mktemp --directory --tmpdir corvrec.XXXXXXXX)
}

# start_screen COMMAND...: starts a virtual screen with a window manager; COMMAND is an X server with its options.
# Exports DISPLAY and XAUTHORITY, whose key keeps other users of the machine away from the screen.
start_screen()
{
    local number
    export XAUTHORITY=$screenDirectory/xauthority
    # Qt expects this variable to name a directory of the user's own.
    export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$screenDirectory}
    # One pipe each: the server may keep its pipe open for a moment after its line, and the next reader would see its end.
    mkfifo "$screenDirectory/server" "$screenDirectory/manager"

    for (( number = 1; number < 50; ++number )); do
        [[ ! -e /tmp/.X11-unix/X$number && ! -e /tmp/.X$number-lock ]] || continue
        # By standard input, because every user of the machine can read the arguments of a process.
        xauth -q -f "$XAUTHORITY" source - <<< "add :$number . $(mcookie)" 2> /dev/null
        # In a session of its own, so that Ctrl+C reaches only the script, which then ends the processes in order.
        setsid "$@" ":$number" -auth "$XAUTHORITY" -nolisten tcp -displayfd 5 \
            5> "$screenDirectory/server" > "$screenDirectory/server.log" 2>&1 &
        screenPids=($!)
        # The server prints its number when it is ready. If it ends instead, the number was taken.
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

    # Wait for the window manager: a window shown before would get its frame outside the screen.
    (trap '' PIPE; exec setsid openbox --startup 'echo ready') \
        > "$screenDirectory/manager" 2> "$screenDirectory/openbox.log" &
    screenPids+=($!)
    read -r < "$screenDirectory/manager"
}

# start_shared_screen [OPTION...]: starts a virtual screen that a VNC viewer of this user can show, through the Unix
# socket screenSocket. No port is open. No password: only this user can reach the socket and its directory, and five wrong
# passwords would lock this user out.
start_shared_screen()
{
    screenSocket=$screenDirectory/vnc
    start_screen Xtigervnc -rfbport -1 -rfbunixpath "$screenSocket" -SecurityTypes None \
        -geometry 1280x800 -depth 24 "$@"
}

# Ends the processes, the last one first: the program, the window manager, the server.
stop_screen()
{
    local i
    for (( i = ${#screenPids[@]} - 1; i >= 0; --i )); do
        kill "${screenPids[i]}" 2> /dev/null || true
        wait "${screenPids[i]}" 2> /dev/null || true
    done
    [[ -z $screenDirectory ]] || rm -rf "$screenDirectory"
}

# window TITLE: waits until the window with this title (an extended regular expression) has the keyboard.
window()
{
    local id
    id=$(timeout 120 xdotool search --sync --onlyvisible --name "$1" | tail -n 1)
    timeout 30 xdotool windowactivate --sync "$id"
}

# gone TITLE: waits until no such window is visible.
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
