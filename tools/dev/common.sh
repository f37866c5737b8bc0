# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# What the verbs of ./dev share.

say() { printf '==> %s\n' "$*"; }

# die STATUS MESSAGE...
die() {
  local status=$1
  shift
  printf 'dev: %s\n' "$*" >&2
  exit "$status"
}

# The package names of lists like tools/packages-debian-12.txt.
package_names() { sed -e 's/#.*//' -e '/^[[:space:]]*$/d' -e 's/[[:space:]]//g' "$@"; }

# Which of the named packages are not installed.
missing_packages() {
  local installed
  # The query fails when it knows one of the names not at all; what it prints counts all the same.
  # shellcheck disable=SC2016
  installed=$(dpkg-query --show --showformat='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null |
    sed -n 's/^installed //p' || true)
  printf '%s\n' "$@" | grep -vxF -f <(printf '%s\n' "$installed") || true
}

as_root() {
  if [[ $(id -u) -eq 0 ]]; then
    "$@"
  else
    sudo -- "$@"
  fi
}

# Installs those of the named packages that are missing, saying what it does.
install_packages() {
  local missing
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    say "This system has no APT, so nothing was installed. See tools/packages-debian-12.txt for what is needed."
    return 0
  fi
  mapfile -t missing < <(missing_packages "$@")
  [[ ${#missing[@]} -gt 0 ]] || return 0

  local codename=
  # shellcheck source=/dev/null
  [[ ! -r /etc/os-release ]] || codename=$(source /etc/os-release && echo "${DEBIAN_CODENAME:-${VERSION_CODENAME:-}}")
  if [[ $codename != bookworm ]]; then
    say "The package names are those of Debian 12; this system calls itself \"${codename:-unknown}\"."
  fi
  local command=(apt-get install --yes --no-install-recommends "${missing[@]}")
  if [[ $(id -u) -ne 0 ]] && ! command -v sudo >/dev/null; then
    die 77 "packages are missing, and neither is this root nor is there sudo. As root, run: ${command[*]}"
  fi
  say "Installing with apt-get$([[ $(id -u) -eq 0 ]] || echo ' through sudo'): ${missing[*]}"
  if [[ -z $(find /var/lib/apt/lists -maxdepth 1 -name '*Packages*' -mtime -1 -print -quit 2>/dev/null) ]] ||
    ! apt-get install --simulate --no-install-recommends "${missing[@]}" >/dev/null 2>&1; then
    say "Updating APT's package lists"
    as_root apt-get update
  fi
  # Lists that are old name files that have left the archive since.
  if ! as_root env DEBIAN_FRONTEND=noninteractive "${command[@]}"; then
    say "That failed; once more with new package lists"
    as_root apt-get update
    as_root env DEBIAN_FRONTEND=noninteractive "${command[@]}"
  fi
}

# Configures a preset where that has not been done yet or the presets changed, then builds it.
configure_preset() {
  local preset=$1
  shift
  local folder=build/$preset
  if command -v ccache >/dev/null; then
    export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
    # What the cache asks for where headers are precompiled.
    export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
  fi
  if [[ $# -gt 0 || ! -f $folder/build.ninja || CMakePresets.json -nt $folder/build.ninja ]]; then
    cmake --preset "$preset" "$@"
  fi
}

build_preset() {
  local preset=$1
  shift
  configure_preset "$preset"
  cmake --build --preset "$preset" "$@"
}

check_preset() {
  case $1 in
    dev | release | asan | tsan) ;;
    *) die 64 "there is no preset \"$1\"; it is one of dev, release, asan, tsan" ;;
  esac
}

is_help() { [[ ${1:-} == -h || ${1:-} == --help ]]; }

# has_option --name ARGUMENT...: whether the arguments hold the option, in either spelling of its value.
has_option() {
  local name=$1 argument
  shift
  for argument; do
    [[ $argument != "$name" && $argument != "$name="* ]] || return 0
  done
  return 1
}
