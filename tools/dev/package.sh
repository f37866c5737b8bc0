# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_package() {
  local preset=release number=
  while [[ $# -gt 0 ]]; do
    case $1 in
      -h | --help)
        cat <<'TEXT'
usage: ./dev package [--preset dev|release|asan|tsan] [--build-number NUMBER]

Builds what is installed, optimised unless another preset is named, and makes a Debian package of it in
build/package/packages: the application with its desktop entry and icons, and the device lab. The preset's own build is
left as it is.

The version is that of the project in CMakeLists.txt. The build number, which tells an installed Corvanta whether a
release is newer, is the number of commits unless --build-number says otherwise.
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
      --build-number)
        number=${2:?--build-number needs a number}
        shift 2
        ;;
      --build-number=*)
        number=${1#*=}
        shift
        ;;
      *) die 64 "package does not know \"$1\"" ;;
    esac
  done
  check_preset "$preset"
  [[ -n $number ]] || number=$(git -c safe.directory='*' rev-list --count HEAD)
  [[ $number =~ ^[1-9][0-9]*$ ]] || die 64 "the build number is to be a positive number, not \"$number\""
  ensure_setup
  install_packages appstream desktop-file-utils dpkg-dev file

  local folder=build/package
  if command -v ccache >/dev/null; then
    export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
  fi
  cmake --preset "$preset" -B "$folder" -DCORVANTA_BUILD_TESTS=OFF -DCORVANTA_BUILD_NUMBER="$number"
  cmake --build "$folder"
  desktop-file-validate data/desktop/dev.corvanta.Corvanta.desktop
  appstreamcli validate --no-net "$folder/data/desktop/dev.corvanta.Corvanta.metainfo.xml"
  rm -rf -- "$folder/packages"
  cpack --config "$folder/CPackConfig.cmake"
  say "Made $(echo "$folder"/packages/*.deb)"
}
