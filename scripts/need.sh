# shellcheck shell=bash
# Source this file. It installs the Debian packages that are missing, and no others.

# need PACKAGE...
# Succeeds when every package is installed at the end. Another user than root installs them with sudo,
# and a line says so. Without sudo it prints one line with the packages to install, and fails. Without
# dpkg it succeeds at once: the build then reports what is missing.
need() {
  command -v dpkg-query >/dev/null || return 0

  local package missing=()
  for package in "$@"; do
    [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] ||
      missing+=("$package")
  done
  ((${#missing[@]})) || return 0

  local as_root=()
  if ((EUID != 0)); then
    if command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
      as_root=(sudo -n)
    elif command -v sudo >/dev/null && [[ -t 0 && -t 2 ]]; then
      as_root=(sudo)
    else
      echo "Please install these Debian packages first: ${missing[*]}" >&2
      return 1
    fi
  fi

  echo "Installing ${missing[*]}${as_root[0]:+ with sudo}"
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
    apt-get -q -y -o DPkg::Lock::Timeout=300)
  if "${apt[@]}" update >/dev/null &&
    "${apt[@]}" install --no-install-recommends "${missing[@]}" >/dev/null; then
    return 0
  fi
  echo "These Debian packages could not be installed: ${missing[*]}" >&2
  return 1
}
