# SPDX-License-Identifier: MIT
# shellcheck shell=bash
source tools/dev/setup.sh

verb_fresh() {
  local commands=()
  while [[ $# -gt 0 ]]; do
    case $1 in
      -h | --help)
        cat <<'TEXT'
usage: ./dev fresh [--only VERB]...

Proves that a new Debian 12 machine needs nothing but this repository: makes a minimal system with debootstrap in
build/fresh/root from this machine's APT sources, clones the current commit into it, and there runs ./dev test and
./dev run, showing their output and how long each took. The screenshot comes out as build/fresh/desktop.png.

--only runs other verbs of ./dev there instead, for example --only setup.

Needs root or sudo, since it changes its root folder. Everything runs in mount and process namespaces of its own, so no
mount and no program is left behind. Downloaded packages are kept in build/fresh/archives for the next time.
TEXT
        return
        ;;
      --only)
        commands+=("${2:?--only needs a verb}")
        shift 2
        ;;
      --only=*)
        commands+=("${1#*=}")
        shift
        ;;
      *) die 64 "fresh does not know \"$1\"" ;;
    esac
  done

  [[ ${#commands[@]} -gt 0 ]] || commands=(test run)

  install_packages debootstrap git
  if [[ $(id -u) -ne 0 ]]; then
    exec sudo --preserve-env=http_proxy,https_proxy,no_proxy -- "$CORVANTA_ROOT/dev" fresh "${commands[@]/#/--only=}"
  fi
  [[ -z $(git -c safe.directory='*' status --porcelain) ]] ||
    say "What is not committed is not part of the proof: the clone is of $(git_head)."

  local folder=$CORVANTA_ROOT/build/fresh
  mkdir -p "$folder/archives/base" "$folder/archives/apt"
  # In a mount namespace the mounts vanish with the last process, and in a process namespace so do the processes,
  # whatever the way out. The kernel does what a trap could miss.
  unshare --mount --propagation private --pid --fork --kill-child -- \
    bash -euo pipefail "$CORVANTA_ROOT/tools/dev/fresh-root" "$CORVANTA_ROOT" "$folder" "${commands[@]}"
}

git_head() { git -c safe.directory='*' rev-parse --short HEAD; }
