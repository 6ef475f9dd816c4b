# Sourced by run and test: installs what is needed on Debian 12, and builds.

build_packages="build-essential cmake ninja-build pkg-config python3 libgtkmm-3.0-dev libxml++2.6-dev
    libarchive-dev libxslt1-dev libavahi-client-dev libavahi-glib-dev"
# weasyprint prints reports as PDF and, in the build, the help.
run_packages="weasyprint librsvg2-common adwaita-icon-theme fonts-dejavu-core at-spi2-core"
headless_packages="xvfb xauth x11-utils openbox dbus-daemon"
test_packages="doxygen libgtest-dev libgmock-dev libbenchmark-dev xdotool imagemagick python3-gi locales sway
    unzip poppler-utils python3-pyvisa python3-pyvisa-py lxi-tools avahi-daemon avahi-utils iproute2
    appstream desktop-file-utils shared-mime-info libxml2-utils abigail-tools man-db"
package_packages="doxygen debhelper dpkg-dev lintian"
fuzz_packages="clang libclang-rt-14-dev"

# ensure_packages PACKAGE...: installs those that are missing, as root or with sudo; else says which and ends.
ensure_packages() {
    missing=""
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q "ok installed" || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    if [ "$(id -u)" = 0 ]; then
        as_root=""
    elif command -v sudo >/dev/null 2>&1; then
        as_root="sudo"
    else
        echo "Please install these packages first:$missing" >&2
        exit 1
    fi
    echo "Installing:$missing"
    $as_root apt-get update -qq || exit 1
    # shellcheck disable=SC2086
    DEBIAN_FRONTEND=noninteractive $as_root apt-get install -y -qq --no-install-recommends $missing >/dev/null ||
        exit 1
}

# build PRESET [cmake options] -- TARGET...
build() {
    preset=$1
    shift
    options=""
    while [ $# -gt 0 ] && [ "$1" != -- ]; do
        options="$options $1"
        shift
    done
    [ $# -eq 0 ] || shift
    # shellcheck disable=SC2086
    cmake --preset "$preset" ${KES_BUILD_OPTIONS:-} $options >/dev/null || exit 1
    if [ $# -gt 0 ]; then
        cmake --build --preset "$preset" --target "$@" || exit 1
    else
        cmake --build --preset "$preset" || exit 1
    fi
}
