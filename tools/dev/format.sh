# SPDX-License-Identifier: MIT
# shellcheck shell=bash

verb_format() {
  local mode=(-i)
  case ${1:-} in
    -h | --help)
      cat <<'TEXT'
usage: ./dev format [--check]

Formats all C++ sources with clang-format-19. With --check it changes nothing, names what is not formatted, and fails.
TEXT
      return
      ;;
    --check) mode=(--dry-run --Werror) ;;
    '') ;;
    *) die 64 "format does not know \"$1\"" ;;
  esac
  ensure_lint_setup
  all_sources | xargs -0 -r -n 20 -P "$(nproc)" clang-format-19 "${mode[@]}"
}

ensure_lint_setup() {
  local names
  mapfile -t names < <(package_names tools/packages-debian-12-lint.txt)
  install_packages "${names[@]}"
}

# All C++ sources that are or may become part of the repository, each ended by a zero byte.
all_sources() { git ls-files -z --cached --others --exclude-standard -- '*.h' '*.cpp' '*.mm'; }
