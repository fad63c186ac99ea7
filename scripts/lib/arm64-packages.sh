# Sourced by scripts/arm64-setup: the ARM packages of the system's Debian release, downloaded without
# making ARM one of the system's own architectures.

# On this machine.
arm64_native_packages=(g++-aarch64-linux-gnu qemu-user-static)
# For the ARM programs, with all that these depend on.
arm64_packages=(libqt5printsupport5 libqt5test5 libstdc++6 zlib1g "${font_packages[@]}")
# What only the build reads: alone, as they depend on compilers and other programs.
arm64_bare_packages=(qtbase5-dev qt5-qmake zlib1g-dev)

# arm64_apt FOLDER ARGUMENT...: apt-get as on an ARM system without any package, with its lists and
# archives in the folder. No lock: it would be beside the status file.
arm64_apt() {
    local folder=$1
    shift
    apt-get -q -o APT::Architecture=arm64 -o APT::Architectures=arm64 -o APT::Sandbox::User=root \
        -o Debug::NoLocking=1 \
        -o Acquire::Languages=none -o Dir::State="$folder" -o Dir::State::status=/dev/null \
        -o Dir::Cache="$folder" "$@"
}

# download_arm64 FOLDER: makes FOLDER/archives hold the newest archives and no others.
download_arm64() {
    local folder=$1
    mkdir -p "$folder"/{lists,archives}/partial
    echo "Downloading the ARM packages"
    arm64_apt "$folder" update
    arm64_apt "$folder" autoclean
    arm64_apt "$folder" install -y --no-install-recommends --download-only "${arm64_packages[@]}"
    (cd "$folder/archives" && arm64_apt "$folder" download "${arm64_bare_packages[@]}")
}
