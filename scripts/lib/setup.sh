# Shared by the scripts: installs what the project needs on Debian 12 when it is
# missing, and builds. Sourced, not run.

ORCHIDLAMP_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"

# What the two programs need to build.
ORCHIDLAMP_PACKAGES=(
  build-essential cmake pkg-config g++
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev libgl1-mesa-dev
  libzip-dev libxml2-dev libical-dev
)

# What scripts/test needs beyond that: the test and benchmark frameworks, the
# tools the tests run, packaging and its checks, and clang with the fuzzers'
# runtime. Installed up front so one apt-get update serves the run.
ORCHIDLAMP_TEST_PACKAGES=(
  libgtest-dev libgmock-dev googletest libbenchmark-dev zip unzip
  dpkg-dev file fakeroot desktop-file-utils shared-mime-info man-db groff-base
  clang libclang-rt-14-dev
)

# apt-get update at most once per run, and only when something is missing.
ensure_packages() {
  local missing=()
  for pkg in "$@"; do
    dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || missing+=("$pkg")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  echo "Installing: ${missing[*]}"
  if [ -z "${ORCHIDLAMP_APT_UPDATED:-}" ]; then
    $sudo apt-get update -qq
    export ORCHIDLAMP_APT_UPDATED=1
  fi
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# build DIR [cmake args...]: configures DIR and builds everything it is set up for
build() {
  local dir="$1"; shift
  cmake -S "$ORCHIDLAMP_ROOT" -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
  cmake --build "$dir" -j "$(nproc)"
}

# build_programs DIR [cmake args...]: the window (when Qt Widgets is there) and
# orchidlamp-cli only, with no test or benchmark framework needed
build_programs() {
  local dir="$1"; shift
  cmake -S "$ORCHIDLAMP_ROOT" -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DORCHIDLAMP_BUILD_TESTS=OFF -DORCHIDLAMP_BUILD_BENCH=OFF "$@" >/dev/null
  local targets=(orchidlamp-cli)
  grep -q '^ORCHIDLAMP_BUILD_GUI:BOOL=ON' "$dir/CMakeCache.txt" && targets+=(orchidlamp)
  cmake --build "$dir" -j "$(nproc)" --target "${targets[@]}"
}
