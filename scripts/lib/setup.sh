# Shared by the scripts: installs what the project needs on Debian 12 when it is
# missing, and builds. Sourced, not run.

ORCHIDLAMP_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"

ORCHIDLAMP_PACKAGES=(
  build-essential cmake pkg-config g++ clang
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev libgl1-mesa-dev
  libzip-dev libxml2-dev libical-dev
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  zip unzip xvfb xauth
)

# What scripts/test needs beyond the build: packaging and its checks, and the
# fuzzers' runtime. Installed up front so one apt-get update serves the run.
ORCHIDLAMP_TEST_PACKAGES=(
  dpkg-dev file fakeroot desktop-file-utils shared-mime-info man-db groff-base libclang-rt-14-dev
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

# build DIR [cmake args...]
build() {
  local dir="$1"; shift
  cmake -S "$ORCHIDLAMP_ROOT" -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
  cmake --build "$dir" -j "$(nproc)"
}
