#!/usr/bin/env bash
# Installs the Debian packages that building and testing Quillarbor needs,
# when any is missing. Uses sudo when not run as root.
set -euo pipefail

packages=(
    cmake g++ make pkg-config
    qt6-base-dev qt6-charts-dev libgl-dev libx11-dev libxss-dev
    libsqlite3-dev
    libical-dev nlohmann-json3-dev timewarrior
    libgtest-dev libgmock-dev libbenchmark-dev
    clang libclang-rt-14-dev
    python3 python3-olefile
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
fi
