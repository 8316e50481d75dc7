#!/bin/sh
# The radio for a long time on a machine that fails: MINUTES (10) of real time under the address sanitizer and then
# as many under the thread sanitizer, or with VIRTUAL=1 HOURS (24) of the virtual clock. SEED repeats a run.
set -eu
cd "$(dirname "$0")/../.."
seed=${SEED:-$(date +%s)}

build() {
  cmake --preset "$1" >/dev/null
  cmake --build --preset "$1" --target "$2"
}

if [ -n "${VIRTUAL:-}" ]; then
  build release test_core
  echo "Seed $seed"
  QUORL_SOAK_HOURS=${HOURS:-24} QUORL_SOAK_SEED=$seed exec build/release/bin/test_core --gtest_filter='FrmMainSoak.*'
fi

result=0
for preset in asan tsan; do
  build "$preset" quorlsdr
  echo "== $preset"
  tools/soak/soak.py "build/$preset/bin/quorlsdr" --minutes "${MINUTES:-10}" --seed "$seed" \
    --library "$(g++ -print-file-name="lib$preset.so")" || result=1
done
exit $result
