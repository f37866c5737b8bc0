# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_test() {
  local preset=dev
  local selection=()
  while [[ $# -gt 0 ]]; do
    case $1 in
      -h | --help)
        cat <<'TEXT'
usage: ./dev test [--preset dev|release|asan|tsan] [--unit] [arguments of ctest]

Installs what is missing, builds, and runs all tests: unit tests, and tests on virtual desktops of their own, which show
nothing on your screen. --unit runs the unit tests alone.
Examples of further arguments: -R EndToEnd   -L desktop   --rerun-failed   --repeat until-fail:5
GTEST_FILTER chooses single tests of all programs, as in GTEST_FILTER='URLNormalizer.*' ./dev test --unit
TEXT
        return
        ;;
      --preset)
        preset=${2:?--preset needs a name}
        shift 2
        ;;
      --preset=*)
        preset=${1#*=}
        shift
        ;;
      --unit)
        selection=(--label-regex '^unit$')
        shift
        ;;
      *) break ;;
    esac
  done
  check_preset "$preset"
  ensure_setup
  build_preset "$preset"
  [[ $preset != asan ]] || sanitizer_environment
  [[ $preset != tsan ]] || race_environment
  # The tests have a lab of their own, whatever lab the user works with.
  unset CORVANTA_LAB_HOME CORVANTA_DEVICE_SET CORVANTA_LAB_DIR
  # One more than processors: the tests on desktops wait for half of their time. With many more they would be slower than
  # the limits that the program sets to others.
  ctest --preset "$preset" --parallel "${CTEST_PARALLEL_LEVEL:-$(($(nproc) + 1))}" --no-tests=error "${selection[@]}" "$@"
}

# Of libraries that were not built for it, it does not see the locks. Nothing else is left out.
race_environment() {
  export TSAN_OPTIONS="ignore_noninstrumented_modules=1${TSAN_OPTIONS:+:$TSAN_OPTIONS}"
  local symbolizer
  if symbolizer=$(command -v llvm-symbolizer-19); then
    TSAN_OPTIONS+=":external_symbolizer_path=$symbolizer"
  fi
}

sanitizer_environment() {
  # Not strict about strings: libxkbcommon hands strndup bytes of an X reply that end without a zero, which is right.
  export ASAN_OPTIONS="detect_stack_use_after_return=1:check_initialization_order=1${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
  export UBSAN_OPTIONS="suppressions=$CORVANTA_ROOT/tools/undefined.supp:print_stacktrace=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"
  export LSAN_OPTIONS="suppressions=$CORVANTA_ROOT/tools/leaks.supp:print_suppressions=0${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
  # Reports have names and lines only with a symbolizer, and the packaged one has a version in its name.
  local symbolizer
  if symbolizer=$(command -v llvm-symbolizer-19); then
    export ASAN_SYMBOLIZER_PATH=$symbolizer
  fi
}
