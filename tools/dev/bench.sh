# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_bench() {
  if is_help "$@"; then
    cat <<'TEXT'
usage: ./dev bench [arguments of the benchmarks]

Builds the benchmarks optimised and runs each program that lands in build/release/bench. Installs what they are measured
against first.
TEXT
    return
  fi
  [[ -f bench/CMakeLists.txt ]] || die 69 "this tree has no benchmarks yet"
  ensure_setup
  install_packages libsqlite3-dev
  configure_preset release -DCORVANTA_BUILD_BENCHMARKS=ON
  build_preset release --target CorvantaBenchmarks
  local program
  for program in build/release/bench/*; do
    [[ -f $program && -x $program ]] || continue
    say "${program##*/}"
    "$program" "$@"
  done
}
