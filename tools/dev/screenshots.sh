# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_screenshots() {
  local preset=dev devices=false
  while [[ $# -gt 0 ]]; do
    case $1 in
      -h | --help)
        cat <<'TEXT'
usage: ./dev screenshots [--preset dev|release|asan|tsan] [--devices]

Installs what is missing, builds, and renders the control window in every state that it has, the alerts about updates, and
the map at every kind of zoom, light, dark and of high contrast, at 1x and 2x, to build/screenshots. It shows nothing on
your screen.

With --devices it draws every model of the device lab instead, upright and on its side, light and dark, to
build/screenshots/devices.
TEXT
        return
        ;;
      --devices)
        devices=true
        shift
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
  if [[ $devices == true ]]; then
    build_preset "$preset" --target SimulatorDevice --target simctl --target xcrun --target open \
      --target SampleServer
    rm -rf -- build/screenshots/devices
    tests/support/virtual-desktop --size 1600x1200 --limit 1200 tests/screenshots/device-screenshots \
      "$CORVANTA_ROOT/build/$preset/libexec/corvanta-lab" "$CORVANTA_ROOT/build/screenshots/devices"
    return
  fi
  build_preset "$preset" --target CorvantaScreenshots CorvantaMapScreenshots

  local folder=build/screenshots scale
  rm -rf -- "$folder"
  for scale in 1 2; do
    QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=$scale "build/$preset/tests/CorvantaScreenshots" "$folder"
    QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=$scale "build/$preset/tests/CorvantaMapScreenshots" "$folder/map"
  done
}
