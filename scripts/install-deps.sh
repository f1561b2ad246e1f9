#!/usr/bin/env bash
# Installs what Minutor needs to build, run and test on Debian 12.
set -euo pipefail

packages=(
  cmake ninja-build g++ pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-qpa-plugins qt6-translations-l10n libgl-dev
  libqt6svg6 appstream  # Qt's SVG image and icon plugins; appstreamcli for the metainfo test
  xvfb xauth fonts-dejavu-core
  dbus python3 python3-dbusmock libglib2.0-bin iproute2
  libpulse-dev pulseaudio pulseaudio-utils
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -q
$sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
