# Sourced by the other scripts: where the project is, and what it needs from the system.

set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=$(nproc)

build_packages=(g++ cmake ninja-build pkg-config default-jdk-headless
  coinor-libcbc-dev coinor-libclp-dev coinor-libosi-dev coinor-libcoinutils-dev coinor-libcgl-dev)
test_packages=(libgtest-dev libgmock-dev)
ci_packages=(clang clang-format libclang-rt-14-dev clang-tidy libbenchmark-dev doxygen python3)

# Installs the Debian packages given that are not there yet.
need_packages() {
  local missing=()
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  local become=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "These Debian packages are missing; please install them: ${missing[*]}" >&2
      exit 1
    fi
    become=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  "${become[@]}" apt-get update -qq
  "${become[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${missing[@]}" >/dev/null
}
