# What `run` and `test` share: the Debian packages, installing those that are missing, building.
# Of "one|other" the first that the system offers is taken.

build_packages=(g++ cmake ninja-build ccache qt6-base-dev 'qt6-svg-dev|libqt6svg6-dev'
    qt6-tools-dev qt6-l10n-tools libplist-dev nlohmann-json3-dev)
run_packages=(pkexec polkitd udisks2 fuse3 qt6-translations-l10n libglu1-mesa)
wayland_packages=(qt6-wayland)
# clang-format 14 is the version that the sources are formatted with.
test_packages=(libgtest-dev libgmock-dev 'clang-format-14|clang-format' python3 util-linux locales
    dbus dbus-daemon udev e2fsprogs btrfs-progs xfsprogs python3-dbus python3-gi systemd flatpak libfuse3-dev desktop-file-utils appstream man-db groff-base
    rpm pacman-package-manager
    xvfb xauth openbox trayer xdotool at-spi2-core weston qt6-wayland)
clang_packages=(clang libclang-rt-dev)
package_packages=(dpkg-dev file)
fresh_machine_packages=(debootstrap git util-linux xvfb weston)

# Says what it installs; asks for rights only where something is missing.
install_packages() {
    local installed missing=() chosen=() wanted package as_root=()
    installed=$(dpkg-query -W -f ' ${Package}:${db:Status-Status} ' 2> /dev/null) || true
    for wanted in "$@"; do
        for package in ${wanted//|/ }; do
            [[ $installed != *" $package:installed "* ]] || continue 2
        done
        missing+=("$wanted")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if ! command -v apt-get > /dev/null; then
        echo "This is no Debian or Ubuntu; what follows needs the counterparts of: ${missing[*]}" >&2
        return 0
    fi
    if [ "$(id -u)" != 0 ]; then
        as_root=(sudo)
        if ! command -v sudo > /dev/null; then
            echo "There is no sudo here. As root: apt-get install ${missing[*]//|*/}" >&2
            return 1
        fi
    fi
    "${as_root[@]}" apt-get update -qq || return
    for wanted in "${missing[@]}"; do
        for package in ${wanted//|/ }; do
            [[ ! $(apt-cache policy "$package") =~ Candidate:\ [^\(] ]] || break
        done
        chosen+=("$package")
    done
    echo "Installing: ${chosen[*]}" >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${chosen[@]}" > /dev/null
}

# build PRESET [TARGET…]; `cmake_options` hold for a folder that is set up anew.
cmake_options=()
build() {
    local folder=build/$1 cache=build/$1/CMakeCache.txt
    # A checkout that was moved is built anew.
    if [ -f "$cache" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$cache"; then
        rm -rf "$folder"
    fi
    if [ ! -f "$folder/build.ninja" ]; then
        echo "Building in $folder; the first time takes some minutes." >&2
        cmake --preset "$1" "${cmake_options[@]}" > /dev/null || return
    fi
    shift
    cmake --build "$folder" ${1:+--target "$@"} >&2
}
