# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# What the verbs of ./dev do on a Mac. The system's own bash is 3.2: it has no mapfile, and an empty array counts as unset.

macos_usage() {
  cat <<'TEXT'
usage: ./dev setup
       ./dev build [--preset dev|release] [arguments of cmake --build]
       ./dev test [--preset dev|release] [arguments of ctest]
       ./dev run [--preset dev|release] [--] [options of Corvanta]
       ./dev package [--identity IDENTITY] [--build-number NUMBER]

On a Mac (macOS 15, Apple silicon, Xcode 16, Homebrew) each installs the formulas of tools/packages-homebrew.txt that are
missing, and builds.

test runs the tests that need no display of another program. run opens the bundle, so that the accessibility permission is
asked for Corvanta and not for the terminal. package makes a signed disk image in build/package; the signature is ad hoc
unless --identity, or CORVANTA_SIGNING_IDENTITY, names one of the keychain, as "Developer ID Application: ...".
See docs/macos.md.
TEXT
}

macos_ensure_setup() {
  [[ $(uname -m) == arm64 ]] || die 69 "Corvanta needs a Mac with Apple silicon"
  xcode-select --print-path >/dev/null 2>&1 || die 69 "Xcode is missing; install it from the App Store and open it once"
  command -v brew >/dev/null || die 69 "Homebrew is missing; see its home page for how to install it"
  local formula missing=()
  while read -r formula; do
    brew list --formula "$formula" >/dev/null 2>&1 || missing+=("$formula")
  done < <(package_names tools/packages-homebrew.txt)
  [[ ${#missing[@]} -gt 0 ]] || return 0
  say "Installing with brew: ${missing[*]}"
  brew install "${missing[@]}"
}

# macos_configure PRESET FOLDER [ARGUMENT...]
macos_configure() {
  local preset=$1 folder=$2
  shift 2
  if command -v ccache >/dev/null; then
    export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache CMAKE_OBJCXX_COMPILER_LAUNCHER=ccache
  fi
  if [[ $# -gt 0 || ! -f $folder/build.ninja || CMakePresets.json -nt $folder/build.ninja ]]; then
    cmake --preset "macos-$preset" -B "$folder" -DCMAKE_PREFIX_PATH="$(brew --prefix)" "$@"
  fi
}

# Reads --preset from the front of the arguments: sets preset, and shift_by to the number of arguments read.
macos_preset() {
  preset=dev
  shift_by=0
  case ${1:-} in
    --preset)
      preset=${2:?--preset needs a name}
      shift_by=2
      ;;
    --preset=*)
      preset=${1#*=}
      shift_by=1
      ;;
  esac
  case $preset in
    dev | release) ;;
    *) die 64 "there is no preset \"$preset\" on macOS; it is one of dev, release" ;;
  esac
}

macos_setup() {
  [[ $# -eq 0 ]] || die 64 "setup takes no arguments"
  macos_ensure_setup
}

macos_build() {
  local preset shift_by
  macos_preset "$@"
  shift "$shift_by"
  macos_ensure_setup
  macos_configure "$preset" "build/macos-$preset"
  cmake --build "build/macos-$preset" "$@"
}

macos_test() {
  local preset shift_by
  macos_preset "$@"
  shift "$shift_by"
  macos_build --preset "$preset"
  ctest --test-dir "build/macos-$preset" --output-on-failure --parallel "$(sysctl -n hw.ncpu)" --no-tests=error "$@"
}

macos_run() {
  local preset shift_by app
  macos_preset "$@"
  shift "$shift_by"
  [[ ${1:-} != -- ]] || shift
  macos_build --preset "$preset" --target Corvanta
  app=build/macos-$preset/bin/Corvanta.app
  # An identity of one's own keeps the accessibility permission from one build to the next.
  if [[ -n ${CORVANTA_SIGNING_IDENTITY:-} ]]; then
    codesign --force --sign "$CORVANTA_SIGNING_IDENTITY" "$app"
  fi
  say "Opening $app; quit Corvanta to come back"
  open -W "$app" --args "$@"
}

macos_package() {
  local identity=${CORVANTA_SIGNING_IDENTITY:--} number=
  while [[ $# -gt 0 ]]; do
    case $1 in
      --identity)
        identity=${2:?--identity needs a name}
        shift 2
        ;;
      --identity=*)
        identity=${1#*=}
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
  [[ -n $number ]] || number=$(git rev-list --count HEAD)
  [[ $number =~ ^[1-9][0-9]*$ ]] || die 64 "the build number is to be a positive number, not \"$number\""
  macos_ensure_setup

  local folder=build/package stage=build/package/stage app version image
  app=$stage/Corvanta.app
  macos_configure release "$folder" -DCORVANTA_BUILD_TESTS=OFF -DCORVANTA_BUILD_NUMBER="$number"
  cmake --build "$folder"
  rm -rf -- "$stage"
  mkdir -p "$stage"
  ditto "$folder/bin/Corvanta.app" "$app"
  macos_deploy "$app"
  macos_sign "$app" "$identity"
  plutil -lint "$app/Contents/Info.plist"
  [[ $(lipo -archs "$app/Contents/MacOS/Corvanta") == arm64 ]] || die 70 "the program is not for arm64 alone"

  version=$(plutil -extract CFBundleShortVersionString raw "$app/Contents/Info.plist")
  image=$folder/Corvanta-$version-$number.dmg
  ln -s /Applications "$stage/Applications"
  rm -f -- "$image"
  hdiutil create -volname Corvanta -srcfolder "$stage" -fs HFS+ -format UDZO -ov "$image"
  [[ $identity == - ]] || codesign --force --timestamp --sign "$identity" "$image"
  hdiutil verify "$image"
  say "Made $image"
  [[ $identity == - ]] || say "To notarise: xcrun notarytool submit --wait \"$image\", then xcrun stapler staple \"$image\""
}

# Copies the libraries and plug-ins into the bundle. That rewrites where they are looked for, so signing comes after it.
macos_deploy() {
  local tool
  tool=$(brew --prefix qtbase)/bin/macdeployqt
  [[ -x $tool ]] || die 69 "$tool is missing"
  "$tool" "$1" -always-overwrite -verbose=1 "-libpath=$(brew --prefix)/lib"
}

# macos_sign BUNDLE IDENTITY: what is nested first, then the bundle, with the hardened runtime and outside of the sandbox,
# for the program reads and moves the windows of others. Without an identity no two signatures have a team in common, so
# that the hardened runtime would load no library; those signatures do without that check.
macos_sign() {
  local app=$1 identity=$2 entitlements=packaging/macos/Corvanta.entitlements nested
  local options=(--force --options runtime --sign "$identity")
  if [[ $identity == - ]]; then
    entitlements=packaging/macos/AdHoc.entitlements
    options+=(--timestamp=none)
  else
    options+=(--timestamp)
  fi
  while IFS= read -r -d '' nested; do
    codesign "${options[@]}" "$nested"
  done < <(find "$app/Contents" -type f -name '*.dylib' -print0)
  while IFS= read -r -d '' nested; do
    codesign "${options[@]}" "$nested"
  done < <(find "$app/Contents/Frameworks" -maxdepth 1 -type d -name '*.framework' -print0)
  codesign "${options[@]}" --entitlements "$entitlements" "$app"
  codesign --verify --deep --strict --verbose=2 "$app"
}
