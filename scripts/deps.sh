#!/usr/bin/env bash
# Installs what the build, the program and the tests need on Debian 12.
set -euo pipefail
SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends \
  g++ cmake ninja-build qt6-base-dev libfbclient2 firebird3.0-server-core firebird-dev firebird3.0-utils \
  libxlsxwriter-dev libgtest-dev libbenchmark-dev xvfb libreoffice-writer-nogui libreoffice-calc-nogui unzip >/dev/null
