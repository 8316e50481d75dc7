#!/bin/sh
# The package as listeners meet it: judged by lintian, then installed, upgraded, started and removed on a bare Debian 12.
# Needs root and the package that "make deb" leaves in out/.
set -eu
cd "$(dirname "$0")/.."
package=$(echo out/quorlsdr_*.deb)
lintian --allow-root --fail-on error,warning "$package"
echo "lintian: no errors, no warnings; $(stat -c %s "$package") bytes"
cmake --preset release -B build/older -DQUORL_VERSION=0.9.0 -DQUORL_TESTS=OFF -DQUORL_BENCH=OFF >/dev/null
tools/make_deb.sh build/older build/older/package
tools/release_check.py "$package" "$(echo build/older/package/quorlsdr_*.deb)" build/release-check
