#!/bin/bash
# The Debian package as a user gets it: cpack makes korvel_<version>_amd64.deb
# from the build folder; unpacked into a temporary root (dpkg -x), its
# korvel-run runs an installed example and its manual pages read with
# man -l; lintian reports no error. As root with KORVEL_TEST_DPKG_INSTALL=1
# (the CI), the package is also installed with dpkg -i, checked in place
# and removed again.
#
#   deb_test.sh BUILD_DIR SOURCE_DIR VERSION
#
# Exits 77 (skipped, for CTest) when a packaging tool is missing.
set -u
build=$1 source=$2 version=$3
for tool in cpack dpkg dpkg-deb dpkg-shlibdeps man lintian; do
  if ! command -v "$tool" >/dev/null 2>&1; then
    echo "deb_test: $tool is not installed, skipping" >&2
    exit 77
  fi
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }

deb=$work/korvel_${version}_amd64.deb
cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work" >"$work/cpack.log" 2>&1 ||
  { cat "$work/cpack.log" >&2; echo "FAIL: cpack" >&2; exit 1; }
[ -f "$deb" ] || { ls "$work" >&2; echo "FAIL: no $deb" >&2; exit 1; }

# The dependencies are the Debian libraries korvel links.
depends=$(dpkg-deb -f "$deb" Depends)
for lib in libc6 libstdc++6 libx11-6 libxt6 libxaw7; do
  grep -q "\\b$lib\\b" <<<"$depends" || fail "Depends lacks $lib: $depends"
done

root=$work/root
dpkg -x "$deb" "$root"
for file in usr/bin/korvel usr/bin/korvel-run usr/share/man/man1/korvel.1.gz \
            usr/share/man/man1/korvel-run.1.gz etc/X11/app-defaults/Korvel \
            usr/share/doc/korvel/examples/counter.qv usr/share/doc/korvel/copyright; do
  [ -e "$root/$file" ] || fail "missing /$file"
done
cmp -s "$root/etc/X11/app-defaults/Korvel" "$source/desktop/Korvel" ||
  fail "the installed defaults file differs from desktop/Korvel"
grep -qx /etc/X11/app-defaults/Korvel <(dpkg-deb -I "$deb" conffiles) ||
  fail "the defaults file is not a conffile"

# The installed runner on the installed example, as the build's runner runs it.
examples=$root/usr/share/doc/korvel/examples
"$root/usr/bin/korvel-run" "$examples/counter.qv" "$examples/counter.in" >"$work/installed.trace" ||
  fail "installed korvel-run: status $?"
"$build/bin/korvel-run" "$source/examples/counter.qv" "$source/examples/counter.in" \
  >"$work/built.trace"
cmp -s "$work/installed.trace" "$work/built.trace" || fail "installed korvel-run traces differently"
grep -q '^#step 1$' "$work/installed.trace" || fail "no step in the installed run"
"$root/usr/bin/korvel-run" --check "$examples/counter.qv" "$work/installed.trace" ||
  fail "installed korvel-run --check: status $?"

# The manual pages read, with the sections the issue asks for.
check_page() {
  local page=$1
  shift
  MANWIDTH=80 man -l "$page" >"$work/page.txt" 2>"$work/page.err" || fail "man -l $page"
  [ -s "$work/page.err" ] && { fail "man -l $page warns:"; cat "$work/page.err" >&2; }
  for section in "$@"; do
    grep -q "^$section" "$work/page.txt" || fail "$(basename "$page") has no $section"
  done
}
check_page "$root/usr/share/man/man1/korvel.1.gz" NAME SYNOPSIS OPTIONS "EXIT STATUS" \
  "TRACE FORMAT" "X RESOURCES" EXAMPLES
check_page "$root/usr/share/man/man1/korvel-run.1.gz" NAME SYNOPSIS OPTIONS "EXIT STATUS" \
  "BATCH INPUT FORMAT" "TRACE FORMAT" EXAMPLES

# lintian: warnings are reported, errors fail.
lintian --fail-on error "$deb" >"$work/lintian.txt" 2>&1 || fail "lintian reports errors"
cat "$work/lintian.txt"

if [ "$(id -u)" = 0 ] && [ "${KORVEL_TEST_DPKG_INSTALL:-0}" = 1 ]; then
  if dpkg-query -W korvel >/dev/null 2>&1; then
    echo "deb_test: korvel is installed already; not installing over it" >&2
  else
    if dpkg -i "$deb" >"$work/dpkg.log" 2>&1; then
      korvel-run /usr/share/doc/korvel/examples/counter.qv \
        /usr/share/doc/korvel/examples/counter.in | cmp -s - "$work/built.trace" ||
        fail "korvel-run installed by dpkg -i traces differently"
      man -w korvel >/dev/null 2>&1 || fail "man does not find korvel(1) after dpkg -i"
      [ -f /etc/X11/app-defaults/Korvel ] || fail "dpkg -i left no /etc/X11/app-defaults/Korvel"
    else
      cat "$work/dpkg.log" >&2
      fail "dpkg -i"
    fi
    dpkg --purge korvel >/dev/null 2>&1 || fail "dpkg --purge"
  fi
fi

[ "$failures" = 0 ] && echo "deb_test: all checks passed"
[ "$failures" = 0 ]
