# Sourced by the scripts that need Debian packages.

# ensure_packages NAME...: installs those that are missing, as root or through sudo; does nothing
# when all are there.
ensure_packages() {
    local name missing=()
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        echo "This is no Debian system: the equivalents of these packages must be there: $*" >&2
        return
    fi
    for name; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null)" = installed ] ||
            missing+=("$name")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "Missing packages, and neither root nor sudo to install them: ${missing[*]}" >&2
            return 1
        }
        as_root=(sudo)
    fi
    echo "Installing ${#missing[@]} Debian packages: ${missing[*]}"
    "${as_root[@]}" apt-get update -q
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -q -y --no-install-recommends "${missing[@]}"
}

# What every build of the project needs.
build_packages=(g++ cmake ninja-build qtbase5-dev zlib1g-dev)
# What `docimport` is built with, and the engine that it starts for decks, with the fonts that most
# of them ask for.
pdf_packages=(libpoppler-qt5-dev pkg-config)
engine_packages=(libreoffice-impress fonts-crosextra-caladea fonts-crosextra-carlito
    fonts-liberation)
# What `docpage play` writes text with.
font_packages=(fonts-dejavu-core)
# What the tests, the benchmarks and their helpers need beyond that.
test_packages=(binutils groff-base libbenchmark-dev pkg-config python3-jsonschema
    "${font_packages[@]}")
# What the fuzz targets are built with, and what names the places in their reports.
fuzz_packages=(clang libclang-rt-dev llvm)
# A display for the demo where there is none.
display_packages=(xauth xvfb)
