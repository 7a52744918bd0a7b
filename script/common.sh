# What the scripts share; each sources it first. What they do is told on standard error, what they find out on standard
# output.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# The system's Python, which its packages belong to, whatever comes first on the path.
python=/usr/bin/python3
[ -x "$python" ] || python=python3

step() { printf '\n== %s\n' "$*" >&2; }

# configure PRESET: build/PRESET, as CMakePresets.json says
configure() {
  step "Configure build/$1"
  (cd "$root" && cmake --preset "$1" >/dev/null)
}

# build PRESET [OPTION...]: shows its progress in one line of a terminal, in a line for each file elsewhere
build() {
  step "Build $1"
  (cd "$root" && cmake --build --preset "$@" >&2)
}

# run_tests PRESET [OPTION...]: options go to ctest
run_tests() {
  step "Test $1"
  (cd "$root" && ctest --preset "$1" -j "$(nproc)" "${@:2}")
}
