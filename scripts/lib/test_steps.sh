# shellcheck shell=bash
# The steps of ./test, in order: a name, what it does, what to do when it fails; below, step_NAME does it.
# Sourced by ./test.
# shellcheck disable=SC2154 # tree and python come from common.sh

results=$tree/build/test-results
jobs=$(nproc)
export CTEST_PARALLEL_LEVEL=$jobs

steps='
native|build for Linux and run all its tests|Run one test by hand: build/native/tests/ROOM/ROOM_tests --gtest_filter=NAME
rooms|the arrows between the rooms, and that each kept oddity is pinned by a test|Each line above names file, line and reason.
format|the format of all C++ files|scripts/check-format --fix mends it.
shell|shellcheck over all scripts; ./bench over stubs: what it says, and bad input; bad counts of the long forms|A finding above with a number: shellcheck.net/wiki/NUMBER explains it.
tidy|clang-tidy over the portable rooms and the programs|.clang-tidy says how to mark a finding that is wrong.
memcheck|a selection of the Linux tests under valgrind|Run it by hand: scripts/check-valgrind
asan|the Linux tests again, under the address and undefined-behaviour sanitizers, counting lines and branches of the portable rooms|The first report above is the one to read; or the lines listed are not reached by any test.
windows|build the module and the programs for 32-bit Windows; examine the module as a file|Look for the first error above.
wine|scripts/wine itself: arguments, exit codes, bytes, windows, parallel runs|Try: scripts/wine --setup
windows-tests|the same tests, and those of the loaded module, as Windows programs in Wine|Run one by hand: scripts/with-display scripts/wine build/windows-tests/tests/ROOM/ROOM_tests.exe
wine-next|the loaded module, its container and its scripts in the next generation of Wine|Run one by hand: QUORVANE_WINE_SUITE=trixie scripts/wine PROGRAM
hosts|the module in hosts that others wrote, in both generations of Wine: ATL, ole32, Free Pascal, Node|docs/hosts.md says how to repeat each by hand.
run-native|the whole example on Linux: ./run --native|Run it by hand: ./run --native
run|the whole example in Wine: ./run; what the pages show as output, against real runs|Run it by hand: ./run; scripts/check-shown tells how a page is compared
help|what users read and run first: the help file, the reference, the manual, check-install, licences|Run it by hand: cd tests/help && /usr/bin/python3 -m unittest
release|./release twice, from two folders: the same bytes, and each package does what it is for|Make it by hand: ./release; then cd tests/packaging && /usr/bin/python3 -m unittest test_NAME
reproducible|two folders give the same module, bit for bit|Something of the folder or the time got into the file; compare the two with cmp -l.
'

step_field() { awk -F'|' -v step="$1" -v field="$2" '$1 == step { print $field }' <<<"$steps"; }
step_title() { step_field "$1" 2; }
step_advice() { step_field "$1" 3; }
step_names() { awk -F'|' 'NF { print $1 }' <<<"$steps"; }
list_steps() { awk -F'|' 'NF { printf "%-14s %s\n", $1, $2 }' <<<"$steps"; }
# The steps that wait for Wine most of the time, in an order in which each finds built what it needs; the others are for
# Linux and run beside them.
windows_steps() { printf '%s\n' windows windows-tests wine wine-next hosts run help release; }
# Steps that build or read build/native.
uses_native_build() { [[ " native tidy memcheck run-native run help release " = *" $1 "* ]]; }
is_step() { [ -n "$1" ] && step_names | grep -qxF -- "$1"; }

# case_of NAME COMMAND: runs it and notes output and exit code as a test case (or as many as it reports itself).
case_of() {
  local name=$1 code=0
  shift
  # shellcheck disable=SC2154 # set by run_step
  "$@" 2>&1 | tee "$results/$step/$name.out" || code=$?
  echo "$code" >"$results/$step/$name.code"
  return "$code"
}

# build PRESET: configured anew each time (it takes a second), so that a new source file is never missed.
build() {
  cmake --preset "$1" >"$results/$step/configure.log" 2>&1 || { cat "$results/$step/configure.log"; return 1; }
  cmake --build --preset "$1" -j"$jobs"
}

# tests_of PRESET [RUNNER]: all that ctest knows, or those whose names match $only, under RUNNER if one is given.
tests_of() {
  local preset=$1
  shift
  "$@" ctest --test-dir "build/$preset" --tests-regex "${only:-.}" --no-tests=error --output-on-failure \
    --test-output-size-passed 1000000 --test-output-size-failed 1000000 \
    --output-junit "$results/$step/$preset.xml"
}

# unittests_in FOLDER: its test_*.py.
unittests_in() { "$python" -B -m unittest discover -s "$1"; }

# A Wine prefix and a display for the tests alone; one program at a time, since some register the module.
in_test_prefix=(env QUORVANE_WINEPREFIX="$tree/build/test-prefix" CTEST_PARALLEL_LEVEL=1 scripts/with-display)

step_native() {
  scripts/setup --native
  build native
  tests_of native
}
step_rooms() {
  local code=0
  case_of test-check-rooms scripts/test-check-rooms || code=1
  case_of check-rooms scripts/check-rooms || code=1
  case_of test-check-shown scripts/test-check-shown || code=1
  return "$code"
}
step_format() { case_of check-format scripts/check-format; }
step_shell() {
  local code=0
  case_of check-shell scripts/check-shell || code=1
  case_of test-bench scripts/test-bench || code=1
  case_of test-arguments scripts/test-arguments || code=1
  return "$code"
}
step_tidy() {
  scripts/setup --native
  cmake --preset native >/dev/null
  case_of check-tidy scripts/check-tidy -j "$jobs"
}
# What an earlier run counted, and the notes of objects that are no more, must not add to what this one counts.
forget_earlier_counts() {
  local notes
  ninja -C build/asan -t cleandead >/dev/null
  find build/asan -name '*.gcda' -delete
  find build/asan -name '*.gcno' | while read -r notes; do [ -e "${notes%.gcno}.o" ] || rm "$notes"; done
}
step_asan() {
  scripts/setup --native
  # The counts name their sources by whole paths, or gcovr does not find all of them.
  CCACHE_BASEDIR='' build asan
  forget_earlier_counts
  UBSAN_OPTIONS=print_stacktrace=1 tests_of asan
  case_of check-coverage scripts/check-coverage
}
step_memcheck() {
  scripts/setup --native
  build native
  case_of check-valgrind scripts/check-valgrind
}
step_windows() {
  scripts/setup
  build windows
  # They wait for Wine most of the time.
  CTEST_PARALLEL_LEVEL=$((2 * jobs)) tests_of windows
}
step_wine() {
  scripts/setup
  scripts/wine --setup
  case_of test-wine scripts/test-wine
}
step_windows_tests() {
  scripts/setup
  scripts/wine --setup
  build windows
  build windows-tests
  local code=0
  tests_of windows-tests "${in_test_prefix[@]}" || code=1
  case_of check-heap scripts/check-heap || code=1
  return "$code"
}
step_wine_next() {
  local beside code=0
  scripts/setup
  export QUORVANE_WINE_SUITE=trixie
  scripts/wine --setup
  build windows
  cmake --preset windows-tests >/dev/null
  cmake --build --preset windows-tests -j"$jobs" --target component_tests platform_tests
  # What starts many programs, beside those that are one each. The Linux tests of the package need no Wine, the others are
  # the logic over the same calls: one generation serves for them.
  only='^(examples|programs_container|programs_window)$' tests_of windows &
  beside=$!
  only='^(component|platform)_tests$' tests_of windows-tests "${in_test_prefix[@]}" || code=1
  # Checked at each call, the heap of this generation is slow; the rest holds there, too.
  case_of check-heap scripts/check-heap 'StreamLoad.*:BagLoad.*:ReEntrance.*' || code=1
  wait "$beside" || code=1
  return "$code"
}
step_hosts() {
  local suite code=0
  scripts/setup
  build windows
  QUORVANE_HOSTS=$(scripts/fetch-hosts)
  export QUORVANE_HOSTS QUORVANE_WINEPREFIX=$tree/build/hosts-prefix
  tests/hosts/build build/hosts
  for suite in bookworm trixie; do
    QUORVANE_WINE_SUITE=$suite scripts/wine --setup
    QUORVANE_WINE_SUITE=$suite case_of "hosts-$suite" scripts/with-display "$python" -B -m unittest discover -s tests/hosts ||
      code=1
  done
  return "$code"
}
step_run_native() { case_of run ./run --native; }
step_run() {
  local code=0
  case_of run ./run || code=1
  cmake --preset native >/dev/null
  cmake --build --preset native --target quorvane -j"$jobs"
  case_of check-shown scripts/check-shown --run "$results/run/run.out" || code=1
  return "$code"
}
step_help() {
  scripts/setup --release
  build native
  build windows
  scripts/wine --setup
  QUORVANE_WINEPREFIX=$tree/build/help-prefix case_of user-papers unittests_in tests/help
  case_of public-checks yamllint -s .github .yamllint .clangd
  case_of licence cmp LICENSE LICENSES/MIT.txt
  case_of licences reuse lint
}
step_release() {
  local again beside code=0
  scripts/setup --release
  scripts/wine --setup
  cmake --preset native >/dev/null
  cmake --build --preset native -j"$jobs" --target make_registration
  ./release
  # The second run is that of a stranger: no clone, another folder, one with blanks and umlauts in its name.
  again=$(mktemp -d)
  mkdir "$again/zum Prüfen"
  tar -C "$again/zum Prüfen" --strip-components=1 -xf build/release/quorvane-[0-9]*.tar.gz
  "$again/zum Prüfen/release"
  export QUORVANE_RELEASE=$tree/build/release QUORVANE_RELEASE_AGAIN="$again/zum Prüfen/build/release"
  # What waits for Wine and what compiles go side by side.
  local tests=(env -C tests/packaging "$python" -B -m unittest)
  case_of packages scripts/with-display "${tests[@]}" test_installer test_portable &
  beside=$!
  case_of library "${tests[@]}" test_folder test_signing test_debian test_library || code=1
  wait "$beside" || code=1
  rm -rf "$again"
  return "$code"
}
step_reproducible() {
  scripts/setup
  case_of check-reproducible scripts/check-reproducible
}
