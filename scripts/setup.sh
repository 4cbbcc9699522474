#!/usr/bin/env bash
# Installs the Debian packages that building and testing Quillon need and
# that a fresh machine lacks: the C++ tool set, GoogleTest, and for the
# quillon command pugixml, CLI11 and fmt (plus librsvg2-bin, with which the
# tests render the plot to PNG). Nothing is done when all are present; the
# package lists are refreshed only when something is missing. Runs apt-get
# as root, through sudo when not root.
#
#   bash scripts/setup.sh
set -euo pipefail

packages=(
    cmake ninja-build g++ pkg-config libgtest-dev
    libpugixml-dev libcli11-dev libfmt-dev librsvg2-bin
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done
if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "setup: need root or sudo to install: ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi

echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
