# shellcheck shell=bash
# What every script shares: where the work tree is, how to speak, how to stop.
# Sourced, never run; expects `set -eu -o pipefail` in the script.

# The work tree, whatever the current folder is.
tree=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)

# Kept outside the work tree, shared by all clones: the Wine root, fetched sources, results of slow checks.
cache_home=${XDG_CACHE_HOME:-${HOME:-/root}/.cache}/quorvane
export cache_home tree

# What was compiled in one clone serves every other: ccache takes paths as they are from the work tree.
export CCACHE_BASEDIR=$tree CCACHE_NOHASHDIR=1

# An ordinary user may have no system programs (chroot, debootstrap) on the PATH.
PATH=$PATH:/usr/sbin:/sbin

say() { printf '%s\n' "$*" >&2; }
fail() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}
headline() { printf '\n== %s\n' "$*"; }
have() { command -v "$1" >/dev/null 2>&1; }

# Runs a command as root: directly, or through a sudo that asks nothing, or not at all.
# Prints no message of its own; as_root_possible tells beforehand whether it can work.
as_root_possible() { [ "$(id -u)" = 0 ] || { have sudo && sudo -n true 2>/dev/null; }; }
as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"; else sudo -n -- "$@"; fi
}

# The Python for which Debian installs its modules (a private Python earlier in PATH would not see them).
python=/usr/bin/python3
[ -x "$python" ] || python=python3
export python

# The Debian archives that this machine is configured for, a line each: address, suite, component.
# shellcheck disable=SC2016 # $(...) there is for apt-get to expand
debian_archives() {
  apt-get indextargets --format '$(ORIGIN) $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
    awk '$1 == "Debian" { print $2, $3, $4 }' | sort -u
}

# usage_from_header: prints the comment block that opens the running script (its help text).
usage_from_header() {
  awk 'NR == 1 { next } /^#/ { sub(/^# ?/, ""); print; next } { exit }' "$0"
}
