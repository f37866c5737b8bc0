# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_screenshots() {
  local preset=dev
  while [[ $# -gt 0 ]]; do
    case $1 in
      -h | --help)
        cat <<'TEXT'
usage: ./dev screenshots [--preset dev|release|asan]

Installs what is missing, builds, and renders the control window in every state that it has, the alerts about updates, and
the map at every kind of zoom, light, dark and of high contrast, at 1x and 2x, to build/screenshots. It shows nothing on
your screen.
TEXT
        return
        ;;
      --preset)
        preset=${2:?--preset needs a name}
        shift 2
        ;;
      *) die 64 "./dev screenshots knows no \"$1\"" ;;
    esac
  done
  check_preset "$preset"
  ensure_setup
  build_preset "$preset" --target CorvantaScreenshots CorvantaMapScreenshots

  local folder=build/screenshots scale
  rm -rf -- "$folder"
  for scale in 1 2; do
    QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=$scale "build/$preset/tests/CorvantaScreenshots" "$folder"
    QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=$scale "build/$preset/tests/CorvantaMapScreenshots" "$folder/map"
  done
}
