# Sourced by the scripts beside it: installs what is missing of the Debian packages that they name.

# install_packages PACKAGE...: does nothing when all are installed; else needs to be root or to have sudo.
install_packages() {
    local missing=() package
    for package in "$@"; do
        if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            missing+=("$package")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" \
        >/dev/null
}

build_packages=(g++ cmake ninja-build pkg-config qtbase5-dev libboost-dev libcliquer-dev libigraph-dev liblapacke-dev
    libmuparser-dev libnauty2-dev libxxhash-dev)
display_packages=(xvfb xauth fonts-dejavu-core)
test_packages=(xz-utils graphviz groff-base nauty poppler-utils python3-clang-14
    man-db texlive-latex-base texlive-pictures desktop-file-utils shared-mime-info xdg-utils libglib2.0-bin appstream)
fuzz_packages=(clang libclang-rt-14-dev)
package_packages=(dpkg-dev file lintian)
package_test_packages=(mmdebstrap xdotool xvfb xauth)
