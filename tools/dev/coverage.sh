# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_coverage() {
  local least=95
  while [[ $# -gt 0 ]]; do
    case $1 in
      -h | --help)
        cat <<'TEXT'
usage: ./dev coverage [--least PERCENT]

Builds the unit tests of core and of the application with counters, runs them, and reports which lines and branches of
core and of the workspace coordinator they reach: a table by file, then each line and each branch that nothing reached.
Fails when fewer than PERCENT (95) of the lines are reached. docs/coverage.md names what cannot be reached, and why.
TEXT
        return
        ;;
      --least)
        least=${2:?--least needs a number}
        shift 2
        ;;
      *) die 64 "coverage does not know \"$1\"" ;;
    esac
  done

  ensure_setup
  local programs=(CorvantaCoreTests CorvantaApplicationTests) folder=build/coverage program objects=()
  build_preset coverage --target "${programs[@]}" CorvantaProcessHelper
  rm -rf -- "$folder/counts"
  for program in "${programs[@]}"; do
    say "$program"
    LLVM_PROFILE_FILE=$folder/counts/$program.profraw "$folder/tests/$program" --gtest_brief=1
    # The first program has no option of its own.
    objects+=(${objects:+--object} "$folder/tests/$program")
  done
  llvm-profdata-19 merge --sparse -o "$folder/counts/all.profdata" "$folder"/counts/*.profraw

  local selection=(--instr-profile="$folder/counts/all.profdata" "${objects[@]}" --sources core app/workspace)
  llvm-cov-19 report "${selection[@]}" --show-branch-summary --show-region-summary=false
  llvm-cov-19 export "${selection[@]}" --format=lcov --skip-expansions >"$folder/counts/lines.info"
  say "Not reached"
  not_reached "$folder/counts/lines.info"
  awk -F: -v least="$least" '
    $1 == "LF" { lines += $2 } $1 == "LH" { hit += $2 }
    END { printf "==> %d of %d lines, %.2f %%; at least %s %% are asked for\n", hit, lines, 100 * hit / lines, least
          exit !(lines > 0 && 100 * hit >= least * lines) }' "$folder/counts/lines.info"
}

# Lines that were never run, runs of them in one, and branches of lines that were run but never took one way.
not_reached() {
  awk -F'[:,]' -v root="$CORVANTA_ROOT/" '
    function tell() {
      if (first) print file ":" first (last > first ? "-" last : "") ": " (last > first ? "lines" : "line")
      first = 0
    }
    $1 == "SF" { file = $2; sub(root, "", file) }
    $1 == "DA" && $3 == 0 { if (!first || $2 != last + 1) { tell(); first = $2 } last = $2; dead[file, $2] = 1 }
    $1 == "BRDA" && $5 == 0 { way[file ":" $2] = way[file ":" $2] " " $4; place[file ":" $2] = file SUBSEP $2 }
    $1 == "end_of_record" { tell() }
    END { for (where in way) if (!(place[where] in dead)) print where ": branch" way[where] }' "$1" | sort -V
}
