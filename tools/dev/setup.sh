# SPDX-License-Identifier: MIT
# shellcheck shell=bash

verb_setup() {
  if is_help "$@"; then
    cat <<'TEXT'
usage: ./dev setup

Installs the Debian packages of tools/packages-debian-12.txt that are missing, as root or through sudo. Where all are
there it does nothing, in a fraction of a second.
TEXT
    return
  fi
  [[ $# -eq 0 ]] || die 64 "setup takes no arguments"
  ensure_setup
}

ensure_setup() {
  local names
  mapfile -t names < <(package_names tools/packages-debian-12.txt)
  install_packages "${names[@]}"
}
