#!/usr/bin/env bash
# Installs every Debian 12 package the project needs to build, run and test.
set -euo pipefail
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update
$SUDO apt-get install -y --no-install-recommends \
  g++ clang libclang-rt-14-dev cmake ninja-build pkg-config \
  libgtest-dev libgmock-dev libbenchmark-dev \
  qt6-base-dev qt6-base-dev-tools qt6-qpa-plugins libgl-dev \
  libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev \
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-plugins-ugly gstreamer1.0-libav \
  libmp3lame-dev lame \
  dosfstools fusefat \
  xvfb xauth imagemagick dbus \
  python3 python3-mutagen \
  xdg-utils shared-mime-info desktop-file-utils
