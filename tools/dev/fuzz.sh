# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_fuzz() {
  local seconds=60 names=()
  while [[ $# -gt 0 ]]; do
    case $1 in
      -h | --help)
        cat <<'TEXT'
usage: ./dev fuzz [--seconds N] [FUZZER...]

Builds the fuzzers of everything that reads outside bytes and runs each, or those named, for N (60) seconds, from the
seeds in tests/fuzz/seeds and what earlier runs kept in build/fuzz/corpus. An input may take 5 seconds and ten times
its size and 16 MiB of memory. What fails is left in build/fuzz/findings, and the verb fails; a finding becomes a seed
and a test. --seconds 0 runs until it is interrupted, with the first fuzzer named.
TEXT
        return
        ;;
      --seconds)
        seconds=${2:?--seconds needs a number}
        shift 2
        ;;
      -*) die 64 "fuzz does not know \"$1\"" ;;
      *)
        names+=("$1")
        shift
        ;;
    esac
  done

  ensure_setup
  build_preset fuzz
  local folder=build/fuzz/fuzz name failed=()
  [[ ${#names[@]} -gt 0 ]] || mapfile -t names < <(find "$folder" -maxdepth 1 -type f -executable -printf '%f\n' | sort)
  mkdir -p build/fuzz/findings
  for name in "${names[@]}"; do
    [[ -x $folder/$name ]] || die 64 "there is no fuzzer \"$name\""
    mkdir -p "build/fuzz/corpus/$name"
    say "$name"
    "$folder/$name" -max_total_time="$seconds" -timeout=5 -rss_limit_mb=1024 -max_len=65536 -use_value_profile=1 \
      -print_final_stats=1 -verbosity=0 -artifact_prefix="build/fuzz/findings/$name-" \
      "build/fuzz/corpus/$name" "tests/fuzz/seeds/$name" >"build/fuzz/$name.log" 2>&1 || {
      failed+=("$name")
      tail -40 "build/fuzz/$name.log" >&2
    }
    sed -n 's/^stat::/    /p' "build/fuzz/$name.log"
  done
  [[ ${#failed[@]} -eq 0 ]] || die 1 "these failed: ${failed[*]}; see build/fuzz/findings"
}
