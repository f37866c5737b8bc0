# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_build() {
  local preset=dev
  while [[ $# -gt 0 ]]; do
    case $1 in
      -h | --help)
        cat <<'TEXT'
usage: ./dev build [--preset dev|release|asan|tsan] [arguments of cmake --build]

Builds into build/PRESET; the preset is dev unless told otherwise. With ccache installed, compilations are cached.
Example of a further argument: --target Corvanta
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
      *) break ;;
    esac
  done
  check_preset "$preset"
  ensure_setup
  build_preset "$preset" "$@"
}
