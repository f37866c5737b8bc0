# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_run() {
  local headless=no preset=dev
  while [[ $# -gt 0 ]]; do
    case $1 in
      -h | --help)
        cat <<'TEXT'
usage: ./dev run [--headless] [--preset dev|release|asan|tsan] [--] [options of Corvanta]

Installs what is missing, builds, and opens Corvanta on the device lab with the sample page, which is served on this
machine alone. Without a display, or with --headless, it brings a virtual desktop: there it starts a workspace by itself,
prints each phase with its time, writes a screenshot to build/run/desktop.png, stops the workspace and exits 0; when the
workspace fails it prints the status and how to recover, and exits 1. Nothing of a headless run stays behind, and it
leaves the lab's devices of your own untouched.

Options of Corvanta (./dev run -- --help lists all):
  --url URL          open this page instead of the sample page
  --device DEVICE    use this device, by name or UDID
  --start            start a workspace at once
  --screenshot FILE  by itself: start, write a picture of the desktop, stop, and end
TEXT
        return
        ;;
      --headless)
        headless=yes
        shift
        ;;
      --preset)
        preset=${2:?--preset needs a name}
        shift 2
        ;;
      --preset=*)
        preset=${1#*=}
        shift
        ;;
      --)
        shift
        break
        ;;
      *) break ;;
    esac
  done
  check_preset "$preset"
  ensure_setup
  # The programs alone: the tests would make a first look take twice as long.
  build_preset "$preset" --target app/all lab/all

  export CORVANTA_BUILD=$CORVANTA_ROOT/build/$preset
  if [[ $headless == no ]] && display_answers; then
    run_on_display "$@"
  else
    run_headless "$@"
  fi
}

display_answers() { [[ -n ${DISPLAY:-} ]] && timeout 5 xdpyinfo >/dev/null 2>&1; }

run_on_display() {
  local command=(tools/dev/with-sample-page "$CORVANTA_BUILD/bin/Corvanta" "$@")
  # Without a session bus the programs of the lab could not find each other; one of this run's own is better than none.
  if [[ -z ${DBUS_SESSION_BUS_ADDRESS:-} && ! -S ${XDG_RUNTIME_DIR:-/nonexistent}/bus ]]; then
    command=(dbus-run-session -- "${command[@]}")
  fi
  "${command[@]}"
}

run_headless() {
  local folder=$CORVANTA_ROOT/build/run options=(--start)
  local picture=$folder/desktop.png
  if ! has_option --screenshot "$@"; then
    options+=(--screenshot "$picture")
  fi
  # A phone rather than the first device in the order of names, which is a tablet.
  if ! has_option --device "$@"; then
    options+=(--device "iPhone 16 Pro")
  fi
  rm -rf -- "$folder"
  mkdir -p "$folder"
  say "There is no display to show Corvanta on; it runs on a virtual desktop"
  # What the buses and the X server say about their own start and end is no news of the workspace.
  CORVANTA_LAB_HOME=$folder/lab tests/support/virtual-desktop --size 1600x1000 --limit 330 tools/dev/headless-session \
    timeout --kill-after=10 300 tools/dev/with-sample-page "$CORVANTA_BUILD/bin/Corvanta" "${options[@]}" "$@" \
    > >(desktop_news) 2> >(desktop_news >&2)
}

desktop_news() { grep --line-buffered -vE '^(dbus-daemon\[|SpiRegistry daemon|XIO: |      after [0-9]+ requests)' || true; }
