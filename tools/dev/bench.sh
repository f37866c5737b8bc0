# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_bench() {
  if is_help "$@"; then
    cat <<'TEXT'
usage: ./dev bench [BENCHMARK [arguments of the benchmark]]

Builds the benchmarks optimised and runs all of them, or the one named, with a description of the machine before them.
Installs what they are measured against first. Those in build/release/bench/desktop get a virtual desktop of their own.
A benchmark whose goal is missed is told at the end, and the verb fails. IdleUse alone takes 35 minutes, so it runs only
when it is named: ./dev bench IdleUse --minutes 10
TEXT
    return
  fi
  [[ -f bench/CMakeLists.txt ]] || die 69 "this tree has no benchmarks yet"
  ensure_setup
  install_packages libjq-dev libsimdjson-dev libsqlite3-dev libxdamage-dev
  configure_preset release -DCORVANTA_BUILD_BENCHMARKS=ON
  build_preset release --target CorvantaBenchmarks

  local folder=build/release/bench only=${1:-} program missed=()
  [[ -z $only || -x $folder/$only || -x $folder/desktop/$only ]] || die 64 "there is no benchmark \"$only\""
  describe_machine
  for program in "$folder"/* "$folder"/desktop/*; do
    [[ -f $program && -x $program ]] || continue
    if [[ -n $only ]]; then
      [[ ${program##*/} == "$only" ]] || continue
    elif [[ ${program##*/} == IdleUse ]]; then
      continue
    fi
    say "${program##*/}"
    run_benchmark "$program" "${@:2}" || missed+=("${program##*/}")
  done
  [[ ${#missed[@]} -eq 0 ]] || die 1 "these missed a goal: ${missed[*]}"
}

run_benchmark() {
  if [[ $1 != */desktop/* ]]; then
    "$@"
  elif [[ ${1##*/} == StartTime ]]; then
    # A session that is as it is where nobody has asked for accessibility, for both windows.
    tests/support/virtual-desktop --limit 3600 "$@" 2> >(desktop_silence >&2)
  else
    tests/support/virtual-desktop --limit 3600 tools/dev/headless-session "$@" 2> >(desktop_silence >&2)
  fi
}

# What the buses and the X server say about their own start and end is no news of the benchmarks.
desktop_silence() { grep --line-buffered -vE '^(dbus-daemon\[|SpiRegistry daemon|XIO: |      after [0-9]+ requests)' || true; }

describe_machine() {
  say "$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -1), $(nproc) cores, \
$(awk '/^MemTotal/ { printf "%.1f GiB", $2 / 1048576 }' /proc/meminfo), $(uname -sr), load $(cut -d' ' -f1-3 /proc/loadavg)"
  say "Qt $(dpkg-query --show --showformat='${Version}' libqt6core6 2>/dev/null || echo '?'), \
commit $(git rev-parse --short HEAD 2>/dev/null || echo '?')"
}
