# Sourced by demo and test: installs the Debian packages that a step misses, and tells what it is doing.

# Prints a line that stands out from the output of tools.
say() { printf '\n== %s\n' "$*"; }

# need_packages PACKAGE...: installs those that are missing. Asks apt nothing when all are there.
need_packages() {
  local missing=() package root=()
  for package in "$@"; do
    [[ $(dpkg-query -W -f='${Status}' "$package" 2>/dev/null) == "install ok installed" ]] || missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  if ((EUID != 0)); then
    command -v sudo >/dev/null || { echo "Missing packages, and no way to become root: ${missing[*]}" >&2; return 1; }
    root=(sudo)
  fi
  say "Installing ${#missing[@]} packages: ${missing[*]}"
  "${root[@]}" apt-get update
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
}

# What the Windows programs are built with, and what shows them.
packages_windows=(cmake ninja-build python3 googletest g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix librsvg2-bin
  wine wine64 fonts-wine fonts-liberation xvfb xauth xdotool imagemagick nsis)
# What the portable core is built and checked with.
packages_native=(g++ clang clang-format clang-tidy libclang-rt-dev llvm libgtest-dev libgmock-dev libbenchmark-dev git)
# What the benchmarks are held against.
packages_peers=(libspdlog-dev libboost-dev libabsl-dev libfmt-dev libphonenumber-dev)
