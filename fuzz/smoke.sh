#!/bin/sh
# Runs the RTF reader's fuzz target for a short time from its seeds: the
# word-processor fixtures, the corpus of documents from many word processors
# (tests/data/rtf-corpus) and the inputs kept in tests/data/rtf-fuzz (every
# crash the fuzzer ever found). New findings go to a scratch folder, never
# into the repository; a crash fails the run.
#   fuzz/smoke.sh FUZZER [SECONDS]
set -eu
fuzzer=${1:?usage: smoke.sh FUZZER [SECONDS]}
seconds=${2:-20}
here=$(cd "$(dirname "$0")" && pwd)
repo=$(dirname "$here")
if [ ! -x "$fuzzer" ]; then
    echo "smoke.sh: no fuzz build at $fuzzer; nothing to run" >&2
    exit 0
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/corpus" "$work/artifacts"
for seed in "$repo"/tests/data/rtf/*.rtf "$repo"/tests/data/rtf-corpus/*.rtf "$repo"/tests/data/rtf-fuzz/*; do
    [ -f "$seed" ] || continue
    # The 1 MB picture letter slows every run down; the others cover it.
    size=$(wc -c < "$seed")
    [ "$size" -le 65536 ] || continue
    cp "$seed" "$work/corpus/"
done
export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=0}
"$fuzzer" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=1024 -timeout=10 \
    -artifact_prefix="$work/artifacts/" -print_final_stats=1 "$work/corpus"
