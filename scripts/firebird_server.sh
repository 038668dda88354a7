#!/usr/bin/env bash
# Unpacks the Firebird server program (the package firebird3.0-server, in the version of the installed engine)
# into a folder, for the tests' private servers. Nothing is installed, enabled or started system-wide.
# Usage: firebird_server.sh [FOLDER]   (default build/firebird-server)
set -euo pipefail
dir="${1:-$(cd "$(dirname "$0")/.." && pwd)/build/firebird-server}"
mkdir -p "$dir"
# Two test binaries may ask at once.
exec 9>"$dir/.lock"
flock 9
[ -x "$dir/usr/sbin/firebird" ] && exit 0
version="$(dpkg-query -W -f='${Version}' firebird3.0-server-core 2>/dev/null || true)"
[ -n "$version" ] || { echo "firebird3.0-server-core is not installed (scripts/deps.sh installs it)" >&2; exit 1; }
tmp="$(mktemp -d)"
trap 'rm -rf "$tmp"' EXIT
chmod a+rwx "$tmp"
(cd "$tmp" && apt-get download -qq "firebird3.0-server=$version") ||
  { echo "apt-get download firebird3.0-server=$version failed" >&2; exit 1; }
dpkg-deb -x "$tmp"/firebird3.0-server_*.deb "$dir"
[ -x "$dir/usr/sbin/firebird" ] || { echo "the package holds no usr/sbin/firebird" >&2; exit 1; }
