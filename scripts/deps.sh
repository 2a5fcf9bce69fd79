# Sourced by the scripts: installs the Debian packages the build and the tests need, when some are missing.

ZR_DEB_PACKAGES=(build-essential cmake ninja-build ccache qtbase5-dev libqt5svg5-dev qt5-image-formats-plugins qttranslations5-l10n
                 libspdlog-dev libfmt-dev libpugixml-dev libdxflib-dev python3-ezdxf xvfb xauth fonts-wqy-microhei
                 x11-common libx11-dev libqt5x11extras5-dev libxtst-dev openbox xdotool x11-utils)

zr_install_deps() {
    local missing=() package
    for package in "${ZR_DEB_PACKAGES[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' \
            || missing+=("$package")
    done
    if [ ${#missing[@]} -eq 0 ]; then
        return 0
    fi
    local sudo=()
    if [ "$(id -u)" -ne 0 ]; then
        sudo=(sudo)
    fi
    echo "Installing ${missing[*]}" >&2
    "${sudo[@]}" apt-get update
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
}
