# Sourced by the scripts: installs the Debian packages that a step misses, and tells what it is doing.

# Prints a line that stands out from the output of tools.
say() { printf '\n== %s\n' "$*"; }

# need_packages PACKAGE...: installs them. Asks apt nothing when all are there.
need_packages() {
  local root=()
  [[ $(dpkg-query -W -f='${db:Status-Abbrev}\n' "$@" 2>&1 | sort -u) == "ii " ]] && return
  ((EUID == 0)) || root=(sudo)
  say "Installing what is missing of these packages: $*"
  "${root[@]}" apt-get update
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "$@"
}

# What the Windows programs are built with, and what shows them.
packages_windows=(cmake ninja-build python3 googletest g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix librsvg2-bin
  wine wine64 fonts-wine fonts-liberation xvfb xauth xdotool imagemagick nsis)
# What the portable core is built and checked with.
packages_native=(g++ clang clang-format clang-tidy libclang-rt-dev llvm libgtest-dev libgmock-dev libbenchmark-dev git)
# What the benchmarks are held against.
packages_peers=(libspdlog-dev libboost-dev libabsl-dev libfmt-dev libphonenumber-dev)
