# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_soak() {
  local what=cells pattern=. fresh=no minutes=0 rounds=100
  while [[ $# -gt 0 ]]; do
    case $1 in
      -h | --help)
        cat <<'TEXT'
usage: ./dev soak [--only PATTERN] [--fresh] [--minutes N]
       ./dev soak rounds [N]
       ./dev soak --table

Breaks the device lab in every way at every moment that docs/faults.md has a row for, one after the other, each on a
virtual desktop of its own, and compares what Corvanta makes of it. It takes hours; what has passed is kept in build/soak
and not run again, so it may be interrupted at any time. --only runs the cells whose names match the pattern, such as
'^Reload' or 'SafariGone$'; --fresh forgets what earlier runs kept; --minutes begins no further cell after that time.

"rounds" starts and stops a workspace N (100) times and compares what the machine has before and after.

At the end the tables in docs/soak.md are written anew from what has been kept; --table does that alone.
TEXT
        return
        ;;
      --only)
        pattern=${2:?--only needs a pattern}
        shift 2
        ;;
      --minutes)
        minutes=${2:?--minutes needs a number}
        shift 2
        ;;
      --fresh)
        fresh=yes
        shift
        ;;
      --table)
        what=table
        shift
        ;;
      rounds)
        what=rounds
        [[ ! ${2:-} =~ ^[0-9]+$ ]] || {
          rounds=$2
          shift
        }
        shift
        ;;
      *) die 64 "soak does not know \"$1\"" ;;
    esac
  done

  ensure_setup
  build_preset dev --target FaultMatrix
  local program=build/dev/bin/FaultMatrix results=build/soak
  [[ -x $program ]] || die 69 "soak needs Linux with the device lab"
  unset CORVANTA_LAB_HOME CORVANTA_DEVICE_SET CORVANTA_LAB_DIR
  mkdir -p "$results/cells"
  case $what in
    cells) soak_cells "$pattern" "$fresh" "$minutes" ;;
    rounds) soak_rounds "$rounds" ;;
  esac
  soak_table
  say "docs/soak.md is up to date"
  [[ $what == table ]] || ! grep -q "	failed	" "$results"/*.tsv "$results"/cells/*.tsv 2>/dev/null || die 1 "not all is well; see docs/soak.md and build/soak"
}

# Each cell as "NAME<tab>MOMENT<tab>FAULT", in the order of docs/faults.md.
soak_all_cells() {
  "$program" --gtest_list_tests --gtest_filter='*/FaultMatrix.*' 2>/dev/null |
    sed -n 's|^  [^/]*/\([A-Za-z]*\)  # GetParam() = \(.*\) × \(.*\) (line .*|\1\t\2\t\3|p'
}

# On a desktop of its own, with what it prints in the file named first.
soak_on_desktop() {
  local log=$1
  shift
  tests/support/virtual-desktop --size 1600x1000 --limit "${soak_limit:-240}" "$program" "$@" >"$log" 2>&1
}

# Adds when and of which state of the sources.
soak_dated() { sed "s|\$|	$(date -u +%Y-%m-%d)	$(git describe --always --dirty 2>/dev/null || echo unknown)|"; }

soak_cells() {
  local pattern=$1 fresh=$2 end=$((SECONDS + $3 * 60)) name moment fault file
  [[ $fresh == no ]] || rm -f "$results"/cells/*
  while IFS=$'\t' read -r name moment fault <&3; do
    [[ $name =~ $pattern ]] || continue
    file=$results/cells/$name.tsv
    ! grep -q "	passed	" "$file" 2>/dev/null || continue
    if [[ $3 -gt 0 && $SECONDS -ge $end ]]; then
      say "The time is over"
      break
    fi
    rm -f "$file" "$results/$name.tsv"
    CORVANTA_FAULT_RESULTS=$results soak_on_desktop "$results/cells/$name.log" "--gtest_filter=*/FaultMatrix.*/$name" || true
    # Without a result the program did not come to its end.
    [[ -s $results/$name.tsv ]] || printf '%s\t%s\tfailed\t0\t0\t0\tno result\n' "$moment" "$fault" >"$results/$name.tsv"
    soak_dated <"$results/$name.tsv" >"$file"
    rm -f "$results/$name.tsv"
    say "$name: $(cut -f 3-6 "$file" | tr '\t' ' ')"
  done 3< <(soak_all_cells)
}

soak_rounds() {
  CORVANTA_ROUNDS=$1 CORVANTA_FAULT_RESULTS=$results soak_limit=$((120 + $1 * 60)) \
    soak_on_desktop "$results/rounds.log" --gtest_filter=StartStopRounds.* ||
    tail -30 "$results/rounds.log" >&2
  if [[ -s $results/StartStopRounds.tsv ]]; then
    soak_dated <"$results/StartStopRounds.tsv" >"$results/rounds.tsv"
    rm -f "$results/StartStopRounds.tsv"
  fi
}

# Replaces what stands between the two marks of docs/soak.md.
soak_table() {
  local page=docs/soak.md
  soak_all_cells >"$results/all.tsv"
  {
    sed '/<!-- soak: begin -->/q' "$page"
    echo
    cat "$results"/cells/*.tsv 2>/dev/null | soak_grid
    [[ ! -s $results/rounds.tsv ]] || soak_rounds_table <"$results/rounds.tsv"
    sed -n '/<!-- soak: end -->/,$p' "$page"
  } >"$results/page.md"
  cp "$results/page.md" "$page"
}

# shellcheck disable=SC2016
soak_grid() {
  awk -F '\t' -v all="$results/all.tsv" '
    BEGIN {
      while ((getline line < all) > 0) {
        split(line, part, "\t")
        names[part[2], part[3]] = part[1]
        if (!(part[2] in momentSeen)) { momentSeen[part[2]] = 1; moments[++momentCount] = part[2] }
        if (!(part[3] in faultSeen)) { faultSeen[part[3]] = 1; faults[++faultCount] = part[3] }
      }
    }
    {
      key = $1 SUBSEP $2
      if (!(key in names)) next
      result[key] = $3; longest[key] = $4; run++
      if ($3 == "passed") {
        passed++
        if ($4 > worst) worst = $4
        within += $4 <= 100
      } else failures[++failureCount] = "- **" $1 "** × **" $2 "**: " $7
      if (first == "" || $8 < first) first = $8
      if ($8 > last) last = $8
    }
    END {
      printf "%d of %d cells were run, %s%s. %d of these passed", run, momentCount * faultCount, first, first == last ? "" : " to " last, passed
      printf "; in %d of them each answer came within 100 ms, and the longest took %d ms.\n\n", within, worst
      for (m = 1; m <= momentCount; m++) printf "%d. %s\n", m, moments[m]
      printf "\n| Fault "
      for (m = 1; m <= momentCount; m++) printf "| %d ", m
      printf "|\n| --- "
      for (m = 1; m <= momentCount; m++) printf "| --: "
      printf "|\n"
      for (f = 1; f <= faultCount; f++) {
        printf "| %s ", faults[f]
        for (m = 1; m <= momentCount; m++) {
          key = moments[m] SUBSEP faults[f]
          printf "| %s ", !(key in result) ? "–" : result[key] == "passed" ? longest[key] : "**✗**"
        }
        printf "|\n"
      }
      if (failureCount) printf "\nThese did not pass:\n\n"
      for (i = 1; i <= failureCount; i++) print failures[i]
      print ""
    }'
}

# shellcheck disable=SC2016
soak_rounds_table() {
  awk -F '\t' '
    NR == 1 { printf "%s starts and stops on the lab, %s:\n\n| What | Before | After |\n| --- | --: | --: |\n", $5, $6 }
    { printf "| %s | %s | %s%s |\n", $1, $2, $4, $3 == "passed" ? "" : " **✗**" }
    END { print "" }'
}
