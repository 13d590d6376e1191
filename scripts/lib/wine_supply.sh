# shellcheck shell=bash
# shellcheck disable=SC2154,SC2034 # cache_home, tree and fail come from common.sh; wine_template is for scripts/wine
# Finds or makes a Wine that runs 32-bit programs, and starts commands in it. Sourced by scripts/wine.
#
#   find_wine             sets wine_root (empty: the machine's own Wine) and wine_template, a fresh prefix
#                         that new prefixes are copied from; makes both when they are missing
#   in_wine PREFIX CMD..  replaces this process by CMD, run where `wine` and `wineserver` are on the PATH

wine_cache=$cache_home/wine
wine_root=
wine_template=

# The private root: what is in it. Any change here gives the root another name, so that it is made anew.
# The Debian of the root decides the generation of Wine.
root_suite=${QUORVANE_WINE_SUITE:-bookworm}
case $root_suite in
  bookworm) root_wine='Wine 8' ;;
  trixie) root_wine='Wine 10' ;;
  *) fail "QUORVANE_WINE_SUITE is $root_suite; known are: bookworm trixie" ;;
esac
root_packages=(
  wine32 wine
  # What Wine's window driver loads at run time.
  libx11-6 libxext6 libxrender1 libxcursor1 libxfixes3 libxrandr2 libxi6 libxinerama1 libxcomposite1
  libxxf86vm1 libfreetype6
  # For tests that run under another code page or other decimal marks.
  locales
)
root_locales=(en_US de_DE tr_TR ja_JP)

short_hash() { sha256sum | cut -c1-10; }

environment_for() {
  local name
  printf '%s\0' "HOME=$1" "WINEPREFIX=$1" "WINEDEBUG=${WINEDEBUG:--all}" \
    "WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-winemenubuilder.exe=d;mscoree,mshtml=}" \
    "LANG=${LANG:-C.UTF-8}" "XDG_RUNTIME_DIR=$1/.quorvane"
  for name in DISPLAY XAUTHORITY TZ "${!LC_@}" "${!QUORVANE_@}" "${!GTEST_@}" "${!BENCHMARK_@}"; do
    [ -z "${!name+set}" ] || printf '%s\0' "$name=${!name}"
  done
}

in_wine() {
  local environment prefix=$1
  shift
  mapfile -d '' -t environment < <(environment_for "$prefix")
  if [ -z "$wine_root" ]; then
    exec env -i PATH="$PATH" "${environment[@]}" "$@"
  fi
  # A mount namespace per run: nothing stays mounted, parallel runs and other clones never meet.
  local private=(unshare --mount --propagation slave)
  [ "$(id -u)" = 0 ] || private+=(--user --map-root-user)
  exec "${private[@]}" "$tree/scripts/lib/enter_root" "$wine_root" "$tree" "$prefix" -- \
    env -i -C "$PWD" PATH=/usr/bin:/bin "${environment[@]}" "$@"
}

# --- the machine's own Wine -------------------------------------------------------------------------------

# Tried with a real program: a Wine may be there and run 64-bit programs only.
own_wine_runs_pe32() {
  local trial=$1 folder=system32
  in_trial() { env WINEPREFIX="$trial" WINEDEBUG=-all WINEDLLOVERRIDES='winemenubuilder.exe=d;mscoree,mshtml=' "$@"; }
  in_trial timeout 120 wineboot -i </dev/null >/dev/null 2>&1 || return 1
  in_trial timeout 60 wineserver -w # until then the registry is not in its files
  [ -e "$trial/system.reg" ] || return 1
  ! grep -q '^#arch=win64' "$trial/system.reg" || folder=syswow64
  local code=0
  in_trial timeout 60 wine "C:\\windows\\$folder\\cmd.exe" /c exit 7 </dev/null >/dev/null 2>&1 || code=$?
  in_trial wineserver -w || true
  [ "$code" = 7 ]
}

find_own_wine() {
  [ "${QUORVANE_WINE:-}" != private ] && [ -z "${QUORVANE_WINE_SUITE:-}" ] && have wine && have wineserver || return 1
  local program key answer
  program=$(readlink -f "$(command -v wine)")
  key=$({ printf '%s ' "$program"; stat -c '%s %Y' "$program"; } | short_hash)
  answer=$wine_cache/own-$key
  if [ ! -e "$answer" ]; then
    mkdir -p "$wine_cache"
    if own_wine_runs_pe32 "$answer.template"; then echo yes >"$answer"; else
      rm -rf "$answer.template"
      echo no >"$answer"
    fi
  fi
  [ "$(cat "$answer")" = yes ] || return 1
  wine_template=$answer.template
}

# --- the private root -------------------------------------------------------------------------------------

# Runs in a mount namespace of its own, so that an interrupted set-up leaves no mount behind.
make_root() {
  local root=$1 mirror include name
  mirror=$(debian_archives | awk -v suite="$root_suite" '$2 == suite && $3 == "main" { print $1; exit }')
  # A machine of another Debian release: the same mirror has ours too.
  [ -n "$mirror" ] || mirror=$(debian_archives | awk '$1 !~ /security/ && $3 == "main" { print $1; exit }')
  [ -n "$mirror" ] || fail "found no Debian mirror in this machine's apt configuration"
  include=$(IFS=,; printf '%s' "${root_packages[*]}")
  as_root unshare --mount debootstrap --arch=i386 --variant=minbase --include="$include" \
    "$root_suite" "$root" "$mirror"
  for name in "${root_locales[@]}"; do
    as_root chroot "$root" localedef -i "$name" -f UTF-8 "$name.UTF-8"
  done
  as_root rm -rf "$root"/var/cache/apt/archives/*.deb
  # Mount points for enter_root, which may later run without the right to make them.
  local folder
  while IFS= read -r folder; do as_root mkdir -p "$root$folder"; done < <("$tree/scripts/lib/enter_root" --list)
}

make_template() {
  wine_template=$1
  # A subshell: in_wine replaces the process. The server is ended before the folder gets its name.
  (in_wine "$1" wineboot -i </dev/null >/dev/null 2>&1)
  (in_wine "$1" wineserver -w)
  [ -e "$1/system.reg" ] || fail "Wine made no prefix in $1"
}

# complete NAME COMMAND: NAME exists whole or not at all; made by `COMMAND TEMPORARY_NAME` and renamed.
complete() {
  local name=$1 command=$2
  [ ! -e "$name" ] || return 0
  as_root rm -rf --one-file-system "$name".part.*
  "$command" "$name.part.$$"
  as_root mv "$name.part.$$" "$name"
}

find_private_wine() {
  local key
  key=$(printf '%s\n' "$root_suite" "${root_packages[@]}" "${root_locales[@]}" | short_hash)
  local root=$wine_cache/root-$key template=$wine_cache/template-$key
  if [ ! -e "$root" ] || [ ! -e "$template" ]; then
    mkdir -p "$wine_cache"
    have debootstrap || "$tree/scripts/setup"
    # Parallel first calls wait here, then find everything made.
    exec 8>"$wine_cache/lock"
    flock 8
    if [ ! -e "$root" ]; then
      as_root_possible || fail "no Wine here runs 32-bit programs; making a private one needs root, or a sudo that asks for no password"
      local log=$wine_cache/root-$root_suite.log
      say "wine: making a private i386 Debian $root_suite with $root_wine in $root (once; a minute or two)"
      local code=0
      set +e # left of an `||` its first failing command would not end it
      (
        set -e
        complete "$root" make_root
      ) >"$log" 2>&1
      code=$?
      set -e
      if [ "$code" != 0 ]; then
        as_root rm -rf --one-file-system "$root".part.*
        fail "could not make it; the last lines of $log:
$(tail -5 "$log")"
      fi
    fi
    wine_root=$root
    complete "$template" make_template
    exec 8>&-
  fi
  wine_root=$root
  wine_template=$template
}

find_wine() { find_own_wine || find_private_wine; }
