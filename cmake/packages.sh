# What `run` and `test` share: the Debian packages, installing those that are missing, building.

build_packages=(g++ cmake ninja-build ccache qt6-base-dev qt6-svg-dev)
run_packages=(pkexec polkitd udisks2 fuse3)
test_packages=(libgtest-dev libgmock-dev clang-format python3 util-linux locales jdupes
    dbus dbus-daemon udev e2fsprogs python3-dbus python3-gi libfuse3-dev desktop-file-utils appstream man-db groff-base
    xvfb openbox trayer xdotool at-spi2-core weston qt6-wayland)
package_packages=(dpkg-dev debootstrap)
sanitizer_packages=(clang-14 libclang-rt-14-dev)

# Says what it installs; asks for rights only where something is missing.
install_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2> /dev/null | grep -q ' installed$' ||
            missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "Installing: ${missing[*]}" >&2
    local as_root=()
    [ "$(id -u)" = 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" > /dev/null
}

# build PRESET [TARGET…]
build() {
    local preset=$1
    shift
    [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" -G Ninja > /dev/null
    if [ $# -gt 0 ]; then
        cmake --build "build/$preset" --target "$@" >&2
    else
        cmake --build "build/$preset" >&2
    fi
}
