# shellcheck shell=bash
# What the makers of packages share: the version, the time inside of all they make, and archives that come out the same
# every time. Sourced behind scripts/lib/common.sh.
# shellcheck disable=SC2154 # tree and fail come from there

# need TOOL PACKAGE...: stops with the name of what is missing.
need() {
  while [ $# -gt 0 ]; do
    have "$1" || fail "$1 is missing; it comes with the Debian package $2"
    shift 2
  done
}

# The one place of the version: the top CMakeLists.txt.
project_version() {
  sed -nE 's/^project\(QuorvaneSecurity VERSION ([0-9]+\.[0-9]+\.[0-9]+) .*/\1/p' "$1/CMakeLists.txt"
}

# fix_times FOLDER: SOURCE_DATE_EPOCH for every file and folder in it.
fix_times() { find "$1" -exec touch --no-dereference --date="@$SOURCE_DATE_EPOCH" {} +; }

# zip_folder FOLDER OUTPUT: what is in FOLDER. OUTPUT is an absolute path.
zip_folder() (
  chmod -R u+rwX,go+rX,go-w "$1"
  fix_times "$1"
  cd "$1" || exit
  find . -mindepth 1 | sed 's,^\./,,' | LC_ALL=C sort | TZ=UTC zip -X -9 -q -@ "$2"
)

# tar_folder FOLDER OUTPUT.tar.gz: FOLDER itself, under its own name.
tar_folder() {
  tar -C "$(dirname "$1")" --sort=name --format=ustar --mtime="@$SOURCE_DATE_EPOCH" --owner=0 --group=0 --numeric-owner \
    --mode=u+rw,go+r-w,a+rX -cf - "$(basename "$1")" | gzip -9n >"$2"
}

# windows_text FILE...: lines end as editors on every Windows want them.
windows_text() { sed -i 's/\r*$/\r/' "$@"; }
