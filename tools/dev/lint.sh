# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh
source tools/dev/format.sh

lint_build=build/lint

verb_lint() {
  local all=no base=main
  while [[ $# -gt 0 ]]; do
    case $1 in
      -h | --help)
        cat <<'TEXT'
usage: ./dev lint [--all] [--base COMMIT]

Checks formatting, the direction of the includes between layers, that each header compiles alone, the shell scripts, and
runs clang-tidy. Headers and clang-tidy look at what changed since the branch left COMMIT (main unless told otherwise);
with --all they look at everything, which takes minutes.
TEXT
        return
        ;;
      --all)
        all=yes
        shift
        ;;
      --base)
        base=${2:?--base needs a commit}
        shift 2
        ;;
      *) die 64 "lint does not know \"$1\"" ;;
    esac
  done

  ensure_setup
  ensure_lint_setup
  mkdir -p build
  prepare_lint >build/lint.log 2>&1 || {
    cat build/lint.log
    die 1 "what does not configure cannot be checked"
  }

  local failed=() sources
  if [[ $all == yes ]]; then
    sources=$(all_sources | tr '\0' '\n')
  else
    sources=$(changed_sources "$base")
  fi
  say "Formatting"
  verb_format --check || failed+=(formatting)
  say "Layering"
  tools/check-layering tools/check-header || failed+=(layering)
  say "Shell scripts"
  shellcheck -x dev .ci/run tools/dev/*.sh tools/dev/fresh-root tools/dev/headless-session tools/dev/with-sample-page tools/check-layering tools/check-header \
    tests/support/virtual-desktop tests/screenshots/device-screenshots ||
    failed+=("shell scripts")
  say "Headers"
  check_headers "$sources" || failed+=(headers)
  say "clang-tidy"
  check_tidy "$sources" || failed+=(clang-tidy)

  [[ ${#failed[@]} -eq 0 ]] || die 1 "not clean: ${failed[*]}"
  say "All clean"
}

# A build of its own that compiles each source alone, so that each is seen with what it includes itself. Nothing of it is
# built but what Qt's compilers make of sources.
prepare_lint() {
  cmake --preset dev -B "$lint_build" -DCORVANTA_UNITY_BUILD=OFF -DCORVANTA_PRECOMPILE_HEADERS=OFF -DCORVANTA_BUILD_BENCHMARKS=ON
  # Not by the targets of the build that do this, as those want the libraries of their programs compiled first.
  find "$lint_build" -name AutogenInfo.json -print0 |
    xargs -0 -P "$(nproc)" -I{} cmake -E cmake_autogen {} Debug
}

changed_sources() {
  local base
  base=$(git merge-base HEAD "$1" 2>/dev/null || git rev-parse HEAD)
  {
    git diff --name-only --diff-filter=d "$base" -- '*.h' '*.cpp' '*.mm'
    git ls-files --others --exclude-standard -- '*.h' '*.cpp' '*.mm'
  } | sort -u
}

# Each header is compiled by itself, with the flags of the nearest source that the build compiles.
# Those for macOS have a check of their own, tests/macos/check.py.
check_headers() {
  printf '%s\n' "$1" | { grep '\.h$' | grep -v -e '^platform/macos/' -e '^tests/macos/' || true; } | xargs -r -d '\n' -n 1 -P "$(nproc)" tools/check-header "$lint_build"
}

check_tidy() {
  local known
  known=$(sed -n "s|^ *\"file\": \"$CORVANTA_ROOT/\(.*\)\".*|\1|p" "$lint_build/compile_commands.json")
  printf '%s\n' "$1" | { grep '\.cpp$' | grep -xF -f <(printf '%s\n' "$known") || true; } |
    xargs -r -d '\n' -n 1 -P "$(nproc)" clang-tidy-19 --quiet -p "$lint_build" 2> >(grep -vE 'warnings? (generated|treated)|^Suppressed|^Use -' >&2)
}
